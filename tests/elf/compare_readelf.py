#!/usr/bin/env python3
"""Holds the rows of vexor-inspect against what readelf says of the same program files."""

import glob
import re
import shutil
import subprocess
import sys

SKIPPED = 77


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, errors="replace").stdout


def rows(inspect, what, path):
    result = subprocess.run([inspect, what, path], capture_output=True, text=True, errors="replace")
    if result.returncode != 0:
        sys.exit(f"{what} {path}: exit {result.returncode}: {result.stderr}")
    return [line.split("\t") for line in result.stdout.splitlines()]


def peer_symbols(path):
    """(value, type, binding, name) of every symbol; sizes apart, for the reader fills in those that are missing."""
    found = {}
    for line in run("readelf", "-sW", path).splitlines():
        match = re.match(r"\s*(\d+): ([0-9a-f]{8})\s+(\d+) (\S+)\s+(\S+)\s+\S+\s+(\S+)(?: (.*))?$", line)
        if match:
            number, value, size, kind, binding, section, name = match.groups()
            name = "" if kind == "SECTION" else name or ""  # readelf shows the section's own name
            found[int(number)] = ((int(value, 16), kind, binding, name), int(size))
    return found


def compare_symbols(inspect, path):
    peer = peer_symbols(path)
    own = rows(inspect, "symbols", path)
    problems = [] if len(own) == len(peer) else [f"{len(own)} symbols, readelf has {len(peer)}"]
    for number, (value, size, kind, binding, _, name) in enumerate(own):
        expected, peer_size = peer[number]
        if (int(value, 16), kind, binding, name) != expected:
            problems.append(f"symbol {number}: {value} {kind} {binding} {name}, readelf has {expected}")
        if peer_size != 0 and int(size) != peer_size:
            problems.append(f"size of symbol {number} {name}: {size}, readelf has {peer_size}")
    return len(own), problems


def peer_lines(path):
    """(address, line) of every row, None being the line of the end of a sequence."""
    found = []
    for line in run("readelf", "--debug-dump=decodedline", path).splitlines():
        match = re.match(r"\S.*?\s+(\d+|-)\s+(0x[0-9a-f]+|0)(?:\[\d+\])?(?:\s+(?:\d+|x|END))*\s*$", line)
        if match:
            number, address = match.groups()
            found.append((int(address, 16), None if number == "-" else int(number)))
    return sorted(found, key=str)


def compare_lines(inspect, path):
    own = []
    for address, _, line, _, flags in rows(inspect, "lines", path):
        own.append((int(address, 16), None if "E" in flags else int(line)))
    own.sort(key=str)
    peer = peer_lines(path)
    if own == peer:
        return len(own), []
    only_own = [row for row in own if row not in peer][:5]
    only_peer = [row for row in peer if row not in own][:5]
    return len(own), [f"{len(own)} lines, readelf has {len(peer)}; only here {only_own}, only there {only_peer}"]


def peer_functions(path):
    return {(value & ~1, name) for (value, kind, _, name), _ in peer_symbols(path).values() if kind == "FUNC" and name}


def compare_functions(inspect, path):
    """Every address with a function symbol has a row that begins there; every row is a symbol's or begins inside one."""
    starts = {int(row[0], 16) for row in rows(inspect, "functions", path)}
    wanted = {value for value, _ in peer_functions(path) if value >= 2}
    return len(starts), [f"no function at {value:#x}" for value in sorted(wanted - starts)]


def compare_segments(inspect, path):
    peer = []
    for line in run("readelf", "-lW", path).splitlines():
        fields = line.split()
        if fields and fields[0] == "LOAD":
            peer.append([int(field, 16) for field in (fields[3], fields[2], fields[4], fields[5])])
    own = [[int(row[0], 16), int(row[1], 16), int(row[2]), int(row[3])] for row in rows(inspect, "segments", path)]
    return len(own), [] if own == peer else [f"segments {own}, readelf has {peer}"]


def main():
    inspect, root = sys.argv[1:3]
    if not shutil.which("readelf"):
        print("skipped: readelf is not installed")
        return SKIPPED
    paths = sorted(glob.glob(f"{root}/tests/elf/data/*.elf") + glob.glob(f"{root}/examples/*/*.elf"))
    failed = not paths
    for path in paths:
        for compare in (compare_symbols, compare_lines, compare_functions, compare_segments):
            count, problems = compare(inspect, path)
            print(f"{path}: {compare.__name__}: {count} rows")
            for problem in problems:
                print(f"  {problem}")
            failed = failed or bool(problems)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
