#!/usr/bin/env python3
"""Runs the example programs to the same points in batch sessions and in QEMU, and compares registers and memory.

All points lie before the start of the timer, so that both have executed the same instructions. Registers are compared
in full; only the condition flags are left out up to the first instruction that sets them, for a reset leaves them
unknown. Memory, the variables and the stack, is compared where the program was stopped by a breakpoint and where a run
of single steps ends."""

import re
import shutil
import subprocess
import sys

from remote_board import EMULATOR, RemoteBoard

SKIPPED = 77
SESSION_LIMIT_S = 300
MAX_STACK_WORDS = 64
MAX_SHOWN = 10  # differences of one point
REGISTERS = [f"R{i}" for i in range(13)] + ["SP", "LR", "PC", "xPSR"]
CONDITION_FLAGS = 0xF0000000
STEPS_WITHOUT_FLAGS = 5  # instructions of the reset handler in front of its first comparison

# A way is a list of moves: ("to", function, hits), ("step", instructions) or ("return",), to where LR points. It begins
# at the reset vector with a run of steps.
WAYS = [
    ("traffic_light", "mps2-an386", [
        ("step", 12),
        ("to", "main", 1), ("to", "self_test", 1), ("step", 20),
        ("to", "sort", 1), ("to", "partition", 1), ("step", 30), ("to", "sort", 1), ("to", "sort", 5),
        ("to", "partition", 3), ("to", "checksum", 1), ("step", 25),
        ("to", "fibonacci", 1), ("to", "fibonacci", 7), ("step", 20), ("to", "fibonacci", 60),
        ("to", "traffic_init", 1), ("to", "enter", 1), ("step", 8), ("to", "traffic_init", 1),
        ("return",)]),
    ("thermostat", "microbit", [
        ("step", 12),
        ("to", "main", 1), ("to", "trial_day", 1), ("to", "mode_of_hour", 1), ("step", 10),
        ("to", "thermostat_set_mode", 1), ("to", "thermostat_step", 1), ("step", 20),
        ("to", "room_step", 1), ("step", 15), ("to", "mode_of_hour", 1), ("to", "mode_of_hour", 7),
        ("to", "thermostat_step", 30), ("to", "room_step", 60),
        ("to", "__aeabi_idiv", 1), ("step", 60)]),
    ("weather_station", "mps2-an385", [
        ("step", 12),
        ("to", "main", 1), ("to", "_ZL9trial_dayv", 1), ("to", "_ZN7station7Station4pollEm", 1), ("step", 20),
        ("to", "_ZN7station6Sensor4readEm", 1), ("to", "_ZN7station11Thermometer3rawEm", 1), ("return",),
        ("to", "_ZNK7station11Thermometer7convertEt", 1), ("step", 25),
        ("to", "_ZNK7station7Station5judgeERKNS_7ReadingE", 1), ("step", 30),
        ("to", "_ZN7station10Hygrometer3rawEm", 2), ("to", "_ZNK7station9Barometer7convertEt", 5), ("step", 20),
        ("to", "_ZN7station6Sensor4readEm", 30), ("to", "_ZNK7station7Station4meanENS_8QuantityE", 1), ("step", 60)]),
]


class Symbols:
    def __init__(self, inspect, program):
        rows = subprocess.run([inspect, "symbols", program], capture_output=True, text=True, timeout=300, check=True)
        self._values = {}
        for row in rows.stdout.splitlines():
            value, _, kind, _, _, name = row.split("\t")
            self._values[name] = int(value, 16) & ~1 if kind == "FUNC" else int(value, 16)

    def __getitem__(self, name):
        return self._values[name]


class Peer:
    """The way in the emulator: its states, and the same way as lines of a batch session."""

    def __init__(self, board, symbols):
        self._board, self._symbols = board, symbols
        self.names, self.states, self.lines = [], [], []
        self._record("reset")

    def _record(self, name, with_memory=True):
        state = dict(zip(REGISTERS, self._board.registers()))
        self.lines += [f"Target.GetReg {register}" for register in REGISTERS]
        if with_memory:
            places = [*range(self._symbols["__data_start"], self._symbols["__bss_end"], 4)]
            places += range(state["SP"], self._symbols["__stack_top"], 4)[:MAX_STACK_WORDS]
            for address in places:
                state[f"[{address:#010x}]"] = self._board.word(address)
                self.lines.append(f"Target.ReadU32 {address:#x}")
        self.names.append(name)
        self.states.append(state)

    def _run_to(self, address, hits):
        self.lines.append(f"Break.Set {address:#x}")
        for _ in range(hits):
            self._board.run_to(address)
            self.lines += ["Debug.Continue", "@wait halted"]
        self.lines.append(f"Break.Clear {address:#x}")

    def move(self, kind, what=None, hits=1):
        if kind == "to":
            self._run_to(self._symbols[what], hits)
            self._record(f"hit {hits} of {what}")
        elif kind == "return":
            self._run_to(self.states[-1]["LR"] & ~1, 1)
            self._record("return")
        else:
            start = self.names[-1]
            for i in range(1, what + 1):
                self._board.step()
                self.lines += ["Debug.StepInto", "@wait halted"]
                self._record(f"step {i} behind {start}", with_memory=i == what)


def run_session(program, project, lines):
    beginning = [f'File.Open ("{project}");', "@wait idle", "Debug.SetResetMode RM_RESET_HALT", "Debug.Start", "@wait halted",
                 "Debug.Reset", "@wait halted"]
    end = ["Debug.Stop", "@wait disconnected", ""]
    result = subprocess.run([program, "-batch", "-"], input="\n".join(beginning + lines + end), text=True,
                            capture_output=True, timeout=SESSION_LIMIT_S)
    if result.returncode != 0:
        sys.exit(f"session on {project}: exit {result.returncode}\n{result.stdout[-3000:]}{result.stderr}")
    return [int(value, 16) for value in re.findall(r"^=> 0x([0-9A-F]+)$", result.stdout, re.MULTILINE)]


def compare(peer, values):
    expected = sum(len(state) for state in peer.states)
    if len(values) != expected:
        print(f"  {len(values)} values, {expected} were asked for")
        return False
    own = iter(values)
    good = True
    for i, (name, state) in enumerate(zip(peer.names, peer.states)):
        ignored = {"xPSR": CONDITION_FLAGS} if i <= STEPS_WITHOUT_FLAGS else {}
        rows = [(place, next(own), value) for place, value in state.items()]
        wrong = [row for row in rows if (row[1] ^ row[2]) & ~ignored.get(row[0], 0)]
        if wrong:
            good = False
            print(f"  {name} (PC {state['PC']:#010x}): {len(wrong)} differ")
        for place, value, peer_value in wrong[:MAX_SHOWN]:
            print(f"    {place}: {value:#010x}, {EMULATOR} has {peer_value:#010x}")
    return good


def main():
    folder, root = sys.argv[1:3]
    if not shutil.which(EMULATOR):
        print(f"skipped: {EMULATOR} is not installed")
        return SKIPPED
    good = True
    for name, machine, way in WAYS:
        base = f"{root}/examples/{name}/{name}"
        with RemoteBoard(machine, f"{base}.elf") as board:
            peer = Peer(board, Symbols(f"{folder}/vexor-inspect", f"{base}.elf"))
            for move in way:
                peer.move(*move)
        values = run_session(f"{folder}/vexor", f"{base}.vdebug", peer.lines)
        print(f"{name}: {len(peer.states)} points, {len(values)} values")
        good = compare(peer, values) and good
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
