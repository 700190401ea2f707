#pragma once
// Exception entry and return, fault escalation, lockup and reset.

#include "probe/sim/code.h"

namespace sim {

// Faults of the instruction pI; each returns the first instruction of the handler that is entered.
const INST* RaiseUsageFault(STATE& S, const INST* pI, U32 CfsrBit);
const INST* RaiseAccessFault(STATE& S, const INST* pI);  // as Load or Store left it
const INST* RaiseUnaligned(STATE& S, const INST* pI, U32 Addr);
// A store that failed on the bus: the core has gone on by then, unless its write buffer is off. Null for that: the
// instruction is to be completed, and the fault follows.
const INST* RaiseStoreFault(STATE& S, const INST* pI);
// The floating point context of an interrupted context could not be saved.
const INST* RaiseLazySaveFault(STATE& S, const INST* pI);
// bViolation: memory that must not be executed, rather than memory that does not answer.
const INST* RaiseFetchFault(STATE& S, U32 Addr, bool bViolation);
const INST* RaiseSvc(STATE& S, const INST* pI);
// What a breakpoint at pI and a watch do: they stop the core where a debugger is there, otherwise they are for the
// debug monitor's handler. A breakpoint that this handler cannot have either is a hard fault.
const INST* RaiseBreakEvent(STATE& S, const INST* pI, STOP Reason);
void RaiseWatchEvent(STATE& S);

// Between two instructions, the next one being pI: advances SysTick, wakes the core, enters what has to be entered.
const INST* ServiceExceptions(STATE& S, const INST* pI);

// Whether a non-maskable interrupt is pending and a lockup at the present priority ends for it.
bool CanLeaveLockup(const STATE& S);

// Everything to reset values; the first instruction.
const INST* ResetCore(STATE& S);

}  // namespace sim
