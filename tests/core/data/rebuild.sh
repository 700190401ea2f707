#!/bin/sh
# Rebuilds the programs. Needs gcc-arm-none-eabi.
set -e
cd "$(dirname "$0")"
build() { # name, source, options
  name=$1 source=$2
  shift 2
  arm-none-eabi-gcc -mthumb -O2 -g -ffreestanding -nostdlib -ffile-prefix-map="$PWD"=. "$@" \
    -T firmware.ld -o "$name.elf" "$source" -lgcc
}
build firmware firmware.c -mcpu=cortex-m4
build tables-m4 tables.c -mcpu=cortex-m4
build tables-arm9 tables.c -mcpu=arm926ej-s
build secure-m55 secure.c -mcpu=cortex-m55+nomve -mfloat-abi=hard -falign-functions=2 -mcmse -Wl,--section-start=.gnu.sgstubs=0x8008000
