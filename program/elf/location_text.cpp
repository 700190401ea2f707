#include <cstdio>

#include "program/elf/elf_types.h"

namespace {

constexpr size_t TEXT_SIZE = 64;  // bytes, with the terminator
const char NO_TEXT[] = "N/A";

std::string RegisterName(U32 Reg) {
  if (Reg == ELF_REG_UNSPECIFIED) return "unspecified";
  if (Reg == ELF_REG_SAME_AS_CALLER) return "same as caller";
  return "R" + std::to_string(Reg);
}

std::string WithOffset(const std::string& sPlace, I32 Offset) {
  if (Offset == 0) return sPlace;
  const I64 Magnitude = Offset < 0 ? -I64{Offset} : I64{Offset};
  return sPlace + (Offset < 0 ? " - " : " + ") + std::to_string(Magnitude);
}

std::string Bracketed(const std::string& sText) {
  return "[" + sText + "]";
}

std::string HexAddr(U32 Addr) {
  char acText[16];
  std::snprintf(acText, sizeof(acText), "%X", Addr);
  return acText;
}

std::string TextOf(const ELF_SYM_LOC& Loc) {
  switch (Loc.Type) {
    case ELF_LOC_CONST:
      return "const";
    case ELF_LOC_MEM:
      return Bracketed(HexAddr(Loc.Addr));
    case ELF_LOC_MEM_OFFSET:
      return WithOffset(Bracketed(HexAddr(Loc.Addr)), Loc.Offset);
    case ELF_LOC_REG:
      return RegisterName(Loc.Reg);
    case ELF_LOC_REG_OFFSET:
      return WithOffset(RegisterName(Loc.Reg), Loc.Offset);
    case ELF_LOC_REG_INDIRECT:
      if (Loc.Offset == 0) return Bracketed(TextOf(ELF_GetInnerLocation(Loc)));
      return WithOffset(Bracketed("R" + std::to_string(Loc.BaseReg)), Loc.Offset);
    case ELF_LOC_SP_OFFSET:
      return WithOffset("SP", Loc.Offset);
    case ELF_LOC_BP_OFFSET:
      return WithOffset("BP", Loc.Offset);
    case ELF_LOC_CFA_OFFSET:
      return WithOffset("CFA", Loc.Offset);
    case ELF_LOC_SP_INDIRECT:
      return Bracketed(WithOffset("SP", Loc.Offset));
    case ELF_LOC_BP_INDIRECT:
      return Bracketed(WithOffset("BP", Loc.Offset));
    case ELF_LOC_CFA_INDIRECT:
      return Bracketed(WithOffset("CFA", Loc.Offset));
    case ELF_LOC_PARENT_VALUE:
      return WithOffset("Parent value", Loc.Offset);
    case ELF_LOC_PARENT_LOC:
      return WithOffset("Parent loc", Loc.Offset);
    case ELF_LOC_ENTRY_VALUE:
      return (Loc.Offset == 0 ? "?" : TextOf(ELF_GetInnerLocation(Loc))) + " (on entry)";
    default:
      return NO_TEXT;
  }
}

}  // namespace

const char* ELF_GetLocationText(const ELF_SYM_LOC& Loc) {
  thread_local char acText[TEXT_SIZE];
  std::snprintf(acText, sizeof(acText), "%s", TextOf(Loc).c_str());
  return acText;
}
