#pragma once

#include "program/database/database.h"

// Abstract entries behind that of a symbol, the one that stands as the source has it last: an inlined instance stands
// in another function, and what was optimized as a whole in no unit of the source.
ELF_SYM_LIST OriginsOf(ELF_SYM_HANDLE Sym);

// Number of scopes around a local variable whose own one covers the current PC: nested blocks may begin at one address.
// -1 if its own does not.
int ScopeDepth(const SCOPE& Current, ELF_SYM_HANDLE Sym);
void PutInnermostFirst(ELF_SYM_LIST& Locals, const SCOPE& Current);
