// The function at the current PC and its local variables.

#include "base/msg_flags.h"
#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

constexpr int MAX_BLOCK_DEPTH = 64;  // nested lexical blocks followed

// Variables and parameters below an entry and in the blocks inside it; what is inlined has a scope of its own.
void CollectLocals(ELF_SYM_HANDLE Parent, ELF_SYM_LIST& Locals, int Depth) {
  for (ELF_SYM_HANDLE Child = ELF_GetFirstChild(Parent); Child != 0; Child = ELF_GetNextSibling(Child)) {
    const U32 Tag = ELF_GetTag(Child);
    I64 IsDeclaration = 0;
    if (Tag == ELF_TAG_LEXICAL_BLOCK && Depth < MAX_BLOCK_DEPTH) {
      CollectLocals(Child, Locals, Depth + 1);
    } else if (Tag == ELF_TAG_VARIABLE || Tag == ELF_TAG_PARAMETER) {
      const bool bDeclared = ELF_GetAttrValue(Child, ELF_ATTR_DECLARATION, &IsDeclaration) == 0 && IsDeclaration != 0;
      if (!bDeclared) Locals.append(Child);
    }
  }
}

}  // namespace

void ELFAPI_SetCurrentPC(U32 PC) {
  const CDatabaseLock Db;
  SCOPE& Scope = Db->Scope;
  Scope.CurrentPC = PC;
  Scope.Addrs.Clear();
  const ELF_SYM_HANDLE Func = ELFAPI_GetFuncAt(PC);
  if (Func == Scope.CurrentFunc) return;
  Scope.CurrentFunc = Func;
  Scope.Names.Clear();
  Scope.LocalVars.clear();
  if (!ELFAPI_IsElfSymbol(Func)) CollectLocals(Func, Scope.LocalVars, 0);
}

ELF_SYM_LIST ELFAPI_GetLocalVars(bool bAddrOnly) {
  const CDatabaseLock Db;
  if (!bAddrOnly) return Db->Scope.LocalVars;
  ELF_SYM_LIST Placed;
  for (const ELF_SYM_HANDLE Sym : Db->Scope.LocalVars) {
    if (ELFAPI_GetAddr(Sym) != INVALID_ADDR) Placed.append(Sym);
  }
  return Placed;
}
