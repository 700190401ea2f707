#!/usr/bin/env python3
"""Loads program files beside gdb and llvm-dwarfdump, in turn, and asks the database at random.

usage: bench/elf_bench.py build/release/bin/elf_bench [FOLDER]

Files: the example (small), and those that bench/elf_bench_files.py makes in FOLDER (build/elf_bench), about 3 minutes
the first time."""

import os
import pathlib
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
NUM_RUNS = 5
NUM_DUMPS = 1  # of llvm-dwarfdump, which prints everything
SMALL = ROOT / "examples/traffic_light/traffic_light.elf"


def measured(command):
    """Seconds and peak memory in MB of a command, its output dropped."""
    start = time.monotonic()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode:
        sys.exit(f"{command}: exit {child.returncode}")
    return time.monotonic() - start, usage.ru_maxrss / 1024


def medians(commands, runs):
    """Median seconds and peak MB by name, the commands taking turns."""
    found = {name: [] for name in commands}
    for _ in range(runs):
        for name, command in commands.items():
            found[name].append(measured(command))
    return {name: tuple(statistics.median(values) for values in zip(*rows)) for name, rows in found.items()}


def debug_bytes(path):
    sections = subprocess.run(["readelf", "-SW", path], capture_output=True, text=True, check=True).stdout
    for line in sections.splitlines():
        fields = line.replace("[ ", "[").split()
        if len(fields) > 5 and fields[1] == ".debug_info":
            return int(fields[5], 16)
    return 0


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    bench = sys.argv[1]
    folder = pathlib.Path(sys.argv[2]) if len(sys.argv) == 3 else ROOT / "build/elf_bench"
    subprocess.run([ROOT / "bench/elf_bench_files.py", folder], check=True)
    for path in (SMALL, folder / "middle.elf", folder / "big.elf"):
        print(f"{path.name}: {path.stat().st_size / 1e6:.1f} MB, {debug_bytes(path) / 1e6:.1f} MB of .debug_info")
        rows = medians({
            "here": [bench, "load", path],
            "gdb -readnow": ["gdb-multiarch", "-nx", "-readnow", "-batch", path],
            "gdb, one line": ["gdb-multiarch", "-nx", "-batch", "-ex", "info line main", path],
        }, NUM_RUNS)
        rows |= medians({"llvm-dwarfdump": ["llvm-dwarfdump-14", "--debug-info", path]}, NUM_DUMPS)
        own_time, own_memory = rows["here"]
        for name, (seconds, memory) in rows.items():
            print(f"  {name:16} {seconds * 1000:9.0f} ms  {memory:7.1f} MB   here to it: time {own_time / seconds:.2f}, "
                  f"memory {own_memory / memory:.2f}")
        print(subprocess.run([bench, "queries", path], capture_output=True, text=True, check=True).stdout)


if __name__ == "__main__":
    main()
