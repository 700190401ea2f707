// Symbols by address and by name.

#include <algorithm>

#include "core/vcore.h"
#include "program/database/scope.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

// Inlined instances first, otherwise as found.
void PutInlinedFirst(ELF_SYM_LIST& Symbols) {
  std::stable_partition(Symbols.begin(), Symbols.end(), ELFAPI_IsInlined);
}

void AppendFound(ELF_SYM_LIST& Result, CNameIndex& Index, const ELF_SYM_LIST& Symbols, const SYMBOL_NAME& Wanted) {
  Result += Index.Find(Wanted, Symbols);
  if (Wanted.HasOwner()) Result += Index.FindWhole(Wanted.sFull, Symbols);
}

// The first of what AppendFound appends, or the one that is meant in that scope.
ELF_SYM_HANDLE OneOf(CNameIndex& Index, const ELF_SYM_LIST& Symbols, const SYMBOL_NAME& Wanted, const SCOPE* pScope) {
  const auto Choose = [&Index, pScope](const ELF_SYM_LIST& Found) {
    return pScope ? Index.Nearest(Found, *pScope) : Found.value(0, 0);
  };
  const ELF_SYM_HANDLE Found = Choose(Index.Find(Wanted, Symbols));
  return Found != 0 || !Wanted.HasOwner() ? Found : Choose(Index.FindWhole(Wanted.sFull, Symbols));
}

void AppendLocals(ELF_SYM_LIST& Result, const CDatabaseLock& Db, const SYMBOL_NAME& Wanted) {
  if (!Wanted.sOwner.isEmpty()) return;
  AppendFound(Result, Db->Scope.Names, Db->Scope.LocalVars, Wanted);
  if (Wanted.sFull != QLatin1String("this")) return;
  const ELF_SYM_HANDLE This = ELF_GetAttrDie(Db->Scope.CurrentFunc, ELF_ATTR_OBJECT_POINTER);
  if (This != 0 && !Result.contains(This)) Result.append(This);
}

}  // namespace

ELF_SYM_HANDLE ELFAPI_GetSymbolAt(U32 Addr) {
  const CDatabaseLock Db;
  return Db->Symbols.At(Addr).value(0, 0);
}

QString ELFAPI_GetMappingName(U32 Addr, bool bExact) {
  const CDatabaseLock Db;
  VCORE_REGION Region;
  if (!VCore::FindRegion(Addr, Region) || (bExact && Region.Addr != Addr)) return {};
  // A linker may append "." and a number.
  const QString sName = Region.sName.section(QLatin1Char('.'), 0, 0);
  if (sName == QLatin1String("$t")) return QStringLiteral("$Thumb");
  if (sName == QLatin1String("$a")) return QStringLiteral("$ARM");
  return sName == QLatin1String("$d") ? QStringLiteral("$Data") : QString();
}

ELF_SYM_LIST ELFAPI_GetSymbolsAt(U32 Addr, bool bNamed, bool bLocals) {
  const CDatabaseLock Db;
  ELF_SYM_LIST Result;
  if (bLocals) Result += Db->Scope.Addrs.Find(Addr, Db->Scope.LocalVars);
  if (bNamed) Result += Db->NamedAddrs.Find(Addr, Db->NamedSymbols);
  Result += Db->Symbols.At(Addr);
  PutInlinedFirst(Result);
  return Result;
}

ELF_SYM_HANDLE ELFAPI_FindSymbolAt(U32 Addr) {
  return ELFAPI_GetSymbolsAt(Addr, true, true).value(0, 0);
}

int ELFAPI_ClassifyAddr(U32 Addr) {
  const CDatabaseLock Db;
  const ELF_SYM_LIST Symbols = Db->Symbols.At(Addr);
  const bool bVariable = std::any_of(Symbols.begin(), Symbols.end(), ELFAPI_IsVariable);
  if (bVariable || ELFAPI_GetMappingName(Addr, false) == QLatin1String("$Data")) return 1;
  const CSrcLoc Loc = ELFAPI_GetSrcLocExact(Addr);
  return Loc.IsValid() && ELFAPI_GetAddrOfLoc(Loc) == Addr ? 0 : -1;
}

ELF_SYM_LIST ELFAPI_FindSymbols(const QString& sName, bool bNamed, bool bLocals, bool bTypes, bool bElfSymbols) {
  const CDatabaseLock Db;
  ELF_SYM_LIST Result;
  const SYMBOL_NAME Wanted(sName);
  if (Wanted.sName.isEmpty()) return Result;
  if (bLocals) AppendLocals(Result, Db, Wanted);
  if (bNamed) AppendFound(Result, Db->NamedIndex, Db->NamedSymbols, Wanted);
  if (bTypes) AppendFound(Result, Db->TypeIndex, Db->Types, Wanted);
  if (bElfSymbols) AppendFound(Result, Db->ElfIndex, Db->Symbols.AllSymbols(), Wanted);
  PutInlinedFirst(Result);
  return Result;
}

ELF_SYM_HANDLE ELFAPI_FindSymbol(const QString& sName, bool bNamed, bool bLocals, bool bTypes, bool bElfSymbols) {
  const CDatabaseLock Db;
  const SYMBOL_NAME Wanted(sName);
  if (Wanted.sName.isEmpty()) return 0;
  ELF_SYM_LIST Locals;
  if (bLocals) {
    AppendLocals(Locals, Db, Wanted);
    PutInnermostFirst(Locals, Db->Scope);
    if (!Locals.isEmpty() && ScopeDepth(Db->Scope, Locals.first()) >= 0) return Locals.first();
  }
  const SCOPE* pScope = bLocals ? &Db->Scope : nullptr;
  // Inlined instances stand first among the named symbols.
  ELF_SYM_HANDLE Found = bNamed ? OneOf(Db->NamedIndex, Db->NamedSymbols, Wanted, pScope) : 0;
  if (Found == 0 && bTypes) Found = OneOf(Db->TypeIndex, Db->Types, Wanted, pScope);
  if (Found == 0 && bElfSymbols) Found = OneOf(Db->ElfIndex, Db->Symbols.AllSymbols(), Wanted, nullptr);
  // A local of another block is better than nothing.
  return Found == 0 ? Locals.value(0, 0) : Found;
}

ELF_SYM_HANDLE ELFAPI_GetNearest(const ELF_SYM_LIST& Symbols) {
  const CDatabaseLock Db;
  return CNamesakes(Symbols).SeenFrom(Db->Scope);
}
