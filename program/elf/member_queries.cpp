// Queries about what classes and functions consist of.
#include <algorithm>
#include <cstring>
#include <span>

#include "program/elf/die_lookup.h"
#include "program/elf/die_types.h"
#include "program/elf/elf_file.h"
#include "program/elf/elf_types.h"
#include "program/elf/handle.h"
#include "program/elf/reader_state.h"

namespace {

using OWNED_LIST = std::vector<DIE_OWNED> DIE_LISTS::*;

// What a list has of one owner, in file order.
std::span<const DIE_OWNED> OwnedBy(const DWARF_INFO& Info, U32 Owner, OWNED_LIST List) {
  struct BY_OWNER {
    bool operator()(const DIE_OWNED& Owned, U32 Number) const { return Owned.Owner < Number; }
    bool operator()(U32 Number, const DIE_OWNED& Owned) const { return Number < Owned.Owner; }
  };
  const std::vector<DIE_OWNED>& aOwned = Info.Lists.*List;
  const auto [First, Last] = std::equal_range(aOwned.begin(), aOwned.end(), Owner, BY_OWNER());
  return {First, Last};
}

ELF_SYM_HANDLE HandleAt(std::span<const DIE_OWNED> aOwned, U32 Index) {
  return Index < aOwned.size() ? DieHandle(aOwned[Index].Entry) : 0;
}

// What a list has of the type of an entry.
std::span<const DIE_OWNED> OwnedByType(ELF_SYM_HANDLE hSym, OWNED_LIST List) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return {};
  return OwnedBy(*pFile->pDwarf, ResolvedType(*pFile->pDwarf, Entry), List);
}

std::vector<U32> LocalsOf(const DWARF_INFO& Info, U32 Func) {
  const CDieLookup Lookup(Info);
  std::vector<U32> aLocals, aDescribed;  // origins of those that are there
  for (const DIE_OWNED& Own : OwnedBy(Info, Func, &DIE_LISTS::aLocals)) aLocals.push_back(Own.Entry);
  const U32 Origin = Lookup.AbstractOrigin(Func);
  if (Origin == 0 || Origin == Func) return aLocals;
  for (const U32 Local : aLocals) aDescribed.push_back(Lookup.AbstractOrigin(Local));
  std::sort(aDescribed.begin(), aDescribed.end());
  for (const DIE_OWNED& Abstract : OwnedBy(Info, Origin, &DIE_LISTS::aLocals)) {
    if (std::binary_search(aDescribed.begin(), aDescribed.end(), Abstract.Entry)) continue;
    const CDie Die = Info.Reader.Load(Info.Index.Ref(Abstract.Entry));
    if (Die && (Die.Has(DW_AT_location) || Die.Has(DW_AT_const_value))) aLocals.push_back(Abstract.Entry);
  }
  return aLocals;
}

// Whoever asks for one local variable asks for all of its function.
const std::vector<U32>& LastLocals(ELF_SYM_HANDLE hFunc) {
  static const std::vector<U32> aNone;
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hFunc, Entry);
  if (!pFile) return aNone;
  if (pFile->hLastLocals != hFunc) pFile->aLastLocals = LocalsOf(*pFile->pDwarf, Entry);
  pFile->hLastLocals = hFunc;
  return pFile->aLastLocals;
}

// A member stands in the list by its declaration.
ELF_SYM_HANDLE MemberHandle(const ELF_FILE& File, const DIE_OWNED& Member) {
  const DWARF_INFO& Info = *File.pDwarf;
  if (const U32 Own = Info.Index.Definition(Member.Entry)) return DieHandle(Own);
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Member.Entry));
  if (!Die || !Die.Has(DW_AT_declaration)) return DieHandle(Member.Entry);
  if (!File.pMemberDefinitions) File.pMemberDefinitions = std::make_unique<CMemberDefinitions>(Info);
  const U32 Definition = File.pMemberDefinitions->Find(Member);
  return DieHandle(Definition ? Definition : Member.Entry);
}

}  // namespace

U32 ELF_GetNumLocals(ELF_SYM_HANDLE hFunc) {
  return static_cast<U32>(LastLocals(hFunc).size());
}
ELF_SYM_HANDLE ELF_GetLocal(ELF_SYM_HANDLE hFunc, U32 Index) {
  const std::vector<U32>& aLocals = LastLocals(hFunc);
  return Index < aLocals.size() ? DieHandle(aLocals[Index]) : 0;
}

U32 ELF_GetNumMembers(ELF_SYM_HANDLE hSym) {
  return static_cast<U32>(OwnedByType(hSym, &DIE_LISTS::aMembers).size());
}
ELF_SYM_HANDLE ELF_GetMember(ELF_SYM_HANDLE hSym, U32 Index) {
  const std::span<const DIE_OWNED> aMembers = OwnedByType(hSym, &DIE_LISTS::aMembers);
  return Index < aMembers.size() ? MemberHandle(*ReaderState().pFile, aMembers[Index]) : 0;
}

I32 ELF_FindMember(ELF_SYM_HANDLE hSym, const char* sName) {
  const std::span<const DIE_OWNED> aMembers = OwnedByType(hSym, &DIE_LISTS::aMembers);
  for (size_t i = 0; i < aMembers.size(); ++i) {
    const char* sMember = ELF_GetName(DieHandle(aMembers[i].Entry));
    if (sMember && sName && std::strcmp(sMember, sName) == 0) return static_cast<I32>(i);
  }
  return -1;
}

U32 ELF_GetNumBases(ELF_SYM_HANDLE hSym) {
  return static_cast<U32>(OwnedByType(hSym, &DIE_LISTS::aBases).size());
}
ELF_SYM_HANDLE ELF_GetBase(ELF_SYM_HANDLE hSym, U32 Index) {
  return HandleAt(OwnedByType(hSym, &DIE_LISTS::aBases), Index);
}
