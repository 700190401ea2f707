#include "program/elf/die_ranges.h"

#include <algorithm>

#include "program/elf/unit_bases.h"

namespace {

constexpr U32 NO_LOW_PC = INVALID_ADDR;
constexpr U64 MAX_READ_TIMES = 4;   // the sections' size; a list may belong to a few entries
constexpr U64 MIN_LIST_BYTES = 24;  // of a list that is cut

// A range without length in code that the linker dropped, wherever that seems to be.
ADDR_RANGE RangeOf(U64 Low, U64 High) {
  if (Low >= LOWEST_TOMBSTONE) return {INVALID_ADDR, INVALID_ADDR};
  return {static_cast<U32>(Low), static_cast<U32>(High)};
}

// The number of bytes read.
U64 ReadList(const DWARF_INFO& Info, U32 Entry, CByteCursor List, std::vector<ADDR_RANGE>& aOut) {
  const LIST_CONTEXT Context = ListContextOf(Info, Entry);
  const U64 NumBytes = List.Left();
  List.Limit(std::min(NumBytes, Info.MaxRangeBytes));
  CAddrListReader Reader(CAddrListReader::RANGES, List, Info.Index.UnitOf(Entry).Version, Context);
  for (LIST_ENTRY Range; Reader.Next(Range);) {
    const ADDR_RANGE Found = RangeOf(Range.Low, Range.High);
    if (Found.High >= Found.Low && Found.High != 0) aOut.push_back(Found);
  }
  if (!Reader.Ok()) {
    Info.Sections.Complain("range list is damaged", "RangesOf", "offset", Info.Index.Get(Entry).Offset);
  }
  return Reader.Position() - List.Position();
}

void ReadLowHigh(const CDebugSections& Sections, const CDie& Die, std::vector<ADDR_RANGE>& aOut) {
  const CAttribute Low(Sections, Die, DW_AT_low_pc), High(Sections, Die, DW_AT_high_pc);
  if (!Low || !High) return;
  const U32 LowPc = static_cast<U32>(Low.Integer(Sections).value_or(NO_LOW_PC));
  const U32 HighValue = static_cast<U32>(High.Integer(Sections).value_or(0));
  aOut.push_back(RangeOf(LowPc, High.IsAddress() ? HighValue : LowPc + HighValue));
}

U64 ReadRanges(const DWARF_INFO& Info, U32 Entry, std::vector<ADDR_RANGE>& aOut) {
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
  if (!Die) return 0;
  const CAttribute Ranges(Info.Sections, Die, DW_AT_ranges);
  if (!Ranges) return ReadLowHigh(Info.Sections, Die, aOut), 0;
  const CByteCursor List = ListBytesOf(Info, Entry, Ranges, RANGE_LISTS);
  return List.More() ? ReadList(Info, Entry, List, aOut) : 0;
}

}  // namespace

std::vector<ADDR_RANGE> RangesOf(const DWARF_INFO& Info, U32 Entry) {
  std::vector<ADDR_RANGE> aRanges;
  ReadRanges(Info, Entry, aRanges);
  return aRanges;
}

void LimitRanges(DWARF_INFO& Info) {
  const U64 MaxTotal = MAX_READ_TIMES * (Info.Sections.Bytes(DEBUG_SECTION::Ranges).Left() +
                                         Info.Sections.Bytes(DEBUG_SECTION::Rnglists).Left());
  U64 NumEntries = 0, NumBytes = 0;
  std::vector<ADDR_RANGE> aRanges;
  for (const std::vector<U32>* paList : {&Info.Lists.aCompUnits, &Info.Lists.aFunctions, &Info.Lists.aInlinedFuncs}) {
    NumEntries += paList->size();
    for (size_t i = 0; i < paList->size() && NumBytes <= MaxTotal; ++i) {
      aRanges.clear();
      if (MaxTotal != 0) NumBytes += ReadRanges(Info, (*paList)[i], aRanges);
    }
  }
  if (NumBytes <= MaxTotal) return;
  Info.MaxRangeBytes = MIN_LIST_BYTES + MaxTotal / NumEntries;
  Info.Sections.Complain("range lists lie over each other", "LimitRanges", "bytes of a list", Info.MaxRangeBytes);
}
