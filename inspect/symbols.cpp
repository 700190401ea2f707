// vexor-inspect symbols: the ELF symbols in the order of the file.
#include <cstdio>

#include "inspect/inspect.h"
#include "program/elf/elf.h"

namespace {

// The name of a number, or the number itself where it has none.
template <size_t COUNT>
std::string NameOf(const char* const (&apNames)[COUNT], U32 Number) {
  return Number < COUNT ? apNames[Number] : std::to_string(Number);
}

const char* const apTypes[] = {"NOTYPE", "OBJECT", "FUNC", "SECTION", "FILE", "COMMON", "TLS"};
const char* const apBindings[] = {"LOCAL", "GLOBAL", "WEAK"};

}  // namespace

const char* InspectSymbols(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (U32 i = 0; i < ELF_GetNumSymbols(File.Get()); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(File.Get(), i);
    const U32 Value = ELF_GetValue(hSym);
    const char* sName = ELF_GetName(hSym);
    if (!Options.Covers(Value)) continue;
    std::printf("0x%08x\t%u\t%s\t%s\t%d\t%s\n", Value, ELF_GetSize(hSym), NameOf(apTypes, ELF_GetTag(hSym)).c_str(),
                NameOf(apBindings, ELF_GetBinding(hSym)).c_str(), ELF_GetSectionIndex(hSym), sName ? sName : "");
  }
  return nullptr;
}
