#pragma once

#include "base/elf_sym.h"
#include "program/elf/dwarf_info.h"

// Where an entry's value is found at a pc, 0 for any; addresses and pc as the file has them. For a member or base the
// place in the object around it, for a function its frame base.
ELF_SYM_LOC LocationOf(const DWARF_INFO& Info, U32 Entry, U32 PC);
