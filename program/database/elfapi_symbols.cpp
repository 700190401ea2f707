// Symbols by address and by name.

#include <algorithm>

#include "core/vcore.h"
#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

constexpr int MAX_SCOPES = 256;  // around a local variable
constexpr int MAX_ORIGINS = 8;   // abstract entries behind a function's own

// Inlined instances first, otherwise as found.
void PutInlinedFirst(ELF_SYM_LIST& Symbols) {
  std::stable_partition(Symbols.begin(), Symbols.end(), ELFAPI_IsInlined);
}

void AppendFound(ELF_SYM_LIST& Result, CNameIndex& Index, const ELF_SYM_LIST& Symbols, const SYMBOL_NAME& Wanted) {
  Result += Index.Find(Wanted, Symbols);
  if (Wanted.HasOwner()) Result += Index.FindWhole(Wanted.sFull, Symbols);
}

// The first of what AppendFound appends.
ELF_SYM_HANDLE FirstFound(CNameIndex& Index, const ELF_SYM_LIST& Symbols, const SYMBOL_NAME& Wanted) {
  const ELF_SYM_HANDLE Found = Index.Find(Wanted, Symbols).value(0, 0);
  return Found != 0 || !Wanted.HasOwner() ? Found : Index.FindWhole(Wanted.sFull, Symbols).value(0, 0);
}

void AppendLocals(ELF_SYM_LIST& Result, const CDatabaseLock& Db, const SYMBOL_NAME& Wanted) {
  if (!Wanted.sOwner.isEmpty()) return;
  AppendFound(Result, Db->Scope.Names, Db->Scope.LocalVars, Wanted);
  if (Wanted.sFull != QLatin1String("this")) return;
  const ELF_SYM_HANDLE This = ELF_GetAttrDie(Db->Scope.CurrentFunc, ELF_ATTR_OBJECT_POINTER);
  if (This != 0 && !Result.contains(This)) Result.append(This);
}

// An abstract entry of the current function: it has the same variables, and no code.
bool IsOriginOf(ELF_SYM_HANDLE Func, ELF_SYM_HANDLE Scope) {
  for (int i = 0; i < MAX_ORIGINS && Func != 0; ++i) {
    Func = ELF_GetAbstractOrigin(Func);
    if (Func != 0 && Func == Scope) return true;
  }
  return false;
}

// Number of scopes around a local variable whose own one covers the current PC: nested blocks may begin at one address.
// -1 if its own does not.
int ScopeDepth(const SCOPE& Current, ELF_SYM_HANDLE Sym) {
  ELF_SYM_HANDLE Scope = ELF_GetContainingScope(Sym);
  ELF_SYM_HANDLE Func = Scope;
  for (int i = 0; i < MAX_SCOPES && ELF_GetTag(Func) == ELF_TAG_LEXICAL_BLOCK; ++i) Func = ELF_GetContainingScope(Func);
  if (!IsOriginOf(Current.CurrentFunc, Func) && !ELFAPI_IsInFunction(Scope, Current.CurrentPC)) return -1;
  int Depth = 0;
  while (Scope != 0 && Depth < MAX_SCOPES) {
    Scope = ELF_GetContainingScope(Scope);
    ++Depth;
  }
  return Depth;
}

void PutInScopeFirst(ELF_SYM_LIST& Symbols, const SCOPE& Current) {
  std::stable_sort(Symbols.begin(), Symbols.end(), [&Current](ELF_SYM_HANDLE A, ELF_SYM_HANDLE B) {
    return ScopeDepth(Current, A) > ScopeDepth(Current, B);
  });
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
    PutInScopeFirst(Locals, Db->Scope);
    if (!Locals.isEmpty() && ScopeDepth(Db->Scope, Locals.first()) >= 0) return Locals.first();
  }
  // Inlined instances stand first among the named symbols.
  ELF_SYM_HANDLE Found = bNamed ? FirstFound(Db->NamedIndex, Db->NamedSymbols, Wanted) : 0;
  if (Found == 0 && bTypes) Found = FirstFound(Db->TypeIndex, Db->Types, Wanted);
  if (Found == 0 && bElfSymbols) Found = FirstFound(Db->ElfIndex, Db->Symbols.AllSymbols(), Wanted);
  // A local of another block is better than nothing.
  return Found == 0 ? Locals.value(0, 0) : Found;
}
