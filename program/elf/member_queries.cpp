// Queries about what classes and functions consist of.
#include <algorithm>
#include <cstring>
#include <span>

#include "program/elf/die_types.h"
#include "program/elf/elf_file.h"
#include "program/elf/elf_types.h"
#include "program/elf/handle.h"

namespace {

using OWNED_LIST = std::vector<DIE_OWNED> DIE_LISTS::*;

// What a list has of one owner, in file order. Where the owners are types, the type of the entry is the owner.
std::span<const DIE_OWNED> OwnedBy(ELF_SYM_HANDLE hSym, OWNED_LIST List, bool bOfType) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return {};
  const U32 Owner = bOfType ? ResolvedType(*pFile->pDwarf, Entry) : Entry;
  struct BY_OWNER {
    bool operator()(const DIE_OWNED& Owned, U32 Number) const { return Owned.Owner < Number; }
    bool operator()(U32 Number, const DIE_OWNED& Owned) const { return Number < Owned.Owner; }
  };
  const std::vector<DIE_OWNED>& aOwned = pFile->pDwarf->Lists.*List;
  const auto [First, Last] = std::equal_range(aOwned.begin(), aOwned.end(), Owner, BY_OWNER());
  return {First, Last};
}

ELF_SYM_HANDLE HandleAt(std::span<const DIE_OWNED> aOwned, U32 Index) {
  return Index < aOwned.size() ? DieHandle(aOwned[Index].Entry) : 0;
}

// A member stands in the list by its declaration.
ELF_SYM_HANDLE MemberHandle(ELF_SYM_HANDLE hMember) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hMember, Entry);
  const U32 Definition = pFile ? pFile->pDwarf->Index.Definition(Entry) : 0;
  return Definition ? DieHandle(Definition) : hMember;
}

}  // namespace

U32 ELF_GetNumLocals(ELF_SYM_HANDLE hFunc) {
  return static_cast<U32>(OwnedBy(hFunc, &DIE_LISTS::aLocals, false).size());
}
ELF_SYM_HANDLE ELF_GetLocal(ELF_SYM_HANDLE hFunc, U32 Index) {
  return HandleAt(OwnedBy(hFunc, &DIE_LISTS::aLocals, false), Index);
}

U32 ELF_GetNumMembers(ELF_SYM_HANDLE hSym) {
  return static_cast<U32>(OwnedBy(hSym, &DIE_LISTS::aMembers, true).size());
}
ELF_SYM_HANDLE ELF_GetMember(ELF_SYM_HANDLE hSym, U32 Index) {
  return MemberHandle(HandleAt(OwnedBy(hSym, &DIE_LISTS::aMembers, true), Index));
}

I32 ELF_FindMember(ELF_SYM_HANDLE hSym, const char* sName) {
  const std::span<const DIE_OWNED> aMembers = OwnedBy(hSym, &DIE_LISTS::aMembers, true);
  for (size_t i = 0; i < aMembers.size(); ++i) {
    const char* sMember = ELF_GetName(MemberHandle(DieHandle(aMembers[i].Entry)));
    if (sMember && sName && std::strcmp(sMember, sName) == 0) return static_cast<I32>(i);
  }
  return -1;
}

U32 ELF_GetNumBases(ELF_SYM_HANDLE hSym) {
  return static_cast<U32>(OwnedBy(hSym, &DIE_LISTS::aBases, true).size());
}
ELF_SYM_HANDLE ELF_GetBase(ELF_SYM_HANDLE hSym, U32 Index) {
  return HandleAt(OwnedBy(hSym, &DIE_LISTS::aBases, true), Index);
}
