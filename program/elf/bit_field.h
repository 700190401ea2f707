#pragma once

#include "program/elf/dwarf_info.h"

// Where the bits of a member stand: in a storage unit of the size of the member's type.
struct BIT_PLACE {
  U32 Offset = 0;    // bytes from the record to the storage unit, where DW_AT_data_bit_offset says it
  U32 Position = 0;  // bits from the least significant one of the storage unit to the first bit of the field
};

BIT_PLACE PlaceOfBits(const DWARF_INFO& Info, U32 Entry);
