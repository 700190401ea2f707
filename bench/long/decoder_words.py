#!/usr/bin/env python3
"""Holds the decoder against LLVM and objdump: all halfwords, and random words of each instruction set and version,
in Thumb as any core and as one of the M profile alone.

usage: bench/long/decoder_words.py build/release/test_bin/decoder_compare [MILLIONS] [SEED]

Runs in pieces of a few minutes, and prints one table for all of them: words that agree, words that differ for a reason
known to bench/long/decoder_compare/reasons.cpp, and, with examples, what differs for none. Ends with 1 if there is any."""

import re
import subprocess
import sys
from collections import Counter

PIECE = 1_000_000  # words
HALFWORDS = [["halfwords", *profile, f"arch={version}"] for profile in ([], ["m"]) for version in (6, 7, 8)]
RUNS = [["arm", f"arch={version}"] for version in range(4, 9)]
RUNS += [[*profile, f"arch={version}"] for profile in ([], ["m"]) for version in (7, 8)]


def run(compare, arguments):
    result = subprocess.run(["nice", "-n", "15", compare, *arguments], capture_output=True, text=True, check=False)
    if result.returncode not in (0, 1):
        sys.exit(f"{' '.join(arguments)}: exit {result.returncode}: {result.stderr}")
    same = int(re.search(r"^(\d+) the same", result.stdout).group(1))
    known, unknown = result.stdout.split("differ for no known reason")
    reasons = Counter({text: int(count) for count, text in re.findall(r"^ +(\d+)  (.*)$", known, re.M)})
    return same, reasons, unknown.strip("\n"), result.returncode


def main():
    compare = sys.argv[1]
    pieces = int(sys.argv[2]) if len(sys.argv) > 2 else 10
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    failed = False
    for arguments in HALFWORDS + RUNS:
        total, all_reasons = 0, Counter()
        for piece in range(1 if "halfwords" in arguments else pieces):
            same, reasons, unknown, code = run(compare, [*arguments, f"words={PIECE}", f"seed={seed + piece}"])
            total += same
            all_reasons += reasons
            if code:
                failed = True
                print(unknown, flush=True)
        print(f"{' '.join(arguments)}: {total} agree, {sum(all_reasons.values())} differ for known reasons", flush=True)
        for text, count in all_reasons.most_common():
            print(f"{count:10}  {text}", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
