// Texts of types.
#include "program/elf/base_type_name.h"
#include "program/elf/die_lookup.h"
#include "program/elf/die_types.h"

namespace {

constexpr size_t MAX_TEXT_SIZE = 511;
constexpr U32 MAX_FUNCTION_LEVELS = 8;  // functions as parameters of functions
constexpr U32 MAX_ENTRIES = 1000;       // of one name; only damaged files have as many

class CTypeText {
public:
  explicit CTypeText(const DWARF_INFO& Info) : Info(Info), Lookup(Info) {}

  std::string Of(U32 Entry, U32 Level = 0) {
    PARTS Parts;
    // A value of an enumeration has the enumeration as its type.
    if (Entry != 0 && Info.Index.Get(Entry).Tag == DW_TAG_enumerator) Entry = Info.Index.Get(Entry).Parent;
    for (U32 Step = 0; Step < MAX_TYPE_STEPS && Entry != 0 && NumEntries < MAX_ENTRIES; ++Step, ++NumEntries) {
      if (!Prepend(Parts, Entry, Level)) break;
      Entry = Lookup.Reference(Entry, DW_AT_type);
    }
    // A plain pointer to void keeps the name that it has itself, too.
    const std::string& sVoid = Parts.sText == "*" ? Parts.sTypedef : Parts.sVoid;
    if (Parts.bOfVoid) Parts.sText = (sVoid.empty() ? "void" : sVoid) + Parts.sText;
    if (Parts.sText.empty()) Parts.sText = Parts.sVoid.empty() ? "void*" : Parts.sVoid;
    return (Parts.bConst ? "const " : "") + std::string(Parts.bVolatile ? "volatile " : "") + Parts.sText;
  }

private:
  struct PARTS {
    std::string sText;
    std::string sTypedef;  // name of the last one passed
    std::string sVoid;     // the same, if nothing but qualifiers stands between it and the end
    bool bOfVoid = false;  // the part in front needs a type, which is void if none follows
    bool bConst = false;
    bool bVolatile = false;
  };

  const DWARF_INFO& Info;
  const CDieLookup Lookup;
  U32 NumEntries = 0;

  std::string NameOf(U32 Entry) const {
    const char* sName = Lookup.Name(Entry);
    const U32 Definition = sName ? 0 : Lookup.Definition(Entry);
    if (Definition) sName = Lookup.Name(Definition);
    return sName ? sName : "";
  }

  static const char* KeywordOf(U32 Tag) {
    if (Tag == DW_TAG_class_type) return "class";
    if (Tag == DW_TAG_structure_type) return "struct";
    return Tag == DW_TAG_union_type ? "union" : "enum";
  }

  static bool EndWith(PARTS& Parts, const std::string& sType) {
    Parts.sText = sType + Parts.sText;
    Parts.bOfVoid = false;
    return false;
  }
  static bool GoOnBehind(PARTS& Parts, const std::string& sDeclarator) {
    Parts.sText = sDeclarator + Parts.sText;
    Parts.bOfVoid = true;
    Parts.sVoid.clear();
    return true;
  }

  std::string MemberPointerText(U32 Entry) const {
    const U32 Class = Lookup.Reference(Entry, DW_AT_containing_type);
    return " " + (Class ? NameOf(Class) : "") + "::*";
  }

  std::string DimensionText(U32 Array) const {
    std::string sText;
    for (const U32 Count : Dimensions(Info, Array)) {
      if (!sText.empty()) sText += "][";
      sText += std::to_string(Count);
    }
    return "[" + sText + "]";
  }

  std::string ParameterText(U32 Func, U32 Level) {
    std::string sText;
    bool bFirst = true;
    for (U32 Child = Info.Index.FirstChild(Func); Child; Child = Info.Index.NextSibling(Child)) {
      if (Info.Index.Get(Child).Tag != DW_TAG_formal_parameter) continue;
      if (Lookup.Integer(Child, DW_AT_artificial).value_or(0)) continue;
      if (Level >= MAX_FUNCTION_LEVELS || NumEntries >= MAX_ENTRIES || sText.size() >= MAX_TEXT_SIZE) break;
      if (!bFirst) sText += ", ";
      bFirst = false;
      sText += Of(Child, Level + 1);
    }
    return "(" + sText + ")";
  }

  // Puts the part of one entry in front. False at the end of the type.
  bool Prepend(PARTS& Parts, U32 Entry, U32 Level) {
    const U32 Tag = Info.Index.Get(Entry).Tag;
    switch (Tag) {
      case DW_TAG_array_type:
        return GoOnBehind(Parts, DimensionText(Entry));
      case DW_TAG_class_type:
      case DW_TAG_structure_type:
      case DW_TAG_union_type:
      case DW_TAG_enumeration_type: {
        const std::string sOwn = NameOf(Entry), sName = sOwn.empty() ? Parts.sTypedef : sOwn;
        return EndWith(Parts, KeywordOf(Tag) + (sName.empty() ? "" : " " + sName));
      }
      case DW_TAG_pointer_type:
        return GoOnBehind(Parts, "*");
      case DW_TAG_reference_type:
        return GoOnBehind(Parts, "&");
      case DW_TAG_rvalue_reference_type:
        return GoOnBehind(Parts, "&&");
      case DW_TAG_ptr_to_member_type:
        return GoOnBehind(Parts, MemberPointerText(Entry));
      case DW_TAG_subroutine_type:
      case DW_TAG_subprogram:
      case DW_TAG_inlined_subroutine:
        return GoOnBehind(Parts, ParameterText(Entry, Level));
      case DW_TAG_typedef:
        Parts.sTypedef = Parts.sVoid = NameOf(Entry);
        return true;
      case DW_TAG_base_type:
        return EndWith(Parts, ShortBaseTypeName(NameOf(Entry)));
      case DW_TAG_unspecified_type: {
        const std::string sName = NameOf(Entry);
        return EndWith(Parts, sName.empty() ? "void" : sName);
      }
      case DW_TAG_const_type:
        Parts.bConst = true;
        return true;
      case DW_TAG_volatile_type:
        Parts.bVolatile = true;
        return true;
      default:
        return true;
    }
  }
};

}  // namespace

std::string TypeText(const DWARF_INFO& Info, U32 Entry) {
  std::string sText = CTypeText(Info).Of(Entry);
  if (IsStaticEntry(Info, Entry)) sText = "static " + sText;
  if (CDieLookup(Info).Integer(Entry, DW_AT_virtuality).value_or(0)) sText = "virtual " + sText;
  if (sText.size() > MAX_TEXT_SIZE) sText.resize(MAX_TEXT_SIZE);
  return sText;
}
