// The DSP extension apart from parallel addition: saturation, packing, multiplication of halves.

#include <algorithm>
#include <cstdlib>

#include "probe/sim/execute.h"

namespace sim {

namespace {

const INST* SetRd(STATE& S, const INST* pI, U32 Value) {
  S.R[pI->Rd] = Value;
  return Next(pI);
}

I32 Low(U32 Value) {
  return static_cast<I16>(Value);
}

I32 High(U32 Value) {
  return static_cast<I32>(Value) >> 16;
}

I32 Half(U32 Value, bool bHigh) {
  return bHigh ? High(Value) : Low(Value);
}

U32 SaturateTo32(STATE& S, I64 Value) {
  const I64 Limited = std::clamp<I64>(Value, INT32_MIN, INT32_MAX);
  if (Limited != Value) S.bQ = true;
  return static_cast<U32>(Limited);
}

// The accumulator, 0 when the instruction has none.
I64 Accumulator(const STATE& S, const INST* pI) {
  return pI->Ra == PC ? 0 : static_cast<I32>(S.R[pI->Ra]);
}

// Wraps, and says so in Q.
const INST* SetAccumulated(STATE& S, const INST* pI, I64 Value) {
  if (Value != static_cast<I32>(Value)) S.bQ = true;
  return SetRd(S, pI, static_cast<U32>(Value));
}

struct DUAL {
  I64 Lows;
  I64 Highs;
};

// The products of both halves; ShiftN bit 0 exchanges those of Rm.
DUAL DualProducts(const STATE& S, const INST* pI) {
  const U32 B = std::rotr(S.R[pI->Rm], pI->ShiftN & 1 ? 16 : 0);
  const U32 A = S.R[pI->Rn];
  return {static_cast<I64>(Low(A)) * Low(B), static_cast<I64>(High(A)) * High(B)};
}

const INST* AddToPair(STATE& S, const INST* pI, I64 Value) {
  const U64 Sum = (static_cast<U64>(S.R[pI->Ra]) << 32 | S.R[pI->Rd]) + static_cast<U64>(Value);
  S.R[pI->Rd] = static_cast<U32>(Sum);
  S.R[pI->Ra] = static_cast<U32>(Sum >> 32);
  return Next(pI);
}

I64 WordProduct(const STATE& S, const INST* pI) {
  return static_cast<I64>(static_cast<I32>(S.R[pI->Rn])) * static_cast<I32>(S.R[pI->Rm]);
}

// The upper word of Ra:0 plus Product; ShiftN bit 0 rounds.
const INST* SetTop(STATE& S, const INST* pI, U64 Product) {
  const U64 Start = pI->Ra == PC ? 0 : static_cast<U64>(S.R[pI->Ra]) << 32;
  const U64 Round = pI->ShiftN & 1 ? 0x80000000u : 0;
  return SetRd(S, pI, static_cast<U32>((Start + Product + Round) >> 32));
}

U32 Rotated(const STATE& S, const INST* pI) {
  return std::rotr(S.R[pI->Rm], pI->ShiftN);
}

U32 PairOf(U32 LowHalf, U32 HighHalf) {
  return (LowHalf & 0xFFFF) | HighHalf << 16;
}

U32 SignedBytes(U32 Value) {
  return PairOf(static_cast<U32>(static_cast<I8>(Value)), static_cast<U32>(static_cast<I8>(Value >> 16)));
}

U32 AddHalves(U32 A, U32 B) {
  return PairOf(A + B, (A >> 16) + (B >> 16));
}

U32 SaturateHalves(STATE& S, U32 Value, I32 Min, I32 Max) {
  const I32 NewLow = std::clamp(Low(Value), Min, Max);
  const I32 NewHigh = std::clamp(High(Value), Min, Max);
  if (NewLow != Low(Value) || NewHigh != High(Value)) S.bQ = true;
  return PairOf(static_cast<U32>(NewLow), static_cast<U32>(NewHigh));
}

}  // namespace

const INST* RunPackHalves(STATE& S, const INST* pI) {
  const U32 Shifted = ShiftBy(S.R[pI->Rm], pI->ShiftType, pI->ShiftN, 0).Value;
  const U32 Other = S.R[pI->Rn];
  const bool bTopFirst = pI->ShiftType == SHIFT_ASR;
  return SetRd(S, pI,
               bTopFirst ? (Other & 0xFFFF0000) | (Shifted & 0xFFFF) : (Shifted & 0xFFFF0000) | (Other & 0xFFFF));
}

const INST* RunSaturateSigned16(STATE& S, const INST* pI) {
  const I32 Limit = 1 << (pI->Imm - 1);
  return SetRd(S, pI, SaturateHalves(S, S.R[pI->Rn], -Limit, Limit - 1));
}

const INST* RunSaturateUnsigned16(STATE& S, const INST* pI) {
  return SetRd(S, pI, SaturateHalves(S, S.R[pI->Rn], 0, (1 << pI->Imm) - 1));
}

const INST* RunSelectBytes(STATE& S, const INST* pI) {
  U32 Mask = 0;
  for (U32 i = 0; i < 4; i++) Mask |= (S.GE >> i & 1 ? 0xFFu : 0u) << (8 * i);
  return SetRd(S, pI, (S.R[pI->Rn] & Mask) | (S.R[pI->Rm] & ~Mask));
}

const INST* RunExtendS8x2(STATE& S, const INST* pI) {
  return SetRd(S, pI, SignedBytes(Rotated(S, pI)));
}

const INST* RunExtendU8x2(STATE& S, const INST* pI) {
  return SetRd(S, pI, Rotated(S, pI) & 0x00FF00FF);
}

const INST* RunExtendAddS8(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] + static_cast<U32>(static_cast<I8>(Rotated(S, pI))));
}

const INST* RunExtendAddU8(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] + static_cast<U8>(Rotated(S, pI)));
}

const INST* RunExtendAddS16(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] + static_cast<U32>(Low(Rotated(S, pI))));
}

const INST* RunExtendAddU16(STATE& S, const INST* pI) {
  return SetRd(S, pI, S.R[pI->Rn] + static_cast<U16>(Rotated(S, pI)));
}

const INST* RunExtendAddS8x2(STATE& S, const INST* pI) {
  return SetRd(S, pI, AddHalves(S.R[pI->Rn], SignedBytes(Rotated(S, pI))));
}

const INST* RunExtendAddU8x2(STATE& S, const INST* pI) {
  return SetRd(S, pI, AddHalves(S.R[pI->Rn], Rotated(S, pI) & 0x00FF00FF));
}

const INST* RunSaturatingAdd(STATE& S, const INST* pI) {
  return SetRd(S, pI, SaturateTo32(S, static_cast<I64>(static_cast<I32>(S.R[pI->Rm])) + static_cast<I32>(S.R[pI->Rn])));
}

const INST* RunSaturatingSub(STATE& S, const INST* pI) {
  return SetRd(S, pI, SaturateTo32(S, static_cast<I64>(static_cast<I32>(S.R[pI->Rm])) - static_cast<I32>(S.R[pI->Rn])));
}

const INST* RunSaturatingDoubleAdd(STATE& S, const INST* pI) {
  const I32 Doubled = static_cast<I32>(SaturateTo32(S, 2ll * static_cast<I32>(S.R[pI->Rn])));
  return SetRd(S, pI, SaturateTo32(S, static_cast<I64>(static_cast<I32>(S.R[pI->Rm])) + Doubled));
}

const INST* RunSaturatingDoubleSub(STATE& S, const INST* pI) {
  const I32 Doubled = static_cast<I32>(SaturateTo32(S, 2ll * static_cast<I32>(S.R[pI->Rn])));
  return SetRd(S, pI, SaturateTo32(S, static_cast<I64>(static_cast<I32>(S.R[pI->Rm])) - Doubled));
}

// ShiftN: bit 1 the upper half of Rn, bit 0 that of Rm.
const INST* RunMultiplyHalves(STATE& S, const INST* pI) {
  const I64 Product = static_cast<I64>(Half(S.R[pI->Rn], pI->ShiftN & 2)) * Half(S.R[pI->Rm], pI->ShiftN & 1);
  return SetAccumulated(S, pI, Product + Accumulator(S, pI));
}

const INST* RunMultiplyWordHalf(STATE& S, const INST* pI) {
  const I64 Product = static_cast<I64>(static_cast<I32>(S.R[pI->Rn])) * Half(S.R[pI->Rm], pI->ShiftN & 1);
  return SetAccumulated(S, pI, (Product >> 16) + Accumulator(S, pI));
}

const INST* RunMultiplyDual(STATE& S, const INST* pI) {
  const DUAL Dual = DualProducts(S, pI);
  return SetAccumulated(S, pI, Dual.Lows + Dual.Highs + Accumulator(S, pI));
}

const INST* RunMultiplyDualSubtract(STATE& S, const INST* pI) {
  const DUAL Dual = DualProducts(S, pI);
  return SetAccumulated(S, pI, Dual.Lows - Dual.Highs + Accumulator(S, pI));
}

const INST* RunMultiplyTop(STATE& S, const INST* pI) {
  return SetTop(S, pI, static_cast<U64>(WordProduct(S, pI)));
}

const INST* RunMultiplyTopSubtract(STATE& S, const INST* pI) {
  return SetTop(S, pI, 0ull - static_cast<U64>(WordProduct(S, pI)));
}

const INST* RunSumOfDifferences(STATE& S, const INST* pI) {
  U32 Sum = pI->Ra == PC ? 0 : S.R[pI->Ra];
  for (U32 Shift = 0; Shift < 32; Shift += 8) {
    Sum += static_cast<U32>(
        std::abs(static_cast<I32>(S.R[pI->Rn] >> Shift & 0xFF) - static_cast<I32>(S.R[pI->Rm] >> Shift & 0xFF)));
  }
  return SetRd(S, pI, Sum);
}

const INST* RunMultiplyHalvesLong(STATE& S, const INST* pI) {
  return AddToPair(S, pI, static_cast<I64>(Half(S.R[pI->Rn], pI->ShiftN & 2)) * Half(S.R[pI->Rm], pI->ShiftN & 1));
}

const INST* RunMultiplyDualLong(STATE& S, const INST* pI) {
  const DUAL Dual = DualProducts(S, pI);
  return AddToPair(S, pI, Dual.Lows + Dual.Highs);
}

const INST* RunMultiplyDualSubtractLong(STATE& S, const INST* pI) {
  const DUAL Dual = DualProducts(S, pI);
  return AddToPair(S, pI, Dual.Lows - Dual.Highs);
}

const INST* RunMultiplyAccumulateTwice(STATE& S, const INST* pI) {
  const U64 Sum = static_cast<U64>(S.R[pI->Rn]) * S.R[pI->Rm] + S.R[pI->Rd] + S.R[pI->Ra];
  S.R[pI->Rd] = static_cast<U32>(Sum);
  S.R[pI->Ra] = static_cast<U32>(Sum >> 32);
  return Next(pI);
}

}  // namespace sim
