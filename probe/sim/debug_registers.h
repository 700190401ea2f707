#pragma once
// The registers of the debug units: instrumentation trace, data watchpoints, breakpoints, trace port.

#include "probe/sim/state.h"

namespace sim {

bool IsDebugUnit(U32 Addr);
// A stimulus port, which unprivileged code may use.
bool IsStimulusPort(U32 Addr);

// Addr is a multiple of 4. Units and registers that the core does not have read as zero and ignore writes.
U32 ReadDebugUnit(STATE& S, U32 Addr, bool bDebugger);
// Stimulus ports take writes of 1, 2 or 4 bytes; all other registers words.
void WriteDebugUnit(STATE& S, U32 Addr, U32 NumBytes, U32 Value, bool bDebugger);

// DEMCR has been written.
void UpdateDebugUnits(STATE& S);

}  // namespace sim
