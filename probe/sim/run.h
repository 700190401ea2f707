#pragma once
// The loops that run instructions.

#include "probe/sim/code.h"

namespace sim {

// Runs until a stop or until NumCycles have passed. R[PC] is where it starts and, afterwards, where it stands.
STOP RunCore(STATE& S, U64 NumCycles, const std::atomic<bool>* pStop, bool bSkipFirst);

// One instruction, or the entry of a pending exception.
STOP StepCore(STATE& S);

}  // namespace sim
