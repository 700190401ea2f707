#!/usr/bin/env python3
"""Builds the corpus of tests/corpus with every combination of compiler, version of debug information, level of
optimisation, link-time optimisation, byte order and instruction set, and holds the reader against its peers.

usage: bench/long/elf_corpus.py build/release/bin [--part N OF] [--keep FOLDER] [--only GROUP,...]

Needs gcc-arm-none-eabi, clang-14, readelf, llvm-dwarfdump-14 and gdb-multiarch."""

import argparse
import itertools
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/corpus"), str(ROOT / "tests/corpus/peers")]
sys.dont_write_bytecode = True

import compare  # noqa: E402
import programs  # noqa: E402


def all_combinations():
    """Every compiler, version, level, machine and way of linking that goes together."""
    extras = {
        "gcc": [([], []), (["-flto"], []), (["-ffunction-sections"], ["-Wl,--gc-sections"]),
                (["-fdebug-types-section"], []), (["-gstrict-dwarf"], [])],
        "clang": [([], []), (["-ffunction-sections"], ["-Wl,--gc-sections"]), (["-fdebug-types-section"], [])],
    }
    for compiler, version, level, machine in itertools.product(
            extras, (2, 3, 4, 5), ("-O0", "-Og", "-O1", "-O2", "-O3", "-Os"), programs.MACHINES):
        if compiler == "clang" and machine in ("be32", "bethumb"):
            continue  # the linker wants instructions in the byte order of the data for the one; it relaxes neither
        for options, link in extras[compiler]:
            if "-fdebug-types-section" in options and version < 4:
                continue
            name = f"{compiler}_v{version}_{level[1:]}_{machine}" + "".join(
                "_" + option.split("-")[-1] for option in options)
            yield programs.Program(name, compiler, machine, version, level, options, link)


def build(combinations, folder):
    """Paths of the programs; combinations that the tools refuse are named and left out."""
    for program in combinations:
        path = folder / f"{program.name}.elf"
        try:
            programs.build(program, path)
        except subprocess.CalledProcessError as error:
            print(f"not built: {program.name}: {error.cmd[0]} ends with {error.returncode}")
            continue
        yield path


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("bin", type=pathlib.Path)
    arguments.add_argument("--part", nargs=2, type=int, default=(0, 1), metavar=("N", "OF"))
    arguments.add_argument("--keep", type=pathlib.Path)
    arguments.add_argument("--only", default=",".join(compare.GROUPS))
    options = arguments.parse_args()
    combinations = list(all_combinations())[options.part[0]::options.part[1]]
    table = compare.Table()
    with tempfile.TemporaryDirectory() as temporary:
        folder = options.keep or pathlib.Path(temporary)
        folder.mkdir(parents=True, exist_ok=True)
        num_programs = 0
        for path in build(combinations, folder):
            compare.compare(table, options.bin, path, options.only.split(","))
            num_programs += 1
            if not options.keep:
                path.unlink()
    print(f"{num_programs} programs of {len(combinations)} combinations")
    table.print()
    return 0 if table.passes() else 1


if __name__ == "__main__":
    sys.exit(main())
