// Floating point arithmetic, comparisons and conversions.

#include <array>

#include "probe/sim/execute_fp.h"
#include "probe/sim/fp_fast.h"

namespace sim {

namespace {

using BODY = void (*)(STATE& S, const INST* pI);

template <BODY FUNC>
const INST* RunFp(STATE& S, const INST* pI) {
  if (!S.Fp.bReady) [[unlikely]] {
    if (const INST* pElsewhere = BeginFp(S, pI)) return pElsewhere;
  }
  FUNC(S, pI);
  return Next(pI);
}

template <class T>
T D(const STATE& S, const INST* pI) {
  return S.Fp.Get<T>(pI->Rd);
}
template <class T>
T N(const STATE& S, const INST* pI) {
  return S.Fp.Get<T>(pI->Rn);
}
template <class T>
T M(const STATE& S, const INST* pI) {
  return S.Fp.Get<T>(pI->Rm);
}
template <class T>
void SetD(STATE& S, const INST* pI, T Value) {
  S.Fp.Set(pI->Rd, Value);
}

FP_ROUND Rounding(const STATE& S, const INST* pI) {
  return pI->ShiftType == ROUND_BY_FPSCR ? RoundingOf(S.Fp.FPSCR) : static_cast<FP_ROUND>(pI->ShiftType);
}

template <class T>
void Add(STATE& S, const INST* pI) {
  SetD(S, pI, FastAdd(N<T>(S, pI), M<T>(S, pI), S.Fp.FPSCR));
}

// A difference is a sum but for NaNs, which keep their sign.
template <class T>
bool IsNaN(T A) {
  return FpAbs(A) > FP_INFINITY<T>;
}

template <class T>
void Sub(STATE& S, const INST* pI) {
  const T B = M<T>(S, pI);
  SetD(S, pI, FastAdd(N<T>(S, pI), IsNaN(B) ? B : FpNeg(B), S.Fp.FPSCR));
}

template <class T>
T Product(STATE& S, const INST* pI) {
  return FastMul(N<T>(S, pI), M<T>(S, pI), S.Fp.FPSCR);
}

template <class T>
void Mul(STATE& S, const INST* pI) {
  SetD(S, pI, Product<T>(S, pI));
}

template <class T>
void NegMul(STATE& S, const INST* pI) {
  SetD(S, pI, FpNeg(Product<T>(S, pI)));
}

template <class T>
void Div(STATE& S, const INST* pI) {
  SetD(S, pI, FastDiv(N<T>(S, pI), M<T>(S, pI), S.Fp.FPSCR));
}

// Rounded twice; negations apply to NaNs, too.
template <class T, bool NEG_ADDEND, bool NEG_PRODUCT>
void ChainedMulAdd(STATE& S, const INST* pI) {
  const T Multiplied = Product<T>(S, pI);
  const T Addend = NEG_ADDEND ? FpNeg(D<T>(S, pI)) : D<T>(S, pI);
  SetD(S, pI, FastAdd(Addend, NEG_PRODUCT ? FpNeg(Multiplied) : Multiplied, S.Fp.FPSCR));
}

template <class T>
void MulAdd(STATE& S, const INST* pI) {
  ChainedMulAdd<T, false, false>(S, pI);
}
template <class T>
void MulSub(STATE& S, const INST* pI) {
  ChainedMulAdd<T, false, true>(S, pI);
}
template <class T>
void NegMulAdd(STATE& S, const INST* pI) {
  ChainedMulAdd<T, true, true>(S, pI);
}
template <class T>
void NegMulSub(STATE& S, const INST* pI) {
  ChainedMulAdd<T, true, false>(S, pI);
}

template <class T, bool NEG_ADDEND, bool NEG_PRODUCT>
void Fused(STATE& S, const INST* pI) {
  const T Addend = NEG_ADDEND ? FpNeg(D<T>(S, pI)) : D<T>(S, pI);
  const T A = NEG_PRODUCT ? FpNeg(N<T>(S, pI)) : N<T>(S, pI);
  SetD(S, pI, FastMulAdd(Addend, A, M<T>(S, pI), S.Fp.FPSCR));
}

template <class T>
void FusedMulAdd(STATE& S, const INST* pI) {
  Fused<T, false, false>(S, pI);
}
template <class T>
void FusedMulSub(STATE& S, const INST* pI) {
  Fused<T, false, true>(S, pI);
}
template <class T>
void FusedNegMulAdd(STATE& S, const INST* pI) {
  Fused<T, true, true>(S, pI);
}
template <class T>
void FusedNegMulSub(STATE& S, const INST* pI) {
  Fused<T, true, false>(S, pI);
}

template <class T>
void MaxNum(STATE& S, const INST* pI) {
  SetD(S, pI, FpMaxNum(N<T>(S, pI), M<T>(S, pI), S.Fp.FPSCR));
}

template <class T>
void MinNum(STATE& S, const INST* pI) {
  SetD(S, pI, FpMinNum(N<T>(S, pI), M<T>(S, pI), S.Fp.FPSCR));
}

template <class T>
void Select(STATE& S, const INST* pI) {
  SetD(S, pI, IsTrue(S, pI->Ra) ? N<T>(S, pI) : M<T>(S, pI));
}

template <class T>
void Move(STATE& S, const INST* pI) {
  SetD(S, pI, M<T>(S, pI));
}

template <class T>
void Abs(STATE& S, const INST* pI) {
  SetD(S, pI, FpAbs(M<T>(S, pI)));
}

template <class T>
void Neg(STATE& S, const INST* pI) {
  SetD(S, pI, FpNeg(M<T>(S, pI)));
}

template <class T>
void Sqrt(STATE& S, const INST* pI) {
  SetD(S, pI, FastSqrt(M<T>(S, pI), S.Fp.FPSCR));
}

template <class T>
void CompareWith(STATE& S, const INST* pI, T B) {
  U32& Fpscr = S.Fp.FPSCR;
  const U32 Flags = FastCompare(D<T>(S, pI), B, pI->Ra, Fpscr);
  Fpscr = (Fpscr & ~FPSCR_NZCV) | Flags;
}

template <class T>
void Compare(STATE& S, const INST* pI) {
  CompareWith(S, pI, M<T>(S, pI));
}

template <class T>
void CompareZero(STATE& S, const INST* pI) {
  CompareWith(S, pI, T{0});
}

template <class T>
void RoundToIntegral(STATE& S, const INST* pI) {
  SetD(S, pI, FpRoundInt(M<T>(S, pI), Rounding(S, pI), pI->Ra, S.Fp.FPSCR));
}

template <class T>
void ToInteger(STATE& S, const INST* pI) {
  SetD(S, pI, FastToInteger(M<T>(S, pI), pI->Ra, Rounding(S, pI), S.Fp.FPSCR));
}

template <class T>
void FromInteger(STATE& S, const INST* pI) {
  SetD(S, pI, FastFromInteger<T>(M<U32>(S, pI), pI->Ra, S.Fp.FPSCR));
}

template <class T>
void ToFixed(STATE& S, const INST* pI) {
  const U32 Value = FpToFixed(D<T>(S, pI), {pI->ShiftN, pI->Imm, !pI->Ra}, FP_ROUND::ZERO, S.Fp.FPSCR);
  const I64 Extended = pI->Ra ? static_cast<I64>(static_cast<I32>(Value)) : static_cast<I64>(Value);
  SetD(S, pI, static_cast<T>(Extended));
}

template <class T>
void FromFixed(STATE& S, const INST* pI) {
  SetD(S, pI, FpFromFixed<T>(D<U32>(S, pI), {pI->ShiftN, pI->Imm, !pI->Ra}, FP_ROUND::NEAREST, S.Fp.FPSCR));
}

template <class T>
void ToHalf(STATE& S, const INST* pI) {
  const U32 Value = FpConvert<U16>(M<T>(S, pI), S.Fp.FPSCR);
  const U32 Old = D<U32>(S, pI);
  SetD(S, pI, pI->Ra ? (Old & 0xFFFF) | Value << 16 : (Old & 0xFFFF0000) | Value);
}

template <class T>
void FromHalf(STATE& S, const INST* pI) {
  SetD(S, pI, FpConvert<T>(static_cast<U16>(M<U32>(S, pI) >> (pI->Ra ? 16 : 0)), S.Fp.FPSCR));
}

template <class T>
void ToOtherPrecision(STATE& S, const INST* pI) {
  using OTHER = std::conditional_t<sizeof(T) == sizeof(U32), U64, U32>;
  SetD(S, pI, FpConvert<OTHER>(M<T>(S, pI), S.Fp.FPSCR));
}

template <class T>
void MoveImmediate(STATE& S, const INST* pI) {
  SetD(S, pI, static_cast<T>(static_cast<T>(pI->Imm) << (8 * (sizeof(T) - sizeof(U32)))));
}

void ToCore(STATE& S, const INST* pI) {
  S.R[pI->Rd] = S.Fp.S[pI->Rn];
}

void ToCorePair(STATE& S, const INST* pI) {
  S.R[pI->Rd] = S.Fp.S[pI->Rn];
  S.R[pI->Ra] = S.Fp.S[pI->Rn + 1];
}

void FromCore(STATE& S, const INST* pI) {
  S.Fp.S[pI->Rn] = S.R[pI->Rd];
}

void FromCorePair(STATE& S, const INST* pI) {
  S.Fp.S[pI->Rn] = S.R[pI->Rd];
  S.Fp.S[pI->Rn + 1] = S.R[pI->Ra];
}

void ReadStatus(STATE& S, const INST* pI) {
  if (pI->Rd != PC) {
    S.R[pI->Rd] = S.Fp.FPSCR;
  } else {
    S.SetAPSR((S.Fp.FPSCR & FPSCR_NZCV) | (S.APSR() & ~FPSCR_NZCV), true, false);
  }
}

void WriteStatus(STATE& S, const INST* pI) {
  S.Fp.FPSCR = S.R[pI->Rd] & FPSCR_MASK;
}

}  // namespace

HANDLER FpHandler(FP_OP Op, bool bDouble) {
  static constexpr HANDLER TABLE[][2] = {
#define SIM_FP_ROW(Name) {RunFp<Name<U32>>, RunFp<Name<U64>>},
      SIM_FP_OPS(SIM_FP_ROW)
#undef SIM_FP_ROW
  };
  return TABLE[static_cast<size_t>(Op)][bDouble];
}

HANDLER FpToCoreHandler(bool bPair) {
  return bPair ? RunFp<ToCorePair> : RunFp<ToCore>;
}

HANDLER FpFromCoreHandler(bool bPair) {
  return bPair ? RunFp<FromCorePair> : RunFp<FromCore>;
}

HANDLER FpReadStatusHandler() {
  return RunFp<ReadStatus>;
}

HANDLER FpWriteStatusHandler() {
  return RunFp<WriteStatus>;
}

}  // namespace sim
