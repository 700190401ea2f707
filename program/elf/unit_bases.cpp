#include "program/elf/unit_bases.h"

namespace {

constexpr U32 FIRST_VERSION_WITH_KINDS = 5;  // of lists: .debug_loclists, .debug_rnglists
constexpr U32 LENGTH_OF_64_BIT_FORMAT = 0xFFFFFFFFu;

std::optional<I64> TopInteger(const DWARF_INFO& Info, U32 Entry, U32 Attr) {
  const CDie Top = Info.Reader.Load(Info.Index.Ref(Info.Index.UnitOf(Entry).TopEntry));
  return Top ? Info.Reader.Integer(Top, Attr) : std::nullopt;
}

// The offset in a section of kinds that the unit's table has for a number.
std::optional<U64> IndexedOffset(const DWARF_INFO& Info, U32 Entry, U32 BaseAttr, const CByteCursor& Section,
                                 U64 Index) {
  const std::optional<I64> Base = TopInteger(Info, Entry, BaseAttr);
  const U8 OffsetSize = OffsetSizeOf(Info, Entry);
  if (!Base || Index > Section.Left() / OffsetSize) return std::nullopt;
  CByteCursor Bytes = Section;
  Bytes.Skip(static_cast<U64>(*Base));
  Bytes.Skip(Index * OffsetSize);
  const U64 Offset = static_cast<U64>(*Base) + Bytes.UInt(OffsetSize);
  return Bytes.Ok() ? std::optional<U64>(Offset) : std::nullopt;
}

}  // namespace

ADDRESS_POOL AddressPoolOf(const DWARF_INFO& Info, U32 Entry) {
  ADDRESS_POOL Pool;
  U32 Size = 0;
  Pool.pSection = Info.Session.Section(".debug_addr", Size);
  Pool.AddrSize = Info.Index.UnitOf(Entry).AddrSize;
  Pool.bBigEndian = Info.Session.IsBigEndian();
  if (!Pool.pSection) return Pool;
  std::optional<I64> Base = TopInteger(Info, Entry, DW_AT_addr_base);
  if (!Base) Base = TopInteger(Info, Entry, DW_AT_GNU_addr_base);
  Pool.Base = static_cast<U64>(Base.value_or(0));
  Pool.Size = Base ? Size : 0;
  return Pool;
}

LIST_CONTEXT ListContextOf(const DWARF_INFO& Info, U32 Entry) {
  const DWARF_UNIT& Unit = Info.Index.UnitOf(Entry);
  return {Unit.LowPc, Unit.AddrSize, AddressPoolOf(Info, Entry)};
}

U8 OffsetSizeOf(const DWARF_INFO& Info, U32 Entry) {
  const DWARF_UNIT& Unit = Info.Index.UnitOf(Entry);
  U32 Size = 0;
  const U8* pSection = Info.Session.Section(Unit.bTypes ? ".debug_types" : ".debug_info", Size);
  CByteCursor Bytes(pSection, Size, Info.Session.IsBigEndian());
  Bytes.Skip(Unit.Offset);
  return Bytes.Int<U32>() == LENGTH_OF_64_BIT_FORMAT ? 8 : 4;
}

CByteCursor ListBytesOf(const DWARF_INFO& Info, U32 Entry, const CAttribute& Attribute, const LIST_SECTIONS& Sections) {
  const bool bKinds = Info.Index.UnitOf(Entry).Version >= FIRST_VERSION_WITH_KINDS;
  U32 Size = 0;
  const U8* pSection = Info.Session.Section(bKinds ? Sections.sKinds : Sections.sPairs, Size);
  CByteCursor Bytes(pSection, Size, Info.Session.IsBigEndian());
  std::optional<U64> Offset;
  if (Attribute.Form() == Sections.IndexForm) {
    Dwarf_Error Error = nullptr;
    Dwarf_Unsigned Index = 0;
    if (dwarf_formudata(Attribute.Get(), &Index, &Error) == DW_DLV_OK) {
      Offset = IndexedOffset(Info, Entry, Sections.BaseAttr, Bytes, Index);
    } else {
      Info.Session.Report(Error, "dwarf_formudata", "at_form", Attribute.Form());
    }
  } else if (const std::optional<I64> Value = Attribute.Integer(Info.Session)) {
    Offset = static_cast<U64>(*Value);
  }
  if (!Offset || *Offset >= Size) return {};
  Bytes.Skip(*Offset);
  return Bytes;
}
