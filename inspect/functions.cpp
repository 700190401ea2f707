// vexor-inspect functions: every range of every function with debug information, and the function symbols without.
#include "inspect/function_rows.h"

#include <cstdio>
#include <set>

#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

void AddDebugFunction(const ELF_FILE* pFile, ELF_SYM_HANDLE hFunc, std::vector<FUNCTION_ROW>& aRows) {
  const U32 NumRanges = ELF_GetNumRanges(hFunc);
  if (NumRanges == 0) return;
  const char* sName = ELF_GetName(hFunc);
  const std::string sOwnName = sName ? sName : "";
  const char* sFile = ELF_GetDeclFile(hFunc);
  I64 Line = 0;
  ELF_GetAttrValue(hFunc, ELF_ATTR_DECL_LINE, &Line);
  for (U32 i = 0; i < NumRanges; ++i) {
    const U32 Low = ELF_GetRangeLow(hFunc, i), High = ELF_GetRangeHigh(hFunc, i);
    if (ELF_IsDropped(pFile, Low, High)) continue;
    // Assemblers describe their functions with the Thumb bit in the address.
    aRows.push_back({Low & ~1u, High & ~1u, sOwnName, sFile ? sFile : "", Line});
  }
}

}  // namespace

bool IsInDroppedCode(const ELF_FILE* pFile, ELF_SYM_HANDLE hScope) {
  while (hScope && ELF_GetTag(hScope) != ELF_TAG_FUNC) hScope = ELF_GetParent(hScope);
  const U32 NumRanges = ELF_GetNumRanges(hScope);
  U32 NumDropped = 0;
  while (NumDropped < NumRanges &&
         ELF_IsDropped(pFile, ELF_GetRangeLow(hScope, NumDropped), ELF_GetRangeHigh(hScope, NumDropped))) {
    ++NumDropped;
  }
  return NumRanges != 0 && NumDropped == NumRanges;
}

std::vector<FUNCTION_ROW> FunctionRows(const ELF_FILE* pFile) {
  std::vector<FUNCTION_ROW> aRows;
  for (U32 i = 0; i < ELF_GetNumFunctions(pFile); ++i) AddDebugFunction(pFile, ELF_GetFunction(pFile, i), aRows);
  std::set<U32> Starts;
  for (const FUNCTION_ROW& Row : aRows) Starts.insert(Row.Low);
  for (U32 i = 0; i < ELF_GetNumFuncSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetFuncSymbol(pFile, i);
    const U32 Addr = ELF_GetValue(hSym) & ~1u;
    if (!Starts.count(Addr)) aRows.push_back({Addr, Addr + ELF_GetSize(hSym), ELF_GetName(hSym), "", 0});
  }
  std::stable_sort(aRows.begin(), aRows.end(), [](const auto& A, const auto& B) { return A.Low < B.Low; });
  return aRows;
}

const char* InspectFunctions(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (const FUNCTION_ROW& Row : FunctionRows(File.Get())) {
    if (!Options.Covers(Row.Low)) continue;
    std::printf("0x%08x\t0x%08x\t%s\t%s\t%lld\n", Row.Low, Row.High, Row.sName.c_str(), Row.sFile.c_str(), Row.Line);
  }
  return nullptr;
}
