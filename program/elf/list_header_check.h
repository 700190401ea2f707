#pragma once

#include "base/types.h"

// True if the headers in .debug_rnglists or .debug_loclists follow each other soundly up to the end of the section.
// libdwarf 20210528 frees memory twice when it gives up at a damaged one.
bool AreListHeadersSound(const U8* pSection, U32 SectionSize, bool bBigEndian);
