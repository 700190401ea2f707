#!/usr/bin/env python3
"""Holds the rows of vexor-inspect disasm against objdump: where each instruction starts, its length and its bits; and
by decoder_compare what it says of them."""

import glob
import re
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
OBJDUMP = "arm-none-eabi-objdump"
MAX_SHOWN = 10  # differences of one file
ROW = re.compile(r"\s*([0-9a-f]+):\t([0-9a-f]{4}(?: [0-9a-f]{4})?|[0-9a-f]{8}|[0-9a-f]{2})\s*\t(\S+)")


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True, errors="replace", timeout=300)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit {result.returncode}: {result.stderr}")
    return result.stdout.splitlines()


def peer_instructions(path):
    """{address: code in digits}; rows of data are directives or plain dumps and are left out."""
    found = {}
    for line in run(OBJDUMP, "-d", "-z", "-w", path):
        match = ROW.match(line)
        if match and not match.group(3).startswith("."):
            found[int(match.group(1), 16)] = match.group(2)
    return found


def own_instructions(inspect, path):
    found = {}
    for line in run(inspect, "disasm", path):
        address, code, text = line.split("\t")
        if not re.match(r"DC(8|16|32|B|W|D)\b", text):
            found[int(address, 16)] = code.lower()
    return found


def texts_agree(inspect, compare, path):
    with tempfile.NamedTemporaryFile("w") as rows:
        rows.write("\n".join(run(inspect, "disasm", path)) + "\n")
        rows.flush()
        agree = True
        for mode in ([], ["arm"]):
            result = subprocess.run([compare, "light", "arch=8", f"rows={rows.name}", *mode],
                                    capture_output=True, text=True, timeout=300)
            if result.returncode != 0:
                print(result.stdout)
                agree = False
        return agree


def main():
    inspect, compare, root = sys.argv[1:4]
    if not shutil.which(OBJDUMP):
        print(f"skipped: {OBJDUMP} is not installed")
        return SKIPPED
    paths = glob.glob(f"{root}/examples/*/*.elf") + glob.glob(f"{root}/tests/*/data/*.elf")
    failed = False
    for path in sorted(paths):
        own, peer = own_instructions(inspect, path), peer_instructions(path)
        wrong = sorted(address for address in own.keys() | peer.keys() if own.get(address) != peer.get(address))
        print(f"{path}: {len(peer)} instructions, {len(wrong)} differ")
        for address in wrong[:MAX_SHOWN]:
            print(f"  {address:#010x}: {own.get(address)}, objdump has {peer.get(address)}")
        failed = failed or bool(wrong) or not peer or not texts_agree(inspect, compare, path)
    return 1 if failed or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
