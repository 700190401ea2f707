#pragma once

#include "base/elf_sym.h"

// A place of any type: in memory, in a register, or that value itself; the offset is for types that have one.
inline ELF_SYM_LOC Loc(U32 Type, U64 Place) {
  ELF_SYM_LOC Result;
  Result.Type = Type;
  Result.Addr = Result.Reg = static_cast<U32>(Place);
  Result.Offset = 4;
  Result.Value = Place;
  return Result;
}
