#include "program/elf/compressed_section.h"

#include <zlib.h>
#include <zstd.h>

#include <cstring>

#include "program/elf/byte_cursor.h"

namespace {

// The most bytes that one byte of a zlib stream can stand for. The blocks of the other method can stand for more, but
// debug information does not come near it.
constexpr U64 MAX_RATIO = 1032;
const char ZDEBUG_MAGIC[] = {'Z', 'L', 'I', 'B'};

void SetStream(const CByteCursor& Bytes, COMPRESSED_SECTION& Out) {
  Out.pStream = Bytes.Bytes();
  Out.StreamSize = static_cast<U32>(Bytes.Left());
}

// Each fills the bytes of the section. False where the stream does not give just as many.
bool Inflate(const COMPRESSED_SECTION& Section, U8* pBytes) {
  z_stream Stream = {};
  if (inflateInit(&Stream) != Z_OK) return false;
  Stream.next_in = const_cast<U8*>(Section.pStream);
  Stream.avail_in = Section.StreamSize;
  Stream.next_out = pBytes;
  Stream.avail_out = static_cast<uInt>(Section.Size);
  const bool bWhole = inflate(&Stream, Z_FINISH) == Z_STREAM_END && Stream.avail_out == 0;
  inflateEnd(&Stream);
  return bWhole;
}

bool Unzstd(const COMPRESSED_SECTION& Section, U8* pBytes) {
  // Errors are numbers above every size.
  return ZSTD_decompress(pBytes, Section.Size, Section.pStream, Section.StreamSize) == Section.Size;
}

}  // namespace

bool ParseCompressedSection(const U8* pData, U32 Size, bool bBigEndian, COMPRESSED_SECTION& Out) {
  CByteCursor Bytes(pData, Size, bBigEndian);
  Out.Method = static_cast<COMPRESSION>(Bytes.Int<U32>());
  Out.Size = Bytes.Int<U32>();
  Bytes.Skip(sizeof(U32));  // its alignment
  SetStream(Bytes, Out);
  return Bytes.Ok() && (Out.Method == COMPRESSION::Zlib || Out.Method == COMPRESSION::Zstd);
}

bool ParseZdebugSection(const U8* pData, U32 Size, COMPRESSED_SECTION& Out) {
  CByteCursor Bytes(pData, Size, true);
  const U8* pMagic = Bytes.Bytes();
  Bytes.Skip(sizeof(ZDEBUG_MAGIC));
  Out.Size = Bytes.Int<U64>();
  SetStream(Bytes, Out);
  return Bytes.Ok() && std::memcmp(pMagic, ZDEBUG_MAGIC, sizeof(ZDEBUG_MAGIC)) == 0;
}

std::unique_ptr<U8[]> Expand(const COMPRESSED_SECTION& Section, U64 MaxSize) {
  if (Section.Size > MaxSize || Section.Size > Section.StreamSize * MAX_RATIO) return nullptr;
  std::unique_ptr<U8[]> pBytes(new (std::nothrow) U8[Section.Size + 1]);
  if (!pBytes) return nullptr;
  const auto Fill = Section.Method == COMPRESSION::Zstd ? Unzstd : Inflate;
  return Fill(Section, pBytes.get()) ? std::move(pBytes) : nullptr;
}
