#!/bin/sh
# Assembles the test images: NAME.s becomes NAME.inc, the bytes of an image that is linked to address 0, and for each label
# that a test uses a constant; program.c becomes one image for each core, with the address of its end as third vector.
# Needs gcc-arm-none-eabi; the tests themselves do not.
set -e
cd "$(dirname "$0")"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
for source in *.s; do
  name=${source%.s}
  arm-none-eabi-as -o "$tmp/$name.o" "$source"
  arm-none-eabi-ld -Ttext=0 -e 0 -o "$tmp/$name.elf" "$tmp/$name.o"
  arm-none-eabi-objcopy -O binary -j .text "$tmp/$name.elf" "$tmp/$name.bin"
  {
    echo "// Made by make.sh from $source."
    echo "constexpr U8 IMAGE[] = {"
    od -An -v -tx1 "$tmp/$name.bin" | sed 's/ \([0-9a-f][0-9a-f]\)/0x\1,/g'
    echo "};"
    echo "enum LABEL : U32 {"
    arm-none-eabi-nm "$tmp/$name.elf" | awk '$2 == "t" && $3 !~ /^[0-9$]/ { print "  L_" $3 " = 0x" $1 "," }'
    echo "};"
  } > "$name.inc"
done

compile() {
  arm-none-eabi-gcc -mthumb -mfloat-abi=soft -ffreestanding -nostdlib -fno-tree-loop-distribute-patterns "$@" \
    -T program.ld -o "$tmp/program.elf" program.c -lgcc
}
compile -mcpu=cortex-m0 -Os && arm-none-eabi-objcopy -O binary "$tmp/program.elf" program_v6m.bin
compile -mcpu=cortex-m4 -O3 && arm-none-eabi-objcopy -O binary "$tmp/program.elf" program_v7em.bin
chmod 644 program_*.bin
