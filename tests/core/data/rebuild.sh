#!/bin/sh
# Rebuilds firmware.elf and the listing of its instruction starts. Needs gcc-arm-none-eabi.
set -e
cd "$(dirname "$0")"
arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -O2 -g -ffreestanding -nostdlib -ffile-prefix-map="$PWD"=. \
  -T firmware.ld -o firmware.elf firmware.c
# Rows: address, size in bytes, kind (i instruction, d data), function.
arm-none-eabi-objdump -d -j .text firmware.elf | awk -F'\t' '
  /^[0-9a-f]+ </ { split($0, part, /[<>]/); name = part[2] }
  name != "vectors" && /^ +[0-9a-f]+:/ { sub(/^ +/, "", $1); sub(/:.*/, "", $1); gsub(/ /, "", $2)
    print $1, length($2) / 2, ($3 ~ /^\.(word|short|byte)/ ? "d" : "i"), name }' > firmware.starts
