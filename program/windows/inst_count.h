#pragma once

#include "base/addr_range.h"

// Number of instructions of the program in these ranges. Decodes them first, where that was not done since the program
// was opened.
U32 CountProgramInsts(const QAddrRanges& Ranges);
