#include "program/elf/list_header_check.h"

#include "program/elf/byte_cursor.h"

namespace {

constexpr U64 LIST_VERSION = 5;

// False at a damaged header; else Size becomes the number of bytes that it and its lists take.
bool CheckHeader(const U8* pData, U64 Left, bool bBigEndian, U64& Size) {
  CByteCursor Bytes(pData, Left, bBigEndian);
  bool b64 = false;
  const U64 Length = Bytes.UnitLength(b64);
  const U64 Before = Left - Bytes.Left();
  Bytes.Limit(Length);
  Size = Before + Length;
  const U64 Version = Bytes.Int<U16>();
  const U64 AddrSize = Bytes.Int<U8>();
  const U64 SelectorSize = Bytes.Int<U8>();
  const U64 NumOffsets = Bytes.Int<U32>();
  return Bytes.Ok() && Version == LIST_VERSION && (AddrSize == 4 || AddrSize == 8) && SelectorSize == 0 &&
         NumOffsets <= Bytes.Left() / (b64 ? 8 : 4);
}

}  // namespace

bool AreListHeadersSound(const U8* pSection, U32 SectionSize, bool bBigEndian) {
  for (U64 At = 0; At < SectionSize;) {
    U64 Size = 0;
    if (!CheckHeader(pSection + At, SectionSize - At, bBigEndian, Size)) return false;
    At += Size;
  }
  return true;
}
