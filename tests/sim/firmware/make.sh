#!/bin/sh
# Assembles the test images: NAME.s becomes NAME.inc, an image that is linked to address 0, and its labels.
. "$(dirname "$0")/../../common/make_image.sh"
for source in *.s; do
  arm-none-eabi-as -o "$tmp/image.o" "$source"
  arm-none-eabi-ld -Ttext=0 -e 0 -o "$tmp/image.elf" "$tmp/image.o"
  write_image "$tmp/image.elf" "$source" t L LABEL > "${source%.s}.inc"
done
