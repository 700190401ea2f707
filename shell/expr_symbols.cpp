#include "shell/expr_symbols.h"

#include "program/database/elfapi.h"
#include "program/database/elfapi_types.h"
#include "program/database/name_index.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

bool IsOfKeyword(ELF_SYM_HANDLE Type, const QString& sKeyword) {
  const U32 Tag = ELFAPI_GetTag(Type);
  if (sKeyword == QLatin1String("enum")) return Tag == ELF_TAG_ENUM;
  if (sKeyword == QLatin1String("union")) return Tag == ELF_TAG_UNION;
  return Tag == ELF_TAG_STRUCT || Tag == ELF_TAG_CLASS;
}

}  // namespace

ELF_SYM_HANDLE FindVariable(const QString& sName) {
  const ELF_SYM_HANDLE Found = ELFAPI_FindSymbol(sName, true, true, false, true);
  if (!ELFAPI_IsInlined(Found)) return Found;
  ELF_SYM_LIST Symbols = ELFAPI_FindSymbols(sName, true, false, false, true);
  Symbols.removeIf([](ELF_SYM_HANDLE Sym) { return ELFAPI_IsInlined(Sym) || ELFAPI_GetAddr(Sym) == INVALID_ADDR; });
  return Symbols.isEmpty() ? Found : ELFAPI_GetNearest(Symbols);
}

ELF_SYM_HANDLE FindType(const QString& sName, const QString& sKeyword) {
  ELF_SYM_LIST Types = ELFAPI_FindSymbols(sName, false, false, true, false);
  if (!sKeyword.isEmpty()) Types.removeIf([&](ELF_SYM_HANDLE Type) { return !IsOfKeyword(Type, sKeyword); });
  return ELFAPI_GetNearest(Types);
}

ELF_SYM_HANDLE FindStaticMember(const QString& sName) {
  const SYMBOL_NAME Name(sName);
  if (!Name.HasOwner()) return 0;
  for (const ELF_SYM_HANDLE Member : ELFAPI_GetMembers(FindType(Name.sOwner))) {
    const bool bHasValue = !ELFAPI_GetConstValue(Member).isEmpty() || ELFAPI_GetAddr(Member) != INVALID_ADDR;
    if (bHasValue && ELFAPI_GetName(Member) == Name.sName) return Member;
  }
  return 0;
}

ELF_SYM_HANDLE FindOperand(const QString& sName) {
  ELF_SYM_HANDLE Sym = FindVariable(sName);
  if (Sym == 0) Sym = ELFAPI_FindEnumerator(sName);
  return Sym == 0 ? FindStaticMember(sName) : Sym;
}

bool IsReference(ELF_SYM_HANDLE Type) {
  const U32 Tag = ELFAPI_GetTag(Type);
  return Tag == ELF_TAG_REFERENCE || Tag == ELF_TAG_RVALUE_REFERENCE;
}

ELF_SYM_HANDLE TypeOfValue(ELF_SYM_HANDLE Sym) {
  const ELF_SYM_HANDLE Type = ELFAPI_GetType(Sym);
  return IsReference(Type) ? ELFAPI_GetType(ELFAPI_GetType(Type, false)) : Type;
}
