#include "program/elf/line_header_check.h"

#include "program/elf/byte_cursor.h"

namespace {

constexpr U32 MAX_FORMATS = 16;  // more descriptions of a directory or file than DWARF has kinds

bool SkipFormats(CByteCursor& Bytes, U32& NumFormats) {
  NumFormats = static_cast<U32>(Bytes.Int<U8>());
  for (U32 i = 0; i < NumFormats; ++i) {
    Bytes.Leb();
    Bytes.Leb();
  }
  return Bytes.Ok() && NumFormats <= MAX_FORMATS;
}

}  // namespace

bool IsLineHeaderSound(const U8* pSection, U32 SectionSize, U32 Offset, bool bBigEndian) {
  if (!pSection || Offset >= SectionSize) return false;
  CByteCursor Bytes(pSection + Offset, SectionSize - Offset, bBigEndian);
  bool b64 = false;
  const U64 Length = Bytes.UnitLength(b64);
  Bytes.Limit(Length);
  const U64 Version = Bytes.Int<U16>();
  if (Version >= 5) Bytes.Skip(2);  // address size, segment selector size
  Bytes.Limit(b64 ? Bytes.Int<U64>() : Bytes.Int<U32>());
  Bytes.Skip(Version >= 4 ? 5 : 4);  // instruction lengths, default of is_stmt, line base and range
  const U64 OpcodeBase = Bytes.Int<U8>();
  if (OpcodeBase == 0) return false;
  Bytes.Skip(OpcodeBase - 1);
  if (!Bytes.Ok() || Version < 2 || Version > 5) return false;
  if (Version < 5) return true;  // names end with an empty one
  U32 NumFormats = 0;
  if (!SkipFormats(Bytes, NumFormats)) return false;
  const U64 NumDirs = Bytes.Leb();
  // Directories and files follow with at least a byte for each value, files behind directories that have any length.
  return Bytes.Ok() && NumDirs <= Bytes.Left() && (NumDirs == 0 || NumFormats != 0);
}
