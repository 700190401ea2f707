#!/usr/bin/env python3
"""How long 1 MB of source text takes to highlight, beside two highlighters of the command line on the same text, and how
texts made to be slow compare with plain ones. The peers' start-up, measured with an empty file, is taken off.

usage: syntax_bench.py SYNTAX_BENCH [RUNS]"""

import glob
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

DEFAULT_RUNS = 5
LIMIT_S = 300
TEXT_BYTES = 1_000_000
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
OBJDUMP = "arm-none-eabi-objdump"

# Suffix of the text, its sources, and the peers' names of the language.
SOURCES = {
    "c": (("examples/*/*.c", "examples/*/src/*.c", "tests/*/data/*.c", "tests/sim/firmware/*.c"), "c", "c"),
    "cpp": (("ui/**/*.cpp", "shell/**/*.cpp", "device/**/*.cpp", "program/**/*.cpp", "core/**/*.cpp", "script/*.cpp"),
            "c", "cpp"),
    "s": (("tests/sim/firmware/*.s",), "arm", "asm"),
    "asm": (("examples/*/*.elf", "tests/elf/data/gcc*.elf"), "arm", "asm"),
}

# Bytes that are repeated up to TEXT_BYTES, after a beginning.
HOSTILE = {
    "one line": ("", "int a = b(c) + 1; "),
    "one word": ("", "a"),
    "words of one letter": ("", "a "),
    "unclosed comment, one line": ("/*", "* / "),
    "unclosed comment, many lines": ("/*", "x\n"),
    "comments that end at once": ("", "/**/"),
    "quotes": ("", '"'),
    "escaped quotes": ('"', '\\"'),
    "directives": ("", "#include<x>"),
    "number signs": ("", "#"),
    "slashes and stars": ("", "*/ /"),
    "empty lines": ("", "\n"),
}


def timed(command):
    """Milliseconds until the end."""
    start = time.monotonic()
    result = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                            text=True, timeout=LIMIT_S)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit {result.returncode}: {result.stderr}")
    return 1000 * (time.monotonic() - start)


def repeated(text):
    return (text * (TEXT_BYTES // len(text) + 1))[:TEXT_BYTES]


def source_text(suffix, patterns):
    paths = sorted(path for pattern in patterns for path in glob.glob(os.path.join(ROOT, pattern), recursive=True))
    if suffix == "asm":
        return b"".join(subprocess.run([OBJDUMP, "-d", path], capture_output=True, check=True).stdout for path in paths)
    texts = []
    for path in paths:
        with open(path, "rb") as file:
            texts.append(file.read())
    return b"".join(texts)


def written(folder, name, data):
    path = os.path.join(folder, name)
    with open(path, "wb") as file:
        file.write(data)
    return path


def ours(program, path):
    """Milliseconds and number of spans."""
    output = subprocess.run([program, path], capture_output=True, text=True, check=True, timeout=LIMIT_S).stdout
    milliseconds, _, spans = output.split()
    return float(milliseconds), int(spans)


def peers(names):
    highlight, source_highlight = names
    return {"highlight": ["highlight", "-S", highlight, "-O", "html", "-f", "-o", "/dev/null", "-i"],
            "source-highlight": ["source-highlight", "-s", source_highlight, "-f", "html", "-o", "/dev/null", "-i"]}


def compare(program, folder, suffix, patterns, names, runs):
    path = written(folder, f"text.{suffix}", repeated(source_text(suffix, patterns)))
    empty = written(folder, f"empty.{suffix}", b"")
    here, columns = [], {name: [] for name in peers(names)}
    for _ in range(runs):  # in turn, so that what else the machine does meets all of them
        here.append(ours(program, path)[0])
        for name, command in peers(names).items():
            columns[name].append(timed(command + [path]) - timed(command + [empty]))
    median = statistics.median(here)
    print(f".{suffix}: here {median:.2f} ms", end="")
    for name, column in columns.items():
        print(f"; {name} {statistics.median(column):.0f} ms, ratio {median / statistics.median(column):.4f}", end="")
    print()


def main():
    program = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else DEFAULT_RUNS
    for peer in ("highlight", "source-highlight", OBJDUMP):
        if not shutil.which(peer):
            sys.exit(f"{peer} is not installed")
    with tempfile.TemporaryDirectory() as folder:
        for suffix, (patterns, *names) in SOURCES.items():
            compare(program, folder, suffix, patterns, names, runs)
        for suffix in ("cpp", "asm"):
            plain_path = os.path.join(folder, f"text.{suffix}")
            for name, (start, unit) in HOSTILE.items():
                path = written(folder, f"hostile.{suffix}", start.encode() + repeated(unit.encode()))
                plain = statistics.median(ours(program, plain_path)[0] for _ in range(runs))
                results = [ours(program, path) for _ in range(runs)]
                hostile = statistics.median(result[0] for result in results)
                print(f".{suffix}, {name}: {hostile:.2f} ms, {results[0][1]} spans, "
                      f"ratio to plain text {hostile / plain:.2f}")


if __name__ == "__main__":
    main()
