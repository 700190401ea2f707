#include "shell/expr_symbols.h"

#include "program/database/database.h"
#include "program/database/elfapi_types.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_types.h"

namespace {

bool IsOfKeyword(ELF_SYM_HANDLE Type, const QString& sKeyword) {
  const U32 Tag = ELFAPI_GetTag(Type);
  if (sKeyword == QLatin1String("enum")) return Tag == ELF_TAG_ENUM;
  if (sKeyword == QLatin1String("union")) return Tag == ELF_TAG_UNION;
  return Tag == ELF_TAG_STRUCT || Tag == ELF_TAG_CLASS;
}

// A symbol of a thread has an offset where others have their address.
bool HasAddr(ELF_SYM_HANDLE Symbol) {
  const U32 Type = ELF_GetTag(Symbol);
  const bool bKnown = Type == ELF_SYMBOL_NOTYPE || Type == ELF_SYMBOL_OBJECT || IsElfFuncSymbol(Symbol);
  return bKnown && ELF_GetValue(Symbol) != 0;
}

// An alias has its address in the symbol table alone.
U32 AddrOfSymbol(const QString& sName) {
  constexpr U32 BINDING_LOCAL = 0;
  const CDatabaseLock Db;
  const QByteArray Wanted = sName.toUtf8();
  for (U32 i = 0; i < ELF_GetNumSymbols(Db->pElf); ++i) {
    const ELF_SYM_HANDLE Sym = ELF_GetSymbolHandle(Db->pElf, i);
    const char* sOwn = ELF_GetName(Sym);
    if (sOwn && Wanted == sOwn && ELF_GetBinding(Sym) != BINDING_LOCAL && HasAddr(Sym)) return ElfSymbolAddr(Sym);
  }
  return INVALID_ADDR;
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
  const CDatabaseLock Db;
  const ELF_SYM_HANDLE Type = ELF_GetType(Sym, true);
  return IsReference(Type) ? ELF_GetType(ELF_GetType(Type, false), true) : Type;
}

U32 AddrOf(ELF_SYM_HANDLE Sym) {
  const U32 Addr = ELFAPI_GetAddr(Sym);
  I64 IsExternal = 0;
  const CDatabaseLock Db;
  if (Addr != INVALID_ADDR || ELF_GetAttrValue(Sym, ELF_ATTR_EXTERNAL, &IsExternal) != 0 || !IsExternal) return Addr;
  return AddrOfSymbol(ELFAPI_GetQualifiedName(Sym));
}
