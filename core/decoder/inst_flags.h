#pragma once

#include "base/types.h"

// What one instruction does, as the decoder classifies it.
enum INST_FLAGS : U32 {
  IF_BRANCH = 1u << 0,         // changes the program flow: any write to the PC, loads and returns included
  IF_DIRECT_BRANCH = 1u << 1,  // is a branch instruction, not a load or data processing with the PC as destination
  IF_CALL = 1u << 2,           // BL, BLX, and BX to a register other than LR
  IF_RETURN = 1u << 3,         // BX LR, POP with PC, LDR PC with base SP
  IF_MEM = 1u << 4,            // accesses memory; also set by IT
  IF_TARGET = 1u << 5,         // Target is valid: a branch target or the address of a literal
  IF_BKPT = 1u << 6,           // BKPT
  IF_SEMIHOST = 1u << 7,       // BKPT 0xAB, a semihosting request
  IF_CONDITIONAL = 1u << 8,    // the condition field is not "none"
  IF_COND_MASK = 0xFu << 9,    // ARM condition code 0 to 14, 15 is none
};
inline constexpr U32 IF_COND_SHIFT = 9;
// The condition field of an instruction that has none.
inline constexpr U32 IF_UNCONDITIONAL = IF_COND_MASK;
