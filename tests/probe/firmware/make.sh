#!/bin/sh
# Compiles channels.c into channels_v7em.inc: the bytes of an image that is linked to address 0, and a constant for each
# global symbol. Needs gcc-arm-none-eabi; the tests themselves do not.
set -e
cd "$(dirname "$0")"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

arm-none-eabi-gcc -mthumb -mcpu=cortex-m4 -DCLOCK_HZ=64000000 -Os -ffreestanding -nostdlib \
  -fno-tree-loop-distribute-patterns -T channels.ld -o "$tmp/image.elf" channels.c
arm-none-eabi-objcopy -O binary -j .text "$tmp/image.elf" "$tmp/image.bin"
{
  echo "// Made by make.sh from channels.c."
  echo "constexpr U8 IMAGE[] = {"
  od -An -v -tx1 "$tmp/image.bin" | sed 's/ \([0-9a-f][0-9a-f]\)/0x\1,/g'
  echo "};"
  echo "enum SYMBOL : U32 {"
  arm-none-eabi-nm "$tmp/image.elf" | awk '$2 ~ /^[TBD]$/ { print "  A_" $3 " = 0x" $1 "," }'
  echo "};"
} > channels_v7em.inc
