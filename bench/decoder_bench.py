#!/usr/bin/env python3
"""Decodes the code of the cross compiler's C libraries with decoder_bench, and with objdump in turn.

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


def main():
    bench = sys.argv[1]
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
