#pragma once

#include "base/endian.h"

// Reads the fields of a header one after the other. Reading past the end gives 0 and spoils the cursor for good.
class CByteCursor {
public:
  CByteCursor(const U8* pData, U64 Size, bool bBigEndian) : pData(pData), Size(Size), bBigEndian(bBigEndian) {}

  bool Ok() const { return bOk; }
  U64 Left() const { return Size - At; }
  void Limit(U64 NumBytes) {
    if (NumBytes > Left())
      bOk = false;
    else
      Size = At + NumBytes;
  }
  void Skip(U64 NumBytes) {
    if (NumBytes > Left())
      bOk = false;
    else
      At += NumBytes;
  }
  template <typename T>
  U64 Int() {
    if (!bOk || Left() < sizeof(T)) {
      bOk = false;
      return 0;
    }
    At += sizeof(T);
    return LoadInt<T>(pData + At - sizeof(T), bBigEndian);
  }
  // Initial length of a unit in either DWARF format; reserved values spoil the cursor.
  U64 UnitLength(bool& b64) {
    const U64 Length = Int<U32>();
    b64 = Length == LENGTH_64;
    if (b64) return Int<U64>();
    if (Length >= FIRST_RESERVED_LENGTH) bOk = false;
    return Length;
  }
  U64 Leb() {
    U64 Value = 0;
    for (U32 Shift = 0; bOk; Shift += 7) {
      const U64 Byte = Int<U8>();
      if (Shift < 64) Value |= (Byte & 0x7F) << Shift;
      if (!(Byte & 0x80)) break;
    }
    return Value;
  }

private:
  static constexpr U64 FIRST_RESERVED_LENGTH = 0xFFFFFFF0u;
  static constexpr U64 LENGTH_64 = 0xFFFFFFFFu;

  const U8* pData;
  U64 Size;
  U64 At = 0;
  bool bBigEndian;
  bool bOk = true;
};
