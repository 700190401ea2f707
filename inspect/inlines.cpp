// vexor-inspect inlines: every range of every instance of an inlined function.
#include <cstdio>

#include "inspect/function_rows.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

// The function or instance that the instance stands in; blocks between them do not count.
ELF_SYM_HANDLE Around(ELF_SYM_HANDLE hInstance) {
  ELF_SYM_HANDLE hScope = ELF_GetParent(hInstance);
  while (ELF_GetTag(hScope) == ELF_TAG_LEXICAL_BLOCK) hScope = ELF_GetParent(hScope);
  return hScope;
}

void PrintInstance(ELF_SYM_HANDLE hInstance, const INSPECT_OPTIONS& Options) {
  I64 Line = 0;
  ELF_GetAttrValue(hInstance, ELF_ATTR_CALL_LINE, &Line);
  const char* sFile = ELF_GetDeclFile(hInstance);
  const std::string sCall = std::string(sFile ? sFile : "") + "\t" + std::to_string(Line);
  const std::string sAround = QualifiedName(Around(hInstance));
  for (U32 i = 0; i < ELF_GetNumRanges(hInstance); ++i) {
    const U32 Low = ELF_GetRangeLow(hInstance, i), High = ELF_GetRangeHigh(hInstance, i);
    if (!Options.Covers(Low)) continue;
    std::printf("0x%08x\t0x%08x\t%s\t%s\t%s\n", Low, High, QualifiedName(hInstance).c_str(), sCall.c_str(),
                sAround.c_str());
  }
}

}  // namespace

const char* InspectInlines(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (U32 i = 0; i < ELF_GetNumInlinedFuncs(File.Get()); ++i) {
    const ELF_SYM_HANDLE hInstance = ELF_GetInlinedFunc(File.Get(), i);
    if (!IsInDroppedCode(File.Get(), hInstance)) PrintInstance(hInstance, Options);
  }
  return nullptr;
}
