#!/bin/sh
# Rebuilds the programs and the listings of their instruction starts. Needs gcc-arm-none-eabi.
set -e
cd "$(dirname "$0")"
build() { # name, source, options
  name=$1 source=$2
  shift 2
  arm-none-eabi-gcc -mthumb -O2 -g -ffreestanding -nostdlib -ffile-prefix-map="$PWD"=. "$@" \
    -T firmware.ld -o "$name.elf" "$source" -lgcc
  # Rows: address, size in bytes, kind (t Thumb, a ARM, d data), function.
  arm-none-eabi-objdump -d -j .text "$name.elf" | awk -F'\t' '
    /^[0-9a-f]+ </ { split($0, part, /[<>]/); name = part[2] }
    name != "vectors" && /^ +[0-9a-f]+:/ { sub(/^ +/, "", $1); sub(/:.*/, "", $1); split($2, word, " ")
      gsub(/ /, "", $2)
      print $1, length($2) / 2, ($3 ~ /^\.(word|short|byte)/ ? "d" : length(word[1]) == 8 ? "a" : "t"), name }' > "$name.starts"
}
build firmware firmware.c -mcpu=cortex-m4
build tables-m4 tables.c -mcpu=cortex-m4
build tables-arm9 tables.c -mcpu=arm926ej-s
build secure-m55 secure.c -mcpu=cortex-m55+nomve -mfloat-abi=hard -falign-functions=2 -mcmse -Wl,--section-start=.gnu.sgstubs=0x8008000
