#pragma once

#include <memory>

#include "program/elf/die_join.h"
#include "program/elf/die_ranges.h"
#include "program/elf/dwarf_info.h"
#include "program/elf/elf_image.h"
#include "program/elf/symbol_table.h"

// One open program file.
struct ELF_FILE {
  bool bLoaded = false;
  CElfImage Image;
  CSymbolTable Symbols;
  std::unique_ptr<DWARF_INFO> pDwarf;      // null where the debug information could not be read
  mutable ELF_SYM_HANDLE hLastRanges = 0;  // entry whose ranges were asked last
  mutable std::vector<ADDR_RANGE> aLastRanges;
  mutable ELF_SYM_HANDLE hLastLocals = 0;  // function whose local variables were asked last
  mutable std::vector<U32> aLastLocals;
  mutable std::unique_ptr<CMemberDefinitions> pMemberDefinitions;  // null until one is asked
};
