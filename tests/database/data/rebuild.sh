#!/bin/sh
# Builds the programs that the tests of the program database load: demo.elf, the same program for address 0 with
# debug information for its assembler file as low.elf, names.elf and scopes.elf, where one name stands for several
# things, and foreign.elf. Needs gcc-arm-none-eabi.
set -e
cd "$(dirname "$0")"
flags="-mcpu=cortex-m4 -mthumb -g3 -gdwarf-5 -ffile-prefix-map=$PWD=/demo -ffreestanding"
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
arm-none-eabi-gcc $flags -O1 -ffunction-sections -c first.c -o "$out/first.o"
arm-none-eabi-gcc $flags -O1 -c second.c -o "$out/second.o"
arm-none-eabi-g++ $flags -O0 -fno-exceptions -fno-rtti -c shape.cpp -o "$out/shape.o"
arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -c start.S -o "$out/start.o"
arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -nostdlib -Wl,--gc-sections,--build-id=none,-u,UseShapes,-u,LongStatement \
  -T demo.ld "$out/first.o" "$out/second.o" "$out/shape.o" "$out/start.o" -o demo.elf

sed 's/0x08000000/0x00000000/' demo.ld >"$out/low.ld"
arm-none-eabi-gcc $flags "-Wa,--debug-prefix-map=$PWD=/demo" -c start.S -o "$out/start.o"
arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -nostdlib -Wl,--gc-sections,--build-id=none,-u,UseShapes,-u,LongStatement \
  -T "$out/low.ld" "$out/first.o" "$out/second.o" "$out/shape.o" "$out/start.o" -o low.elf

arm-none-eabi-gcc $flags -O0 -c names/main.c -o "$out/main.o"
arm-none-eabi-gcc $flags -O0 -c names/same/util.c -o "$out/util.o"
arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -nostdlib -Wl,--build-id=none -T demo.ld "$out/main.o" "$out/util.o" \
  "$out/start.o" -o names.elf

arm-none-eabi-g++ $flags -g2 -mfp16-format=ieee -O2 -fno-exceptions -fno-rtti -c scopes.cpp -o "$out/scopes.o"
arm-none-eabi-gcc -mcpu=cortex-m4 -mthumb -nostdlib -Wl,--build-id=none -T demo.ld "$out/scopes.o" "$out/start.o" \
  -o scopes.elf

# What other tools say about it: the rows of the line table, the symbols, and the image in other formats.
arm-none-eabi-objdump --dwarf=decodedline demo.elf | grep -E '^[a-z]+\.(c|cpp|h) ' >demo.lines.txt
arm-none-eabi-objcopy -O srec demo.elf demo.srec
arm-none-eabi-objcopy -O ihex demo.elf demo.hex
arm-none-eabi-objcopy -O binary -j .text demo.elf demo.bin

# What other compilers write, by hand.
arm-none-eabi-gcc -c foreign.S -o "$out/foreign.o"
arm-none-eabi-gcc -nostdlib -Wl,--build-id=none,-e,Start,-Ttext,0x8000,-Tdata,0x20000000 "$out/foreign.o" -o foreign.elf
