#include "program/elf/relocation_map.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t MAX_TEXT_LENGTH = 64;
constexpr U32 HIGHEST_END = 0xFFFFFFFEu;

bool ParseNumber(const char*& sText, U32& Value) {
  while (*sText == ' ') ++sText;
  if (*sText < '0' || *sText > '9') return false;
  char* pEnd = nullptr;
  const unsigned long long Number = std::strtoull(sText, &pEnd, 0);
  if (Number > 0xFFFFFFFFull) return false;
  sText = pEnd;
  while (*sText == ' ') ++sText;
  Value = static_cast<U32>(Number);
  return true;
}

bool ParseRange(const char* sText, CRelocationMap::RANGE& Range) {
  return ParseNumber(sText, Range.Start) && *sText++ == '-' && ParseNumber(sText, Range.End) && *sText == 0;
}

bool ParseText(const char* sText, CRelocationMap::RANGE& Range, const CRelocationMap::RESOLVER& Resolve) {
  if (std::strcmp(sText, "*") == 0) {
    Range = {0, HIGHEST_END};
    return true;
  }
  if (ParseRange(sText, Range)) return Range.Start != 0 || Range.End != 0;
  Range = {};
  return Resolve ? Resolve(sText, Range) : true;
}

bool IsCovered(U32 Addr, U64 Start, U64 End, U32 LowAdjust, U32 HighAdjust) {
  return Start < static_cast<U64>(Addr) + LowAdjust && Addr < End + HighAdjust;
}

}  // namespace

bool CRelocationMap::Add(const char* sText, I32 Delta, const RESOLVER& Resolve) {
  const size_t Length = std::strlen(sText);
  if (Length == 0 || Length > MAX_TEXT_LENGTH) return false;
  ENTRY Entry;
  Entry.Delta = Delta;
  Entry.sText = sText;
  if (!ParseText(sText, Entry.Range, Resolve)) return false;
  aEntries.push_back(Entry);
  return true;
}

void CRelocationMap::ResolveAll(const RESOLVER& Resolve) {
  for (ENTRY& Entry : aEntries) {
    if (!ParseText(Entry.sText.c_str(), Entry.Range, Resolve)) Entry.Range = {};
  }
}

U32 CRelocationMap::ToTarget(U32 Addr, U32 LowAdjust, U32 HighAdjust) const {
  for (const ENTRY& Entry : aEntries) {
    const I64 Moved = static_cast<I64>(Addr) + Entry.Delta;
    if (Moved < 0 || Moved > 0xFFFFFFFFll) continue;
    if (IsCovered(Addr, Entry.Range.Start, Entry.Range.End, LowAdjust, HighAdjust)) return static_cast<U32>(Moved);
  }
  return Addr;
}

U32 CRelocationMap::ToFile(U32 Addr, U32 LowAdjust, U32 HighAdjust) const {
  for (const ENTRY& Entry : aEntries) {
    const I64 Moved = static_cast<I64>(Addr) - Entry.Delta;
    if (Moved < 0 || Moved > 0xFFFFFFFFll) continue;
    if (IsCovered(static_cast<U32>(Moved), Entry.Range.Start, Entry.Range.End, LowAdjust, HighAdjust)) {
      return static_cast<U32>(Moved);
    }
  }
  return Addr;
}

U32 CRelocationMap::NextEdge(U32 Addr) const {
  U32 Next = INVALID_ADDR;
  for (const ENTRY& Entry : aEntries) {
    for (const U32 Edge : {Entry.Range.Start, Entry.Range.End}) {
      if (Edge > Addr) Next = std::min(Next, Edge);
    }
  }
  return Next;
}
