#include "program/database/scope.h"

#include <algorithm>

#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

constexpr int MAX_SCOPES = 256;  // around a local variable
constexpr int MAX_ORIGINS = 8;

}  // namespace

ELF_SYM_LIST OriginsOf(ELF_SYM_HANDLE Sym) {
  ELF_SYM_LIST Origins;
  while (Origins.size() < MAX_ORIGINS) {
    Sym = ELF_GetAbstractOrigin(Sym);
    if (Sym == 0) break;
    Origins.append(Sym);
  }
  return Origins;
}

int ScopeDepth(const SCOPE& Current, ELF_SYM_HANDLE Sym) {
  ELF_SYM_HANDLE Scope = ELF_GetContainingScope(Sym);
  ELF_SYM_HANDLE Func = Scope;
  for (int i = 0; i < MAX_SCOPES && ELF_GetTag(Func) == ELF_TAG_LEXICAL_BLOCK; ++i) Func = ELF_GetContainingScope(Func);
  if (!Current.Origins.contains(Func) && !ELFAPI_IsInFunction(Scope, Current.CurrentPC)) return -1;
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
