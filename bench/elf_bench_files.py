#!/usr/bin/env python3
"""Makes the program files of elf_bench.py: generated C and C++, compiled in many units. Needs gcc-arm-none-eabi.

  bench/elf_bench_files.py DIR      writes DIR/middle.elf (about 2 MB, macros included) and
                                    DIR/big.elf (at least 60 MB of .debug_info); files that are there are kept
"""

import concurrent.futures
import os
import pathlib
import random
import subprocess
import sys
import tempfile

SEED = 20
# Units, functions of a unit, records of the header that all units share, further options of the compiler.
FILES = {
    "middle": (22, 60, 60, ["-g3"]),
    "big": (275, 110, 700, ["-g"]),
}
# Every fourth unit is C; versions are mixed, as they are in an image that is linked with libraries.
C_UNIT_EVERY = 4
OLD_VERSION_EVERY = 5
OPTIONS = ["-mcpu=cortex-m4", "-mthumb", "-ffreestanding", "-fno-exceptions", "-fno-rtti", "-fno-threadsafe-statics",
           "-ffunction-sections", "-fno-eliminate-unused-debug-types", "-w"]
LIBRARY = """
void *memset(void *to, int value, unsigned size) { for (char *p = to; size--;) *p++ = value; return to; }
void *memcpy(void *to, const void *from, unsigned size) {
  const char *q = from;
  for (char *p = to; size--;) *p++ = *q++;
  return to;
}
"""
BASE_TYPES = ["uint8_t", "int16_t", "uint32_t", "int64_t", "float", "char"]

LINKER_SCRIPT = """
ENTRY(main)
SECTIONS
{
  .text 0x08000000 : { *(.text .text.*) *(.rodata .rodata.*) }
  .ARM.exidx : { *(.ARM.exidx*) }
  .data 0x20000000 : { *(.data .data.*) }
  .bss : { *(.bss .bss.* COMMON) }
}
"""


def record(number, numbers):
    """A record with members of base types, bit fields, arrays, a union and a record before it."""
    lines = [f"enum state_{number} {{ STATE_{number}_IDLE, STATE_{number}_BUSY = {number + 3}, STATE_{number}_DONE }};",
             f"struct record_{number} {{"]
    for member in range(numbers.randint(4, 9)):
        lines.append(f"  {numbers.choice(BASE_TYPES)} member_{number}_{member};")
    lines += [f"  unsigned ready : 1; unsigned level : {numbers.randint(2, 7)}; int delta : 9;",
              f"  uint16_t table_{number}[{numbers.randint(2, 9)}][3];",
              f"  union {{ uint32_t word_{number}; uint8_t bytes_{number}[4]; }};",
              f"  enum state_{number} state;"]
    if number:
        other = numbers.randrange(number)
        lines.append(f"  struct record_{other} *next_{number};")
        if numbers.random() < 0.3:
            lines.append(f"  struct record_{other} inner_{number};")
    lines.append("};")
    lines.append(f"typedef struct record_{number} record_{number}_t;")
    lines.append(f"static inline uint32_t level_of_{number}(const struct record_{number} *r) "
                 f"{{ uint32_t sum = r->level; if (r->ready) sum += r->word_{number}; return sum; }}")
    return lines


def header(num_records, numbers):
    lines = ["#pragma once", "#include <stdint.h>"]
    for number in range(num_records):
        lines += record(number, numbers)
        lines.append(f"#define LIMIT_{number} ({number} * 4 + 1)")
    return "\n".join(lines) + "\n"


CPP_PREFACE = """
template <typename T, unsigned N> class ring {
public:
  bool push(const T &value) { if (count == N) return false; items[(first + count++) % N] = value; return true; }
  const T &front() const { return items[first]; }
private:
  T items[N]; unsigned first = 0, count = 0;
};
class task { public: virtual int run(int budget) = 0; virtual void stop() {} int priority = 0; };
"""


def function(unit, number, num_records, is_cpp, numbers):
    first, second = numbers.randrange(num_records), numbers.randrange(num_records)
    name = f"work_{unit}_{number}"
    lines = [f"uint32_t {name}(struct record_{first} *input, uint32_t count) {{",
             "  uint32_t total = count;",
             f"  struct record_{second} scratch = {{0}};",
             f"  for (uint32_t i = 0; i < count; i++) {{ uint32_t step = level_of_{first}(input + i); "
             f"total += step * LIMIT_{first}; counter_{unit} += step; }}",
             f"  if (total > LIMIT_{second}) {{ int64_t wide = (int64_t)total * count; "
             f"scratch.word_{second} = (uint32_t)(wide >> 7); total ^= level_of_{second}(&scratch); }}"]
    if number:
        lines.append(f"  if (input->ready) total += work_{unit}_{number - 1}((struct record_"
                     f"{function.previous} *)input, total & 7);")
    if is_cpp and number % 10 == 0:
        lines.append(f"  static ring<record_{second}_t, {number % 7 + 2}> waiting; waiting.push(scratch);"
                     "  auto twice = [&](uint32_t value) { return value * 2 + total; }; total += twice(count);")
    lines.append("  return total;\n}")
    function.previous = first
    return lines


def unit_source(unit, num_functions, num_records, is_cpp, numbers):
    lines = ['#include "model.h"']
    if is_cpp:
        lines += [CPP_PREFACE, f"namespace part_{unit} {{"]
        lines += [f"class task_{unit}_{i} : public task {{ public: int run(int budget) override {{ used += budget; "
                  f"return used > LIMIT_{i}; }} void stop() override {{ used = 0; }} private: int used = 0; }};"
                  f" task_{unit}_{i} the_task_{i};" for i in range(num_functions // 10)]
    lines.append(f"static volatile uint32_t counter_{unit};")
    lines += [f"struct record_{number} global_{unit}_{number};"
              for number in range(unit % 7, num_records, 7)]
    for number in range(num_functions):
        lines += function(unit, number, num_records, is_cpp, numbers)
    lines.append(("}\nextern \"C\" " if is_cpp else "") + f"uint32_t enter_{unit}(void *input) {{ return " +
                 (f"part_{unit}::" if is_cpp else "") +
                 f"work_{unit}_{num_functions - 1}((struct record_{function.previous} *)input, 3); }}")
    return "\n".join(lines) + "\n"


def compile_unit(source, options):
    is_cpp = source.suffix == ".cpp"
    compiler = "arm-none-eabi-g++" if is_cpp else "arm-none-eabi-gcc"
    subprocess.run([compiler, *OPTIONS, *options, "-c", source, "-o", source.with_suffix(".o")], check=True)


def write_sources(folder, num_units, num_functions, num_records):
    numbers = random.Random(SEED)
    (folder / "model.h").write_text(header(num_records, numbers))
    (folder / "link.ld").write_text(LINKER_SCRIPT)
    sources = []
    for unit in range(num_units):
        is_cpp = unit % C_UNIT_EVERY != 0
        source = folder / f"unit_{unit}.{'cpp' if is_cpp else 'c'}"
        source.write_text(unit_source(unit, num_functions, num_records, is_cpp, numbers))
        sources.append(source)
    calls = "".join(f"unsigned enter_{unit}(void *);\n" for unit in range(num_units))
    main = "".join(f"  sum += enter_{unit}(memory);\n" for unit in range(num_units))
    (folder / "main.c").write_text(f"{LIBRARY}{calls}int main(void) {{\n  static char memory[4096]; unsigned sum = 0;\n{main}"
                                   "  return (int)sum;\n}\n")
    return [folder / "main.c", *sources]


def make(out, name):
    num_units, num_functions, num_records, options = FILES[name]
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        sources = write_sources(folder, num_units, num_functions, num_records)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            jobs = [pool.submit(compile_unit, source, options + [
                "-O0" if i % 3 == 0 else "-O1", f"-gdwarf-{4 if i % OLD_VERSION_EVERY == 0 else 5}",
                f"-ffile-prefix-map={folder}=/generated"]) for i, source in enumerate(sources)]
            for job in jobs:
                job.result()
        (folder / "objects").write_text("\n".join(str(source.with_suffix(".o")) for source in sources))
        subprocess.run(["arm-none-eabi-gcc", *OPTIONS, "-nostdlib", "-T", folder / "link.ld", f"@{folder}/objects",
                        "-Wl,--no-warn-rwx-segments", "-lgcc", "-o", out / f"{name}.elf"], check=True)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    out = pathlib.Path(sys.argv[1])
    out.mkdir(parents=True, exist_ok=True)
    for name in FILES:
        if not (out / f"{name}.elf").exists():
            make(out, name)


if __name__ == "__main__":
    main()
