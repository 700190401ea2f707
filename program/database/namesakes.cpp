#include "program/database/namesakes.h"

#include "program/database/scope.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

CNamesakes::CNamesakes(const ELF_SYM_LIST& Symbols) {
  for (const ELF_SYM_HANDLE Sym : Symbols) Enter(Sym);
}

void CNamesakes::Enter(ELF_SYM_HANDLE Sym) {
  const auto PutFirst = [Sym](ELF_SYM_HANDLE& First) {
    if (First == 0) First = Sym;
  };
  const ELF_SYM_LIST Origins = OriginsOf(Sym);
  const ELF_SYM_HANDLE Entry = Origins.isEmpty() ? Sym : Origins.last();
  const ELF_SYM_HANDLE Func = ELF_GetContainingFunc(Entry);
  if (Func != 0 && Func != Entry) {
    PutFirst(m_ByOwner[Func]);
    PutFirst(m_OfFunc);
    return;
  }
  if (const ELF_SYM_HANDLE Unit = ELF_GetCompUnit(Entry)) PutFirst(m_ByOwner[Unit]);
  I64 IsExternal = 0;
  ELF_GetAttrValue(Sym, ELF_ATTR_EXTERNAL, &IsExternal);
  PutFirst(IsExternal ? m_External : m_Static);
}

ELF_SYM_HANDLE CNamesakes::SeenFrom(const SCOPE& Scope) const {
  ELF_SYM_HANDLE Sym = m_ByOwner.value(Scope.CurrentFunc, 0);
  for (qsizetype i = 0; Sym == 0 && i < Scope.Origins.size(); ++i) Sym = m_ByOwner.value(Scope.Origins[i], 0);
  for (const ELF_SYM_HANDLE Next : {m_ByOwner.value(Scope.Unit, 0), m_External, m_Static, m_OfFunc}) {
    if (Sym == 0) Sym = Next;
  }
  return Sym;
}
