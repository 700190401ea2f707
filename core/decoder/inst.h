#pragma once

#include "core/decoder/disasm.h"

// One instruction on its way through the decoder.
struct INST {
  U32 Word = 0;  // 16-bit Thumb: the halfword; 32-bit Thumb: first halfword in the high half; ARM: the word
  U32 Addr = 0;
  U32 PC = 0;         // what the instruction reads as the PC: two instructions ahead of Addr
  U32 Cond = 15;      // condition given by the IT block or by the ARM word, 15 for none
  bool bArm = false;  // of the ARM instruction set
  DISASM_INFO Info;
  const DISASM_CONTEXT* pContext = nullptr;

  U32 Bits(U32 Low, U32 Width) const { return Word >> Low & ((1u << Width) - 1); }
  bool Bit(U32 Index) const { return Word >> Index & 1; }
  bool InITBlock() const { return (pContext->ITState & 0xF) != 0; }
};

inline constexpr U32 COND_ALWAYS = 14;
inline constexpr U32 COND_NONE = 15;
inline constexpr U32 REG_SP = 13;
inline constexpr U32 REG_LR = 14;
inline constexpr U32 REG_PC = 15;
