#pragma once
// From Thumb halfwords to predecoded instructions. Each function fills all of *pI but Addr, which is set already; what
// the core does not know becomes an instruction that raises the fault.

#include "probe/sim/execute.h"

namespace sim {

// True when the halfword begins a 32-bit instruction.
inline bool IsWide(U16 First) {
  return First >= 0xE800;
}

void Decode16(STATE& S, INST* pI, U16 Op);
void Decode32(STATE& S, INST* pI, U16 First, U16 Second);

// Groups of the 32-bit instructions.
void DecodeMultiple(INST* pI, U16 First, U16 Second);
void DecodeDualOrExclusive(INST* pI, U16 First, U16 Second);
void DecodeSingle(INST* pI, U16 First, U16 Second);
void DecodeRegister(const STATE& S, INST* pI, U16 First, U16 Second);
void DecodeMultiply(const STATE& S, INST* pI, U16 First, U16 Second);
void DecodeMultiplyLong(const STATE& S, INST* pI, U16 First, U16 Second);

inline U8 Bits(U32 Value, U32 High, U32 Low) {
  return static_cast<U8>(Value >> Low & ((1u << (High - Low + 1)) - 1));
}
inline bool Bit(U32 Value, U32 Index) {
  return Value >> Index & 1;
}

inline void SetHandler(INST* pI, HANDLER pfRun) {
  pI->pfRun = pI->pfRunIT = pfRun;
}

// Cond is COND_AL for an unconditional branch.
void SetBranch(STATE& S, INST* pI, U32 Cond, U32 Target);

// The form and shift of an operand that is a register shifted by an immediate field.
ALU_FORM SetShift(INST* pI, U32 Type, U32 Num);

}  // namespace sim
