#pragma once

#include <memory>

#include "base/types.h"

enum class COMPRESSION : U32 { Zlib = 1, Zstd = 2 };  // numbers of the object format

// A section as a linker or an assembler compressed it.
struct COMPRESSED_SECTION {
  COMPRESSION Method = COMPRESSION::Zlib;
  const U8* pStream = nullptr;
  U32 StreamSize = 0;
  U64 Size = 0;  // of the section itself, as its header says
};

// Parts the bytes of a section that has a compression header of the object format in front of its stream. False for
// an unknown method and a header that is cut off.
bool ParseCompressedSection(const U8* pData, U32 Size, bool bBigEndian, COMPRESSED_SECTION& Out);
// The same for the sections of older tools, whose names begin with ".zdebug_".
bool ParseZdebugSection(const U8* pData, U32 Size, COMPRESSED_SECTION& Out);
// The section's own bytes; null where the stream does not give just as many, and for more than MaxSize of them.
std::unique_ptr<U8[]> Expand(const COMPRESSED_SECTION& Section, U64 MaxSize);
