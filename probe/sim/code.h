#pragma once
// From addresses to predecoded instructions and back.

#include "probe/sim/memory.h"

namespace sim {

inline constexpr U32 EXC_RETURN_FIRST = 0xF0000000;  // branching here in handler mode is an exception return
inline constexpr U32 LOCKUP_PC = 0xFFFFFFFE;

const INST* AtSlow(STATE& S, U32 Addr);
// The instruction at an even address; where nothing can be fetched, one that raises the fault.
inline const INST* At(STATE& S, U32 Addr) {
  return S.Flash.Contains(Addr) ? S.Flash.At(Addr) : AtSlow(S, Addr);
}
U32 AddrOf(const STATE& S, const INST* pI);

// An instruction that raises INVSTATE: the T bit is clear.
const INST* InvalidStateAt(STATE& S, U32 Addr);
const INST* LockupInst(STATE& S);
// One that must not be executed where it stands.
const INST* FetchViolationAt(STATE& S, U32 Addr);

// Decodes the halfword that pI stands for, breakpoints included.
void Decode(STATE& S, const INST* pI);

const INST* ExceptionReturn(STATE& S, U32 ExcReturn);

// BX and every load into the PC: bit 0 becomes the T bit.
inline const INST* BranchExchange(STATE& S, U32 Value) {
  if (Value >= EXC_RETURN_FIRST && S.IsHandlerMode()) return ExceptionReturn(S, Value);
  if (Value & 1) [[likely]]
    return At(S, Value & ~1u);
  return InvalidStateAt(S, Value);
}

}  // namespace sim
