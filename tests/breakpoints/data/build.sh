#!/usr/bin/env bash
# Rebuilds the programs of these tests. Needs gcc-arm-none-eabi; the linked files are committed, so that nothing else does.
set -euo pipefail
cd "$(dirname "$0")"
examples=$(realpath ../../../examples)
flags=(-mcpu=cortex-m4 -mthumb -mfloat-abi=soft -ffreestanding -Wall -Wextra)
debug=(-g -gdwarf-5)
startup=$(mktemp --suffix=.o)
link=(-nostdlib "-L$examples/common" -T "$examples/traffic_light/m4.ld" "$startup" -lgcc)

arm-none-eabi-gcc "${flags[@]}" -O1 -c "$examples/common/startup.c" -o "$startup"
for level in O0 O2; do
  arm-none-eabi-g++ "${flags[@]}" "${debug[@]}" "-ffile-prefix-map=$PWD=." -$level -std=c++20 -fno-exceptions -fno-rtti \
    lines.cpp "${link[@]}" -o lines_$level.elf
done
for version in before after; do
  (cd $version && arm-none-eabi-gcc "${flags[@]}" "${debug[@]}" "-ffile-prefix-map=$PWD=." -O0 moved.c "${link[@]}" -o moved.elf)
done
rm "$startup"
