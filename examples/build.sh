#!/usr/bin/env bash
# Rebuilds the example programs. Needs gcc-arm-none-eabi; the linked files are committed, so that nothing else does.
set -euo pipefail
cd "$(dirname "$0")"

build() {  # name, cpu, linker script
  local name=$1 cpu=$2 script=$3 source objects=()
  local flags=(-mcpu="$cpu" -mthumb -mfloat-abi=soft -ffreestanding -ffunction-sections -fdata-sections -Og -g3 -gdwarf-5
    -Wall -Wextra -I../common -Isrc -ffile-prefix-map="$PWD/$name=.")
  local out
  out=$(mktemp -d)
  pushd "$name" > /dev/null  # paths in the debug information are relative to the program's folder
  for source in ../common/startup.c src/*.c; do
    arm-none-eabi-gcc "${flags[@]}" -c "$source" -o "$out/$(basename "$source" .c).o"
    objects+=("$out/$(basename "$source" .c).o")
  done
  arm-none-eabi-gcc "${flags[@]}" -nostdlib -Wl,--gc-sections -Wl,-L../common -T "$script" "${objects[@]}" -lgcc \
    -o "$name.elf"
  arm-none-eabi-size "$name.elf"
  popd > /dev/null
  rm -rf "$out"
}

build traffic_light cortex-m4 m4.ld
build thermostat cortex-m0 m0.ld
