#pragma once

#include "program/elf/frame_section.h"

inline constexpr U32 NUM_FRAME_REGS = 512;  // registers of which rules are kept

enum class FRAME_RULE_KIND : U8 { SameValue, Undefined, Offset, ValOffset, Register, Expression, ValExpression };

// Where the caller's value of a register is.
struct FRAME_RULE {
  FRAME_RULE_KIND Kind = FRAME_RULE_KIND::SameValue;
  I32 Value = 0;  // offset from the canonical frame address, or register
};

enum class CFA_KIND : U8 { None, RegOffset, Expression };

struct CFA_RULE {
  CFA_KIND Kind = CFA_KIND::None;
  U32 Reg = 0;
  I64 Offset = 0;
};

// The rules at one address.
struct FRAME_ROW {
  CFA_RULE Cfa;
  U32 NumRules = 0;  // registers from there on have the caller's value
  FRAME_RULE aRules[NUM_FRAME_REGS];

  FRAME_RULE Rule(U32 Reg) const { return Reg < NumRules ? aRules[Reg] : FRAME_RULE(); }
};

// Runs the programs of an entry up to the address PC. False for a damaged one, which leaves the rules up to the damage.
bool RunFrameProgram(const FRAME_SECTION& Section, const FRAME_CIE& Cie, const FRAME_FDE& Fde, U32 PC, FRAME_ROW& Row);

// Greatest distance that the canonical frame address takes from its register in an entry's own program.
U32 GreatestCfaOffset(const FRAME_SECTION& Section, const FRAME_CIE& Cie, const FRAME_FDE& Fde);
