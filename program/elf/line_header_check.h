#pragma once

#include "base/types.h"

// True if the header of the line table at Offset of .debug_line keeps to its own length: no more directories, files or
// opcode lengths than bytes. A decoder that trusts the counts of a damaged header would work on it for hours.
bool IsLineHeaderSound(const U8* pSection, U32 SectionSize, U32 Offset, bool bBigEndian);
