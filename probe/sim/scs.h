#pragma once
// The private peripheral bus as the core and a debugger see it: system control space, and the debug units behind it.

#include "probe/sim/state.h"

namespace sim {

inline constexpr U32 PPB_START = 0xE0000000;
inline constexpr U32 PPB_SIZE = 0x00100000;

inline bool IsScs(U32 Addr) {
  return Addr - PPB_START < PPB_SIZE;
}
bool IsStir(U32 Addr);  // the software trigger register, which unprivileged code may be allowed to write

// Register access; Addr is aligned to NumBytes. Registers that do not exist read as zero and ignore writes. A
// debugger's reads leave flags alone that reading clears.
U32 ReadScs(STATE& S, U32 Addr, U32 NumBytes, bool bDebugger);
void WriteScs(STATE& S, U32 Addr, U32 NumBytes, U32 Value, bool bDebugger);

void ResetScs(STATE& S);

// Group priority of what runs, with PRIMASK, FAULTMASK and BASEPRI.
int ExecutionPriority(const STATE& S);

}  // namespace sim
