#include "program/elf/die_ranges.h"

namespace {

constexpr U32 NO_LOW_PC = INVALID_ADDR;
constexpr U16 FIRST_VERSION_WITH_RNGLISTS = 5;

void AddRange(std::vector<ADDR_RANGE>& aRanges, U64 Low, U64 High) {
  const U32 Low32 = static_cast<U32>(Low), High32 = static_cast<U32>(High);
  if (High32 >= Low32 && High32 != 0) aRanges.push_back({Low32, High32});
}

// Lists of versions 2 to 4, in .debug_ranges.
void ReadRanges(const CDwarfSession& Session, const CDie& Die, U64 Offset, U32 Base, std::vector<ADDR_RANGE>& aOut) {
  Dwarf_Error Error = nullptr;
  Dwarf_Ranges* paRanges = nullptr;
  Dwarf_Signed NumRanges = 0;
  Dwarf_Unsigned NumBytes = 0;
  Dwarf_Off RealOffset = 0;
  const int Result =
      dwarf_get_ranges_b(Session.Handle(), Offset, Die.Get(), &RealOffset, &paRanges, &NumRanges, &NumBytes, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_get_ranges_b", "offset", Offset);
  if (Result != DW_DLV_OK) return;
  for (Dwarf_Signed i = 0; i < NumRanges && paRanges[i].dwr_type != DW_RANGES_END; ++i) {
    if (paRanges[i].dwr_type == DW_RANGES_ADDRESS_SELECTION) {
      Base = static_cast<U32>(paRanges[i].dwr_addr2);
    } else {
      AddRange(aOut, Base + paRanges[i].dwr_addr1, Base + paRanges[i].dwr_addr2);
    }
  }
  dwarf_ranges_dealloc(Session.Handle(), paRanges, NumRanges);
}

void ReadRangeListEntries(const CDwarfSession& Session, Dwarf_Rnglists_Head pHead, U64 NumEntries,
                          std::vector<ADDR_RANGE>& aOut) {
  for (U64 i = 0; i < NumEntries; ++i) {
    Dwarf_Error Error = nullptr;
    unsigned EntryLength = 0, Code = 0;
    Dwarf_Unsigned Raw1 = 0, Raw2 = 0, Low = 0, High = 0;
    Dwarf_Bool bUnavailable = 0;
    if (dwarf_get_rnglists_entry_fields_a(pHead, i, &EntryLength, &Code, &Raw1, &Raw2, &bUnavailable, &Low, &High,
                                          &Error) != DW_DLV_OK) {
      return Session.Report(Error, "dwarf_get_rnglists_entry_fields_a", "index", i);
    }
    if (Code == DW_RLE_end_of_list) return;
    const bool bBase = Code == DW_RLE_base_address || Code == DW_RLE_base_addressx;
    if (!bBase && !bUnavailable) AddRange(aOut, Low, High);
  }
}

// Lists of version 5, in .debug_rnglists.
void ReadRangeLists(const CDwarfSession& Session, const CAttribute& Attribute, std::vector<ADDR_RANGE>& aOut) {
  Dwarf_Error Error = nullptr;
  Dwarf_Unsigned Value = 0, NumEntries = 0, GlobalOffset = 0;
  Dwarf_Rnglists_Head pHead = nullptr;
  int Result = Attribute.Form() == DW_FORM_rnglistx ? dwarf_formudata(Attribute.Get(), &Value, &Error)
                                                    : dwarf_global_formref(Attribute.Get(), &Value, &Error);
  if (Result == DW_DLV_OK) {
    Result = dwarf_rnglists_get_rle_head(Attribute.Get(), static_cast<Dwarf_Half>(Attribute.Form()), Value, &pHead,
                                         &NumEntries, &GlobalOffset, &Error);
  }
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_rnglists_get_rle_head", "offset", Value);
  if (Result != DW_DLV_OK) return;
  ReadRangeListEntries(Session, pHead, NumEntries, aOut);
  dwarf_dealloc_rnglists_head(pHead);
}

void ReadLowHigh(const CDwarfSession& Session, const CDie& Die, std::vector<ADDR_RANGE>& aOut) {
  const CAttribute Low(Session, Die, DW_AT_low_pc), High(Session, Die, DW_AT_high_pc);
  if (!Low || !High) return;
  const U32 LowPc = static_cast<U32>(Low.Integer(Session).value_or(NO_LOW_PC));
  const U32 HighValue = static_cast<U32>(High.Integer(Session).value_or(0));
  aOut.push_back({LowPc, High.IsAddress() ? HighValue : LowPc + HighValue});
}

}  // namespace

std::vector<ADDR_RANGE> RangesOf(const DWARF_INFO& Info, U32 Entry) {
  std::vector<ADDR_RANGE> aRanges;
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
  if (!Die) return aRanges;
  const CAttribute Ranges(Info.Session, Die, DW_AT_ranges);
  if (!Ranges) {
    ReadLowHigh(Info.Session, Die, aRanges);
  } else if (Info.Index.UnitOf(Entry).Version >= FIRST_VERSION_WITH_RNGLISTS) {
    ReadRangeLists(Info.Session, Ranges, aRanges);
  } else if (const std::optional<I64> Offset = Ranges.Integer(Info.Session)) {
    ReadRanges(Info.Session, Die, static_cast<U64>(*Offset), Info.Index.UnitOf(Entry).LowPc, aRanges);
  }
  return aRanges;
}
