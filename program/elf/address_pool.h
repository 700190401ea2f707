#pragma once

#include <optional>

#include "program/elf/byte_cursor.h"

// The addresses of one unit in .debug_addr, which forms, lists and expressions name by their number. Empty for a unit
// without them.
struct ADDRESS_POOL {
  const U8* pSection = nullptr;
  U64 Size = 0;  // of the section
  U64 Base = 0;  // offset of the unit's first address
  U8 AddrSize = 4;
  bool bBigEndian = false;

  // None for a number whose address lies outside the section.
  std::optional<U64> Get(U64 Index) const {
    if (Base > Size || AddrSize == 0 || Index >= (Size - Base) / AddrSize) return std::nullopt;
    CByteCursor Bytes(pSection, Size, bBigEndian);
    Bytes.Skip(Base + Index * AddrSize);
    const U64 Addr = Bytes.UInt(AddrSize);
    return Bytes.Ok() ? std::optional<U64>(Addr) : std::nullopt;
  }
};
