#pragma once

#include <string>
#include <vector>

#include "probe/gdb/target_description.h"

// Part of a register of the protocol.
struct REGISTER_PLACE {
  const GDB_REGISTER* pRegister = nullptr;  // null: the server does not have it
  U32 FirstBit = 0;
  U32 NumBits = 32;
};

// Modes of the cores with banked registers, in the low five bits of CPSR.
enum CPU_MODES : U32 {
  CPU_MODE_USR = 16,
  CPU_MODE_FIQ = 17,
  CPU_MODE_IRQ = 18,
  CPU_MODE_SVC = 19,
  CPU_MODE_ABT = 23,
  CPU_MODE_UND = 27,
  CPU_MODE_SYS = 31,
};
inline constexpr U32 CPU_MODE_MASK = 0x1F;

// Where the registers of the Cortex-M group, by the probe's numbers, are in the protocol. The description has to stay.
REGISTER_PLACE FindCortexMRegister(const TARGET_DESCRIPTION& Description, U32 Index);
// The same for the cores with banked registers, of which the protocol has those of the present mode, and others where
// the server names them.
REGISTER_PLACE FindBankedRegister(const TARGET_DESCRIPTION& Description, U32 Index, U32 Mode);
// R0 to R15 of the present mode.
REGISTER_PLACE FindCoreRegister(const TARGET_DESCRIPTION& Description, U32 Reg);
// True when it depends on the mode where a register is.
bool IsBankedRegister(U32 Index);
// The program status register of either kind of core.
REGISTER_PLACE FindStatusRegister(const TARGET_DESCRIPTION& Description);
