#pragma once
// Call frame information: where the caller's registers are found. From .debug_frame and, for code that has none there,
// .eh_frame. The rules at the top of elf.h hold here too.

#include "base/elf_sym.h"
#include "program/elf/elf.h"

inline constexpr U32 ELF_CFI_SP = 13;  // DWARF register number, whose row holds the CFA

// Rules at PC for DWARF registers 0 to NumRegs - 1, written to paRegs. The number of rows written, 0 where no frame
// description entry covers PC or the one that does is damaged. An empty record is a rule that this reader does not
// know.
U32 ELF_GetCfiRegs(const ELF_FILE* pFile, U32 PC, U32 NumRegs, ELF_SYM_LOC* paRegs);
// Canonical frame address at PC: a register and an offset; an empty record where none is known.
ELF_SYM_LOC ELF_GetCfa(const ELF_FILE* pFile, U32 PC);
// Greatest distance in bytes that the CFA takes from its register anywhere in the function at PC; -1 without frame
// description entry.
I32 ELF_GetFrameSize(const ELF_FILE* pFile, U32 PC);
