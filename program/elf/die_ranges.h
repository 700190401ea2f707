#pragma once

#include <vector>

#include "program/elf/dwarf_info.h"

struct ADDR_RANGE {
  U32 Low;
  U32 High;  // first address behind the range
};

// The code ranges of an entry, as the file has them; none for an entry without code.
std::vector<ADDR_RANGE> RangesOf(const DWARF_INFO& Info, U32 Entry);
