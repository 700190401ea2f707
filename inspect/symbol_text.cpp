#include "inspect/inspect.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_types.h"

namespace {

constexpr U32 MAX_SCOPES = 32;  // namespaces and classes around a symbol

// Places whose short text leaves something out.
std::string ConstantText(const ELF_SYM_LOC& Loc) {
  return "const " + std::to_string(static_cast<I64>(Loc.Value));
}

// A value that stands nowhere but is known.
std::string ValueText(const ELF_SYM_LOC& Loc) {
  if (Loc.BaseType == ELF_LOC_CONST) return ConstantText(Loc);
  const std::string sPlace = PlaceText(ELF_GetInnerLocation(Loc));
  if (Loc.BaseType == ELF_LOC_ENTRY_VALUE) return sPlace;
  return "value " + (sPlace.starts_with('[') ? sPlace.substr(1, sPlace.size() - 2) : sPlace);
}

}  // namespace

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

std::string PlaceText(const ELF_SYM_LOC& Loc) {
  if (Loc.Type == ELF_LOC_CONST) return ConstantText(Loc);
  if (Loc.Type == ELF_LOC_ENTRY_VALUE) return "on entry " + PlaceText(ELF_GetInnerLocation(Loc));
  if (Loc.Type == ELF_LOC_STACK_VALUE) return ValueText(Loc);
  if (Loc.Type != ELF_LOC_MEM && Loc.Type != ELF_LOC_MEM_OFFSET) return ELF_GetLocationText(Loc);
  char sText[16];
  const U32 Offset = Loc.Type == ELF_LOC_MEM_OFFSET ? static_cast<U32>(Loc.Offset) : 0;
  std::snprintf(sText, sizeof sText, "0x%08x", Loc.Addr + Offset);
  return sText;
}
