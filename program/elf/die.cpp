#include "program/elf/die.h"

#include <algorithm>

#include "program/elf/die_index.h"

namespace {

enum class VALUE_KIND { Number, Signed, Constant, Flag, Present, Address, AddressIndex, Offset, UnitReference, None };

VALUE_KIND KindOfForm(U32 Form) {
  switch (Form) {
    case DW_FORM_data1:
    case DW_FORM_data2:
    case DW_FORM_data4:
    case DW_FORM_data8:
    case DW_FORM_udata:
      return VALUE_KIND::Number;
    case DW_FORM_sdata:
      return VALUE_KIND::Signed;
    case DW_FORM_implicit_const:
      return VALUE_KIND::Constant;
    case DW_FORM_flag:
      return VALUE_KIND::Flag;
    case DW_FORM_flag_present:
      return VALUE_KIND::Present;
    case DW_FORM_addr:
      return VALUE_KIND::Address;
    case DW_FORM_addrx:
    case DW_FORM_addrx1:
    case DW_FORM_addrx2:
    case DW_FORM_addrx3:
    case DW_FORM_addrx4:
    case DW_FORM_GNU_addr_index:
      return VALUE_KIND::AddressIndex;
    case DW_FORM_sec_offset:
    case DW_FORM_ref_addr:
      return VALUE_KIND::Offset;
    case DW_FORM_ref1:
    case DW_FORM_ref2:
    case DW_FORM_ref4:
    case DW_FORM_ref8:
    case DW_FORM_ref_udata:
      return VALUE_KIND::UnitReference;
    default:
      return VALUE_KIND::None;
  }
}

bool IsSupplementaryForm(U32 Form) {
  return Form == DW_FORM_ref_sup4 || Form == DW_FORM_ref_sup8 || Form == DW_FORM_strp_sup ||
         Form == DW_FORM_GNU_ref_alt || Form == DW_FORM_GNU_strp_alt;
}

bool IsTextIndexForm(U32 Form) {
  return Form == DW_FORM_strx || (Form >= DW_FORM_strx1 && Form <= DW_FORM_strx4) || Form == DW_FORM_GNU_str_index;
}

bool IsListIndexForm(U32 Form) {
  return Form == DW_FORM_loclistx || Form == DW_FORM_rnglistx;
}

}  // namespace

CDie CDieReader::Load(DIE_REF Ref) const {
  const DWARF_UNIT* pUnit = Index.UnitAt(Ref);
  if (pUnit) return LoadIn(*pUnit, Ref.Offset);
  Sections.Complain("no entry there", "CDieReader::Load", "offset", Ref.Offset);
  return CDie();
}

CDie CDieReader::LoadIn(const DWARF_UNIT& Unit, U32 Offset) const {
  CByteCursor Bytes = Sections.Bytes(Unit.bTypes ? DEBUG_SECTION::Types : DEBUG_SECTION::Info);
  Bytes.Skip(Offset);
  const U64 Code = Bytes.Leb();
  const ABBREV* pAbbrev = Unit.pAbbrevs && Code != 0 ? Unit.pAbbrevs->Find(Code) : nullptr;
  if (pAbbrev && Bytes.Ok()) return CDie(Unit, *pAbbrev, static_cast<U32>(Bytes.Position()));
  Sections.Complain("abbreviation is missing", "CDieReader::Load", "offset", Offset);
  return CDie();
}

const char* CDieReader::Text(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Sections, Die, Attr);
  return Attribute ? Attribute.Text(Sections) : nullptr;
}

std::optional<I64> CDieReader::Integer(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Sections, Die, Attr);
  return Attribute ? Attribute.Integer(Sections) : std::nullopt;
}

std::optional<DIE_REF> CDieReader::Reference(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Sections, Die, Attr);
  if (!Attribute || !Attribute.IsReference()) return std::nullopt;
  const std::optional<I64> Value = Attribute.Integer(Sections);
  if (!Value || *Value < 0 || *Value > 0xFFFFFFFFll) return std::nullopt;
  const bool bSameSection = Attribute.Form() != DW_FORM_ref_addr;
  return DIE_REF{static_cast<U32>(*Value), bSameSection && Die.Unit().bTypes};
}

std::optional<U64> CDieReader::Signature(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Sections, Die, Attr);
  return Attribute ? Attribute.Signature() : std::nullopt;
}

CAttribute::CAttribute(const CDebugSections& Sections, const CDie& Die, U32 Attr) {
  if (!Die.Has(Attr)) return;
  const DWARF_UNIT& Unit = Die.Unit();
  CByteCursor Bytes = Sections.Bytes(Unit.bTypes ? DEBUG_SECTION::Types : DEBUG_SECTION::Info);
  Bytes.Skip(Die.ValuesAt());
  Bytes.Limit(Unit.End - Die.ValuesAt());
  for (const ATTR_SPEC& Spec : Die.Specs()) {
    if (Spec.Attr != Attr) {
      SkipForm(Bytes, Spec.Form, Unit.Sizes);
      continue;
    }
    AttrForm = DirectForm(Bytes, Spec.Form);
    if (AttrForm == DW_FORM_implicit_const) Const = Unit.pAbbrevs->ImplicitConst(Spec);
    Value = Bytes;
    break;
  }
  pUnit = &Unit;
  CByteCursor Whole = Value;
  SkipForm(Whole, AttrForm, Unit.Sizes);
  if (Whole.Ok()) return;
  Complain(Sections, "value is cut off or of an unknown form");
  pUnit = nullptr;
}

void CAttribute::Complain(const CDebugSections& Sections, const char* sWhat) const {
  Sections.Complain(sWhat, "CAttribute", "at_form", AttrForm);
}

bool CAttribute::IsAddress() const {
  const VALUE_KIND Kind = KindOfForm(AttrForm);
  return Kind == VALUE_KIND::Address || Kind == VALUE_KIND::AddressIndex;
}

bool CAttribute::IsReference() const {
  return KindOfForm(AttrForm) == VALUE_KIND::UnitReference || AttrForm == DW_FORM_ref_addr ||
         IsSupplementaryForm(AttrForm);
}

std::optional<U64> CAttribute::Number() const {
  CByteCursor Bytes = Value;
  const I32 Size = FixedFormSize(AttrForm, pUnit->Sizes);
  const U64 Number = Size == FORM_SIZE_VARIES ? Bytes.Leb() : Bytes.UInt(static_cast<U32>(Size));
  return Bytes.Ok() ? std::optional<U64>(Number) : std::nullopt;
}

std::optional<U64> CAttribute::Address(const CDebugSections& Sections) const {
  const std::optional<U64> Index = Number();
  const std::optional<U64> Addr = Index ? AddressPoolOf(Sections, *pUnit).Get(*Index) : std::nullopt;
  if (!Addr) Complain(Sections, "address has no place in its table");
  return Addr;
}

// A reference or the offset in another section, which is not known here.
std::optional<U64> CAttribute::Offset(const CDebugSections& Sections) const {
  std::optional<U64> Offset = Number();
  if (!Offset || AttrForm == DW_FORM_sec_offset) return Offset;
  const bool bInUnit = AttrForm != DW_FORM_ref_addr;
  const U64 Size = Sections.Bytes(bInUnit && pUnit->bTypes ? DEBUG_SECTION::Types : DEBUG_SECTION::Info).Left();
  if (*Offset < Size) *Offset += bInUnit ? pUnit->Offset : 0;
  if (*Offset < Size) return Offset;
  Complain(Sections, "reference leaves its section");
  return std::nullopt;
}

std::optional<I64> CAttribute::Integer(const CDebugSections& Sections) const {
  CByteCursor Bytes = Value;
  std::optional<U64> Result;
  switch (KindOfForm(AttrForm)) {
    case VALUE_KIND::Number:
    case VALUE_KIND::Address:
      Result = Number();
      break;
    case VALUE_KIND::Signed:
      return Bytes.Sleb();
    case VALUE_KIND::Constant:
      return Const;
    case VALUE_KIND::Flag:
      return Bytes.Int<U8>() != 0;
    case VALUE_KIND::Present:
      return 1;
    case VALUE_KIND::AddressIndex:
      Result = Address(Sections);
      break;
    case VALUE_KIND::Offset:
    case VALUE_KIND::UnitReference:
      Result = Offset(Sections);
      break;
    case VALUE_KIND::None:
      if (IsSupplementaryForm(AttrForm)) Complain(Sections, "supplementary files are not supported");
      break;
  }
  return Result ? std::optional<I64>(static_cast<I64>(*Result)) : std::nullopt;
}

std::optional<U64> CAttribute::Index() const {
  const bool bIndex = IsTextIndexForm(AttrForm) || IsListIndexForm(AttrForm);
  return bIndex || KindOfForm(AttrForm) == VALUE_KIND::AddressIndex ? Number() : std::nullopt;
}

const char* CAttribute::TextAt(const CDebugSections& Sections, DEBUG_SECTION Section, U64 Offset) const {
  CByteCursor Bytes = Sections.Bytes(Section);
  Bytes.Skip(Offset);
  Bytes.Limit(std::min<U64>(Bytes.Left(), MAX_NAME_LENGTH));
  const char* sText = Bytes.Text();
  if (!sText) Complain(Sections, "text is too long or lies outside its section");
  return sText;
}

const char* CAttribute::Text(const CDebugSections& Sections) const {
  if (AttrForm == DW_FORM_string) {
    CByteCursor Bytes = Value;
    Bytes.Limit(std::min<U64>(Bytes.Left(), MAX_NAME_LENGTH));
    return Bytes.Text();
  }
  if (AttrForm == DW_FORM_strp) return TextAt(Sections, DEBUG_SECTION::Str, Number().value_or(~0ull));
  if (AttrForm == DW_FORM_line_strp) return TextAt(Sections, DEBUG_SECTION::LineStr, Number().value_or(~0ull));
  if (!IsTextIndexForm(AttrForm)) {
    Complain(Sections, IsSupplementaryForm(AttrForm) ? "supplementary files are not supported" : "form is no text");
    return nullptr;
  }
  CByteCursor Offsets = Sections.Bytes(DEBUG_SECTION::StrOffsets);
  const U64 Index = Number().value_or(~0ull), OffsetSize = pUnit->Sizes.Offset;
  Offsets.Skip(pUnit->StrOffsetsBase);
  Offsets.Skip(Index <= Offsets.Left() ? Index * OffsetSize : Index);
  const U64 Offset = Offsets.UInt(pUnit->Sizes.Offset);
  return TextAt(Sections, DEBUG_SECTION::Str, Offsets.Ok() ? Offset : ~0ull);
}

CByteCursor CAttribute::Block() const {
  CByteCursor Bytes = Value;
  switch (AttrForm) {
    case DW_FORM_block1:
      return Bytes.Take(Bytes.Int<U8>());
    case DW_FORM_block2:
      return Bytes.Take(Bytes.Int<U16>());
    case DW_FORM_block4:
      return Bytes.Take(Bytes.Int<U32>());
    case DW_FORM_block:
    case DW_FORM_exprloc:
      return Bytes.Take(Bytes.Leb());
    case DW_FORM_data16:
      return Bytes.Take(16);
    default:
      return {};
  }
}

std::optional<U64> CAttribute::Signature() const {
  return AttrForm == DW_FORM_ref_sig8 ? Number() : std::nullopt;
}

ADDRESS_POOL AddressPoolOf(const CDebugSections& Sections, const DWARF_UNIT& Unit) {
  const CByteCursor Section = Sections.Bytes(DEBUG_SECTION::Addr);
  const U64 Size = Unit.bAddrBase ? Section.Left() : 0;
  return {Section.Bytes(), Size, Unit.AddrBase, Unit.AddrSize, Section.IsBigEndian()};
}
