#include "inspect/inspect.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

static constexpr U32 MAX_SCOPES = 32;  // namespaces and classes around a symbol

std::string QualifiedName(ELF_SYM_HANDLE hSym) {
  const char* sOwn = ELF_GetName(hSym);
  std::string sName = sOwn ? sOwn : "";
  for (U32 i = 0; i < MAX_SCOPES; ++i) {
    const ELF_SYM_HANDLE hClass = ELF_GetContainingClass(hSym);
    const ELF_SYM_HANDLE hScope = hClass ? hClass : ELF_GetContainingNamespace(hSym);
    if (!hScope || hScope == hSym) break;
    const char* sScope = ELF_GetName(hScope);
    if (sScope && *sScope) sName = std::string(sScope) + "::" + sName;
    hSym = hScope;
  }
  return sName;
}
