#pragma once
// The records in which the program file reader, the database and the device layer speak of symbols and their places.

#include <QList>
#include <QMetaType>

#include "base/types.h"

// Handle of a debug or ELF symbol, function, variable, type or compilation unit; 0 is none. 64 bits wide.
using ELF_SYM_HANDLE = U64;
using ELF_SYM_LIST = QList<ELF_SYM_HANDLE>;

enum ELF_SRC_LANG : U32 { ELF_SRC_LANG_UNKNOWN = 0, ELF_SRC_LANG_C = 1, ELF_SRC_LANG_CPP = 2 };

enum ELF_LOC_TYPE : U32 {
  ELF_LOC_NONE = 0,
  ELF_LOC_CONST = 1,           // constant in Value
  ELF_LOC_MEM = 2,             // object at Addr
  ELF_LOC_MEM_OFFSET = 3,      // object at Addr + Offset
  ELF_LOC_REG = 4,             // value is in register Reg
  ELF_LOC_REG_OFFSET = 5,      // value is register Reg + Offset
  ELF_LOC_REG_INDIRECT = 6,    // object at the value of the base location
  ELF_LOC_SP_OFFSET = 7,       // value is SP + Offset
  ELF_LOC_BP_OFFSET = 8,       // value is frame base + Offset
  ELF_LOC_CFA_OFFSET = 9,      // value is CFA + Offset
  ELF_LOC_SP_INDIRECT = 10,    // object at SP + Offset
  ELF_LOC_BP_INDIRECT = 11,    // object at frame base + Offset
  ELF_LOC_CFA_INDIRECT = 12,   // object at CFA + Offset
  ELF_LOC_PARENT_VALUE = 13,   // parent's value + Offset
  ELF_LOC_PARENT_LOC = 14,     // parent's location + Offset: member of a struct
  ELF_LOC_ENTRY_VALUE = 15,    // value the base location had on entry to the function
  ELF_LOC_STACK_VALUE = 16,    // the base location gives the value itself, not the object's place
};

inline constexpr U32 ELF_REG_UNSPECIFIED = 1034;
inline constexpr U32 ELF_REG_SAME_AS_CALLER = 1035;

// Where a symbol's value is found; 40 bytes. Registers are in DWARF numbering. The Base fields hold the inner location
// of the kinds 6, 15 and 16.
struct ELF_SYM_LOC {
  U32 Type = ELF_LOC_NONE;
  U32 Addr = 0;
  U32 Reg = 0;
  I32 Offset = 0;
  U32 BaseType = ELF_LOC_NONE;
  U32 BaseAddr = 0;
  U32 BaseReg = 0;
  I32 BaseOffset = 0;
  U64 Value = 0;

  bool operator==(const ELF_SYM_LOC&) const = default;
};
static_assert(sizeof(ELF_SYM_LOC) == 40);

using ELF_SYM_LOCS = QList<ELF_SYM_LOC>;

Q_DECLARE_METATYPE(ELF_SYM_LOC)
