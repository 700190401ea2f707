// The function at the current PC and its local variables.

#include "program/database/scope.h"
#include "program/elf/elf.h"
#include "program/elf/elf_types.h"

void ELFAPI_SetCurrentPC(U32 PC) {
  const CDatabaseLock Db;
  SCOPE& Scope = Db->Scope;
  Scope.CurrentPC = PC;
  Scope.Addrs.Clear();
  const ELF_SYM_HANDLE Func = ELFAPI_GetFuncAt(PC);
  if (Func == Scope.CurrentFunc) return;
  Scope.CurrentFunc = Func;
  Scope.Origins = OriginsOf(Func);
  Scope.Unit = ELF_GetCompUnit(Scope.Origins.isEmpty() ? Func : Scope.Origins.last());
  Scope.Names.Clear();
  Scope.LocalVars.clear();
  for (U32 i = 0; i < ELF_GetNumLocals(Func); ++i) Scope.LocalVars.append(ELF_GetLocal(Func, i));
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
