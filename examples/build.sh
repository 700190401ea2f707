#!/usr/bin/env bash
# Rebuilds the example programs. Needs gcc-arm-none-eabi; the linked files are committed, so that nothing else does.
set -euo pipefail
cd "$(dirname "$0")"

build() {  # name, cpu, linker script
  local name=$1 cpu=$2 script=$3 source object objects=()
  local flags=(-mcpu="$cpu" -mthumb -mfloat-abi=soft -ffreestanding -ffunction-sections -fdata-sections -Og -g3 -gdwarf-5
    -Wall -Wextra -I../common -Isrc -ffile-prefix-map="$PWD/$name=.")
  local cpp_flags=(-std=c++20 -fno-exceptions -fno-rtti -fno-threadsafe-statics)
  local out
  out=$(mktemp -d)
  pushd "$name" > /dev/null  # paths in the debug information are relative to the program's folder
  shopt -s nullglob
  for source in ../common/startup.c src/*.c src/*.cpp; do
    object=$out/$(basename "${source%.*}").o
    if [ "${source##*.}" = cpp ]; then
      arm-none-eabi-g++ "${flags[@]}" "${cpp_flags[@]}" -c "$source" -o "$object"
    else
      arm-none-eabi-gcc "${flags[@]}" -c "$source" -o "$object"
    fi
    objects+=("$object")
  done
  arm-none-eabi-gcc "${flags[@]}" -nostdlib -Wl,--gc-sections -Wl,-L../common -T "$script" "${objects[@]}" -lgcc \
    -o "$name.elf"
  arm-none-eabi-size "$name.elf"
  popd > /dev/null
  rm -rf "$out"
}

build traffic_light cortex-m4 m4.ld
build thermostat cortex-m0 m0.ld
build weather_station cortex-m3 m3.ld
