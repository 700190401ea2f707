#include "program/elf/collectors.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t MAX_LISTED = 1 << 22;  // entries of a list; a damaged file could have an entry with each byte

bool IsDefinition(const CDieReader& Reader, const CDie& Die) {
  return !Reader.Has(Die, DW_AT_declaration) && !Reader.Has(Die, DW_AT_artificial);
}

bool HasCode(const CDie& Die) {
  return Die.Has(DW_AT_low_pc) || Die.Has(DW_AT_ranges);
}

bool HasPlaceOrValue(const CDie& Die) {
  return Die.Has(DW_AT_location) || Die.Has(DW_AT_const_value);
}

// Functions that a compiler made up count where they have code: a lambda's, constructors of globals.
bool IsFunction(const CDie& Die) {
  return !Die.Has(DW_AT_declaration) && (!Die.Has(DW_AT_artificial) || HasCode(Die));
}

bool HasByteSize(const CDieReader& Reader, const CDie& Die) {
  return Reader.Integer(Die, DW_AT_byte_size).value_or(0) != 0;
}

// A class of no function that may be defined somewhere else.
bool IsOpenDeclaration(const CDie& Die, bool bInFunction) {
  return !bInFunction && Die.Has(DW_AT_declaration) && Die.Has(DW_AT_name) && !Die.Has(DW_AT_signature);
}

// The list that wants the entry, null if none does.
std::vector<U32>* ListOf(DWARF_INFO& Info, const CDie& Die, U32 Tag, bool bInFunction) {
  const CDieReader& Reader = Info.Reader;
  const bool bTypeUnit = Info.Index.CurrentUnit().bTypeUnit;
  DIE_LISTS& Lists = Info.Lists;
  switch (Tag) {
    case DW_TAG_variable:
      return !bTypeUnit && !bInFunction && IsDefinition(Reader, Die) ? &Lists.aGlobalVars : nullptr;
    case DW_TAG_subprogram:
      return !bTypeUnit && IsFunction(Die) ? &Lists.aFunctions : nullptr;
    case DW_TAG_inlined_subroutine:
      return !bTypeUnit && IsDefinition(Reader, Die) ? &Lists.aInlinedFuncs : nullptr;
    case DW_TAG_namespace:
      return !bTypeUnit ? &Lists.aNamespaces : nullptr;
    case DW_TAG_typedef:
      return &Lists.aTypes;
    default:
      if (!IsClassTag(Tag)) return nullptr;
      if (IsOpenDeclaration(Die, bInFunction)) return &Lists.aDeclaredTypes;
      return IsDefinition(Reader, Die) && HasByteSize(Reader, Die) ? &Lists.aTypes : nullptr;
  }
}

bool IsMemberTag(U32 Tag) {
  // Version 5 has static data members as variables.
  return Tag == DW_TAG_member || Tag == DW_TAG_subprogram || Tag == DW_TAG_enumerator || Tag == DW_TAG_variable;
}

// Enters the entry in the list of its class or function. False if it belongs to neither.
bool CollectOwned(DWARF_INFO& Info, const CDie& Die, U32 Entry, U32 Tag, U32 Func) {
  const CDieReader& Reader = Info.Reader;
  const U32 Parent = Info.Index.Get(Entry).Parent;
  const U32 ParentTag = Parent ? Info.Index.Get(Parent).Tag : 0;
  DIE_LISTS& Lists = Info.Lists;
  if (Tag == DW_TAG_inheritance) {
    if (Parent == 0 || Reader.Has(Die, DW_AT_artificial)) return false;
    Lists.aBases.push_back({Parent, Entry});
    return true;
  }
  if (IsMemberTag(Tag) && IsClassTag(ParentTag)) {
    if (Reader.Has(Die, DW_AT_artificial)) return false;
    Lists.aMembers.push_back({Parent, Entry});
    return true;
  }
  const bool bLocal = Tag == DW_TAG_variable || (Tag == DW_TAG_formal_parameter && ParentTag != DW_TAG_subroutine_type);
  if (!bLocal || Func == 0 || Info.Index.CurrentUnit().bTypeUnit || Reader.Has(Die, DW_AT_declaration)) return false;
  Lists.aLocals.push_back({Func, Entry});
  return true;
}

// The first function that is marked as the one of the program, and the first that has its name.
void NoteEntryFunc(DWARF_INFO& Info, const CDie& Die, U32 Entry) {
  DIE_LISTS& Lists = Info.Lists;
  if (Lists.MarkedEntryFunc == 0 && Die.Has(DW_AT_main_subprogram)) Lists.MarkedEntryFunc = Entry;
  if (Lists.NamedEntryFunc != 0 || !Die.Has(DW_AT_name)) return;
  const char* sName = Info.Reader.Text(Die, DW_AT_name);
  if (sName && std::strcmp(sName, "main") == 0) Lists.NamedEntryFunc = Entry;
}

void NoteOrigin(DWARF_INFO& Info, const CDie& Die) {
  if (!Die.Has(DW_AT_abstract_origin) || !HasPlaceOrValue(Die)) return;
  const std::optional<DIE_REF> Origin = Info.Reader.Reference(Die, DW_AT_abstract_origin);
  if (Origin) Info.Lists.aOriginsOfVars.push_back(*Origin);
}

}  // namespace

bool IsFunctionTag(U32 Tag) {
  return Tag == DW_TAG_subprogram || Tag == DW_TAG_inlined_subroutine;
}

bool IsClassTag(U32 Tag) {
  return Tag == DW_TAG_class_type || Tag == DW_TAG_structure_type || Tag == DW_TAG_union_type ||
         Tag == DW_TAG_enumeration_type;
}

bool Collect(DWARF_INFO& Info, const CDie& Die, U32 Entry, U32 Func) {
  const U32 Tag = Die.Tag();
  if (Die.Has(DW_AT_specification)) {
    const std::optional<DIE_REF> Target = Info.Reader.Reference(Die, DW_AT_specification);
    if (Target) Info.Index.SetSpecification(Entry, *Target);
  }
  const bool bOwned = CollectOwned(Info, Die, Entry, Tag, Func);
  std::vector<U32>* paList = ListOf(Info, Die, Tag, Func != 0);
  if (!paList) return bOwned;
  const bool bDeclared = paList == &Info.Lists.aDeclaredTypes;  // only for the walk
  if (paList->size() >= MAX_LISTED) return Info.bListsFull |= !bDeclared, bOwned;
  paList->push_back(Entry);
  if (bDeclared) return bOwned;
  if (Tag == DW_TAG_subprogram) NoteEntryFunc(Info, Die, Entry);
  if (Tag == DW_TAG_variable) NoteOrigin(Info, Die);
  return true;
}

void DropAbstractVars(DWARF_INFO& Info) {
  std::vector<U32> aOrigins;
  for (const DIE_REF& Ref : Info.Lists.aOriginsOfVars) aOrigins.push_back(Info.Index.Find(Ref));
  std::sort(aOrigins.begin(), aOrigins.end());
  std::erase_if(Info.Lists.aGlobalVars, [&](U32 Entry) {
    if (!std::binary_search(aOrigins.begin(), aOrigins.end(), Entry)) return false;
    const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
    return Die && !HasPlaceOrValue(Die);
  });
  Info.Lists.aOriginsOfVars = {};
}

namespace {

// The walk leaves the list nearly sorted: what is out of order lies within one function or class. Only these
// stretches are sorted.
void SortStretches(std::vector<DIE_OWNED>& aOwned) {
  std::vector<U32> aGreatest(aOwned.size());  // owner up to here
  U32 Greatest = 0;
  for (size_t i = 0; i < aOwned.size(); ++i) aGreatest[i] = Greatest = std::max(Greatest, aOwned[i].Owner);
  U32 Least = ~0u;
  size_t End = aOwned.size();
  for (size_t i = aOwned.size(); i-- > 0;) {
    Least = std::min(Least, aOwned[i].Owner);
    if (i > 0 && aGreatest[i - 1] > Least) continue;
    std::sort(aOwned.begin() + static_cast<std::ptrdiff_t>(i), aOwned.begin() + static_cast<std::ptrdiff_t>(End),
              [](const DIE_OWNED& A, const DIE_OWNED& B) {
                return A.Owner != B.Owner ? A.Owner < B.Owner : A.Entry < B.Entry;
              });
    End = i;
  }
}

}  // namespace

void SortOwned(DIE_LISTS& Lists) {
  for (std::vector<DIE_OWNED>* paOwned : {&Lists.aMembers, &Lists.aLocals, &Lists.aBases}) {
    SortStretches(*paOwned);
  }
}

namespace {

// The function itself, or the one with code that it is the abstract origin of: a link-time optimiser parts the two.
U32 ConcreteFunc(const DWARF_INFO& Info, U32 Func) {
  const CDie Die = Func ? Info.Reader.Load(Info.Index.Ref(Func)) : CDie();
  if (!Die || HasCode(Die)) return Func;
  for (const U32 Entry : Info.Lists.aFunctions) {
    const CDie Other = Info.Reader.Load(Info.Index.Ref(Entry));
    const std::optional<DIE_REF> Origin = Other ? Info.Reader.Reference(Other, DW_AT_abstract_origin) : std::nullopt;
    if (Origin && Info.Index.Find(*Origin) == Func && HasCode(Other)) return Entry;
  }
  return Func;
}

}  // namespace

U32 FindEntryFunc(const DWARF_INFO& Info) {
  return Info.Lists.MarkedEntryFunc ? Info.Lists.MarkedEntryFunc : ConcreteFunc(Info, Info.Lists.NamedEntryFunc);
}
