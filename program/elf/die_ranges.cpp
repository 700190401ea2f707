#include "program/elf/die_ranges.h"

#include "base/endian.h"
#include "program/elf/byte_cursor.h"

namespace {

constexpr U32 NO_LOW_PC = INVALID_ADDR;
constexpr U16 FIRST_VERSION_WITH_RNGLISTS = 5;

void AddRange(std::vector<ADDR_RANGE>& aRanges, U64 Low, U64 High) {
  const U32 Low32 = static_cast<U32>(Low), High32 = static_cast<U32>(High);
  if (High32 >= Low32 && High32 != 0) aRanges.push_back({Low32, High32});
}

U64 IndexedAddress(const CDwarfSession& Session, const CDie& Die, U64 Index) {
  Dwarf_Error Error = nullptr;
  Dwarf_Addr Addr = 0;
  const int Result = dwarf_debug_addr_index_to_addr(Die.Get(), Index, &Addr, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_debug_addr_index_to_addr", "index", Index);
  return Result == DW_DLV_OK ? Addr : 0;
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

// Offset in .debug_rnglists of the list that an attribute names.
std::optional<U64> RangeListOffset(const DWARF_INFO& Info, U32 Entry, const CAttribute& Attribute) {
  Dwarf_Error Error = nullptr;
  Dwarf_Unsigned Value = 0;
  if (Attribute.Form() != DW_FORM_rnglistx) {
    const std::optional<I64> Offset = Attribute.Integer(Info.Session);
    return Offset ? std::optional<U64>(static_cast<U64>(*Offset)) : std::nullopt;
  }
  if (dwarf_formudata(Attribute.Get(), &Value, &Error) != DW_DLV_OK) {
    Info.Session.Report(Error, "dwarf_formudata", "at_form", Attribute.Form());
    return std::nullopt;
  }
  const CDie Top = Info.Reader.Load(Info.Index.Ref(Info.Index.UnitOf(Entry).TopEntry));
  const I64 Base = Top ? Info.Reader.Integer(Top, DW_AT_rnglists_base).value_or(-1) : -1;
  U32 Size = 0;
  const U8* pSection = Info.Session.Section(".debug_rnglists", Size);
  if (!pSection || Base < 0 || Base > Size || Value >= (Size - Base) / sizeof(U32)) return std::nullopt;
  return static_cast<U64>(Base) + LoadInt<U32>(pSection + Base + Value * sizeof(U32), Info.Session.IsBigEndian());
}

// Lists of version 5, in .debug_rnglists. They are decoded here because libdwarf 20210528 reads from offsets that a
// damaged file gives without a check.
void ReadRangeList(const DWARF_INFO& Info, U32 Entry, const CDie& Die, const CAttribute& Attribute,
                   std::vector<ADDR_RANGE>& aOut) {
  U32 Size = 0;
  const U8* pSection = Info.Session.Section(".debug_rnglists", Size);
  const std::optional<U64> Offset = RangeListOffset(Info, Entry, Attribute);
  if (!pSection || !Offset || *Offset >= Size) return;
  CByteCursor Bytes(pSection + *Offset, Size - *Offset, Info.Session.IsBigEndian());
  const auto Address = [&] { return Info.Index.UnitOf(Entry).AddrSize == 8 ? Bytes.Int<U64>() : Bytes.Int<U32>(); };
  const auto Indexed = [&] { return IndexedAddress(Info.Session, Die, Bytes.Leb()); };
  U64 Base = Info.Index.UnitOf(Entry).LowPc;
  while (true) {
    const U64 Kind = Bytes.Int<U8>();
    U64 Low = 0, High = 0;
    switch (Kind) {
      case DW_RLE_base_addressx:
        Base = Indexed();
        continue;
      case DW_RLE_base_address:
        Base = Address();
        continue;
      case DW_RLE_startx_endx:
        Low = Indexed();
        High = Indexed();
        break;
      case DW_RLE_startx_length:
        Low = Indexed();
        High = Low + Bytes.Leb();
        break;
      case DW_RLE_offset_pair:
        Low = Base + Bytes.Leb();
        High = Base + Bytes.Leb();
        break;
      case DW_RLE_start_end:
        Low = Address();
        High = Address();
        break;
      case DW_RLE_start_length:
        Low = Address();
        High = Low + Bytes.Leb();
        break;
      default:  // the end of the list, or of the section
        return;
    }
    if (!Bytes.Ok()) return;
    AddRange(aOut, Low, High);
  }
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
    ReadRangeList(Info, Entry, Die, Ranges, aRanges);
  } else if (const std::optional<I64> Offset = Ranges.Integer(Info.Session)) {
    ReadRanges(Info.Session, Die, static_cast<U64>(*Offset), Info.Index.UnitOf(Entry).LowPc, aRanges);
  }
  return aRanges;
}
