#include "program/elf/unit_bases.h"

namespace {

constexpr U32 FIRST_VERSION_WITH_KINDS = 5;  // of lists: .debug_loclists, .debug_rnglists

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
  return AddressPoolOf(Info.Sections, Info.Index.UnitOf(Entry));
}

LIST_CONTEXT ListContextOf(const DWARF_INFO& Info, U32 Entry) {
  const DWARF_UNIT& Unit = Info.Index.UnitOf(Entry);
  return {Unit.LowPc, Unit.AddrSize, AddressPoolOf(Info, Entry)};
}

U8 OffsetSizeOf(const DWARF_INFO& Info, U32 Entry) {
  return Info.Index.UnitOf(Entry).Sizes.Offset;
}

CByteCursor ListBytesOf(const DWARF_INFO& Info, U32 Entry, const CAttribute& Attribute, const LIST_SECTIONS& Sections) {
  const bool bKinds = Info.Index.UnitOf(Entry).Version >= FIRST_VERSION_WITH_KINDS;
  CByteCursor Bytes = Info.Sections.Bytes(bKinds ? Sections.Kinds : Sections.Pairs);
  std::optional<U64> Offset;
  if (Attribute.Form() == Sections.IndexForm) {
    const std::optional<U64> Index = Attribute.Index();
    if (Index) Offset = IndexedOffset(Info, Entry, Sections.BaseAttr, Bytes, *Index);
  } else if (const std::optional<I64> Value = Attribute.Integer(Info.Sections)) {
    Offset = static_cast<U64>(*Value);
  }
  if (!Offset || *Offset >= Bytes.Left()) return {};
  Bytes.Skip(*Offset);
  return Bytes;
}
