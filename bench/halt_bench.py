#!/usr/bin/env python3
"""Continue to breakpoint, instruction steps and downloads: halt_bench beside gdb with a board that QEMU simulates.

usage: halt_bench.py PATH_OF_HALT_BENCH"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

PEER, EMULATOR = "gdb-multiarch", "qemu-system-arm"
LIMIT_S = 120
PROGRAM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "thermostat", "thermostat.elf")
PEER_BOARDS = {"run": "microbit", "load": "mps2-an386"}
PEER_START = """
import time
gdb.execute("set pagination off")
gdb.execute("target remote | exec {emulator} -M {board} -kernel {program} -S -display none -monitor none "
            "-serial none -gdb stdio")

def measure(name, count, command):
    times = []
    for i in range(count):
        start = time.monotonic()
        gdb.execute(command, to_string=True)
        times.append(1e6 * (time.monotonic() - start))
    times.sort()
    print("%s\\t%.1f\\t%.1f" % (name, times[count // 2], times[count * 9 // 10]))

"""
PEER_SCRIPTS = {
    # About 50 instructions lie between two hits of the breakpoint.
    "run": """
gdb.execute("hbreak room_step")
gdb.execute("continue", to_string=True)
measure("continue to breakpoint", 300, "continue")
gdb.execute("delete")
measure("instruction step", 500, "stepi")
gdb.execute("kill")
""",
    # The emulated flash cannot be programmed by gdb: the image goes to RAM.
    "load": """
import tempfile, os
with tempfile.NamedTemporaryFile() as image:
    image.write(os.urandom(512 * 1024))
    image.flush()
    measure("download of 512 KB", 10, "restore " + image.name + " binary 0x20000000")
gdb.execute("kill")
""",
}


def rows(command, **environment):
    result = subprocess.run(command, capture_output=True, text=True, timeout=LIMIT_S, stdin=subprocess.DEVNULL,
                            env={**os.environ, **environment})
    found = re.findall(r"^([^\t\n]+)\t([\d.]+)\t([\d.]+)$", result.stdout, re.MULTILINE)
    if result.returncode != 0 or not found:
        sys.exit(f"{' '.join(command)}: exit {result.returncode}: {result.stdout}{result.stderr}")
    return {name: (float(median), float(high)) for name, median, high in found}


def peer_rows(kind):
    with tempfile.NamedTemporaryFile("w", suffix=".py") as script:
        script.write(PEER_START.format(emulator=EMULATOR, program=PROGRAM, board=PEER_BOARDS[kind]))
        script.write(PEER_SCRIPTS[kind])
        script.flush()
        return rows([PEER, "-nx", "-batch", PROGRAM, "-x", script.name])


def main():
    for tool in (PEER, EMULATOR):
        if not shutil.which(tool):
            sys.exit(f"{tool} is not installed")
    own = rows([sys.argv[1]])
    peer = {**peer_rows("run"), **peer_rows("load")}
    print(f"{'':34}{'here':>12}{'90 % under':>14}{PEER:>16}{'ratio':>9}")
    for name, (median, high) in own.items():
        text = f"{name:34}{median:9.1f} us{high:11.1f} us"
        if name in peer:
            text += f"{peer[name][0]:13.1f} us{median / peer[name][0]:9.4f}"
        print(text)


if __name__ == "__main__":
    main()
