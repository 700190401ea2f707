#include "program/elf/line_header_check.h"

#include "base/endian.h"

namespace {

constexpr U32 MAX_FORMATS = 16;             // more descriptions of a directory or file than DWARF has kinds
constexpr U32 LENGTH_ESCAPE = 0xFFFFFFF0u;  // initial lengths from here on are not sizes of a 32-bit unit
constexpr U32 LENGTH_64 = 0xFFFFFFFFu;

class CHeaderBytes {
public:
  CHeaderBytes(const U8* pData, U64 Size, bool bBigEndian) : pData(pData), Size(Size), bBigEndian(bBigEndian) {}

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
  const U8* pData;
  U64 Size;
  U64 At = 0;
  bool bBigEndian;
  bool bOk = true;
};

bool SkipFormats(CHeaderBytes& Bytes, U32& NumFormats) {
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
  CHeaderBytes Bytes(pSection + Offset, SectionSize - Offset, bBigEndian);
  U64 Length = Bytes.Int<U32>();
  const bool b64 = Length == LENGTH_64;
  if (b64)
    Length = Bytes.Int<U64>();
  else if (Length >= LENGTH_ESCAPE)
    return false;
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
