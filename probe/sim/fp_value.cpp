#include "probe/sim/fp_value.h"

namespace sim {

namespace {

bool RoundsUp(FP_ROUND Rounding, bool bNeg, bool bOdd, U128 Rest, U128 Half) {
  switch (Rounding) {
    case FP_ROUND::NEAREST:
      return Rest > Half || (Rest == Half && bOdd);
    case FP_ROUND::PLUS_INF:
      return Rest && !bNeg;
    case FP_ROUND::MINUS_INF:
      return Rest && bNeg;
    case FP_ROUND::TIES_AWAY:
      return Rest >= Half;
    default:
      return false;
  }
}

template <class T>
T Overflow(bool bNeg, FP_ROUND Rounding, U32& Fpscr) {
  Fpscr |= FPSCR_OFC | FPSCR_IXC;
  const bool bToInf = Rounding == FP_ROUND::NEAREST || Rounding == (bNeg ? FP_ROUND::MINUS_INF : FP_ROUND::PLUS_INF);
  return FpSigned<T>(bNeg, static_cast<T>(FP_INFINITY<T> - !bToInf));
}

}  // namespace

ROUNDED RoundShift(U128 Sig, U32 Shift, bool bNeg, FP_ROUND Rounding) {
  const U128 Rest = Sig & ((static_cast<U128>(1) << Shift) - 1);
  const U128 Half = static_cast<U128>(1) << (Shift - 1);
  const U128 Down = Sig >> Shift;
  return {Down + RoundsUp(Rounding, bNeg, Down & 1, Rest, Half), Rest != 0};
}

template <class T>
FP_VALUE FpUnpack(T Bits, U32& Fpscr) {
  constexpr bool HALF = sizeof(T) == sizeof(U16);
  FP_VALUE Value;
  Value.bNeg = (Bits & FP_SIGN<T>) != 0;
  const U32 Biased = static_cast<U32>(Bits >> FRACTION_BITS<T>) & MAX_BIASED_EXP<T>;
  const U64 Fraction = Bits & ((static_cast<U64>(1) << FRACTION_BITS<T>)-1);
  if (Biased == MAX_BIASED_EXP<T> && !(HALF && (Fpscr & FPSCR_AHP))) {
    Value.Kind = !Fraction ? FP_KIND::INF : Bits & FP_QUIET_BIT<T> ? FP_KIND::QUIET_NAN : FP_KIND::SIGNALLING_NAN;
    return Value;
  }
  if (!Biased && !Fraction) return Value;
  if (!Biased && !HALF && (Fpscr & FPSCR_FZ)) {
    Fpscr |= FPSCR_IDC;
    return Value;
  }
  const U64 Sig = Biased ? Fraction | static_cast<U64>(1) << FRACTION_BITS<T> : Fraction;
  const int Shift = std::countl_zero(Sig);
  const I32 Exp = MIN_EXP<T> + static_cast<I32>(Biased ? Biased - 1 : 0) - static_cast<I32>(FRACTION_BITS<T>);
  return {FP_KIND::FINITE, Value.bNeg, Exp - Shift, Sig << Shift};
}

template <class T>
T FpRound(const FP_EXACT& Exact, FP_ROUND Rounding, U32& Fpscr) {
  constexpr bool HALF = sizeof(T) == sizeof(U16);
  constexpr U32 MAX_SHIFT = 126;
  const I32 Exp = Exact.Exp + TopBit(Exact.Sig);
  const bool bTiny = Exp < MIN_EXP<T>;
  if (bTiny && !HALF && (Fpscr & FPSCR_FZ)) {
    Fpscr |= FPSCR_UFC;
    return FpSigned<T>(Exact.bNeg, 0);
  }
  const I32 LowestExp = (bTiny ? MIN_EXP<T> : Exp) - static_cast<I32>(FRACTION_BITS<T>);
  const I32 Shift = LowestExp - Exact.Exp;
  ROUNDED Rounded;
  if (Shift <= 0) {
    Rounded = {Exact.Sig << -Shift, false};
  } else {
    const U32 Excess = Shift > static_cast<I32>(MAX_SHIFT) ? static_cast<U32>(Shift) - MAX_SHIFT : 0;
    Rounded = RoundShift(ShiftRightJam(Exact.Sig, Excess), static_cast<U32>(Shift) - Excess, Exact.bNeg, Rounding);
  }
  if (bTiny && Rounded.bInexact) Fpscr |= FPSCR_UFC;
  // The leading bit adds one to the exponent, and so does a carry out of the fraction.
  const U64 BiasedLess1 = bTiny ? 0 : static_cast<U64>(Exp - MIN_EXP<T>);
  const U64 Bits = (BiasedLess1 << FRACTION_BITS<T>)+static_cast<U64>(Rounded.Sig);
  if (HALF && (Fpscr & FPSCR_AHP)) {
    if (Bits >= FP_SIGN<T>) {
      Fpscr |= FPSCR_IOC;
      return FpSigned<T>(Exact.bNeg, static_cast<T>(FP_SIGN<T> - 1));
    }
  } else if (BiasedLess1 >= MAX_BIASED_EXP<T> || Bits >= FP_INFINITY<T>) {
    return Overflow<T>(Exact.bNeg, Rounding, Fpscr);
  }
  if (Rounded.bInexact) Fpscr |= FPSCR_IXC;
  return FpSigned<T>(Exact.bNeg, static_cast<T>(Bits));
}

template FP_VALUE FpUnpack(U16, U32&);
template FP_VALUE FpUnpack(U32, U32&);
template FP_VALUE FpUnpack(U64, U32&);
template U16 FpRound(const FP_EXACT&, FP_ROUND, U32&);
template U32 FpRound(const FP_EXACT&, FP_ROUND, U32&);
template U64 FpRound(const FP_EXACT&, FP_ROUND, U32&);

}  // namespace sim
