// Sums, products, quotients, roots, comparisons.

#include <initializer_list>
#include <iterator>
#include <utility>

#include "probe/sim/fp_value.h"

namespace sim {

namespace {

inline constexpr I32 WIDE_TOP = 125;  // where the leading bits of summands stand, so that a carry has room

// The leading bit moves to WIDE_TOP; only zeros are lost by what operations do with it.
FP_EXACT Widen(bool bNeg, I32 Exp, U128 Sig) {
  const I32 Shift = WIDE_TOP - TopBit(Sig);
  return {bNeg, Exp - Shift, Shift >= 0 ? Sig << Shift : ShiftRightJam(Sig, static_cast<U32>(-Shift))};
}

FP_EXACT Widen(const FP_VALUE& Value) {
  return Widen(Value.bNeg, Value.Exp, Value.Sig);
}

FP_EXACT ExactSum(FP_EXACT A, FP_EXACT B) {
  if (A.Exp < B.Exp) std::swap(A, B);
  B.Sig = ShiftRightJam(B.Sig, static_cast<U32>(A.Exp - B.Exp));
  if (A.bNeg == B.bNeg) return {A.bNeg, A.Exp, A.Sig + B.Sig};
  if (A.Sig >= B.Sig) return {A.bNeg, A.Exp, A.Sig - B.Sig};
  return {B.bNeg, A.Exp, B.Sig - A.Sig};
}

FP_EXACT ExactProduct(const FP_VALUE& A, const FP_VALUE& B) {
  return Widen(A.bNeg != B.bNeg, A.Exp + B.Exp, static_cast<U128>(A.Sig) * B.Sig);
}

// A sum of two numbers that may be zero.
template <class T>
T RoundSum(const FP_EXACT& Sum, U32& Fpscr) {
  const FP_ROUND Rounding = RoundingOf(Fpscr);
  return Sum.Sig ? FpRound<T>(Sum, Rounding, Fpscr) : FpSigned<T>(Rounding == FP_ROUND::MINUS_INF, 0);
}

// The result of an operation with a NaN among its operands: signalling ones first, then in order.
template <class T>
bool ProcessNaNs(const FP_VALUE* paValues, const T* paBits, U32 Num, T* pResult, U32& Fpscr) {
  for (const FP_KIND Kind : {FP_KIND::SIGNALLING_NAN, FP_KIND::QUIET_NAN}) {
    for (U32 i = 0; i < Num; i++) {
      if (paValues[i].Kind != Kind) continue;
      *pResult = FpProcessNaN(Kind, paBits[i], Fpscr);
      return true;
    }
  }
  return false;
}

template <class T>
struct OPERANDS {
  OPERANDS(T A, T B, U32& Fpscr) : a{FpUnpack(A, Fpscr), FpUnpack(B, Fpscr)} {
    const T aBits[] = {A, B};
    bNaN = ProcessNaNs(a, aBits, 2, &NaN, Fpscr);
  }
  FP_VALUE a[2];
  bool bNaN;
  T NaN = 0;
};

U64 Root(U128 Square, bool* pbInexact) {
  U64 Result = 0;
  for (int Bit = SIG_TOP; Bit >= 0; Bit--) {
    const U64 Try = Result | static_cast<U64>(1) << Bit;
    if (static_cast<U128>(Try) * Try <= Square) Result = Try;
  }
  *pbInexact = static_cast<U128>(Result) * Result != Square;
  return Result;
}

// True when A is less than B; neither is a NaN.
bool IsLess(const FP_VALUE& A, const FP_VALUE& B) {
  if (A.IsZero() && B.IsZero()) return false;
  if (A.IsZero()) return !B.bNeg;
  if (B.IsZero()) return A.bNeg;
  if (A.bNeg != B.bNeg) return A.bNeg;
  const bool bNeg = A.bNeg;
  if (A.IsInf() || B.IsInf()) return A.IsInf() != B.IsInf() && A.IsInf() == bNeg;
  if (A.Exp != B.Exp) return (A.Exp < B.Exp) != bNeg;
  return A.Sig != B.Sig && (A.Sig < B.Sig) != bNeg;
}

template <class T>
T Pack(const FP_VALUE& Value, U32& Fpscr) {
  if (Value.IsZero()) return FpSigned<T>(Value.bNeg, 0);
  if (Value.IsInf()) return FpSigned<T>(Value.bNeg, FP_INFINITY<T>);
  return FpRound<T>({Value.bNeg, Value.Exp, Value.Sig}, FP_ROUND::NEAREST, Fpscr);
}

template <class T, bool MAX>
T MaxOrMinNum(T A, T B, U32& Fpscr) {
  constexpr T LOSER = MAX ? FP_INFINITY<T> | FP_SIGN<T> : FP_INFINITY<T>;
  const bool bQuietA = FpUnpack(A, Fpscr).Kind == FP_KIND::QUIET_NAN;
  const bool bQuietB = FpUnpack(B, Fpscr).Kind == FP_KIND::QUIET_NAN;
  if (bQuietA && !bQuietB) A = LOSER;
  if (bQuietB && !bQuietA) B = LOSER;
  OPERANDS<T> Ops(A, B, Fpscr);
  if (Ops.bNaN) return Ops.NaN;
  const auto& [ValueA, ValueB] = Ops.a;
  if (ValueA.IsZero() && ValueB.IsZero())
    return FpSigned<T>(MAX ? ValueA.bNeg && ValueB.bNeg : ValueA.bNeg || ValueB.bNeg, 0);
  return Pack<T>(IsLess(ValueA, ValueB) == MAX ? ValueB : ValueA, Fpscr);
}

}  // namespace

template <class T>
T FpAdd(T A, T B, U32& Fpscr) {
  const OPERANDS<T> Ops(A, B, Fpscr);
  if (Ops.bNaN) return Ops.NaN;
  const auto& [ValueA, ValueB] = Ops.a;
  if (ValueA.IsInf() && ValueB.IsInf() && ValueA.bNeg != ValueB.bNeg) return FpInvalid<T>(Fpscr);
  if (ValueA.IsInf() || ValueB.IsInf()) return FpSigned<T>(ValueA.IsInf() ? ValueA.bNeg : ValueB.bNeg, FP_INFINITY<T>);
  if (ValueA.IsZero() && ValueB.IsZero() && ValueA.bNeg == ValueB.bNeg) return FpSigned<T>(ValueA.bNeg, 0);
  if (ValueA.IsZero() && ValueB.IsZero()) return RoundSum<T>({}, Fpscr);
  if (ValueA.IsZero()) return RoundSum<T>(Widen(ValueB), Fpscr);
  if (ValueB.IsZero()) return RoundSum<T>(Widen(ValueA), Fpscr);
  return RoundSum<T>(ExactSum(Widen(ValueA), Widen(ValueB)), Fpscr);
}

template <class T>
T FpMul(T A, T B, U32& Fpscr) {
  const OPERANDS<T> Ops(A, B, Fpscr);
  if (Ops.bNaN) return Ops.NaN;
  const auto& [ValueA, ValueB] = Ops.a;
  const bool bNeg = ValueA.bNeg != ValueB.bNeg;
  if ((ValueA.IsInf() && ValueB.IsZero()) || (ValueA.IsZero() && ValueB.IsInf())) return FpInvalid<T>(Fpscr);
  if (ValueA.IsInf() || ValueB.IsInf()) return FpSigned<T>(bNeg, FP_INFINITY<T>);
  if (ValueA.IsZero() || ValueB.IsZero()) return FpSigned<T>(bNeg, 0);
  return FpRound<T>(ExactProduct(ValueA, ValueB), RoundingOf(Fpscr), Fpscr);
}

template <class T>
T FpDiv(T A, T B, U32& Fpscr) {
  const OPERANDS<T> Ops(A, B, Fpscr);
  if (Ops.bNaN) return Ops.NaN;
  const auto& [ValueA, ValueB] = Ops.a;
  const bool bNeg = ValueA.bNeg != ValueB.bNeg;
  if ((ValueA.IsInf() && ValueB.IsInf()) || (ValueA.IsZero() && ValueB.IsZero())) return FpInvalid<T>(Fpscr);
  if (ValueA.IsInf() || ValueB.IsZero()) {
    if (!ValueA.IsInf()) Fpscr |= FPSCR_DZC;
    return FpSigned<T>(bNeg, FP_INFINITY<T>);
  }
  if (ValueA.IsZero() || ValueB.IsInf()) return FpSigned<T>(bNeg, 0);
  const U128 Dividend = static_cast<U128>(ValueA.Sig) << SIG_TOP;
  const U128 Quotient = Dividend / ValueB.Sig;
  const bool bInexact = Quotient * ValueB.Sig != Dividend;
  return FpRound<T>({bNeg, ValueA.Exp - ValueB.Exp - SIG_TOP - 1, Quotient << 1 | bInexact}, RoundingOf(Fpscr), Fpscr);
}

template <class T>
T FpSqrt(T A, U32& Fpscr) {
  const FP_VALUE Value = FpUnpack(A, Fpscr);
  if (Value.IsNaN()) return FpProcessNaN(Value.Kind, A, Fpscr);
  if (Value.IsZero()) return FpSigned<T>(Value.bNeg, 0);
  if (Value.bNeg) return FpInvalid<T>(Fpscr);
  if (Value.IsInf()) return FP_INFINITY<T>;
  const I32 Shift = Value.Exp & 1 ? SIG_TOP : SIG_TOP - 1;  // leaves an even exponent
  bool bInexact;
  const U64 Result = Root(static_cast<U128>(Value.Sig) << Shift, &bInexact);
  return FpRound<T>({false, (Value.Exp - Shift) / 2 - 1, static_cast<U128>(Result) << 1 | bInexact}, RoundingOf(Fpscr),
                    Fpscr);
}

template <class T>
T FpMulAdd(T Addend, T A, T B, U32& Fpscr) {
  const T aBits[] = {Addend, A, B};
  const FP_VALUE aValues[] = {FpUnpack(Addend, Fpscr), FpUnpack(A, Fpscr), FpUnpack(B, Fpscr)};
  const auto& [ValueC, ValueA, ValueB] = aValues;
  const bool bInfTimesZero = (ValueA.IsInf() && ValueB.IsZero()) || (ValueA.IsZero() && ValueB.IsInf());
  T NaN;
  if (ProcessNaNs(aValues, aBits, std::size(aValues), &NaN, Fpscr))
    return ValueC.Kind == FP_KIND::QUIET_NAN && bInfTimesZero ? FpInvalid<T>(Fpscr) : NaN;
  const bool bInfProduct = ValueA.IsInf() || ValueB.IsInf();
  const bool bNegProduct = ValueA.bNeg != ValueB.bNeg;
  if (bInfTimesZero || (ValueC.IsInf() && bInfProduct && ValueC.bNeg != bNegProduct)) return FpInvalid<T>(Fpscr);
  if (ValueC.IsInf() || bInfProduct) return FpSigned<T>(ValueC.IsInf() ? ValueC.bNeg : bNegProduct, FP_INFINITY<T>);
  if (ValueA.IsZero() || ValueB.IsZero()) {
    if (!ValueC.IsZero()) return RoundSum<T>(Widen(ValueC), Fpscr);
    return ValueC.bNeg == bNegProduct ? FpSigned<T>(bNegProduct, 0) : RoundSum<T>({}, Fpscr);
  }
  const FP_EXACT Product = ExactProduct(ValueA, ValueB);
  return RoundSum<T>(ValueC.IsZero() ? Product : ExactSum(Product, Widen(ValueC)), Fpscr);
}

template <class T>
T FpMaxNum(T A, T B, U32& Fpscr) {
  return MaxOrMinNum<T, true>(A, B, Fpscr);
}

template <class T>
T FpMinNum(T A, T B, U32& Fpscr) {
  return MaxOrMinNum<T, false>(A, B, Fpscr);
}

template <class T>
U32 FpCompare(T A, T B, bool bQuietToo, U32& Fpscr) {
  constexpr U32 LESS = 8u << 28;
  constexpr U32 EQUAL = 6u << 28;
  constexpr U32 GREATER = 2u << 28;
  constexpr U32 UNORDERED = 3u << 28;
  const FP_VALUE ValueA = FpUnpack(A, Fpscr);
  const FP_VALUE ValueB = FpUnpack(B, Fpscr);
  if (ValueA.IsNaN() || ValueB.IsNaN()) {
    if (bQuietToo || ValueA.Kind == FP_KIND::SIGNALLING_NAN || ValueB.Kind == FP_KIND::SIGNALLING_NAN)
      Fpscr |= FPSCR_IOC;
    return UNORDERED;
  }
  return IsLess(ValueA, ValueB) ? LESS : IsLess(ValueB, ValueA) ? GREATER : EQUAL;
}

#define SIM_FP_INSTANCES(T)           \
  template T FpAdd(T, T, U32&);       \
  template T FpMul(T, T, U32&);       \
  template T FpDiv(T, T, U32&);       \
  template T FpSqrt(T, U32&);         \
  template T FpMulAdd(T, T, T, U32&); \
  template T FpMaxNum(T, T, U32&);    \
  template T FpMinNum(T, T, U32&);    \
  template U32 FpCompare(T, T, bool, U32&);
SIM_FP_INSTANCES(U32)
SIM_FP_INSTANCES(U64)
#undef SIM_FP_INSTANCES

}  // namespace sim
