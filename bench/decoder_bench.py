#!/usr/bin/env python3
"""Decodes the code of the cross compiler's C libraries with decoder_bench, and with objdump in turn; and fills the
instruction cache with decoder_bench_cache from a program that holds them so often that it has 100,000 functions.

usage: bench/decoder_bench.py build/release/bin/decoder_bench"""

import glob
import os
import subprocess
import sys
import tempfile
import time

LIBRARIES = "/usr/lib/arm-none-eabi/newlib"
MIN_BYTES = 5_000_000
NUM_RUNS = 3
NUM_FUNCTIONS = 100_000
SETS = {  # name: directories of the libraries, objdump's options, decoder_bench's argument
    "Thumb": (["thumb/v7*", "thumb/v8-m.main*"], ["-M", "force-thumb"], []),
    "ARM": (["arm/*"], [], ["arm"]),
}


def code_of(library, folder):
    """The bytes of all code sections of a library's members."""
    subprocess.run(["arm-none-eabi-ar", "x", library], cwd=folder, check=True)
    code = b""
    for member in sorted(glob.glob(f"{folder}/*.o")):
        out = f"{member}.bin"
        subprocess.run(["arm-none-eabi-objcopy", "-O", "binary", "-j", ".text", "-j", ".text.*", member, out],
                       check=False, capture_output=True)
        if os.path.exists(out):
            with open(out, "rb") as file:
                code += file.read()
            code += bytes(-len(code) % 4)
            os.remove(out)
        os.remove(member)
    return code


def corpus(patterns, path):
    code = b""
    for pattern in patterns:
        for library in sorted(glob.glob(f"{LIBRARIES}/{pattern}/**/lib[cm].a", recursive=True)):
            with tempfile.TemporaryDirectory() as folder:
                code += code_of(library, folder)
            if len(code) >= MIN_BYTES:
                break
        if len(code) >= MIN_BYTES:
            break
    while 0 < len(code) < MIN_BYTES:  # the whole of it again
        code += code
    with open(path, "wb") as file:
        file.write(code)
    return len(code)


def objdump_seconds(path, options):
    def run(file):
        start = time.monotonic()
        subprocess.run(["arm-none-eabi-objdump", "-D", "-b", "binary", "-m", "arm", *options, file],
                       stdout=subprocess.DEVNULL, check=True)
        return time.monotonic() - start

    with tempfile.NamedTemporaryFile() as nothing:
        nothing.write(bytes(4))
        nothing.flush()
        return min(run(path) - run(nothing.name) for _ in range(NUM_RUNS))


def program_of_many_functions(folder):
    """The libraries made one object without global names, linked again and again; the path, or None without them."""
    libraries = glob.glob(f"{LIBRARIES}/thumb/v7e-m/nofp/lib[cm].a")
    if not libraries:
        return None
    subprocess.run(["arm-none-eabi-ld", "-r", "--whole-archive", "--allow-multiple-definition", *libraries,
                    "-o", f"{folder}/all.o"], check=True, capture_output=True)
    subprocess.run(["arm-none-eabi-objcopy", "-g", "--keep-global-symbol=none", f"{folder}/all.o", f"{folder}/local.o"],
                   check=True)
    symbols = subprocess.run(["arm-none-eabi-readelf", "-sW", f"{folder}/local.o"], capture_output=True, text=True,
                             check=True).stdout
    functions = sum(1 for line in symbols.splitlines() if " FUNC " in line and " UND " not in line)
    copies = []
    for number in range(-(-NUM_FUNCTIONS // functions)):
        copies.append(f"{folder}/{number}.o")
        os.symlink("local.o", copies[-1])
    with open(f"{folder}/all.ld", "w", encoding="ascii") as script:
        script.write("SECTIONS { . = 0x08000000; .text : { *(.text*) } "
                     ".rest 0x20000000 : { *(.data* .rodata* .bss* COMMON) } /DISCARD/ : { *(*) } }")
    subprocess.run(["arm-none-eabi-ld", "-T", f"{folder}/all.ld", "--unresolved-symbols=ignore-all", *copies,
                    "-o", f"{folder}/many.elf"], check=True, capture_output=True)
    return f"{folder}/many.elf"


def fill_cache(bench):
    with tempfile.TemporaryDirectory() as folder:
        program = program_of_many_functions(folder)
        if program is None:
            print(f"cache: no libraries in {LIBRARIES}")
            return
        print("cache of a program:")
        for _ in range(NUM_RUNS):
            for who in ("here", "library"):
                print(subprocess.run([f"{bench}_cache", program, who], capture_output=True, text=True,
                                     check=True).stdout, end="")


def main():
    bench = sys.argv[1]
    fill_cache(bench)
    for name, (patterns, options, arguments) in SETS.items():
        with tempfile.NamedTemporaryFile(suffix=".bin") as file:
            size = corpus(patterns, file.name)
            if size == 0:
                print(f"{name}: no libraries in {LIBRARIES}")
                continue
            print(f"{name}:")
            report = subprocess.run([bench, file.name, *arguments], capture_output=True, text=True, check=True).stdout
            count = int(report.split(" instructions")[0].split()[-1])
            seconds = objdump_seconds(file.name, options)
            print(f"{report}objdump         {count / seconds / 1e6:7.2f} million a second\n")


if __name__ == "__main__":
    main()
