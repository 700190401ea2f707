#!/usr/bin/env python3
"""Writes the seeds of ctrans_fuzz into a directory: every example of the script language, and the example projects."""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def examples(path):
    script = None
    for line in path.read_text().splitlines(keepends=True):
        if line.startswith("//== "):
            if script is not None:
                yield script
            script = ""
        elif not line.startswith("//= ") and script is not None:
            script += line
    if script is not None:
        yield script


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: ctrans_seeds.py DIRECTORY")
    out = pathlib.Path(sys.argv[1])
    out.mkdir(parents=True, exist_ok=True)
    for path in sorted((ROOT / "tests/script/conformance").glob("*.script")):
        for number, script in enumerate(examples(path)):
            whole = script if "main (" in script else "void main (void) {\n" + script + "}\n"
            (out / f"{path.stem}_{number}").write_text(whole)
    for path in sorted((ROOT / "examples").glob("*/*.vdebug")):
        (out / path.stem).write_bytes(path.read_bytes())


main()
