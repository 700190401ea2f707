#include "program/elf/die.h"

#include <cstring>

namespace {

enum class VALUE_KIND { Address, Unsigned, Signed, Flag, Offset, None };

VALUE_KIND KindOfForm(U32 Form) {
  switch (Form) {
    case DW_FORM_addr:
    case DW_FORM_addrx:
    case DW_FORM_addrx1:
    case DW_FORM_addrx2:
    case DW_FORM_addrx3:
    case DW_FORM_addrx4:
      return VALUE_KIND::Address;
    case DW_FORM_data1:
    case DW_FORM_data2:
    case DW_FORM_data4:
    case DW_FORM_data8:
    case DW_FORM_udata:
      return VALUE_KIND::Unsigned;
    case DW_FORM_sdata:
    case DW_FORM_implicit_const:
      return VALUE_KIND::Signed;
    case DW_FORM_flag:
    case DW_FORM_flag_present:
      return VALUE_KIND::Flag;
    case DW_FORM_sec_offset:
    case DW_FORM_ref_addr:
    case DW_FORM_ref1:
    case DW_FORM_ref2:
    case DW_FORM_ref4:
    case DW_FORM_ref8:
    case DW_FORM_ref_udata:
      return VALUE_KIND::Offset;
    default:
      return VALUE_KIND::None;
  }
}

}  // namespace

CDie CDieReader::Load(DIE_REF Ref) const {
  if (!Session.Handle()) return CDie();
  Dwarf_Error Error = nullptr;
  Dwarf_Die pDie = nullptr;
  const int Result = dwarf_offdie_b(Session.Handle(), Ref.Offset, !Ref.bTypes, &pDie, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_offdie_b", "offset", Ref.Offset);
  return Result == DW_DLV_OK ? CDie(pDie) : CDie();
}

U32 CDieReader::Offset(const CDie& Die) const {
  Dwarf_Error Error = nullptr;
  Dwarf_Off Offset = 0;
  if (dwarf_dieoffset(Die.Get(), &Offset, &Error) == DW_DLV_ERROR) Session.Report(Error, "dwarf_dieoffset");
  return static_cast<U32>(Offset);
}

U32 CDieReader::Tag(const CDie& Die) const {
  Dwarf_Error Error = nullptr;
  Dwarf_Half Tag = 0;
  if (dwarf_tag(Die.Get(), &Tag, &Error) == DW_DLV_ERROR) Session.Report(Error, "dwarf_tag");
  return Tag;
}

bool CDieReader::Has(const CDie& Die, U32 Attr) const {
  Dwarf_Error Error = nullptr;
  Dwarf_Bool bHas = 0;
  const int Result = dwarf_hasattr(Die.Get(), static_cast<Dwarf_Half>(Attr), &bHas, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_hasattr", "attribute", Attr);
  return Result == DW_DLV_OK && bHas;
}

const char* CDieReader::Text(const CDie& Die, U32 Attr) const {
  Dwarf_Error Error = nullptr;
  char* sText = nullptr;
  const int Result = dwarf_die_text(Die.Get(), static_cast<Dwarf_Half>(Attr), &sText, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_die_text", "attribute", Attr);
  return Result == DW_DLV_OK ? sText : nullptr;
}

std::optional<I64> CDieReader::Integer(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Session, Die, Attr);
  return Attribute ? Attribute.Integer(Session) : std::nullopt;
}

std::optional<DIE_REF> CDieReader::Reference(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Session, Die, Attr);
  if (!Attribute || !Attribute.IsReference()) return std::nullopt;
  const std::optional<I64> Value = Attribute.Integer(Session);
  if (!Value || *Value < 0 || *Value > 0xFFFFFFFFll) return std::nullopt;
  const bool bSameSection = Attribute.Form() != DW_FORM_ref_addr;
  return DIE_REF{static_cast<U32>(*Value), bSameSection && !dwarf_get_die_infotypes_flag(Die.Get())};
}

std::optional<U64> CDieReader::Signature(const CDie& Die, U32 Attr) const {
  const CAttribute Attribute(Session, Die, Attr);
  if (!Attribute || Attribute.Form() != DW_FORM_ref_sig8) return std::nullopt;
  Dwarf_Error Error = nullptr;
  Dwarf_Sig8 Signature;
  const int Result = dwarf_formsig8(Attribute.Get(), &Signature, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_formsig8", "attribute", Attr);
  return Result == DW_DLV_OK ? std::optional<U64>(SignatureValue(Signature)) : std::nullopt;
}

CAttribute::CAttribute(const CDwarfSession& Session, const CDie& Die, U32 Attr) {
  Dwarf_Error Error = nullptr;
  const int Result = dwarf_attr(Die.Get(), static_cast<Dwarf_Half>(Attr), &pAttr, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_attr", "attribute", Attr);
  if (Result != DW_DLV_OK) {
    pAttr = nullptr;
    return;
  }
  Dwarf_Half Form = 0;
  if (dwarf_whatform(pAttr, &Form, &Error) == DW_DLV_ERROR) Session.Report(Error, "dwarf_whatform", "attribute", Attr);
  AttrForm = Form;
}

bool CAttribute::IsAddress() const {
  return KindOfForm(AttrForm) == VALUE_KIND::Address;
}

bool CAttribute::IsReference() const {
  return KindOfForm(AttrForm) == VALUE_KIND::Offset && AttrForm != DW_FORM_sec_offset;
}

std::optional<I64> CAttribute::Integer(const CDwarfSession& Session) const {
  Dwarf_Error Error = nullptr;
  Dwarf_Unsigned Unsigned = 0;
  Dwarf_Signed Signed = 0;
  Dwarf_Bool bFlag = 0;
  int Result = DW_DLV_NO_ENTRY;
  const char* sFunction = "";
  switch (KindOfForm(AttrForm)) {
    case VALUE_KIND::Address:
      sFunction = "dwarf_formaddr";
      Result = dwarf_formaddr(pAttr, &Unsigned, &Error);
      break;
    case VALUE_KIND::Unsigned:
      sFunction = "dwarf_formudata";
      Result = dwarf_formudata(pAttr, &Unsigned, &Error);
      break;
    case VALUE_KIND::Signed:
      sFunction = "dwarf_formsdata";
      Result = dwarf_formsdata(pAttr, &Signed, &Error);
      Unsigned = static_cast<Dwarf_Unsigned>(Signed);
      break;
    case VALUE_KIND::Flag:
      sFunction = "dwarf_formflag";
      Result = dwarf_formflag(pAttr, &bFlag, &Error);
      Unsigned = bFlag ? 1 : 0;
      break;
    case VALUE_KIND::Offset:
      sFunction = "dwarf_global_formref";
      Result = dwarf_global_formref(pAttr, &Unsigned, &Error);
      break;
    case VALUE_KIND::None:
      break;
  }
  if (Result == DW_DLV_ERROR) Session.Report(Error, sFunction, "at_form", AttrForm);
  return Result == DW_DLV_OK ? std::optional<I64>(static_cast<I64>(Unsigned)) : std::nullopt;
}

U64 SignatureValue(const Dwarf_Sig8& Signature) {
  U64 Value;
  static_assert(sizeof(Value) == sizeof(Signature.signature));
  std::memcpy(&Value, Signature.signature, sizeof(Value));
  return Value;
}
