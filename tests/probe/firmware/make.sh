#!/bin/sh
# Compiles channels.c into channels_v7em.inc, an image that is linked to address 0, and its global symbols.
. "$(dirname "$0")/../../common/make_image.sh"
arm-none-eabi-gcc -mthumb -mcpu=cortex-m4 -DCLOCK_HZ=64000000 -Os -ffreestanding -nostdlib \
  -fno-tree-loop-distribute-patterns -T channels.ld -o "$tmp/image.elf" channels.c
write_image "$tmp/image.elf" channels.c TBD A SYMBOL > channels_v7em.inc
