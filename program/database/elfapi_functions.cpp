// Functions by address, and the lists of symbols.

#include <algorithm>

#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

constexpr qsizetype MAX_CACHED_ADDRS = 1 << 18;  // traces ask for the same addresses again and again
constexpr int MAX_ORIGINS = 8;                   // from a function to the abstract one behind it

bool HasTag(ELF_SYM_HANDLE Sym, U32 Tag) {
  return ELF_GetHandleKind(Sym) == ELF_HANDLE_DWARF && ELF_GetTag(Sym) == Tag;
}

FUNCS_AT FindFuncsAt(const CDatabaseLock& Db, U32 Addr) {
  const ELF_SYM_LIST Hits = Db->Functions.At(Addr);
  if (Hits.isEmpty()) return {};
  const auto itFunc = std::find_if(Hits.begin(), Hits.end(), [](auto Sym) { return HasTag(Sym, ELF_TAG_FUNC); });
  const ELF_SYM_HANDLE Outer = itFunc != Hits.end() ? *itFunc : Hits.first();
  const auto itInner =
      std::find_if(Hits.rbegin(), Hits.rend(), [](auto Sym) { return HasTag(Sym, ELF_TAG_INLINED_FUNC); });
  return {itInner != Hits.rend() ? *itInner : Outer, Outer};
}

// Of the functions at an address of the line the one whose text the line is: it begins nearest above the line in the
// line's own file. What is inlined where a function begins covers the address of the function's first line, too.
ELF_SYM_HANDLE FuncOfLine(const CDatabaseLock& Db, U32 Addr, const CSrcLoc& Loc) {
  const QList<FILE_INDEX> Files = Db->Files.FindId(Loc.File);
  ELF_SYM_HANDLE Nearest = 0;
  U32 NearestLine = 0;
  for (const ELF_SYM_HANDLE Func : Db->Functions.At(Addr)) {
    const CSrcLoc Decl = ELFAPI_GetDeclLoc(Func);
    if (!Decl.IsValid() || Decl.Line > Loc.Line || Decl.Line < NearestLine) continue;
    if (Decl.File != Db->Files.At(Files.first()).Id) continue;
    Nearest = Func;
    NearestLine = Decl.Line;
  }
  return Nearest != 0 ? Nearest : ELFAPI_GetFuncAt(Addr);
}

}  // namespace

ELF_SYM_HANDLE ELFAPI_GetFuncAt(U32 Addr, bool bOuterOnly) {
  const CDatabaseLock Db;
  auto& Known = Db->Caches.Funcs;
  auto it = Known.constFind(Addr);
  if (it == Known.cend()) {
    if (Known.size() >= MAX_CACHED_ADDRS) Known.clear();
    it = Known.insert(Addr, FindFuncsAt(Db, Addr));
  }
  return bOuterOnly ? it->Outer : it->Inner;
}

ELF_SYM_LIST ELFAPI_GetFuncsAt(U32 Addr) {
  const CDatabaseLock Db;
  return Db->Functions.At(Addr);
}

ELF_SYM_HANDLE ELFAPI_GetFuncOfLoc(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  const U32 Addr = ELFAPI_GetAddrOfLoc(Loc);
  if (Addr != INVALID_ADDR) return FuncOfLine(Db, Addr, Loc);
  const CSrcLoc Prev = ELFAPI_PrevSrcLoc(Loc);
  return Prev.IsValid() ? FuncOfLine(Db, ELFAPI_GetAddrOfLoc(Prev), Prev) : 0;
}

ELF_SYM_LIST ELFAPI_GetFunctions() {
  const CDatabaseLock Db;
  return Db->Functions.Functions();
}

ELF_SYM_LIST ELFAPI_GetNoFileFunctions() {
  const CDatabaseLock Db;
  if (!Db->NoFileFuncs) {
    Db->NoFileFuncs.emplace();
    for (const ELF_SYM_HANDLE Func : Db->Functions.Functions()) {
      const U32 Addr = ELFAPI_GetAddr(Func);
      if (Addr != INVALID_ADDR && Db->FileTree.Find(Addr).isEmpty()) Db->NoFileFuncs->append(Func);
    }
  }
  return *Db->NoFileFuncs;
}

ELF_SYM_LIST ELFAPI_GetGlobalVars() {
  const CDatabaseLock Db;
  return Db->GlobalVars;
}

ELF_SYM_LIST ELFAPI_GetInlinedFuncs(ELF_SYM_HANDLE Func) {
  const CDatabaseLock Db;
  ELF_SYM_LIST Instances = Db->Functions.InstancesOf(Func);
  // The function's own code is a concrete instance of the abstract one, too.
  for (int Depth = 0; Instances.isEmpty() && Depth < MAX_ORIGINS; ++Depth) {
    Func = ELF_GetAbstractOrigin(Func);
    if (Func == 0) break;
    Instances = Db->Functions.InstancesOf(Func);
  }
  return Instances;
}

ELF_SYM_LIST ELFAPI_GetFileFunctions(U32 FileId) {
  const CDatabaseLock Db;
  ELF_SYM_LIST Functions;
  for (const FILE_INDEX File : Db->Files.FindId(FileId)) Functions += Db->FileFuncs.value(File);
  return Functions;
}
