// Enumerators by name.

#include <QSet>

#include "program/database/database.h"
#include "program/database/elfapi_types.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

// Those of all enumerations that have a name, their own or a typedef's.
ELF_SYM_LIST CollectEnumerators(const ELF_SYM_LIST& Types) {
  ELF_SYM_LIST Enumerators;
  QSet<ELF_SYM_HANDLE> Known;
  for (const ELF_SYM_HANDLE Named : Types) {
    const ELF_SYM_HANDLE Type = ELFAPI_GetType(Named);
    if (ELFAPI_GetTag(Type) != ELF_TAG_ENUM || Known.contains(Type)) continue;
    Known.insert(Type);
    Enumerators += ELFAPI_GetMembers(Type);
  }
  return Enumerators;
}

}  // namespace

ELF_SYM_HANDLE ELFAPI_FindEnumerator(const QString& sName) {
  const CDatabaseLock Db;
  if (!Db->Enumerators) Db->Enumerators = CollectEnumerators(Db->Types);
  const ELF_SYM_LIST& Found = Db->EnumeratorIndex.Find(SYMBOL_NAME(sName), *Db->Enumerators);
  return Db->EnumeratorIndex.Nearest(Found, Db->Scope);
}
