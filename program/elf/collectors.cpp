#include "program/elf/collectors.h"

#include <cstring>

namespace {

bool IsDefinition(const CDieReader& Reader, const CDie& Die) {
  return !Reader.Has(Die, DW_AT_declaration) && !Reader.Has(Die, DW_AT_artificial);
}

bool HasByteSize(const CDieReader& Reader, const CDie& Die) {
  return Reader.Integer(Die, DW_AT_byte_size).value_or(0) != 0;
}

// The list that wants the entry, null if none does.
std::vector<U32>* ListOf(DWARF_INFO& Info, const CDie& Die, U32 Tag, bool bInFunction) {
  const CDieReader& Reader = Info.Reader;
  const bool bTypeUnit = Info.Index.LastUnit().bTypeUnit;
  DIE_LISTS& Lists = Info.Lists;
  switch (Tag) {
    case DW_TAG_variable:
      return !bTypeUnit && !bInFunction && IsDefinition(Reader, Die) ? &Lists.aGlobalVars : nullptr;
    case DW_TAG_subprogram:
      return !bTypeUnit && IsDefinition(Reader, Die) ? &Lists.aFunctions : nullptr;
    case DW_TAG_inlined_subroutine:
      return !bTypeUnit && IsDefinition(Reader, Die) ? &Lists.aInlinedFuncs : nullptr;
    case DW_TAG_namespace:
      return !bTypeUnit ? &Lists.aNamespaces : nullptr;
    case DW_TAG_typedef:
      return &Lists.aTypes;
    default:
      return IsClassTag(Tag) && IsDefinition(Reader, Die) && HasByteSize(Reader, Die) ? &Lists.aTypes : nullptr;
  }
}

}  // namespace

bool IsFunctionTag(U32 Tag) {
  return Tag == DW_TAG_subprogram || Tag == DW_TAG_inlined_subroutine;
}

bool IsClassTag(U32 Tag) {
  return Tag == DW_TAG_class_type || Tag == DW_TAG_structure_type || Tag == DW_TAG_union_type ||
         Tag == DW_TAG_enumeration_type;
}

bool Collect(DWARF_INFO& Info, const CDie& Die, U32 Entry, U32 Tag, bool bInFunction) {
  if (const std::optional<DIE_REF> Target = Info.Reader.Reference(Die, DW_AT_specification)) {
    Info.Index.SetSpecification(Entry, *Target);
  }
  std::vector<U32>* paList = ListOf(Info, Die, Tag, bInFunction);
  if (!paList) return false;
  paList->push_back(Entry);
  if (const char* sName = Info.Reader.Text(Die, DW_AT_name)) Info.Lists.Names.emplace(Entry, sName);
  return true;
}

namespace {

U32 FindNamedFunc(const DWARF_INFO& Info, const char* sName) {
  for (const U32 Entry : Info.Lists.aFunctions) {
    const auto Name = Info.Lists.Names.find(Entry);
    if (Name != Info.Lists.Names.end() && std::strcmp(Name->second, sName) == 0) return Entry;
  }
  return 0;
}

bool HasCode(const CDieReader& Reader, const CDie& Die) {
  return Reader.Has(Die, DW_AT_low_pc) || Reader.Has(Die, DW_AT_ranges);
}

// The function itself, or the one with code that it is the abstract origin of: a link-time optimiser parts the two.
U32 ConcreteFunc(const DWARF_INFO& Info, U32 Func) {
  const CDie Die = Func ? Info.Reader.Load(Info.Index.Ref(Func)) : CDie();
  if (!Die || HasCode(Info.Reader, Die)) return Func;
  for (const U32 Entry : Info.Lists.aFunctions) {
    if (Info.Lists.Names.count(Entry)) continue;
    const CDie Other = Info.Reader.Load(Info.Index.Ref(Entry));
    const std::optional<DIE_REF> Origin = Other ? Info.Reader.Reference(Other, DW_AT_abstract_origin) : std::nullopt;
    if (Origin && Info.Index.Find(*Origin) == Func && HasCode(Info.Reader, Other)) return Entry;
  }
  return Func;
}

}  // namespace

U32 FindEntryFunc(const DWARF_INFO& Info) {
  for (const U32 Entry : Info.Lists.aFunctions) {
    const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
    if (Die && Info.Reader.Has(Die, DW_AT_main_subprogram)) return Entry;
  }
  return ConcreteFunc(Info, FindNamedFunc(Info, "main"));
}
