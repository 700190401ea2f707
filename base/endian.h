#pragma once

#include <cstring>

#include "base/types.h"

// Unaligned loads and stores of a byte order that is known only at run time.
template <typename T>
T LoadInt(const void* pData, bool bBigEndian) {
  U8 aBytes[sizeof(T)];
  std::memcpy(aBytes, pData, sizeof(T));
  T Value = 0;
  for (size_t i = 0; i < sizeof(T); ++i) {
    const size_t Index = bBigEndian ? i : sizeof(T) - 1 - i;
    Value = static_cast<T>(static_cast<U64>(Value) << 8 | aBytes[Index]);
  }
  return Value;
}

template <typename T>
void StoreInt(void* pData, T Value, bool bBigEndian) {
  U8 aBytes[sizeof(T)];
  for (size_t i = 0; i < sizeof(T); ++i) {
    aBytes[bBigEndian ? sizeof(T) - 1 - i : i] = static_cast<U8>(static_cast<U64>(Value) >> (8 * i));
  }
  std::memcpy(pData, aBytes, sizeof(T));
}
