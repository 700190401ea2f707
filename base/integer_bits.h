#pragma once

#include "base/types.h"

// The integer in the lowest bytes; more than 8 of them, or none, stand for 8.
inline I64 IntegerOfBits(U64 Bits, U32 NumBytes, bool bSigned) {
  if (NumBytes == 0 || NumBytes >= sizeof(Bits)) return static_cast<I64>(Bits);
  const U32 Shift = 64 - 8 * NumBytes;
  return bSigned ? static_cast<I64>(Bits << Shift) >> Shift : static_cast<I64>(Bits << Shift >> Shift);
}
