#!/bin/sh
# Compiles channels.c for each core into channels_CORE.inc: the bytes of an image that is linked to address 0, and a constant
# for each global symbol. Needs gcc-arm-none-eabi; the tests themselves do not.
set -e
cd "$(dirname "$0")"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

compile() {
  core=$1
  shift
  arm-none-eabi-gcc -mthumb -Os -ffreestanding -nostdlib -fno-tree-loop-distribute-patterns "$@" -T channels.ld \
    -o "$tmp/$core.elf" channels.c
  arm-none-eabi-objcopy -O binary -j .text "$tmp/$core.elf" "$tmp/$core.bin"
  {
    echo "// Made by make.sh from channels.c."
    echo "constexpr U8 IMAGE[] = {"
    od -An -v -tx1 "$tmp/$core.bin" | sed 's/ \([0-9a-f][0-9a-f]\)/0x\1,/g'
    echo "};"
    echo "enum SYMBOL : U32 {"
    arm-none-eabi-nm "$tmp/$core.elf" | awk '$2 ~ /^[TBD]$/ { print "  A_" $3 " = 0x" $1 "," }'
    echo "};"
  } > "channels_$core.inc"
}
compile v6m -mcpu=cortex-m0 -DCLOCK_HZ=16000000
compile v7em -mcpu=cortex-m4 -DCLOCK_HZ=64000000
