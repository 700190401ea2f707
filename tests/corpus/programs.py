"""The programs of the corpus: how each is compiled and linked from the sources in src."""

import dataclasses
import pathlib
import re
import subprocess
import tempfile

FOLDER = pathlib.Path(__file__).resolve().parent
SOURCES = FOLDER / "src"
PREFIX_MAP = f"-ffile-prefix-map={SOURCES}=/corpus"  # no path of this machine in the files
UNITS = ["start.S", "records.c", "model.cpp"]
TWO_OF_A_CLASS = ["start.S", "shapes.cpp", "scene.cpp"]

MACHINES = {
    "thumb": ["-mcpu=cortex-m4", "-mthumb"],
    "thumb1": ["-mcpu=cortex-m0", "-mthumb"],
    "float": ["-mcpu=cortex-m7", "-mthumb", "-mfloat-abi=hard", "-mfpu=fpv5-d16"],
    "arm": ["-mcpu=cortex-a8", "-marm"],
    "be8": ["-mcpu=cortex-r4", "-marm", "-mbig-endian"],
    "be32": ["-mcpu=arm7tdmi", "-marm", "-mbig-endian"],
    "bethumb": ["-mcpu=cortex-r4", "-mthumb", "-mbig-endian"],
}
LINK_OPTIONS = {"be8": ["-Wl,--be8"], "bethumb": ["-Wl,--be8"]}
COMMON = ["-ffreestanding", "-fno-exceptions", "-fno-rtti", "-w"]
LANGUAGE = {".c": [], ".S": [], ".cpp": ["-std=c++17", "-fno-threadsafe-statics"]}


@dataclasses.dataclass
class Program:
    name: str
    compiler: str = "gcc"
    machine: str = "thumb"
    version: int = 5
    level: str = "-O2"
    options: list = dataclasses.field(default_factory=list)
    link: list = dataclasses.field(default_factory=list)
    units: dict = dataclasses.field(default_factory=dict)  # source: (compiler, version), where it differs
    sources: list = dataclasses.field(default_factory=lambda: UNITS)
    eh_frame: bool = False  # unwind tables in .eh_frame, as compilers for other systems write them


STRICT = ["-gstrict-dwarf"]
COMMITTED = [
    Program("gcc_v2_O0", version=2, level="-O0", options=STRICT),
    Program("gcc_v3_O2", version=3, options=STRICT),
    Program("gcc_v4_Og", version=4, level="-Og"),
    Program("gcc_v4_O2_types", version=4, options=["-fdebug-types-section"]),
    Program("gcc_v5_O0", level="-O0"),
    Program("gcc_v5_O1", level="-O1"),
    Program("gcc_v5_O2_sections", options=["-ffunction-sections", "-fdata-sections"], link=["-Wl,--gc-sections"]),
    Program("gcc_v5_O3", level="-O3"),
    Program("gcc_v5_Os_thumb1", machine="thumb1", level="-Os"),
    Program("gcc_v5_O2_lto", options=["-flto"]),
    Program("gcc_v5_O1_types", level="-O1", options=["-fdebug-types-section"]),
    Program("gcc_v5_O2_float", machine="float"),
    Program("gcc_v5_O2_arm", machine="arm"),
    Program("gcc_v4_O1_be8", machine="be8", version=4, level="-O1"),
    Program("gcc_v5_O2_be32", machine="be32"),
    Program("gcc_v5_O1_dwarf64", level="-O1", options=["-gdwarf64"]),
    Program("gcc_v5_Og_macros", level="-Og", options=["-g3"]),
    Program("gcc_v5_O2_zlib", link=["-Wl,--compress-debug-sections=zlib"]),
    Program("gcc_v4_O2_zdebug", version=4, link=["-Wl,--compress-debug-sections=zlib-gnu"]),
    Program("gcc_v5_O1_eh_frame", level="-O1", eh_frame=True),
    Program("clang_v2_Os", "clang", version=2, level="-Os", options=STRICT),
    Program("clang_v3_O1", "clang", version=3, level="-O1", options=STRICT),
    Program("clang_v4_O0", "clang", version=4, level="-O0"),
    Program("clang_v4_O2_arm", "clang", machine="arm", version=4),
    Program("clang_v5_O0", "clang", level="-O0"),
    Program("clang_v5_O0_sections_thumb1", "clang", machine="thumb1", level="-O0", options=["-ffunction-sections"],
            link=["-Wl,--gc-sections"]),
    Program("clang_v5_O2", "clang"),
    Program("clang_v5_O3_float", "clang", machine="float", level="-O3"),
    Program("clang_v5_O1_be8", "clang", machine="be8", level="-O1"),
    Program("clang_v5_O1_types", "clang", level="-O1", options=["-fdebug-types-section"]),
    Program("mixed", version=5, level="-O1", units={"records.c": ("gcc", 2), "model.cpp": ("clang", 4)}),
    Program("gcc_v4_O0_classes", version=4, level="-O0", sources=TWO_OF_A_CLASS),
    Program("gcc_v5_O2_classes", sources=TWO_OF_A_CLASS),
    Program("clang_v4_O2_classes", "clang", version=4, sources=TWO_OF_A_CLASS),
    Program("clang_v5_O1_classes", "clang", level="-O1", sources=TWO_OF_A_CLASS),
]


def _command(program, source):
    """The compiler and its options for one source."""
    compiler, version = program.units.get(source.name, (program.compiler, program.version))
    if source.suffix == ".S":
        compiler = "gcc"  # one assembler writes the unit of the start-up code everywhere
    options = [option for option in program.options if compiler == program.compiler and source.suffix != ".S"]
    driver = {"gcc": ["arm-none-eabi-g++" if source.suffix == ".cpp" else "arm-none-eabi-gcc"],
              "clang": ["clang++-14" if source.suffix == ".cpp" else "clang-14", "--target=arm-none-eabi"]}[compiler]
    command = [*driver, *MACHINES[program.machine], *COMMON, *LANGUAGE[source.suffix], program.level,
               f"-gdwarf-{version}", *options, PREFIX_MAP]
    return command + [f"-Wa,--debug-prefix-map={SOURCES}=/corpus"] * (source.suffix == ".S")


def _compile(program, source, out):
    command = _command(program, source)
    if not program.eh_frame or source.suffix == ".S":
        subprocess.run([*command, "-c", source, "-o", out], check=True, cwd=SOURCES)
        return
    # The compiler's own assembler text, with its frames in the other section.
    text = subprocess.run([*command, "-fasynchronous-unwind-tables", "-S", source, "-o", "-"], check=True,
                          capture_output=True, text=True).stdout
    text = re.sub(r"\.cfi_sections\s+\.debug_frame", ".cfi_sections .eh_frame", text)
    subprocess.run([command[0], *command[1:2] * command[1].startswith("--target"), *MACHINES[program.machine], "-x",
                    "assembler", "-c", "-", "-o", out], input=text, check=True, text=True, cwd=SOURCES)


def stack_usage(program):
    """Rows of file, line and bytes of stack of each function, as the compiler counts them."""
    found = set()
    with tempfile.TemporaryDirectory() as temporary:
        for unit in program.sources[1:]:
            out = pathlib.Path(temporary) / f"{unit}.o"
            subprocess.run([*_command(program, SOURCES / unit), "-fstack-usage", "-c", SOURCES / unit, "-o", out],
                           check=True, cwd=SOURCES)
            for line in out.with_suffix(".su").read_text().splitlines():
                place, size, _ = line.rsplit("\t", 2)
                file, number = place.split(":")[:2]
                found.add((file.rsplit("/", 1)[-1], int(number), int(size)))
    return "".join(f"{file}\t{line}\t{size}\n" for file, line, size in sorted(found))


def build(program, path):
    """Writes the linked program to the path, and beside it what the compiler says of its stack, which is known only
    when the program is linked where the optimiser runs then. Raises CalledProcessError where the tools refuse the
    combination."""
    if "-flto" not in program.options:
        path.with_suffix(".su").write_text(stack_usage(program))
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        objects = []
        for unit in program.sources:
            out = folder / f"{unit}.o"
            _compile(program, SOURCES / unit, out)
            objects.append(out)
        machine = MACHINES[program.machine]
        library = folder / "library.o"
        subprocess.run(["arm-none-eabi-gcc", *machine, *COMMON, "-Os", "-fno-tree-loop-distribute-patterns", "-c",
                        SOURCES / "library.c", "-o", library], check=True)
        lto = ["-flto", program.level, f"-gdwarf-{program.version}", PREFIX_MAP] if "-flto" in program.options else []
        subprocess.run(["arm-none-eabi-gcc", *machine, *lto, "-nostdlib", "-T", SOURCES / "corpus.ld",
                        "-Wl,--build-id=none,--no-enum-size-warning,-z,noexecstack", *LINK_OPTIONS.get(program.machine, []),
                        *program.link, *objects, library, "-o", path], check=True, cwd=SOURCES)
