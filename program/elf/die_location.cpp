#include "program/elf/die_location.h"

#include "program/elf/bit_field.h"
#include "program/elf/collectors.h"
#include "program/elf/die_lookup.h"
#include "program/elf/die_types.h"
#include "program/elf/location_expr.h"
#include "program/elf/unit_bases.h"

namespace {

U32 AttributeOf(U32 Tag) {
  if (Tag == DW_TAG_member || Tag == DW_TAG_inheritance) return DW_AT_data_member_location;
  return IsFunctionTag(Tag) ? DW_AT_frame_base : DW_AT_location;
}

class CDieExprContext : public IExprContext {
public:
  CDieExprContext(const DWARF_INFO& Info, U32 Owner, U32 PC) : Info(Info), Owner(Owner), PC(PC) {}

  std::optional<U64> IndexedAddress(U64 Index) override { return AddressPoolOf(Info, Owner).Get(Index); }
  ELF_SYM_LOC Cfa() override { return Info.Frames.Cfa(PC); }
  void Complain(const char* sText) override { Info.Sections.SayOnce(sText); }

private:
  const DWARF_INFO& Info;
  U32 Owner;
  U32 PC;
};

bool IsBlockForm(U32 Form) {
  return Form == DW_FORM_exprloc || Form == DW_FORM_block || Form == DW_FORM_block1 || Form == DW_FORM_block2 ||
         Form == DW_FORM_block4;
}

// Offsets of lists have a form of their own since version 4; before, numbers of their size.
bool IsListForm(U32 Form, U32 Version) {
  return Form == DW_FORM_sec_offset || Form == DW_FORM_loclistx ||
         (Version < 4 && (Form == DW_FORM_data4 || Form == DW_FORM_data8));
}

ELF_SYM_LOC InParent(I64 Offset) {
  ELF_SYM_LOC Loc;
  Loc.Type = ELF_LOC_PARENT_LOC;
  Loc.Offset = static_cast<I32>(Offset);
  return Loc;
}

// The attribute of Owner as an expression or a list of them.
ELF_SYM_LOC FromExpr(const DWARF_INFO& Info, U32 Owner, const CDie& Die, U32 Attr, U32 PC) {
  const CAttribute Attribute(Info.Sections, Die, Attr);
  const DWARF_UNIT& Unit = Info.Index.UnitOf(Owner);
  const OPERAND_SIZES Sizes = {Unit.AddrSize, OffsetSizeOf(Info, Owner)};
  CDieExprContext Context(Info, Owner, PC);
  const bool bFrameBase = Attr == DW_AT_frame_base;
  if (IsBlockForm(Attribute.Form())) {
    const std::vector<U8> aExpr = BlockOf(Info, Die, Attr);
    return TranslateExpr({aExpr.data(), aExpr.size(), Info.Sections.IsBigEndian()}, Sizes, bFrameBase, Context);
  }
  if (!IsListForm(Attribute.Form(), Unit.Version) || Attr == DW_AT_data_member_location) return {};
  const CByteCursor List = ListBytesOf(Info, Owner, Attribute, LOCATION_LISTS);
  if (!List.More()) return {};
  const LIST_CONTEXT ListContext = ListContextOf(Info, Owner);
  const CByteCursor Expr = FindLocation({CAddrListReader::LOCATIONS, List, Unit.Version, ListContext}, PC);
  return TranslateExpr(Expr, Sizes, bFrameBase, Context);
}

ELF_SYM_LOC MemberOffset(const DWARF_INFO& Info, U32 Entry) {
  const CDieLookup Lookup(Info);
  if (Lookup.OwnerOf(Entry, DW_AT_data_member_location)) {
    const std::optional<I64> Offset = Lookup.Integer(Entry, DW_AT_data_member_location);
    return Offset ? InParent(*Offset) : ELF_SYM_LOC();
  }
  const U32 Parent = Info.Index.Get(Entry).Parent;
  const bool bInUnion = Parent && Info.Index.Get(Parent).Tag == DW_TAG_union_type;
  if (Lookup.OwnerOf(Entry, DW_AT_data_bit_offset)) return InParent(PlaceOfBits(Info, Entry).Offset);
  return bInUnion ? InParent(0) : ELF_SYM_LOC();
}

}  // namespace

ELF_SYM_LOC LocationOf(const DWARF_INFO& Info, U32 Entry, U32 PC) {
  const U32 Attr = AttributeOf(Info.Index.Get(Entry).Tag);
  ELF_SYM_LOC Loc;
  if (const U32 Owner = CDieLookup(Info).OwnerOf(Entry, Attr)) {
    if (const CDie Die = Info.Reader.Load(Info.Index.Ref(Owner))) Loc = FromExpr(Info, Owner, Die, Attr, PC);
  }
  if (Loc.Type != ELF_LOC_NONE || Attr != DW_AT_data_member_location) return Loc;
  return MemberOffset(Info, Entry);
}
