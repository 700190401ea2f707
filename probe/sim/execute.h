#pragma once
// What the handlers of all instruction groups share, and the functions by which the decoder picks a handler.

#include <bit>

#include "probe/sim/exceptions.h"

namespace sim {

enum CONDITION : U8 {
  COND_EQ,
  COND_NE,
  COND_CS,
  COND_CC,
  COND_MI,
  COND_PL,
  COND_VS,
  COND_VC,
  COND_HI,
  COND_LS,
  COND_GE,
  COND_LT,
  COND_GT,
  COND_LE,
  COND_AL
};

inline bool IsTrue(const STATE& S, U32 Cond) {
  const bool N = S.NZ < 0;
  const bool Z = static_cast<U32>(S.NZ) == 0;
  switch (Cond) {
    case COND_EQ:
      return Z;
    case COND_NE:
      return !Z;
    case COND_CS:
      return S.C;
    case COND_CC:
      return !S.C;
    case COND_MI:
      return N;
    case COND_PL:
      return !N;
    case COND_VS:
      return S.V;
    case COND_VC:
      return !S.V;
    case COND_HI:
      return S.C && !Z;
    case COND_LS:
      return !S.C || Z;
    case COND_GE:
      return N == (S.V != 0);
    case COND_LT:
      return N != (S.V != 0);
    case COND_GT:
      return !Z && N == (S.V != 0);
    case COND_LE:
      return Z || N != (S.V != 0);
    default:
      return true;
  }
}

inline void SetNZ(STATE& S, U32 Result) {
  S.NZ = static_cast<I32>(Result);
}

template <bool SETFLAGS>
inline U32 AddWithCarry(STATE& S, U32 A, U32 B, U32 CarryIn) {
  const U64 Sum = static_cast<U64>(A) + B + CarryIn;
  const U32 Result = static_cast<U32>(Sum);
  if constexpr (SETFLAGS) {
    SetNZ(S, Result);
    S.C = static_cast<U32>(Sum >> 32);
    S.V = ((A ^ Result) & (B ^ Result)) >> 31;
  }
  return Result;
}

// A shift by any number, with its carry.
struct SHIFTED {
  U32 Value;
  U32 Carry;
};

inline SHIFTED ShiftBy(U32 Value, U32 Type, U32 Num, U32 Carry) {
  if (Type == SHIFT_RRX) return {Value >> 1 | Carry << 31, Value & 1};
  if (!Num) return {Value, Carry};
  switch (Type) {
    case SHIFT_LSL:
      return Num > 32 ? SHIFTED{0, 0} : SHIFTED{Num == 32 ? 0 : Value << Num, Value >> (32 - Num) & 1};
    case SHIFT_LSR:
      return Num > 32 ? SHIFTED{0, 0} : SHIFTED{Num == 32 ? 0 : Value >> Num, Value >> (Num - 1) & 1};
    case SHIFT_ASR: {
      const U32 n = Num > 31 ? 31 : Num;
      const U32 Result = static_cast<U32>(static_cast<I32>(Value) >> n);
      return {Result, Num > 31 ? Value >> 31 : Value >> (Num - 1) & 1};
    }
    default: {
      const U32 Result = std::rotr(Value, static_cast<int>(Num & 31));
      return {Result, Result >> 31};
    }
  }
}

// Data processing. Operand forms: immediate, register, register shifted by an immediate.
enum class ALU_OP : U8 { AND, BIC, ORR, ORN, EOR, MOV, MVN, TST, TEQ, ADD, ADC, SBC, SUB, RSB, CMP, CMN, NUM };
enum class ALU_FORM : U8 { IMM, REG, SHIFTED_REG, NUM };
HANDLER AluHandler(ALU_OP Op, ALU_FORM Form, bool bSetFlags);
HANDLER ShiftRegHandler(U32 ShiftType, bool bSetFlags);  // Rd = Rn shifted by the low byte of Rm

// 16-bit operations on all registers, the PC among them; no flags but CMP's. Rd, Rm.
enum class HIGH_OP : U8 { ADD, CMP, MOV };
HANDLER HighRegHandler(HIGH_OP Op, bool bToPC);

// Single loads and stores: Rd is the transferred register, Rn the base.
enum class MEM_OP : U8 { LDR, LDRB, LDRH, LDRSB, LDRSH, STR, STRB, STRH, NUM };
enum class MEM_MODE : U8 {
  OFFSET,   // Rn + Imm
  PRE,      // the same, written back
  POST,     // Rn, then Rn + Imm
  REG,      // Rn + (Rm << ShiftN)
  LITERAL,  // Imm
  USER,     // Rn + Imm, as unprivileged code would
  NUM,
};
HANDLER MemHandler(MEM_OP Op, MEM_MODE Mode);
HANDLER LoadPCHandler(MEM_MODE Mode);

// Load and store multiple: Imm is the register list, Rn the base, Ra non-zero for write-back.
HANDLER MultipleHandler(bool bLoad, bool bDecrementBefore);
// Rd and Ra, Rn + Imm; ShiftN: bit 0 pre-indexed, bit 1 write-back.
HANDLER DualHandler(bool bLoad);

#define SIM_HANDLERS(F)                                                                                             \
  F(Undefined)                                                                                                      \
  F(NoCoprocessor)                                                                                                  \
  F(Nop) /* Wide data processing */                                                                                 \
  F(MovTop)                                                                                                         \
  F(BitFieldInsert) F(BitFieldExtractSigned) F(BitFieldExtractUnsigned) F(SaturateSigned) F(SaturateUnsigned)       \
      F(CountLeadingZeros) F(ReverseBits) F(ReverseBytes) F(ReverseHalves) F(ReverseSigned) F(ExtendS8) F(ExtendU8) \
          F(ExtendS16) F(ExtendU16) F(AdrFromReg) /* Multiplication and division */                                 \
      F(Multiply) F(MultiplyFlags) F(MultiplyAdd) F(MultiplySubtract) F(DivideSigned) F(DivideUnsigned)             \
          F(MultiplyLongSigned) F(MultiplyLongUnsigned) F(MultiplyAddLongSigned)                                    \
              F(MultiplyAddLongUnsigned) /* Exclusive access */                                                     \
      F(LoadExclusive) F(LoadExclusiveB) F(LoadExclusiveH) F(StoreExclusive) F(StoreExclusiveB) F(StoreExclusiveH)  \
          F(ClearExclusive) /* Branches */                                                                          \
      F(BranchNear) F(BranchFar) F(BranchLink) F(BranchLinkFar) F(BranchExchangeReg) F(BranchLinkExchange)          \
          F(BranchIfZero) F(BranchIfNotZero) F(TableBranchByte) F(TableBranchHalf) /* System */                     \
      F(IfThen) F(SupervisorCall) F(Breakpoint) F(ReadSpecial) F(WriteSpecial) F(ChangeState) F(WaitForInterrupt)   \
          F(WaitForEvent) F(SendEvent) /* DSP extension */                                                          \
      F(PackHalves) F(SaturateSigned16) F(SaturateUnsigned16) F(SelectBytes) F(ExtendS8x2) F(ExtendU8x2)            \
          F(ExtendAddS8) F(ExtendAddU8) F(ExtendAddS16) F(ExtendAddU16) F(ExtendAddS8x2) F(ExtendAddU8x2)           \
              F(SaturatingAdd) F(SaturatingSub) F(SaturatingDoubleAdd) F(SaturatingDoubleSub) F(MultiplyHalves)     \
                  F(MultiplyWordHalf) F(MultiplyDual) F(MultiplyDualSubtract) F(MultiplyTop) F(MultiplyTopSubtract) \
                      F(SumOfDifferences) F(MultiplyHalvesLong) F(MultiplyDualLong) F(MultiplyDualSubtractLong)     \
                          F(MultiplyAccumulateTwice)

#define SIM_DECLARE_HANDLER(Name) const INST* Run##Name(STATE& S, const INST* pI);
SIM_HANDLERS(SIM_DECLARE_HANDLER)
#undef SIM_DECLARE_HANDLER

// Additions and subtractions of bytes and halfwords in parallel, by the fields of the instruction: what, and how it
// handles overflow.
HANDLER ParallelHandler(U32 Operation, U32 Kind);

HANDLER BranchIfHandler(U32 Cond);  // to pI + Imm entries

}  // namespace sim
