// vexor-inspect variables: the variables outside functions, or, where addresses are picked, those of the functions that
// have code there: one row for each place that a variable takes in turn.
#include <cstdio>

#include "inspect/function_rows.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_types.h"

namespace {

constexpr U32 STEP = 2;  // bytes, the shortest instruction

std::string TextOf(const char* sText) {
  return sText ? sText : "";
}

// Size, type, name, file and line of a variable.
std::string Description(ELF_SYM_HANDLE hVar, const std::string& sName) {
  I64 Line = 0;
  ELF_GetAttrValue(hVar, ELF_ATTR_DECL_LINE, &Line);
  std::string sText = std::to_string(ELF_GetSize(hVar)) + "\t";
  sText += TextOf(ELF_GetTypeName(hVar)) + "\t";
  sText += sName + "\t";
  return sText + TextOf(ELF_GetDeclFile(hVar)) + "\t" + std::to_string(Line);
}

std::string PlaceOf(ELF_SYM_HANDLE hVar, U32 PC) {
  const ELF_SYM_LOC Loc = ELF_GetLocation(hVar, PC);
  if (Loc.Type != ELF_LOC_NONE) return PlaceText(Loc);
  I64 Value = 0;
  return ELF_GetAttrValue(hVar, ELF_ATTR_CONST_VALUE, &Value) == 0 ? "const " + std::to_string(Value) : "-";
}

void PrintGlobals(const ELF_FILE* pFile) {
  for (U32 i = 0; i < ELF_GetNumGlobalVars(pFile); ++i) {
    const ELF_SYM_HANDLE hVar = ELF_GetGlobalVar(pFile, i);
    std::printf("%s\t%s\n", PlaceOf(hVar, 0).c_str(), Description(hVar, QualifiedName(hVar)).c_str());
  }
}

void PrintLocal(const std::string& sFunc, ELF_SYM_HANDLE hVar, U32 Low, U32 High) {
  const std::string sDescription = Description(hVar, TextOf(ELF_GetName(hVar)));
  const auto Print = [&](U32 Start, U32 End, const std::string& sPlace) {
    if (sPlace == "-") return;
    std::printf("%s\t%s\t%s\t0x%08x\t0x%08x\n", sPlace.c_str(), sDescription.c_str(), sFunc.c_str(), Start, End);
  };
  U32 Start = Low;
  std::string sPlace = PlaceOf(hVar, Low);
  for (U32 Addr = Low; High - Addr > STEP;) {
    Addr += STEP;
    const std::string sNext = PlaceOf(hVar, Addr);
    if (sNext == sPlace) continue;
    Print(Start, Addr, sPlace);
    Start = Addr;
    sPlace = sNext;
  }
  Print(Start, High, sPlace);
}

void PrintLocals(const ELF_FILE* pFile, ELF_SYM_HANDLE hFunc, const INSPECT_OPTIONS& Options) {
  if (IsInDroppedCode(pFile, hFunc)) return;
  for (U32 i = 0; i < ELF_GetNumRanges(hFunc); ++i) {
    const U32 Low = std::max(ELF_GetRangeLow(hFunc, i), Options.From) & ~1u;
    const U32 High = std::min(ELF_GetRangeHigh(hFunc, i), Options.To);
    if (Low >= High) continue;
    const std::string sFunc = QualifiedName(hFunc);
    for (U32 k = 0; k < ELF_GetNumLocals(hFunc); ++k) PrintLocal(sFunc, ELF_GetLocal(hFunc, k), Low, High);
  }
}

}  // namespace

const char* InspectVariables(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  const ELF_FILE* pFile = File.Get();
  if (!pFile) return FILE_NOT_READ;
  if (!Options.IsPicked()) {
    PrintGlobals(pFile);
    return nullptr;
  }
  for (U32 i = 0; i < ELF_GetNumFunctions(pFile); ++i) PrintLocals(pFile, ELF_GetFunction(pFile, i), Options);
  for (U32 i = 0; i < ELF_GetNumInlinedFuncs(pFile); ++i) PrintLocals(pFile, ELF_GetInlinedFunc(pFile, i), Options);
  return nullptr;
}
