#!/usr/bin/env bash
# Rebuilds the programs of these tests. Needs gcc-arm-none-eabi; the linked files are committed, so that nothing else
# does.
set -euo pipefail
cd "$(dirname "$0")"

build() {  # cpu, start file, instruction set, addresses of code and data
  local cpu=$1 start=$2 isa=$3 code=$4 data=$5
  arm-none-eabi-gcc -mcpu="$cpu" "$isa" -mfloat-abi=soft -ffreestanding -Og -g3 -gdwarf-5 -Wall -Wextra \
    -ffile-prefix-map="$PWD=." -Wa,--debug-prefix-map="$PWD=." -nostdlib -Wl,--build-id=none \
    -Wl,--no-warn-rwx-segments \
    -Wl,--defsym=CODE_BASE="$code" -Wl,--defsym=DATA_BASE="$data" -T counter.ld "$start" counter.c -o "$cpu.elf"
}

build cortex-m3 start_m.S -mthumb 0x00000000 0x20000000
build cortex-m4 start_m.S -mthumb 0x00000000 0x20000000
build cortex-m7 start_m.S -mthumb 0x00000000 0x20000000
build cortex-m33 start_m.S -mthumb 0x10000000 0x30000000
build cortex-a9 start_ar.S -marm 0x60010000 0x60020000
build cortex-r5 start_ar.S -marm 0x00000000 0x00020000
build arm926ej-s start_ar.S -marm 0x00010000 0x00020000
build arm1136jf-s start_ar.S -marm 0x00010000 0x00020000
