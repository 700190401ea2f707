#pragma once
// Registers of the system control block and of the debug unit that hold state of their own.

#include "base/types.h"

namespace sim {

// Configuration and control register.
inline constexpr U32 CCR_NONBASETHRDENA = 1u << 0;
inline constexpr U32 CCR_USERSETMPEND = 1u << 1;
inline constexpr U32 CCR_UNALIGN_TRP = 1u << 3;
inline constexpr U32 CCR_DIV_0_TRP = 1u << 4;
inline constexpr U32 CCR_BFHFNMIGN = 1u << 8;
inline constexpr U32 CCR_STKALIGN = 1u << 9;

// System control register.
inline constexpr U32 SCR_SLEEPONEXIT = 1u << 1;
inline constexpr U32 SCR_SEVONPEND = 1u << 4;

// Configurable fault status register.
inline constexpr U32 CFSR_IACCVIOL = 1u << 0;
inline constexpr U32 CFSR_DACCVIOL = 1u << 1;
inline constexpr U32 CFSR_MUNSTKERR = 1u << 3;
inline constexpr U32 CFSR_MSTKERR = 1u << 4;
inline constexpr U32 CFSR_MLSPERR = 1u << 5;
inline constexpr U32 CFSR_MMARVALID = 1u << 7;
inline constexpr U32 CFSR_IBUSERR = 1u << 8;
inline constexpr U32 CFSR_PRECISERR = 1u << 9;
inline constexpr U32 CFSR_IMPRECISERR = 1u << 10;
inline constexpr U32 CFSR_UNSTKERR = 1u << 11;
inline constexpr U32 CFSR_STKERR = 1u << 12;
inline constexpr U32 CFSR_LSPERR = 1u << 13;
inline constexpr U32 CFSR_BFARVALID = 1u << 15;
inline constexpr U32 CFSR_UNDEFINSTR = 1u << 16;
inline constexpr U32 CFSR_INVSTATE = 1u << 17;
inline constexpr U32 CFSR_INVPC = 1u << 18;
inline constexpr U32 CFSR_NOCP = 1u << 19;
inline constexpr U32 CFSR_UNALIGNED = 1u << 24;
inline constexpr U32 CFSR_DIVBYZERO = 1u << 25;

// Hard fault status register.
inline constexpr U32 HFSR_VECTTBL = 1u << 1;
inline constexpr U32 HFSR_FORCED = 1u << 30;
inline constexpr U32 HFSR_DEBUGEVT = 1u << 31;

// Vector catch bits of DEMCR.
inline constexpr U32 DEMCR_VC_CORERESET = 1u << 0;
inline constexpr U32 DEMCR_VC_MMERR = 1u << 4;
inline constexpr U32 DEMCR_VC_NOCPERR = 1u << 5;
inline constexpr U32 DEMCR_VC_CHKERR = 1u << 6;
inline constexpr U32 DEMCR_VC_STATERR = 1u << 7;
inline constexpr U32 DEMCR_VC_BUSERR = 1u << 8;
inline constexpr U32 DEMCR_VC_INTERR = 1u << 9;
inline constexpr U32 DEMCR_VC_HARDERR = 1u << 10;
inline constexpr U32 DEMCR_MON_EN = 1u << 16;
inline constexpr U32 DEMCR_MON_PEND = 1u << 17;

// Auxiliary control register.
inline constexpr U32 ACTLR_DISDEFWBUF = 1u << 1;  // stores wait for the bus

// Debug fault status register.
inline constexpr U32 DFSR_HALTED = 1u << 0;
inline constexpr U32 DFSR_BKPT = 1u << 1;
inline constexpr U32 DFSR_DWTTRAP = 1u << 2;
inline constexpr U32 DFSR_VCATCH = 1u << 3;
inline constexpr U32 DEMCR_TRCENA = 1u << 24;  // trace and data watchpoints are on

struct SCB_REGS {
  U32 VTOR = 0;
  U32 PriGroup = 0;
  U32 SCR = 0;
  U32 CCR = 0;
  U32 CFSR = 0;
  U32 HFSR = 0;
  U32 DFSR = 0;
  U32 MMFAR = 0;
  U32 BFAR = 0;
  U32 CPACR = 0;
  U32 ACTLR = 0;
  U32 DEMCR = 0;
};

}  // namespace sim
