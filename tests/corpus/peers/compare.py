#!/usr/bin/env python3
"""Holds what vexor-inspect and the program database say of program files against readelf, llvm-dwarfdump and gdb.

  compare.py FOLDER [--only GROUP,...] FILE...     FOLDER holds vexor-inspect and program_facts

Prints a table: facts that were compared by kind, and differences. A difference that is known, because the tools read
the same bytes in another way, is counted apart under its reason; every other one is shown and fails. Ends with 77 where
a tool is missing."""

import collections
import pathlib
import shutil
import sys

import dwarfdump
import facts
import gdb_peer
import reasons

SKIPPED = 77
MAX_SHOWN = 6  # differences of one kind in one file
INSPECT = "vexor-inspect"
TOOLS = ["readelf", dwarfdump.TOOL, gdb_peer.TOOL]


class Table:
    def __init__(self):
        self.facts, self.known, self.unknown = (collections.Counter() for _ in range(3))

    def add(self, context, kind, own, peer):
        self.facts[kind] += len(own | peer)
        wrong = []
        for side, rows in (("here", own - peer), ("peer", peer - own)):
            for row in sorted(rows, key=str):
                reason = reasons.of(context, kind, side, row, own, peer)
                if reason:
                    self.known[kind, reason] += 1
                else:
                    wrong.append((side, row))
        self.unknown[kind] += len(wrong)
        if wrong:
            print(f"{context.path.name}: {kind}: {len(wrong)} differences of {len(own | peer)}")
        for side, row in wrong[:MAX_SHOWN]:
            print(f"  only {side}: {row}")

    def passes(self):
        """Facts of every kind, and no difference without a reason."""
        return bool(self.facts) and all(self.facts.values()) and not sum(self.unknown.values())

    def print(self):
        print(f"{'kind':28} {'facts':>9} {'known':>7} {'differences':>12}")
        for kind in self.facts:
            known = sum(count for (of, _), count in self.known.items() if of == kind)
            print(f"{kind:28} {self.facts[kind]:9} {known:7} {self.unknown[kind]:12}")
        for (kind, reason), count in self.known.items():
            print(f"known: {kind}: {count}: {reason}")


def _pairs_of_types(inspect, path, info):
    members, enumerators = facts.own_types(inspect, path)
    peer_members, peer_enumerators = facts.peer_types(info, facts.is_big_endian(path))
    return [("members", members, peer_members), ("enumerators", enumerators, peer_enumerators)]


def _pairs_of_stack(inspect, path):
    """Nothing where the compiler did not say: it does not when the optimiser runs at the end."""
    if not path.with_suffix(".su").exists():
        return []
    own = facts.own_stack(inspect, path)
    return [("stack frames", own, facts.compiler_stack(path, own))]


# Group: (kind, own facts, the peer's facts) of a file.
GROUPS = {
    "functions": lambda folder, path, info: [
        ("functions", facts.own_functions(folder / INSPECT, path), facts.peer_functions(info)),
        ("inlined instances", facts.own_inlines(folder / INSPECT, path), facts.peer_inlines(info))],
    "globals": lambda folder, path, info: [
        ("global variables", facts.own_globals(folder / INSPECT, path), facts.peer_globals(info))],
    "types": lambda folder, path, info: _pairs_of_types(folder / INSPECT, path, info),
    "places": lambda folder, path, info: [
        ("places of locals", facts.own_places(folder / INSPECT, path), facts.peer_places(info))],
    "frames": lambda folder, path, info: [
        ("frame rows", facts.own_frames(folder / INSPECT, path), facts.readelf_frames(path))],
    "stack": lambda folder, path, info: _pairs_of_stack(folder / INSPECT, path),
    "lines": lambda folder, path, info: gdb_peer.pairs_of_lines(folder, path),
    "elf": lambda folder, path, info: facts.pairs_of_elf(folder / INSPECT, path),
    "data": lambda folder, path, info: gdb_peer.pairs_of_data(folder, path),
}


def compare(table, folder, path, groups=tuple(GROUPS)):
    info = dwarfdump.DebugInfo(path)
    context = reasons.Context(folder / INSPECT, path, info)
    for group in groups:
        for kind, own, peer in GROUPS[group](folder, path, info):
            table.add(context, kind, own, peer)


def main():
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    if missing:
        print("skipped: not installed:", *missing)
        return SKIPPED
    folder, *paths = sys.argv[1:]
    groups = tuple(GROUPS)
    if paths[0] == "--only":
        groups, paths = paths[1].split(","), paths[2:]
    table = Table()
    for path in paths:
        compare(table, pathlib.Path(folder), pathlib.Path(path), groups)
    table.print()
    return 0 if table.passes() else 1


if __name__ == "__main__":
    sys.exit(main())
