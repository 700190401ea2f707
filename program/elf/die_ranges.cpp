#include "program/elf/die_ranges.h"

#include "program/elf/range_list.h"
#include "program/elf/unit_bases.h"

namespace {

constexpr U32 NO_LOW_PC = INVALID_ADDR;

void ReadList(const DWARF_INFO& Info, U32 Entry, const CByteCursor& List, std::vector<ADDR_RANGE>& aOut) {
  const LIST_CONTEXT Context = ListContextOf(Info, Entry);
  CRangeListReader Reader(List, Info.Index.UnitOf(Entry).Version, Context);
  for (RANGE_ENTRY Range; Reader.Next(Range);) {
    const U32 Low = static_cast<U32>(Range.Low), High = static_cast<U32>(Range.High);
    if (High >= Low && High != 0) aOut.push_back({Low, High});
  }
  if (!Reader.Ok()) {
    Info.Sections.Complain("range list is damaged", "RangesOf", "offset", Info.Index.Get(Entry).Offset);
  }
}

void ReadLowHigh(const CDebugSections& Sections, const CDie& Die, std::vector<ADDR_RANGE>& aOut) {
  const CAttribute Low(Sections, Die, DW_AT_low_pc), High(Sections, Die, DW_AT_high_pc);
  if (!Low || !High) return;
  const U32 LowPc = static_cast<U32>(Low.Integer(Sections).value_or(NO_LOW_PC));
  const U32 HighValue = static_cast<U32>(High.Integer(Sections).value_or(0));
  aOut.push_back({LowPc, High.IsAddress() ? HighValue : LowPc + HighValue});
}

}  // namespace

std::vector<ADDR_RANGE> RangesOf(const DWARF_INFO& Info, U32 Entry) {
  std::vector<ADDR_RANGE> aRanges;
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
  if (!Die) return aRanges;
  const CAttribute Ranges(Info.Sections, Die, DW_AT_ranges);
  if (!Ranges) {
    ReadLowHigh(Info.Sections, Die, aRanges);
  } else if (const CByteCursor List = ListBytesOf(Info, Entry, Ranges, RANGE_LISTS); List.More()) {
    ReadList(Info, Entry, List, aRanges);
  }
  return aRanges;
}
