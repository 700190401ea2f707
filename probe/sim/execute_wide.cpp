// Data processing without flags: bit fields, saturation, extension, reversal; multiplication and division.

#include "probe/sim/execute.h"

namespace sim {

namespace {

U32 MaskOfWidth(U32 NumBits) {
  return NumBits >= 32 ? 0xFFFFFFFF : (1u << NumBits) - 1;
}

U32 Rotated(const STATE& S, const INST* pI) {
  return std::rotr(S.R[pI->Rm], pI->ShiftN);
}

const INST* SetRd(STATE& S, const INST* pI, U32 Value) {
  S.R[pI->Rd] = Value;
  return Next(pI);
}

const INST* SetPair(STATE& S, const INST* pI, U64 Value) {
  S.R[pI->Rd] = static_cast<U32>(Value);
  S.R[pI->Ra] = static_cast<U32>(Value >> 32);
  return Next(pI);
}

U64 Pair(const STATE& S, const INST* pI) {
  return static_cast<U64>(S.R[pI->Ra]) << 32 | S.R[pI->Rd];
}

U64 ProductSigned(const STATE& S, const INST* pI) {
  return static_cast<U64>(static_cast<I64>(static_cast<I32>(S.R[pI->Rn])) * static_cast<I32>(S.R[pI->Rm]));
}

U64 ProductUnsigned(const STATE& S, const INST* pI) {
  return static_cast<U64>(S.R[pI->Rn]) * S.R[pI->Rm];
}

// The operand of SSAT and USAT.
I32 SaturationOperand(const STATE& S, const INST* pI) {
  return static_cast<I32>(ShiftBy(S.R[pI->Rn], pI->ShiftType, pI->ShiftN, S.C).Value);
}

const INST* Saturate(STATE& S, const INST* pI, I64 Min, I64 Max) {
  const I64 Value = SaturationOperand(S, pI);
  const I64 Limited = Value < Min ? Min : Value > Max ? Max : Value;
  if (Limited != Value) S.bQ = true;
  return SetRd(S, pI, static_cast<U32>(Limited));
}

}  // namespace

const INST* RunMovTop(STATE& S, const INST* pI) {
  return SetRd(S, pI, (S.R[pI->Rd] & 0xFFFF) | pI->Imm << 16);
}

// Ra is the lowest bit, Imm the width.
const INST* RunBitFieldInsert(STATE& S, const INST* pI) {
  const U32 Mask = MaskOfWidth(pI->Imm) << pI->Ra;
  const U32 Source = pI->Rn == PC ? 0 : S.R[pI->Rn];
  return SetRd(S, pI, (S.R[pI->Rd] & ~Mask) | (Source << pI->Ra & Mask));
}

const INST* RunBitFieldExtractSigned(STATE& S, const INST* pI) {
  const U32 Up = 32 - pI->Imm;
  const U32 Field = S.R[pI->Rn] >> pI->Ra << Up;
  return SetRd(S, pI, static_cast<U32>(static_cast<I32>(Field) >> Up));
}

const INST* RunBitFieldExtractUnsigned(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] >> pI->Ra & MaskOfWidth(pI->Imm));
}

// Imm is the number of bits.
const INST* RunSaturateSigned(STATE& S, const INST* pI) {
  const I64 Limit = 1ll << (pI->Imm - 1);
  return Saturate(S, pI, -Limit, Limit - 1);
}

const INST* RunSaturateUnsigned(STATE& S, const INST* pI) {
  return Saturate(S, pI, 0, (1ll << pI->Imm) - 1);
}

const INST* RunCountLeadingZeros(STATE& S, const INST* pI) {
  return SetRd(S, pI, static_cast<U32>(std::countl_zero(S.R[pI->Rm])));
}

const INST* RunReverseBits(STATE& S, const INST* pI) {
  U32 Value = __builtin_bswap32(S.R[pI->Rm]);
  Value = (Value & 0x0F0F0F0F) << 4 | (Value >> 4 & 0x0F0F0F0F);
  Value = (Value & 0x33333333) << 2 | (Value >> 2 & 0x33333333);
  Value = (Value & 0x55555555) << 1 | (Value >> 1 & 0x55555555);
  return SetRd(S, pI, Value);
}

const INST* RunReverseBytes(STATE& S, const INST* pI) {
  return SetRd(S, pI, __builtin_bswap32(S.R[pI->Rm]));
}

const INST* RunReverseHalves(STATE& S, const INST* pI) {
  return SetRd(S, pI, std::rotl(__builtin_bswap32(S.R[pI->Rm]), 16));
}

const INST* RunReverseSigned(STATE& S, const INST* pI) {
  const U16 Half = __builtin_bswap16(static_cast<U16>(S.R[pI->Rm]));
  return SetRd(S, pI, static_cast<U32>(static_cast<I16>(Half)));
}

const INST* RunExtendS8(STATE& S, const INST* pI) {
  return SetRd(S, pI, static_cast<U32>(static_cast<I8>(Rotated(S, pI))));
}

const INST* RunExtendU8(STATE& S, const INST* pI) {
  return SetRd(S, pI, static_cast<U8>(Rotated(S, pI)));
}

const INST* RunExtendS16(STATE& S, const INST* pI) {
  return SetRd(S, pI, static_cast<U32>(static_cast<I16>(Rotated(S, pI))));
}

const INST* RunExtendU16(STATE& S, const INST* pI) {
  return SetRd(S, pI, static_cast<U16>(Rotated(S, pI)));
}

// ADDW and SUBW: no flags, Imm is what to add.
const INST* RunAdrFromReg(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] + pI->Imm);
}

const INST* RunMultiply(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] * S.R[pI->Rm]);
}

const INST* RunMultiplyFlags(STATE& S, const INST* pI) {
  SetNZ(S, S.R[pI->Rn] * S.R[pI->Rm]);
  return RunMultiply(S, pI);
}

const INST* RunMultiplyAdd(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Ra] + S.R[pI->Rn] * S.R[pI->Rm]);
}

const INST* RunMultiplySubtract(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Ra] - S.R[pI->Rn] * S.R[pI->Rm]);
}

const INST* RunDivideSigned(STATE& S, const INST* pI) {
  const I32 Divisor = static_cast<I32>(S.R[pI->Rm]);
  if (!Divisor) return RunDivideUnsigned(S, pI);
  const I64 Dividend = static_cast<I32>(S.R[pI->Rn]);
  return SetRd(S, pI, static_cast<U32>(Dividend / Divisor));
}

const INST* RunDivideUnsigned(STATE& S, const INST* pI) {
  const U32 Divisor = S.R[pI->Rm];
  if (!Divisor && (S.Scb.CCR & CCR_DIV_0_TRP)) return RaiseUsageFault(S, pI, CFSR_DIVBYZERO);
  return SetRd(S, pI, Divisor ? S.R[pI->Rn] / Divisor : 0);
}

const INST* RunMultiplyLongSigned(STATE& S, const INST* pI) {
  return SetPair(S, pI, ProductSigned(S, pI));
}

const INST* RunMultiplyLongUnsigned(STATE& S, const INST* pI) {
  return SetPair(S, pI, ProductUnsigned(S, pI));
}

const INST* RunMultiplyAddLongSigned(STATE& S, const INST* pI) {
  return SetPair(S, pI, Pair(S, pI) + ProductSigned(S, pI));
}

const INST* RunMultiplyAddLongUnsigned(STATE& S, const INST* pI) {
  return SetPair(S, pI, Pair(S, pI) + ProductUnsigned(S, pI));
}

}  // namespace sim
