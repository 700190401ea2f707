#include "program/database/scope.h"

#include <algorithm>

#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

constexpr int MAX_SCOPES = 256;  // around a local variable
constexpr int MAX_ORIGINS = 8;   // abstract entries behind a function's own

enum NEARNESS { OF_OTHER_FUNC, OF_OTHER_UNIT, EVERYWHERE, OF_UNIT, OF_FUNC };

// An abstract entry of the current function: it has the same variables, and no code.
bool IsOriginOf(ELF_SYM_HANDLE Func, ELF_SYM_HANDLE Scope) {
  for (int i = 0; i < MAX_ORIGINS && Func != 0; ++i) {
    Func = ELF_GetAbstractOrigin(Func);
    if (Func != 0 && Func == Scope) return true;
  }
  return false;
}

// As the source has it: an inlined instance stands in another function, and what was optimized as a whole in no unit of
// the source.
ELF_SYM_HANDLE EntryOfSource(ELF_SYM_HANDLE Sym) {
  for (int i = 0; i < MAX_ORIGINS; ++i) {
    const ELF_SYM_HANDLE Origin = ELF_GetAbstractOrigin(Sym);
    if (Origin == 0) break;
    Sym = Origin;
  }
  return Sym;
}

NEARNESS NearnessOf(const SCOPE& Current, ELF_SYM_HANDLE CurrentUnit, ELF_SYM_HANDLE Sym) {
  const ELF_SYM_HANDLE Entry = EntryOfSource(Sym);
  const ELF_SYM_HANDLE Func = ELF_GetContainingFunc(Entry);
  if (Func != 0 && Func != Entry) {
    return Func == Current.CurrentFunc || IsOriginOf(Current.CurrentFunc, Func) ? OF_FUNC : OF_OTHER_FUNC;
  }
  if (CurrentUnit != 0 && ELF_GetCompUnit(Entry) == CurrentUnit) return OF_UNIT;
  I64 IsExternal = 0;
  ELF_GetAttrValue(Sym, ELF_ATTR_EXTERNAL, &IsExternal);
  return IsExternal ? EVERYWHERE : OF_OTHER_UNIT;
}

}  // namespace

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

void PutInnermostFirst(ELF_SYM_LIST& Locals, const SCOPE& Current) {
  std::stable_sort(Locals.begin(), Locals.end(), [&Current](ELF_SYM_HANDLE A, ELF_SYM_HANDLE B) {
    return ScopeDepth(Current, A) > ScopeDepth(Current, B);
  });
}

ELF_SYM_HANDLE NearestOf(const ELF_SYM_LIST& Symbols, const SCOPE& Current) {
  if (Symbols.size() < 2) return Symbols.value(0, 0);
  const ELF_SYM_HANDLE Unit = ELF_GetCompUnit(EntryOfSource(Current.CurrentFunc));
  ELF_SYM_HANDLE Nearest = 0;
  int Best = -1;
  for (const ELF_SYM_HANDLE Sym : Symbols) {
    const int Nearness = NearnessOf(Current, Unit, Sym);
    if (Nearness > Best) Nearest = Sym;
    Best = std::max(Best, Nearness);
    if (Best == OF_FUNC) break;
  }
  return Nearest;
}
