#!/usr/bin/env python3
"""How long the program takes to its first paint, and to a loaded project, beside gdb on the same program file.

usage: start_bench.py BIN_DIRECTORY [RUNS]"""

import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

PEER = "gdb-multiarch"
DEFAULT_RUNS = 15
LIMIT_S = 60
EXAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "traffic_light")
PROGRAM = os.path.join(EXAMPLES, "traffic_light.elf")
PROJECT = os.path.join(EXAMPLES, "traffic_light.vdebug")


def timed(command):
    """Milliseconds until the end, and the output."""
    start = time.monotonic()
    result = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=LIMIT_S)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit {result.returncode}: {result.stdout}{result.stderr}")
    return 1000 * (time.monotonic() - start), result.stdout


def first_paint(program, session):
    """Milliseconds to the first paint from the start of the process, as seen from outside and as the program logs it."""
    start = time.monotonic()
    with subprocess.Popen(["stdbuf", "-oL", program, "-debug", "-batch", session], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True) as process:
        for line in process.stdout:
            match = re.search(r"First paint after (\d+) ms", line)
            if match:
                seen = 1000 * (time.monotonic() - start)
                process.stdout.read()
                return seen, int(match.group(1))
    sys.exit("the program logged no first paint")


def main():
    program = os.path.join(sys.argv[1], "vexor")
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else DEFAULT_RUNS
    if not shutil.which(PEER):
        sys.exit(f"{PEER} is not installed")
    columns = {"first paint, from outside": [], "first paint, as logged": [], "project loaded, to exit": [],
               f"{PEER}, to exit": []}
    with tempfile.TemporaryDirectory() as folder:
        empty, load = os.path.join(folder, "empty.txt"), os.path.join(folder, "load.txt")
        with open(empty, "w", encoding="utf-8") as file:
            file.write("@quit\n")
        with open(load, "w", encoding="utf-8") as file:
            file.write(f'File.Open ("{PROJECT}");\n@wait idle\n@quit\n')
        for _ in range(runs):  # in turn, so that what else the machine does meets all of them
            values = [*first_paint(program, empty), timed([program, "-batch", load])[0],
                      timed([PEER, "-nx", "-batch", "-ex", "info line main", PROGRAM])[0]]
            for column, value in zip(columns.values(), values):
                column.append(value)
    medians = {name: statistics.median(column) for name, column in columns.items()}
    for name, column in columns.items():
        print(f"{name}: median {medians[name]:.0f} ms, best {min(column):.0f} ms, worst {max(column):.0f} ms")
    print(f"ratio first paint / {PEER}: {medians['first paint, from outside'] / medians[f'{PEER}, to exit']:.2f}")
    print(f"ratio project loaded / {PEER}: {medians['project loaded, to exit'] / medians[f'{PEER}, to exit']:.2f}")


if __name__ == "__main__":
    main()
