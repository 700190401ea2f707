#pragma once
// Floating point instructions: what the decoder fills in and how it picks a handler.
//
// Rd, Rn and Rm are indexes into FP_REGS::S, of the first register of a pair in double precision.

#include "probe/sim/execute.h"

namespace sim {

// For single and double precision each.
#define SIM_FP_OPS(F)                                                                                           \
  /* three registers */                                                                                         \
  F(Add)                                                                                                        \
  F(Sub) F(Mul) F(NegMul) F(Div) F(MulAdd) F(MulSub) F(NegMulAdd) F(NegMulSub) F(FusedMulAdd) F(FusedMulSub)    \
      F(FusedNegMulAdd) F(FusedNegMulSub) F(MaxNum) F(MinNum) F(Select) /* Ra: condition */ /* two registers */ \
      F(Move) F(Abs) F(Neg) F(Sqrt) F(Compare) /* Ra: a quiet NaN is invalid, too */                            \
      F(CompareZero)                           /* likewise */                                                   \
      F(RoundToIntegral)                       /* ShiftType: FP_ROUND or ROUND_BY_FPSCR; Ra: raises inexact */  \
      F(ToInteger)                             /* ShiftType; Ra: signed */                                      \
      F(FromInteger)                           /* Ra: signed */                                                 \
      F(ToFixed)                               /* Rd alone; Imm: fraction bits, ShiftN: width, Ra: signed */    \
      F(FromFixed)                             /* likewise */                                                   \
      F(ToHalf)                                /* Ra: into the upper half */                                    \
      F(FromHalf)                              /* Ra: of the upper half */                                      \
      F(ToOtherPrecision) F(MoveImmediate)     /* Imm: upper word of double precision */

enum class FP_OP : U8 {
#define SIM_FP_ENUM(Name) Name,
  SIM_FP_OPS(SIM_FP_ENUM)
#undef SIM_FP_ENUM
      NUM
};

inline constexpr U8 ROUND_BY_FPSCR = 0xFF;

HANDLER FpHandler(FP_OP Op, bool bDouble);

// Single and multiple loads and stores: Rd is the first register, Ra the number of words, Rn the base, Imm the distance
// of the address from it, ShiftN non-zero when the base moves, then by Rm words, down when ShiftType is set.
HANDLER FpLoadHandler();
HANDLER FpStoreHandler();

// Between core registers Rd (and Ra) and FP registers from Rn on.
HANDLER FpToCoreHandler(bool bPair);
HANDLER FpFromCoreHandler(bool bPair);
HANDLER FpReadStatusHandler();   // Rd; PC: the flags only, into APSR
HANDLER FpWriteStatusHandler();  // Rd

HANDLER FpUndefinedHandler();  // not known to the FPU, which may be switched off

// Before the first FP instruction of a context: checks access, saves what an exception has left to save, begins a new
// context. Null when the instruction may run, otherwise where the core goes on.
const INST* BeginFp(STATE& S, const INST* pI);

}  // namespace sim
