#!/bin/sh
# Rebuilds the object files and the reference listings beside this script. Needs gcc-arm-none-eabi.
set -e
cd "$(dirname "$0")"
build() { # name, source, options
  name=$1 source=$2
  shift 2
  arm-none-eabi-gcc -c -mthumb -O2 -ffreestanding -ffile-prefix-map="$PWD"=. "$@" -o "$name.o" "$source"
  arm-none-eabi-objcopy -O binary -j .text "$name.o" "$name.bin"
  # Rows: address, size in bytes, of each instruction; literals are marked with d.
  arm-none-eabi-objdump -d -j .text "$name.o" | awk -F'\t' '
    /^ +[0-9a-f]+:/ { sub(/^ +/, "", $1); sub(/:.*/, "", $1); gsub(/ /, "", $2)
      print $1, length($2) / 2, ($3 ~ /^\.(word|short|byte)/ ? "d" : "i") }' > "$name.starts"
  rm "$name.o"
}
build cortex-m0 sample.c -mcpu=cortex-m0
build cortex-m3 sample.c -mcpu=cortex-m3
build cortex-m4 sample.c -mcpu=cortex-m4 -O3 -funroll-loops
build cortex-m33 sample.c -mcpu=cortex-m33
build cortex-m4f float.c -mcpu=cortex-m4 -mfloat-abi=hard -mfpu=fpv4-sp-d16
build cortex-m7 float.c -mcpu=cortex-m7 -mfloat-abi=hard -mfpu=fpv5-d16
