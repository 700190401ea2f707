#include "program/elf/compressed_section.h"

#include <zlib.h>

#include <cstring>

#include "program/elf/byte_cursor.h"

namespace {

constexpr U64 METHOD_ZLIB = 1;
constexpr U64 MAX_RATIO = 1032;  // the most bytes that one byte of a stream can stand for
const char ZDEBUG_MAGIC[] = {'Z', 'L', 'I', 'B'};

void SetStream(const CByteCursor& Bytes, COMPRESSED_SECTION& Out) {
  Out.pStream = Bytes.Bytes();
  Out.StreamSize = static_cast<U32>(Bytes.Left());
}

}  // namespace

bool ParseCompressedSection(const U8* pData, U32 Size, bool bBigEndian, COMPRESSED_SECTION& Out) {
  CByteCursor Bytes(pData, Size, bBigEndian);
  const U64 Method = Bytes.Int<U32>();
  Out.Size = Bytes.Int<U32>();
  Bytes.Skip(sizeof(U32));  // its alignment
  SetStream(Bytes, Out);
  return Bytes.Ok() && Method == METHOD_ZLIB;
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
  z_stream Stream = {};
  if (!pBytes || inflateInit(&Stream) != Z_OK) return nullptr;
  Stream.next_in = const_cast<U8*>(Section.pStream);
  Stream.avail_in = Section.StreamSize;
  Stream.next_out = pBytes.get();
  Stream.avail_out = static_cast<uInt>(Section.Size);
  const bool bWhole = inflate(&Stream, Z_FINISH) == Z_STREAM_END && Stream.avail_out == 0;
  inflateEnd(&Stream);
  return bWhole ? std::move(pBytes) : nullptr;
}
