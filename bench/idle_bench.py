#!/usr/bin/env python3
"""Start to first paint, peak memory and idle CPU beside an empty window with as many docks, in turn, under Xvfb.

usage: idle_bench.py BIN_DIRECTORY [RUNS]"""

import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

BIN = os.path.abspath(sys.argv[1])
RUNS = int(sys.argv[2]) if len(sys.argv) > 2 else 7
NUM_DOCKS = 1  # that the program has
IDLE_S = 5
SETTLE_S = 2
PROJECT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "traffic_light",
                       "traffic_light.vdebug")
TRAFFIC_LIGHT = os.path.join(os.path.dirname(PROJECT), "traffic_light.elf")
# A session that comes up by itself, and ends halted in main.
SESSION = f"""void OnProjectLoad (void) {{
  Project.SetDevice ("nRF52840_xxAA"); Project.SetHostIF ("USB", ""); Project.SetTargetIF ("SWD");
  File.Open ("{os.path.abspath(TRAFFIC_LIGHT)}");
  Debug.Start ();
}}
"""
TICKS = os.sysconf("SC_CLK_TCK")


def cpu_seconds(pid):
    fields = open(f"/proc/{pid}/stat", encoding="ascii").read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def peak_mb(pid):
    return int(re.search(r"VmHWM:\s+(\d+)", open(f"/proc/{pid}/status", encoding="ascii").read()).group(1)) / 1024


def measure(command, environment):
    """Milliseconds to the first paint, peak MB, and percent of a core while idle."""
    start = time.monotonic()
    with subprocess.Popen(["stdbuf", "-oL", *command], env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True) as process:
        for line in process.stdout:
            if "First paint after" in line:
                break
        else:
            sys.exit(f"{command[0]} logged no first paint")
        paint = 1000 * (time.monotonic() - start)
        time.sleep(SETTLE_S)
        before = cpu_seconds(process.pid)
        time.sleep(IDLE_S)
        idle = 100 * (cpu_seconds(process.pid) - before) / IDLE_S
        memory = peak_mb(process.pid)
        process.kill()
    return paint, memory, idle


def main():
    commands = {"empty window": [os.path.join(BIN, "empty_window"), str(NUM_DOCKS)],
                "vexor": [os.path.join(BIN, "vexor"), "-debug"],
                "vexor, project loaded": [os.path.join(BIN, "vexor"), PROJECT, "-debug"]}
    session = tempfile.NamedTemporaryFile("w", suffix=".vdebug")
    session.write(SESSION)
    session.flush()
    commands["vexor, connected session"] = [os.path.join(BIN, "vexor"), session.name, "-debug"]
    rows = {name: [] for name in commands}
    with tempfile.TemporaryDirectory() as home, \
            subprocess.Popen(["Xvfb", ":95", "-screen", "0", "1280x800x24"], stderr=subprocess.DEVNULL) as server:
        time.sleep(1)
        environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home, DISPLAY=":95")
        environment.pop("QT_QPA_PLATFORM", None)
        for _ in range(RUNS):
            for name, command in commands.items():
                rows[name].append(measure(command, environment))
        server.terminate()
    base = [statistics.median(column) for column in zip(*rows["empty window"])]
    print(f"{'':24}{'first paint':>14}{'ratio':>7}{'peak memory':>14}{'ratio':>7}{'idle CPU':>10}")
    for name, values in rows.items():
        paint, memory, idle = (statistics.median(column) for column in zip(*values))
        print(f"{name:24}{paint:11.0f} ms{paint / base[0]:7.2f}{memory:11.1f} MB{memory / base[1]:7.2f}{idle:9.2f}%")


main()
