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

# The C++ example as it is and as it is when everything is inlined.
cpp=(-std=c++20 -fno-exceptions -fno-rtti -fno-threadsafe-statics)
sources=("$examples"/weather_station/src/*.cpp)
for level in O0 O2; do
  arm-none-eabi-g++ -mcpu=cortex-m3 -mthumb -mfloat-abi=soft -ffreestanding "${debug[@]}" "${cpp[@]}" -$level \
    "-I$examples/common" "-ffile-prefix-map=${examples%/*}=/vexor" "-ffile-prefix-map=$examples/weather_station=." \
    "${sources[@]}" -nostdlib "-L$examples/common" \
    -T "$examples/weather_station/m3.ld" "$startup" -lgcc -o weather_station_$level.elf
done
rm "$startup"
