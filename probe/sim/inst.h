#pragma once
// A predecoded instruction. There is one for each halfword of executable memory, so that stepping to the next
// instruction is an addition and the PC needs not be kept while code runs.

#include "base/types.h"

namespace sim {

struct STATE;
struct INST;

// Runs one instruction and returns the next one.
using HANDLER = const INST* (*)(STATE& S, const INST* pI);

enum INST_FLAGS : U8 {
  INST_IGNORES_IT = 1,       // runs inside an IT block whatever the condition, and does not advance the block
  INST_CONDITIONAL = 0x40,   // a branch whose condition is in Rd
  INST_DOES_NOT_RUN = 0x80,  // stops the core at it, or stands for an address where no instruction can be fetched
};

enum SHIFT_TYPE : U8 { SHIFT_LSL, SHIFT_LSR, SHIFT_ASR, SHIFT_ROR, SHIFT_RRX };

// INST::ShiftN of a data processing instruction with an immediate whose carry is the present one.
inline constexpr U8 CARRY_UNCHANGED = 2;

struct INST {
  HANDLER pfRun;    // outside IT blocks; null until the halfword has been decoded
  HANDLER pfRunIT;  // inside IT blocks, where 16-bit data processing leaves the flags alone
  U32 Imm;
  U32 Addr;
  U8 Rd;
  U8 Rn;
  U8 Rm;
  U8 Ra;
  U8 Halfwords;
  U8 ShiftType;
  U8 ShiftN;
  U8 Flags;
};
static_assert(sizeof(INST) == 32);

inline const INST* Next(const INST* pI) {
  return pI + pI->Halfwords;
}

}  // namespace sim
