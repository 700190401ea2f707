#include "probe/sim/decode_fp.h"

#include "probe/sim/decode.h"
#include "probe/sim/execute_fp.h"
#include "probe/sim/fp.h"

namespace sim {

namespace {

// The parts of an instruction that most groups look at. Registers are numbers within their precision.
struct FIELDS {
  FIELDS(U16 First, U16 Second)
      : bDouble(Bit(Second, 8)),
        Top(Bits(Second, 15, 12)),
        Base(Bits(First, 3, 0)),
        Low(Bits(Second, 3, 0)),
        D(Bit(First, 6)),
        N(Bit(Second, 7)),
        M(Bit(Second, 5)) {}
  bool bDouble;
  U8 Top, Base, Low;
  bool D, N, M;
};

// Whether an instruction is known, as yet.
using KNOWN = bool;

// The index of a register's first word. False for registers that the bank does not have.
bool SetReg(U8* pIndex, U32 Number, bool bExtra, bool bDouble) {
  *pIndex = static_cast<U8>(bDouble ? Number * 2 : Number * 2 + bExtra);
  return !bDouble || !bExtra;
}

bool SetD(INST* pI, const FIELDS& F, bool bDouble) {
  return SetReg(&pI->Rd, F.Top, F.D, bDouble);
}
bool SetN(INST* pI, const FIELDS& F, bool bDouble) {
  return SetReg(&pI->Rn, F.Base, F.N, bDouble);
}
bool SetM(INST* pI, const FIELDS& F, bool bDouble) {
  return SetReg(&pI->Rm, F.Low, F.M, bDouble);
}

KNOWN SetOp(INST* pI, FP_OP Op, bool bDouble) {
  SetHandler(pI, FpHandler(Op, bDouble));
  return true;
}

KNOWN SetTwo(INST* pI, const FIELDS& F, FP_OP Op) {
  return SetD(pI, F, F.bDouble) && SetM(pI, F, F.bDouble) && SetOp(pI, Op, F.bDouble);
}

KNOWN SetThree(INST* pI, const FIELDS& F, FP_OP Op) {
  return Op != FP_OP::NUM && SetN(pI, F, F.bDouble) && SetTwo(pI, F, Op);
}

KNOWN DecodeImmediate(INST* pI, const FIELDS& F, U16 Second) {
  const U32 Imm8 = static_cast<U32>(F.Base) << 4 | F.Low;
  const U32 Sign = (Imm8 >> 7) << 31;
  const bool bHighExp = !(Imm8 & 0x40);
  if (Second & 0xA0) return false;
  pI->Imm = F.bDouble ? Sign | (bHighExp ? 0x40000000 : 0x3FC00000) | (Imm8 & 0x3F) << 16
                      : Sign | (bHighExp ? 0x40000000 : 0x3E000000) | (Imm8 & 0x3F) << 19;
  return SetD(pI, F, F.bDouble) && SetOp(pI, FP_OP::MoveImmediate, F.bDouble);
}

KNOWN DecodeHalf(INST* pI, const FIELDS& F, bool bToHalf) {
  pI->Ra = F.N;
  if (bToHalf) return SetD(pI, F, false) && SetM(pI, F, F.bDouble) && SetOp(pI, FP_OP::ToHalf, F.bDouble);
  return SetD(pI, F, F.bDouble) && SetM(pI, F, false) && SetOp(pI, FP_OP::FromHalf, F.bDouble);
}

KNOWN DecodeRound(const STATE& S, INST* pI, const FIELDS& F, U8 Rounding, bool bExact) {
  pI->ShiftType = Rounding;
  pI->Ra = bExact;
  return S.Spec.Fpu != FPU::V4_SINGLE && SetTwo(pI, F, FP_OP::RoundToIntegral);
}

KNOWN DecodeOtherPrecision(const STATE& S, INST* pI, const FIELDS& F) {
  return S.Spec.Fpu == FPU::V5_DOUBLE && SetD(pI, F, !F.bDouble) && SetM(pI, F, F.bDouble) &&
         SetOp(pI, FP_OP::ToOtherPrecision, F.bDouble);
}

KNOWN DecodeToInteger(INST* pI, const FIELDS& F, U8 Rounding, bool bSigned) {
  pI->ShiftType = Rounding;
  pI->Ra = bSigned;
  return SetD(pI, F, false) && SetM(pI, F, F.bDouble) && SetOp(pI, FP_OP::ToInteger, F.bDouble);
}

KNOWN DecodeFixed(INST* pI, const FIELDS& F) {
  const bool bTo = F.Base & 4;
  const U32 Width = F.N ? 32 : 16;
  const U32 Field = static_cast<U32>(F.Low) << 1 | F.M;
  pI->ShiftN = static_cast<U8>(Width);
  pI->Imm = Width - Field;
  pI->Ra = !(F.Base & 1);
  return Field <= Width && SetD(pI, F, F.bDouble) && SetOp(pI, bTo ? FP_OP::ToFixed : FP_OP::FromFixed, F.bDouble);
}

// Instructions with one operand, or with an immediate.
KNOWN DecodeOther(const STATE& S, INST* pI, const FIELDS& F, U16 Second) {
  const bool bUpper = F.N;  // tells two instructions apart
  if (!Bit(Second, 6)) return DecodeImmediate(pI, F, Second);
  switch (F.Base) {
    case 0:
      return SetTwo(pI, F, bUpper ? FP_OP::Abs : FP_OP::Move);
    case 1:
      return SetTwo(pI, F, bUpper ? FP_OP::Sqrt : FP_OP::Neg);
    case 2:
    case 3:
      return DecodeHalf(pI, F, F.Base & 1);
    case 4:
      pI->Ra = bUpper;
      return SetTwo(pI, F, FP_OP::Compare);
    case 5:
      pI->Ra = bUpper;
      return !(Second & 0x2F) && SetD(pI, F, F.bDouble) && SetOp(pI, FP_OP::CompareZero, F.bDouble);
    case 6:
      return DecodeRound(S, pI, F, bUpper ? static_cast<U8>(FP_ROUND::ZERO) : ROUND_BY_FPSCR, false);
    case 7:
      return bUpper ? DecodeOtherPrecision(S, pI, F) : DecodeRound(S, pI, F, ROUND_BY_FPSCR, true);
    case 8:
      pI->Ra = bUpper;
      return SetD(pI, F, F.bDouble) && SetM(pI, F, false) && SetOp(pI, FP_OP::FromInteger, F.bDouble);
    case 12:
    case 13:
      return DecodeToInteger(pI, F, bUpper ? static_cast<U8>(FP_ROUND::ZERO) : ROUND_BY_FPSCR, F.Base & 1);
    case 9:
      return false;
    default:
      return DecodeFixed(pI, F);
  }
}

// By bits 7, 5 and 4 of the first halfword and bit 6 of the second one.
constexpr FP_OP THREE_OPERANDS[8][2] = {
    {FP_OP::MulAdd, FP_OP::MulSub},
    {FP_OP::NegMulSub, FP_OP::NegMulAdd},
    {FP_OP::Mul, FP_OP::NegMul},
    {FP_OP::Add, FP_OP::Sub},
    {FP_OP::Div, FP_OP::NUM},
    {FP_OP::FusedNegMulSub, FP_OP::FusedNegMulAdd},
    {FP_OP::FusedMulAdd, FP_OP::FusedMulSub},
    {FP_OP::NUM, FP_OP::NUM},
};
inline constexpr U32 ONE_OPERAND = 7;

KNOWN DecodeProcessing(const STATE& S, INST* pI, const FIELDS& F, U16 First, U16 Second) {
  const U32 Code = static_cast<U32>(Bit(First, 7)) << 2 | Bits(First, 5, 4);
  if (F.bDouble && S.Spec.Fpu != FPU::V5_DOUBLE) return false;
  if (Code == ONE_OPERAND) return DecodeOther(S, pI, F, Second);
  return SetThree(pI, F, THREE_OPERANDS[Code][Bit(Second, 6)]);
}

// What version 5 has added: never conditional.
KNOWN DecodeVersion5(const STATE& S, INST* pI, const FIELDS& F, U16 First, U16 Second) {
  static constexpr FP_ROUND ROUNDINGS[] = {FP_ROUND::TIES_AWAY, FP_ROUND::NEAREST, FP_ROUND::PLUS_INF,
                                           FP_ROUND::MINUS_INF};
  static constexpr CONDITION CONDITIONS[] = {COND_EQ, COND_VS, COND_GE, COND_GT};
  const bool bOp = Bit(Second, 6);
  if (S.Spec.Fpu == FPU::V4_SINGLE || Bit(Second, 4) || Bits(First, 11, 8) != 0b1110 ||
      (F.bDouble && S.Spec.Fpu != FPU::V5_DOUBLE))
    return false;
  if (!Bit(First, 7)) {
    pI->Ra = CONDITIONS[Bits(First, 5, 4)];
    return !bOp && SetThree(pI, F, FP_OP::Select);
  }
  if (!Bits(First, 5, 4)) return SetThree(pI, F, bOp ? FP_OP::MinNum : FP_OP::MaxNum);
  if (Bits(First, 5, 3) != 0b111 || !bOp) return false;
  const U8 Rounding = static_cast<U8>(ROUNDINGS[Bits(First, 1, 0)]);
  if (Bit(First, 2)) return DecodeToInteger(pI, F, Rounding, F.N);
  return !F.N && DecodeRound(S, pI, F, Rounding, false);
}

// Words and status between core and FPU.
KNOWN DecodeTransfer(INST* pI, const FIELDS& F, U16 First, U16 Second) {
  const U32 Code = Bits(First, 7, 5);
  const bool bToCore = Bit(First, 4);
  pI->Rd = F.Top;
  if (F.bDouble) {  // one half of a double precision register
    if (Code > 1 || Bits(Second, 6, 5) || F.N || pI->Rd == PC) return false;
    pI->Rn = static_cast<U8>(F.Base * 2 + Code);
  } else if (Code == 7) {
    if (F.Base != 1 || (pI->Rd == PC && !bToCore)) return false;
    SetHandler(pI, bToCore ? FpReadStatusHandler() : FpWriteStatusHandler());
    return true;
  } else if (Code || pI->Rd == PC) {
    return false;
  } else {
    SetN(pI, F, false);
  }
  SetHandler(pI, bToCore ? FpToCoreHandler(false) : FpFromCoreHandler(false));
  return true;
}

KNOWN DecodePairTransfer(INST* pI, const FIELDS& F, U16 First, U16 Second) {
  pI->Rd = F.Top;
  pI->Ra = F.Base;
  if (Bits(Second, 7, 6) || !Bit(Second, 4) || pI->Rd == PC || pI->Ra == PC) return false;
  if (!SetReg(&pI->Rn, F.Low, F.M, F.bDouble) || pI->Rn + 1u >= NUM_FP_REGS) return false;
  SetHandler(pI, Bit(First, 4) ? FpToCoreHandler(true) : FpFromCoreHandler(true));
  return true;
}

KNOWN DecodeLoadStore(INST* pI, const FIELDS& F, U16 First, U16 Second) {
  const bool bPre = Bit(First, 8);
  const bool bUp = Bit(First, 7);
  const bool bWriteBack = Bit(First, 5);
  const bool bLoad = Bit(First, 4);
  const U32 Num = Second & 0xFF;  // words
  if (!SetReg(&pI->Rd, F.Top, F.D, F.bDouble)) return false;
  pI->Rn = F.Base;
  if (bPre && !bWriteBack) {
    pI->Ra = F.bDouble ? 2 : 1;
    pI->Imm = bUp ? 4 * Num : 0u - 4 * Num;
  } else {
    if (bPre == bUp) return false;
    pI->Ra = static_cast<U8>(F.bDouble ? Num & ~1u : Num);
    pI->Rm = static_cast<U8>(Num);
    pI->ShiftN = bWriteBack;
    pI->ShiftType = !bUp;
    pI->Imm = bUp ? 0 : 0u - 4 * Num;
    if (!pI->Ra || pI->Rd + pI->Ra > static_cast<int>(NUM_FP_REGS) || (bWriteBack && pI->Rn == PC)) return false;
  }
  if (!bLoad && pI->Rn == PC) return false;
  SetHandler(pI, bLoad ? FpLoadHandler() : FpStoreHandler());
  return true;
}

KNOWN DecodeKnown(const STATE& S, INST* pI, U16 First, U16 Second) {
  const FIELDS F(First, Second);
  if (Bit(First, 12)) return DecodeVersion5(S, pI, F, First, Second);
  if (Bits(First, 11, 8) == 0b1110) {
    if (Bit(Second, 4)) return DecodeTransfer(pI, F, First, Second);
    return DecodeProcessing(S, pI, F, First, Second);
  }
  if (Bit(First, 9)) return false;
  if (Bits(First, 8, 5) == 0b0010) return DecodePairTransfer(pI, F, First, Second);
  return DecodeLoadStore(pI, F, First, Second);
}

}  // namespace

void DecodeCoprocessor(const STATE& S, INST* pI, U16 First, U16 Second) {
  const bool bFpu = Bits(Second, 11, 9) == 0b101;
  if (!bFpu || !S.HasFpu()) return SetHandler(pI, RunNoCoprocessor);
  if (!DecodeKnown(S, pI, First, Second)) SetHandler(pI, FpUndefinedHandler());
}

}  // namespace sim
