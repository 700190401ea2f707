#pragma once

#include <string_view>
#include <vector>

#include "program/elf/byte_cursor.h"

// "03 10000020" as bytes; blanks may stand anywhere.
inline std::vector<U8> HexBytes(std::string_view sHex) {
  std::vector<U8> aBytes;
  U32 Digits = 0, Value = 0;
  for (const char Char : sHex) {
    if (Char == ' ') continue;
    Value = Value << 4 | static_cast<U32>(Char <= '9' ? Char - '0' : (Char | 0x20) - 'a' + 10);
    if (++Digits % 2 == 0) aBytes.push_back(static_cast<U8>(Value));
  }
  return aBytes;
}

inline CByteCursor CursorOver(const std::vector<U8>& aBytes, bool bBigEndian = false) {
  return CByteCursor(aBytes.data(), aBytes.size(), bBigEndian);
}
