#pragma once

#include "program/elf/elf.h"

inline constexpr U32 HANDLE_NUMBER_BITS = 26;
inline constexpr U32 MAX_HANDLE_NUMBER = (1u << HANDLE_NUMBER_BITS) - 1;

inline ELF_SYM_HANDLE MakeHandle(ELF_HANDLE_KIND Kind, U32 Number) {
  return static_cast<U64>(ELF_HANDLE_MAGIC) << 32 | static_cast<U32>(Kind) << 29 | Number;
}

// Null unless the handle names a debug information entry of the loaded file, whose number is stored in Entry.
const ELF_FILE* FileOfDie(ELF_SYM_HANDLE hSym, U32& Entry);
// Null unless the handle names an ELF symbol of the loaded file, whose position is stored in Index.
const ELF_FILE* FileOfSymbol(ELF_SYM_HANDLE hSym, U32& Index);
// Handle of an entry number, 0 for number 0.
inline ELF_SYM_HANDLE DieHandle(U32 Entry) {
  return Entry ? MakeHandle(ELF_HANDLE_DWARF, Entry) : 0;
}
