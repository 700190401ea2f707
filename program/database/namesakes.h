#pragma once

#include <QHash>

#include "base/elf_sym.h"

struct SCOPE;

// Symbols with one name that are no local variables, by what sees them. A choice takes the same time among many as
// among few.
class CNamesakes {
public:
  CNamesakes() = default;
  explicit CNamesakes(const ELF_SYM_LIST& Symbols);

  // The one that the function of a scope sees: its own types, then what its unit defines, then what any unit may use,
  // and static ones of other units last. The first of several, 0 for none.
  ELF_SYM_HANDLE SeenFrom(const SCOPE& Scope) const;

private:
  void Enter(ELF_SYM_HANDLE Sym);

  QHash<ELF_SYM_HANDLE, ELF_SYM_HANDLE> m_ByOwner;  // the first one of each function, and of each unit
  ELF_SYM_HANDLE m_External = 0;
  ELF_SYM_HANDLE m_Static = 0;
  ELF_SYM_HANDLE m_OfFunc = 0;
};
