#!/usr/bin/env python3
"""Rebuilds the linked programs of the corpus, which are committed: the tests need no compiler.
Needs gcc-arm-none-eabi and clang-14."""

import programs

for program in programs.COMMITTED:
    programs.build(program, programs.FOLDER / "data" / f"{program.name}.elf")
