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
const INST* RaiseFetchFault(STATE& S, U32 Addr);
const INST* RaiseSvc(STATE& S, const INST* pI);

// Between two instructions, the next one being pI: advances SysTick, wakes the core, enters what has to be entered.
const INST* ServiceExceptions(STATE& S, const INST* pI);

// Everything to reset values; the first instruction.
const INST* ResetCore(STATE& S);

}  // namespace sim
