#!/bin/sh
# Builds the program files of the reader's tests from the sources beside this script. The results are committed, so
# that the tests need no compiler; they depend on the compilers' versions.
set -eu
cd "$(dirname "$0")"
TMP=$(mktemp -d)
trap 'rm -rf "$TMP"' EXIT

MAP="-ffile-prefix-map=$PWD=/sample"
GCC="arm-none-eabi-gcc -ffreestanding -nostdlib -mcpu=cortex-m4 -mthumb $MAP -gno-as-loc-support"
LINK="-T sample.ld -Wl,--build-id=none"

$GCC -gdwarf-2 -gstrict-dwarf -O0 $LINK sample.c other.c -o gcc_dwarf2_O0.elf
$GCC -gdwarf-3 -gstrict-dwarf -O2 $LINK sample.c other.c -o gcc_dwarf3_O2.elf
$GCC -gdwarf-4 -O2 $LINK sample.c other.c -o gcc_dwarf4_O2.elf
$GCC -gdwarf-5 -O0 $LINK sample.c other.c -o gcc_dwarf5_O0.elf
$GCC -gdwarf-5 -O2 -ffunction-sections $LINK sample.c other.c -o gcc_dwarf5_O2.elf
$GCC -gdwarf-5 -O2 -flto $LINK sample.c other.c -o gcc_dwarf5_lto.elf
for UNIT in sample.c other.c sizes.S; do $GCC -O2 -c $UNIT -o "$TMP/$UNIT.o"; done
$GCC $LINK "$TMP/sample.c.o" "$TMP/other.c.o" "$TMP/sizes.S.o" -o plain.elf
$GCC -gdwarf-2 -O1 -c sample.c -o "$TMP/two.o"
$GCC -gdwarf-5 -O1 -c other.c -o "$TMP/five.o"
$GCC $LINK "$TMP/two.o" "$TMP/five.o" -o mixed.elf
$GCC -gdwarf-5 -O1 -fno-exceptions -fno-rtti -fno-asynchronous-unwind-tables $LINK drive.cpp -o cpp_dwarf5.elf
$GCC -gdwarf-4 -O1 -fno-exceptions -fno-rtti -fdebug-types-section $LINK drive.cpp -o cpp_dwarf4_types.elf

arm-none-eabi-gcc -ffreestanding -nostdlib -mcpu=cortex-r4 -mbig-endian -marm $MAP -gdwarf-4 -O2 $LINK sample.c other.c \
  -o big_endian.elf

for VERSION in 4 5; do
  for UNIT in sample other; do
    clang-14 --target=arm-none-eabi -mcpu=cortex-m4 -mthumb -ffreestanding $MAP -gdwarf-$VERSION -O2 \
      -c $UNIT.c -o "$TMP/$UNIT.$VERSION.o"
  done
  $GCC $LINK "$TMP/sample.$VERSION.o" "$TMP/other.$VERSION.o" -o clang_dwarf$VERSION.elf
done

# Three units, each of which declares what another one describes.
CPP="-fno-exceptions -fno-rtti -fno-asynchronous-unwind-tables"
for KIND in "gcc -gdwarf-5 -O2" "types -gdwarf-4 -O1 -fdebug-types-section"; do
  set -- $KIND
  NAME=$1
  shift
  for UNIT in pump_main.cpp pump.cpp; do $GCC "$@" $CPP -c $UNIT -o "$TMP/$UNIT.o"; done
  $GCC "$@" -c pump_c.c -o "$TMP/pump_c.c.o"
  $GCC $LINK "$TMP/pump_main.cpp.o" "$TMP/pump.cpp.o" "$TMP/pump_c.c.o" -o pump_$NAME.elf
done
for UNIT in pump_main.cpp pump.cpp pump_c.c; do
  case $UNIT in *.cpp) OF_CPP=$CPP ;; *) OF_CPP= ;; esac
  clang-14 --target=arm-none-eabi -mcpu=cortex-m4 -mthumb -ffreestanding $MAP -gdwarf-5 -O2 $OF_CPP \
    -c $UNIT -o "$TMP/$UNIT.o"
done
$GCC $LINK "$TMP/pump_main.cpp.o" "$TMP/pump.cpp.o" "$TMP/pump_c.c.o" -o pump_clang.elf

# A class in a type unit or in both units, and names of templates without their arguments.
for KIND in "parts -fdebug-types-section" "parts_twice"; do
  set -- $KIND
  NAME=$1
  shift
  for UNIT in parts_main parts; do
    clang-14 --target=arm-none-eabi -mcpu=cortex-m4 -mthumb -ffreestanding $MAP -gdwarf-5 "$@" -gsimple-template-names \
      -O1 $CPP -c $UNIT.cpp -o "$TMP/$UNIT.o"
  done
  $GCC $LINK "$TMP/parts_main.o" "$TMP/parts.o" -o $NAME.elf
done

# Several things with one name in several units, in big endian.
BIG="arm-none-eabi-gcc -ffreestanding -nostdlib -mcpu=cortex-r4 -mbig-endian -marm -mfpu=vfpv3-d16 -mfloat-abi=hard $MAP -gdwarf-4 -O1"
for UNIT in twins_a.c twins_b.c; do $BIG -c $UNIT -o "$TMP/$UNIT.o"; done
$BIG $CPP -c twins_main.cpp -o "$TMP/twins_main.o"
$BIG $LINK "$TMP/twins_a.c.o" "$TMP/twins_b.c.o" "$TMP/twins_main.o" -o twins.elf
