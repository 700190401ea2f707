// What is known of one symbol.

#include <algorithm>

#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_types.h"

namespace {

constexpr int MAX_SCOPE_DEPTH = 32;  // enclosing classes and namespaces followed for a qualified name

bool IsDebugSymbol(ELF_SYM_HANDLE Sym) {
  return ELF_GetHandleKind(Sym) == ELF_HANDLE_DWARF;
}

// Answer of a query that is remembered for the handle.
template <typename VALUE, typename QUERY>
VALUE Cached(QHash<ELF_SYM_HANDLE, VALUE>& Cache, ELF_SYM_HANDLE Sym, QUERY Query) {
  const auto it = Cache.constFind(Sym);
  if (it != Cache.cend()) return it.value();
  const VALUE Value = Query();
  Cache.insert(Sym, Value);
  return Value;
}

// Class or namespace that a symbol belongs to; none for what is inside a function.
ELF_SYM_HANDLE OwnerOf(ELF_SYM_HANDLE Sym) {
  const U32 Tag = ELF_GetTag(Sym);
  if ((Tag == ELF_TAG_VARIABLE || Tag == ELF_TAG_PARAMETER) && ELF_GetContainingFunc(Sym) != 0) return 0;
  const ELF_SYM_HANDLE Class = ELF_GetContainingClass(Sym);
  return Class != 0 ? Class : ELF_GetContainingNamespace(Sym);
}

bool IsInlineNamespace(ELF_SYM_HANDLE Sym) {
  I64 Value = 0;
  return ELF_GetTag(Sym) == ELF_TAG_NAMESPACE && ELF_GetAttrValue(Sym, ELF_ATTR_EXPORT_SYMBOLS, &Value) == 0 &&
         Value != 0;
}

QString ScopeNameOf(ELF_SYM_HANDLE Sym, bool bInlineToo) {
  QString sScope;
  ELF_SYM_HANDLE Owner = IsDebugSymbol(Sym) ? OwnerOf(Sym) : 0;
  for (int Depth = 0; Owner != 0 && Owner != Sym && Depth < MAX_SCOPE_DEPTH; ++Depth) {
    const QString sName = bInlineToo || !IsInlineNamespace(Owner) ? ELFAPI_GetName(Owner) : QString();
    if (!sName.isEmpty()) sScope = sScope.isEmpty() ? sName : sName + QStringLiteral("::") + sScope;
    const ELF_SYM_HANDLE Next = OwnerOf(Owner);
    if (Next == Owner) break;
    Owner = Next;
  }
  return sScope;
}

U32 AttrU32(ELF_SYM_HANDLE Sym, U32 Attr) {
  I64 Value = 0;
  return ELF_GetAttrValue(Sym, Attr, &Value) == 0 && Value > 0 && Value <= 0xFFFFFFFFll ? static_cast<U32>(Value) : 0;
}

// Location in the file that the reader gives for the symbol; none without line.
CSrcLoc LocFromAttrs(const CDatabaseLock& Db, ELF_SYM_HANDLE Sym, U32 LineAttr, U32 ColumnAttr) {
  const U32 Line = AttrU32(Sym, LineAttr);
  const char* sFile = Line != 0 ? ELF_GetDeclFile(Sym) : nullptr;
  if (!sFile) return {};
  const U32 File = Db->Files.IdOfPath(QString::fromUtf8(sFile));
  return File == INVALID_FILE_ID ? CSrcLoc() : CSrcLoc{File, Line, AttrU32(Sym, ColumnAttr)};
}

// Without the symbols of threads, which have an offset where others have their address.
ELF_SYM_LIST CollectDataSymbols(const ELF_FILE* pElf) {
  constexpr U32 BINDING_LOCAL = 0;
  ELF_SYM_LIST Symbols;
  for (U32 i = 0; i < ELF_GetNumSymbols(pElf); ++i) {
    const ELF_SYM_HANDLE Sym = ELF_GetSymbolHandle(pElf, i);
    const U32 Type = ELF_GetTag(Sym);
    const bool bData = Type == ELF_SYMBOL_NOTYPE || Type == ELF_SYMBOL_OBJECT;
    if (bData && ELF_GetBinding(Sym) != BINDING_LOCAL && ELF_GetSectionIndex(Sym) > 0) Symbols.append(Sym);
  }
  return Symbols;
}

// An alias has its address in the symbol table alone.
U32 AliasAddr(const CDatabaseLock& Db, ELF_SYM_HANDLE Sym) {
  I64 Value = 0;
  const bool bConst = ELF_GetAttrValue(Sym, ELF_ATTR_CONST_VALUE, &Value) == 0;
  const bool bExternal = ELF_GetAttrValue(Sym, ELF_ATTR_EXTERNAL, &Value) == 0 && Value != 0;
  if (bConst || !bExternal || !ELFAPI_GetScopeName(Sym).isEmpty()) return INVALID_ADDR;
  if (!Db->DataSymbols) Db->DataSymbols = CollectDataSymbols(Db->pElf);
  const ELF_SYM_LIST& Found = Db->DataIndex.FindWhole(ELFAPI_GetName(Sym), *Db->DataSymbols);
  return Found.isEmpty() ? INVALID_ADDR : ElfSymbolAddr(Found.first());
}

// Address of a variable that has a fixed one. One that the linker dropped stands at 0, where only few programs have
// data.
U32 VariableAddr(const CDatabaseLock& Db, ELF_SYM_HANDLE Sym) {
  const ELF_SYM_LOC Loc = ELF_GetLocation(Sym, 0);
  if (Loc.Type != ELF_LOC_MEM) return Loc.Type == ELF_LOC_NONE ? AliasAddr(Db, Sym) : INVALID_ADDR;
  const bool bDropped =
      ELF_RelocFromFile(Loc.Addr, 1, 0) == 0 && ELF_FindSymbolAt(Db->pElf, Loc.Addr, ELF_SYMBOL_OBJECT) < 0;
  return bDropped ? INVALID_ADDR : Loc.Addr;
}

}  // namespace

QString ScopeNameWithoutInline(ELF_SYM_HANDLE Sym) {
  return ScopeNameOf(Sym, false);
}

U32 ELFAPI_GetTag(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_GetTag(Sym);
}

QString ELFAPI_GetName(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return Cached(Db->Caches.Names, Sym, [Sym] { return QString::fromUtf8(ELF_GetName(Sym)); });
}

QString ELFAPI_GetQualifiedName(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  const QString sScope = ELFAPI_GetScopeName(Sym);
  return sScope.isEmpty() ? ELFAPI_GetName(Sym) : sScope + QStringLiteral("::") + ELFAPI_GetName(Sym);
}

QString ELFAPI_GetScopeName(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return Cached(Db->Caches.ScopeNames, Sym, [Sym] { return ScopeNameOf(Sym, true); });
}

U32 ELFAPI_GetSize(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  if (!IsDebugSymbol(Sym) || !ELFAPI_IsFunction(Sym)) return ELF_GetSize(Sym);
  U32 NumBytes = 0;
  for (const CAddrRange& Range : ELFAPI_GetAddrRanges(Sym)) NumBytes += Range.Size;
  return NumBytes;
}

U32 ELFAPI_GetAddr(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  if (ELFAPI_IsElfSymbol(Sym)) return ElfSymbolAddr(Sym);
  if (ELFAPI_IsFunction(Sym)) {
    const CAddrRange Range = ELFAPI_GetAddrRange(Sym);
    return Range.IsNone() ? INVALID_ADDR : Range.Start;
  }
  return ELFAPI_IsVariable(Sym) ? VariableAddr(Db, Sym) : INVALID_ADDR;
}

CAddrRange ELFAPI_GetAddrRange(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  const QAddrRanges Ranges = CodeRangesOf(Sym);
  return Ranges.isEmpty() ? CAddrRange() : Ranges.first();
}

QAddrRanges ELFAPI_GetAddrRanges(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return Cached(Db->Caches.Ranges, Sym, [Sym] { return MergedRanges(CodeRangesOf(Sym)); });
}

CSrcLoc ELFAPI_GetDeclLoc(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  if (!IsDebugSymbol(Sym)) return {};
  return Cached(Db->Caches.DeclLocs, Sym, [&Db, Sym] {
    // The reader's file of an inlined instance is that of the call.
    const ELF_SYM_HANDLE Declared = ELFAPI_IsInlined(Sym) ? ELF_GetAbstractOrigin(Sym) : Sym;
    return LocFromAttrs(Db, Declared, ELF_ATTR_DECL_LINE, ELF_ATTR_DECL_COLUMN);
  });
}

CSrcLoc ELFAPI_GetCallLoc(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  if (!ELFAPI_IsInlined(Sym)) return {};
  return Cached(Db->Caches.CallLocs, Sym,
                [&Db, Sym] { return LocFromAttrs(Db, Sym, ELF_ATTR_CALL_LINE, ELF_ATTR_CALL_COLUMN); });
}

CSrcLoc ELFAPI_GetLoc(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  const CSrcLoc CallLoc = ELFAPI_GetCallLoc(Sym);
  if (CallLoc.IsValid()) return CallLoc;
  const CSrcLoc DeclLoc = ELFAPI_GetDeclLoc(Sym);
  return DeclLoc.IsValid() ? DeclLoc : ELFAPI_GetFirstSrcLoc(ELFAPI_GetAddr(Sym));
}

ELF_SYM_HANDLE ELFAPI_GetFunctionOf(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_GetContainingFunc(Sym);
}

bool ELFAPI_IsFunction(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  if (!IsDebugSymbol(Sym)) return IsElfFuncSymbol(Sym);
  const U32 Tag = ELF_GetTag(Sym);
  return Tag == ELF_TAG_FUNC || Tag == ELF_TAG_INLINED_FUNC;
}

bool ELFAPI_IsVariable(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  const U32 Tag = ELF_GetTag(Sym);
  if (!IsDebugSymbol(Sym)) return ELFAPI_IsElfSymbol(Sym) && Tag == ELF_SYMBOL_OBJECT;
  return Tag == ELF_TAG_VARIABLE || Tag == ELF_TAG_PARAMETER;
}

bool ELFAPI_IsInlined(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return IsDebugSymbol(Sym) && ELF_GetTag(Sym) == ELF_TAG_INLINED_FUNC;
}

bool ELFAPI_IsElfSymbol(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_GetHandleKind(Sym) == ELF_HANDLE_SYMBOL;
}

bool ELFAPI_IsInFunction(ELF_SYM_HANDLE Func, U32 PC) {
  const CDatabaseLock Db;
  const QAddrRanges Ranges = ELFAPI_GetAddrRanges(Func);
  return std::any_of(Ranges.begin(), Ranges.end(), [PC](const CAddrRange& Range) { return Range.Contains(PC); });
}
