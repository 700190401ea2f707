#pragma once

#include "base/endian.h"

// Bytes of a name with its end. Longer ones are damage: without a limit, each of many names could reach to the end of
// its section.
inline constexpr U32 MAX_NAME_LENGTH = 64 * 1024;

// Reads the fields of a record one after the other. Reading past the end gives 0 and spoils the cursor for good.
class CByteCursor {
public:
  CByteCursor() = default;
  CByteCursor(const U8* pData, U64 Size, bool bBigEndian) : pData(pData), Size(Size), bBigEndian(bBigEndian) {}

  bool Ok() const { return bOk; }
  void Spoil() { bOk = false; }
  bool IsBigEndian() const { return bBigEndian; }
  // False behind the last byte and when the cursor is spoilt.
  bool More() const { return bOk && At < Size; }
  U64 Left() const { return Size - At; }
  U64 Position() const { return At; }
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
  // The next bytes, as a cursor of their own; it is spoilt where there are not as many.
  CByteCursor Take(U64 NumBytes) {
    CByteCursor Part(pData + At, NumBytes, bBigEndian);
    Skip(NumBytes);
    if (!bOk) {
      Part.Size = 0;
      Part.bOk = false;
    }
    return Part;
  }
  const U8* Bytes() const { return pData + At; }
  // The text up to the next byte 0, null if none follows.
  const char* Text() {
    const U8* pText = pData + At;
    const void* pEnd = bOk && Left() ? std::memchr(pText, 0, Left()) : nullptr;
    if (!pEnd) {
      bOk = false;
      return nullptr;
    }
    At += static_cast<U64>(static_cast<const U8*>(pEnd) - pText) + 1;
    return reinterpret_cast<const char*>(pText);
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
  // A number of 1, 2, 3, 4 or 8 bytes; any other width spoils the cursor.
  U64 UInt(U32 NumBytes) {
    switch (NumBytes) {
      case 1:
        return Int<U8>();
      case 2:
        return Int<U16>();
      case 3: {
        const U64 First = Int<U8>(), Second = Int<U8>(), Third = Int<U8>();
        return bBigEndian ? First << 16 | Second << 8 | Third : Third << 16 | Second << 8 | First;
      }
      case 4:
        return Int<U32>();
      case 8:
        return Int<U64>();
      default:
        bOk = false;
        return 0;
    }
  }
  // The same, with its sign.
  I64 SInt(U32 NumBytes) {
    const U64 Value = UInt(NumBytes);
    const U32 Shift = 64 - 8 * (NumBytes < 8 && NumBytes > 0 ? NumBytes : 8);
    return static_cast<I64>(Value << Shift) >> Shift;
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
  I64 Sleb() {
    U64 Value = 0;
    for (U32 Shift = 0; bOk; Shift += 7) {
      const U64 Byte = Int<U8>();
      if (Shift < 64) Value |= (Byte & 0x7F) << Shift;
      if (Byte & 0x80) continue;
      if ((Byte & 0x40) && Shift + 7 < 64) Value |= ~0ull << (Shift + 7);
      break;
    }
    return static_cast<I64>(Value);
  }

private:
  static constexpr U64 FIRST_RESERVED_LENGTH = 0xFFFFFFF0u;
  static constexpr U64 LENGTH_64 = 0xFFFFFFFFu;

  const U8* pData = nullptr;
  U64 Size = 0;
  U64 At = 0;
  bool bBigEndian = false;
  bool bOk = true;
};
