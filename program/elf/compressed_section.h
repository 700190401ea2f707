#pragma once

#include <memory>

#include "base/types.h"

// A section as a linker or an assembler compressed it.
struct COMPRESSED_SECTION {
  const U8* pStream = nullptr;  // what zlib reads
  U32 StreamSize = 0;
  U64 Size = 0;  // of the section itself, as its header says
};

// Parts the bytes of a section that has a compression header of the object format in front of its stream. False for
// another method than zlib's and a header that is cut off.
bool ParseCompressedSection(const U8* pData, U32 Size, bool bBigEndian, COMPRESSED_SECTION& Out);
// The same for the sections of older tools, whose names begin with ".zdebug_".
bool ParseZdebugSection(const U8* pData, U32 Size, COMPRESSED_SECTION& Out);
// The section's own bytes; null where the stream does not give just as many, and for more than MaxSize of them.
std::unique_ptr<U8[]> Expand(const COMPRESSED_SECTION& Section, U64 MaxSize);
