#!/usr/bin/env python3
"""Holds the rows of vexor-inspect against what readelf says of the same program files."""

import glob
import re
import shutil
import subprocess
import sys

SKIPPED = 77
MAX_SHOWN = 5  # rows of one side


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True, errors="replace")
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit {result.returncode}: {result.stderr}")
    return result.stdout.splitlines()


def rows(inspect, what, path):
    return [line.split("\t") for line in run(inspect, what, path)]


def peer_symbols(path):
    """[value, type, binding, name, size] of every symbol."""
    pattern = re.compile(r"\s*\d+: ([0-9a-f]{8})\s+(\d+) (\S+)\s+(\S+)\s+\S+\s+(\S+)(?: (.*))?$")
    found = []
    for match in filter(None, map(pattern.match, run("readelf", "-sW", path))):
        value, size, kind, binding, _, name = match.groups()
        name = "" if kind == "SECTION" else name or ""  # readelf shows the section's own name
        found.append([int(value, 16), kind, binding, name, int(size)])
    return found


def symbols(inspect, path):
    peer = peer_symbols(path)
    own = [[int(row[0], 16), row[2], row[3], row[5], int(row[1])] for row in rows(inspect, "symbols", path)]
    for row, other in zip(own, peer):
        row[4] *= other[4] != 0  # the reader fills in sizes that are missing
    return own, peer


def lines(inspect, path):
    """(address, line) of every row, None being the line of the end of a sequence."""
    pattern = re.compile(r"\S.*?\s+(\d+|-)\s+(0x[0-9a-f]+|0)(?:\[\d+\])?(?:\s+(?:\d+|x|END))*\s*$")
    own = [(int(row[0], 16), None if "E" in row[4] else int(row[2])) for row in rows(inspect, "lines", path)]
    peer = [(int(match[2], 16), None if match[1] == "-" else int(match[1]))
            for match in filter(None, map(pattern.match, run("readelf", "--debug-dump=decodedline", path)))]
    return sorted(own, key=str), sorted(peer, key=str)


def functions(inspect, path):
    """Every address with a function symbol has a row that begins there."""
    wanted = {value & ~1 for value, kind, _, name, _ in peer_symbols(path) if kind == "FUNC" and name and value >= 2}
    return sorted(wanted & {int(row[0], 16) for row in rows(inspect, "functions", path)}), sorted(wanted)


def segments(inspect, path):
    loads = [line.split() for line in run("readelf", "-lW", path) if line.split()[:1] == ["LOAD"]]
    own = [[int(row[0], 16), int(row[1], 16), int(row[2]), int(row[3])] for row in rows(inspect, "segments", path)]
    return own, [[int(fields[i], 16) for i in (3, 2, 4, 5)] for fields in loads]


def main():
    inspect, root = sys.argv[1:3]
    if not shutil.which("readelf"):
        print("skipped: readelf is not installed")
        return SKIPPED
    paths = sorted(path for folder in ("tests/elf/data", "tests/corpus/data", "examples/*")
                   for path in glob.glob(f"{root}/{folder}/*.elf"))
    failed = not paths
    for path in paths:
        for compare in (symbols, lines, functions, segments):
            own, peer = compare(inspect, path)
            print(f"{path}: {compare.__name__}: {len(own)} rows")
            if own != peer:
                failed = True
                print("  only here", [row for row in own if row not in peer][:MAX_SHOWN])
                print("  only there", [row for row in peer if row not in own][:MAX_SHOWN])
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
