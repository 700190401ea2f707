#pragma once

#include "program/database/database.h"

// Number of scopes around a local variable whose own one covers the current PC: nested blocks may begin at one address.
// -1 if its own does not.
int ScopeDepth(const SCOPE& Current, ELF_SYM_HANDLE Sym);
void PutInnermostFirst(ELF_SYM_LIST& Locals, const SCOPE& Current);

// Of symbols with one name that are no local variables the one that the function at the current PC sees: its own types,
// then what its unit defines, then what any unit may use, and static ones of other units last. The first of several, 0
// for an empty list.
ELF_SYM_HANDLE NearestOf(const ELF_SYM_LIST& Symbols, const SCOPE& Current);
