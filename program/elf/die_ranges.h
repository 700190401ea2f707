#pragma once

#include <vector>

#include "program/elf/dwarf_info.h"

struct ADDR_RANGE {
  U32 Low;
  U32 High;  // first address behind the range
};

// The code ranges of an entry, as the file has them; none for an entry without code. One that the linker marked as
// dropped has no length.
std::vector<ADDR_RANGE> RangesOf(const DWARF_INFO& Info, U32 Entry);

// Call once after the walk. The many functions of a damaged file may all name one long list: where all lists together
// are longer than their sections can hold, each keeps only its share.
void LimitRanges(DWARF_INFO& Info);
