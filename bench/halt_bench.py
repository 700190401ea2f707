#!/usr/bin/env python3
"""From the command to continue to the news of the halt: halt_bench beside gdb with a board that QEMU simulates.

usage: halt_bench.py PATH_OF_HALT_BENCH"""

import os
import shutil
import subprocess
import sys
import tempfile

PEER, EMULATOR = "gdb-multiarch", "qemu-system-arm"
LIMIT_S = 120
PROGRAM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "thermostat", "thermostat.elf")
# About 50 instructions lie between two hits of the breakpoint.
PEER_SCRIPT = """
import statistics, time
gdb.execute("set pagination off")
gdb.execute("target remote | exec {emulator} -M microbit -kernel {program} -S -display none -monitor none "
            "-serial none -gdb stdio")
gdb.execute("hbreak room_step")
gdb.execute("continue", to_string=True)
times = []
for i in range(300):
    start = time.monotonic()
    gdb.execute("continue", to_string=True)
    times.append(1e6 * (time.monotonic() - start))
times.sort()
print("peer\\t%.0f\\t%.0f" % (times[150], times[270]))
gdb.execute("kill")
"""


def rows(command, **environment):
    result = subprocess.run(command, capture_output=True, text=True, timeout=LIMIT_S, stdin=subprocess.DEVNULL,
                            env={**os.environ, **environment})
    found = [line.split("\t") for line in result.stdout.splitlines() if line.count("\t") == 2]
    if result.returncode != 0 or not found:
        sys.exit(f"{' '.join(command)}: exit {result.returncode}: {result.stdout}{result.stderr}")
    return {name: (int(median), int(high)) for name, median, high in found}


def main():
    for tool in (PEER, EMULATOR):
        if not shutil.which(tool):
            sys.exit(f"{tool} is not installed")
    own = rows([sys.argv[1]])
    with tempfile.NamedTemporaryFile("w", suffix=".py") as script:
        script.write(PEER_SCRIPT.format(emulator=EMULATOR, program=PROGRAM))
        script.flush()
        peer = rows([PEER, "-nx", "-batch", PROGRAM, "-x", script.name])["peer"]
    for name, (median, high) in {**own, f"{PEER}, continue to breakpoint": peer}.items():
        print(f"{name}: median {median} us, 90 % under {high} us")
    print(f"ratio continue to breakpoint / {PEER}: {own['continue to breakpoint'][0] / peer[0]:.2f}")


if __name__ == "__main__":
    main()
