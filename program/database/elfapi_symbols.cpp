// Symbols by address and by name.

#include <algorithm>

#include "core/vcore.h"
#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

constexpr U32 ATTR_OBJECT_POINTER = 0x64;  // DW_AT_object_pointer: the parameter "this" of a member function

const QString SCOPE_MARK = QStringLiteral("::");

// Inlined instances first, ELF symbols last, otherwise as found.
void PutInOrder(ELF_SYM_LIST& Symbols) {
  const auto Rank = [](ELF_SYM_HANDLE Sym) { return ELFAPI_IsInlined(Sym) ? 0 : ELFAPI_IsElfSymbol(Sym) ? 2 : 1; };
  std::stable_sort(Symbols.begin(), Symbols.end(),
                   [Rank](ELF_SYM_HANDLE A, ELF_SYM_HANDLE B) { return Rank(A) < Rank(B); });
}

std::optional<U32> AddrKey(ELF_SYM_HANDLE Sym) {
  const U32 Addr = ELFAPI_GetAddr(Sym);
  return Addr == INVALID_ADDR ? std::nullopt : std::optional<U32>(Addr);
}

std::optional<QString> NameKey(ELF_SYM_HANDLE Sym) {
  const bool bIsNamespace = !ELFAPI_IsElfSymbol(Sym) && ELFAPI_GetTag(Sym) == ELF_TAG_NAMESPACE;
  const QString sName = bIsNamespace ? ELFAPI_GetQualifiedName(Sym) : ELFAPI_GetName(Sym);
  return sName.isEmpty() ? std::nullopt : std::optional<QString>(sName);
}

// A user's name, taken apart at its last "::".
struct WANTED_NAME {
  QString sFull;
  QString sOwner;
  QString sName;

  explicit WANTED_NAME(const QString& sText) : sFull(sText) {
    const qsizetype Mark = sText.lastIndexOf(SCOPE_MARK);
    sOwner = Mark < 0 ? QString() : sText.left(Mark);
    sName = Mark < 0 ? sText : sText.mid(Mark + SCOPE_MARK.size());
  }
  bool IsOwnedBy(const QString& sScope) const {
    return sOwner.isEmpty() || sScope == sOwner || sScope.endsWith(SCOPE_MARK + sOwner);
  }
};

void AppendFound(ELF_SYM_LIST& Result, CSymbolIndex<QString>& Index, const ELF_SYM_LIST& Symbols,
                 const WANTED_NAME& Wanted) {
  for (const ELF_SYM_HANDLE Sym : Index.Find(Wanted.sName, Symbols, NameKey)) {
    if (Wanted.IsOwnedBy(ELFAPI_GetScopeName(Sym))) Result.append(Sym);
  }
  // Namespaces stand in the index under their qualified names.
  if (!Wanted.sOwner.isEmpty()) Result += Index.Find(Wanted.sFull, Symbols, NameKey);
}

void AppendLocals(ELF_SYM_LIST& Result, const CDatabaseLock& Db, const WANTED_NAME& Wanted) {
  AppendFound(Result, Db->Scope.Names, Db->Scope.LocalVars, Wanted);
  if (Wanted.sFull != QLatin1String("this")) return;
  const ELF_SYM_HANDLE This = ELF_GetAttrDie(Db->Scope.CurrentFunc, ATTR_OBJECT_POINTER);
  if (This != 0 && !Result.contains(This)) Result.append(This);
}

// Start of the innermost block around a local variable that covers the PC; a later start is deeper. -1 if none does.
I64 ScopeStart(ELF_SYM_HANDLE Sym, U32 PC) {
  const ELF_SYM_HANDLE Scope = ELF_GetContainingScope(Sym);
  I64 Start = -1;
  for (const CAddrRange& Range : ELFAPI_GetAddrRanges(Scope)) {
    if (Range.Contains(PC)) Start = Range.Start;
  }
  return Start;
}

void PutInScopeFirst(ELF_SYM_LIST& Symbols, U32 PC) {
  std::stable_sort(Symbols.begin(), Symbols.end(),
                   [PC](ELF_SYM_HANDLE A, ELF_SYM_HANDLE B) { return ScopeStart(A, PC) > ScopeStart(B, PC); });
}

}  // namespace

ELF_SYM_HANDLE ELFAPI_GetSymbolAt(U32 Addr) {
  const CDatabaseLock Db;
  return Db->Symbols.At(Addr).value(0, 0);
}

QString ELFAPI_GetMappingName(U32 Addr, bool bExact) {
  const CDatabaseLock Db;
  VCORE_REGION Region;
  if (!VCore::GetRegion(VCore::GetRegionAt(Addr), Region) || (bExact && Region.Addr != Addr)) return {};
  // A linker may append "." and a number.
  const QString sName = Region.sName.section(QLatin1Char('.'), 0, 0);
  if (sName == QLatin1String("$t")) return QStringLiteral("$Thumb");
  if (sName == QLatin1String("$a")) return QStringLiteral("$ARM");
  return sName == QLatin1String("$d") ? QStringLiteral("$Data") : QString();
}

ELF_SYM_LIST ELFAPI_GetSymbolsAt(U32 Addr, bool bNamed, bool bLocals) {
  const CDatabaseLock Db;
  ELF_SYM_LIST Result;
  if (bLocals) Result += Db->Scope.Addrs.Find(Addr, Db->Scope.LocalVars, AddrKey);
  if (bNamed) Result += Db->NamedAddrs.Find(Addr, Db->NamedSymbols, AddrKey);
  Result += Db->Symbols.At(Addr);
  PutInOrder(Result);
  return Result;
}

ELF_SYM_HANDLE ELFAPI_FindSymbolAt(U32 Addr) {
  return ELFAPI_GetSymbolsAt(Addr, true, true).value(0, 0);
}

int ELFAPI_ClassifyAddr(U32 Addr) {
  const CDatabaseLock Db;
  const ELF_SYM_HANDLE Sym = ELFAPI_GetSymbolAt(Addr);
  if (ELFAPI_GetMappingName(Addr, false) == QLatin1String("$Data") || ELFAPI_IsVariable(Sym)) return 1;
  const CSrcLoc Loc = ELFAPI_GetSrcLocExact(Addr);
  return Loc.IsValid() && ELFAPI_GetAddrOfLoc(Loc) == Addr ? 0 : -1;
}

ELF_SYM_LIST ELFAPI_FindSymbols(const QString& sName, bool bNamed, bool bLocals, bool bTypes, bool bElfSymbols) {
  const CDatabaseLock Db;
  ELF_SYM_LIST Result;
  const WANTED_NAME Wanted(sName);
  if (Wanted.sName.isEmpty()) return Result;
  if (bLocals) AppendLocals(Result, Db, Wanted);
  if (bNamed) AppendFound(Result, Db->NamedIndex, Db->NamedSymbols, Wanted);
  if (bTypes) AppendFound(Result, Db->TypeIndex, Db->Types, Wanted);
  if (bElfSymbols) AppendFound(Result, Db->ElfIndex, Db->Symbols.AllSymbols(), Wanted);
  PutInOrder(Result);
  return Result;
}

ELF_SYM_HANDLE ELFAPI_FindSymbol(const QString& sName, bool bNamed, bool bLocals, bool bTypes, bool bElfSymbols) {
  const CDatabaseLock Db;
  if (bLocals) {
    ELF_SYM_LIST Locals;
    AppendLocals(Locals, Db, WANTED_NAME(sName));
    PutInScopeFirst(Locals, Db->Scope.CurrentPC);
    if (!Locals.isEmpty()) return Locals.first();
  }
  return ELFAPI_FindSymbols(sName, bNamed, false, bTypes, bElfSymbols).value(0, 0);
}
