#include "program/windows/inst_count.h"

#include "core/vcore.h"

U32 CountProgramInsts(const QAddrRanges& Ranges) {
  if (Ranges.isEmpty()) return 0;
  for (const CAddrRange& Range : Ranges) VCore::AnalyzeAdd(Range.Start, Range.End());
  return VCore::CountInstructions(Ranges);
}
