// Between floating point formats, and between them and integers.

#include "probe/sim/fp_value.h"

namespace sim {

namespace {

inline constexpr I32 MAX_INTEGER_EXP = 64;  // magnitudes of 2 to this or more are beyond every integer

// The magnitude of a finite number below 2^MAX_INTEGER_EXP, times 2^FractionBits, as an integer.
ROUNDED ToInteger(const FP_VALUE& Value, U32 FractionBits, FP_ROUND Rounding) {
  constexpr U32 MAX_SHIFT = 126;
  const I32 Exp = Value.Exp + static_cast<I32>(FractionBits);
  if (Exp >= 0) return {static_cast<U128>(Value.Sig) << Exp, false};
  const U32 Shift = static_cast<U32>(-Exp);
  const U32 Excess = Shift > MAX_SHIFT ? Shift - MAX_SHIFT : 0;
  return RoundShift(ShiftRightJam(Value.Sig, Excess), Shift - Excess, Value.bNeg, Rounding);
}

U32 Saturated(bool bNeg, FIXED_FORMAT Format, U32& Fpscr) {
  Fpscr |= FPSCR_IOC;
  const U32 Max = static_cast<U32>((1ull << (Format.bUnsigned ? Format.NumBits : Format.NumBits - 1)) - 1);
  if (!bNeg) return Max;
  return Format.bUnsigned ? 0 : ~Max;
}

template <class TO, class FROM>
TO ConvertNaN(FP_KIND Kind, FROM A, U32& Fpscr) {
  const bool bNeg = (A & FP_SIGN<FROM>) != 0;
  const bool bToAlternative = sizeof(TO) == sizeof(U16) && (Fpscr & FPSCR_AHP);
  if (Kind == FP_KIND::SIGNALLING_NAN || bToAlternative) Fpscr |= FPSCR_IOC;
  if (bToAlternative) return FpSigned<TO>(bNeg, 0);
  if (Fpscr & FPSCR_DN) return FP_DEFAULT_NAN<TO>;
  // The upper bits of the fraction are kept.
  const U64 Fraction = A & ((static_cast<U64>(1) << FRACTION_BITS<FROM>)-1);
  const U64 Aligned = Fraction << (FRACTION_BITS<U64> - FRACTION_BITS<FROM>);
  const TO Kept = static_cast<TO>(Aligned >> (FRACTION_BITS<U64> - FRACTION_BITS<TO>));
  return FpSigned<TO>(bNeg, static_cast<TO>(FP_DEFAULT_NAN<TO> | Kept));
}

template <class TO>
TO ConvertInf(bool bNeg, U32& Fpscr) {
  if (sizeof(TO) == sizeof(U16) && (Fpscr & FPSCR_AHP)) {
    Fpscr |= FPSCR_IOC;
    return FpSigned<TO>(bNeg, static_cast<TO>(FP_SIGN<TO> - 1));
  }
  return FpSigned<TO>(bNeg, FP_INFINITY<TO>);
}

}  // namespace

template <class T>
U32 FpToFixed(T A, FIXED_FORMAT Format, FP_ROUND Rounding, U32& Fpscr) {
  const FP_VALUE Value = FpUnpack(A, Fpscr);
  if (Value.IsNaN()) {
    Fpscr |= FPSCR_IOC;
    return 0;
  }
  if (Value.IsZero()) return 0;
  if (Value.IsInf() || Value.Exp + SIG_TOP + static_cast<I32>(Format.FractionBits) >= MAX_INTEGER_EXP)
    return Saturated(Value.bNeg, Format, Fpscr);
  const ROUNDED Rounded = ToInteger(Value, Format.FractionBits, Rounding);
  const U128 Limit = static_cast<U128>(1) << (Format.bUnsigned ? Format.NumBits : Format.NumBits - 1);
  const U128 Max = !Value.bNeg ? Limit - 1 : Format.bUnsigned ? 0 : Limit;
  if (Rounded.Sig > Max) return Saturated(Value.bNeg, Format, Fpscr);
  if (Rounded.bInexact) Fpscr |= FPSCR_IXC;
  const U32 Magnitude = static_cast<U32>(Rounded.Sig);
  return Value.bNeg ? 0u - Magnitude : Magnitude;
}

template <class T>
T FpFromFixed(U32 Value, FIXED_FORMAT Format, FP_ROUND Rounding, U32& Fpscr) {
  const U32 Unused = 32 - Format.NumBits;
  const I64 Number = Format.bUnsigned ? static_cast<I64>(Value << Unused >> Unused)
                                      : static_cast<I64>(static_cast<I32>(Value << Unused) >> Unused);
  if (!Number) return 0;
  const U64 Magnitude = static_cast<U64>(Number < 0 ? -Number : Number);
  return FpRound<T>({Number < 0, -static_cast<I32>(Format.FractionBits), Magnitude}, Rounding, Fpscr);
}

template <class T>
T FpRoundInt(T A, FP_ROUND Rounding, bool bExact, U32& Fpscr) {
  const FP_VALUE Value = FpUnpack(A, Fpscr);
  if (Value.IsNaN()) return FpProcessNaN(Value.Kind, A, Fpscr);
  if (Value.IsZero()) return FpSigned<T>(Value.bNeg, 0);
  if (Value.IsInf() || Value.Exp + SIG_TOP >= static_cast<I32>(FRACTION_BITS<T>)) return A;
  const ROUNDED Rounded = ToInteger(Value, 0, Rounding);
  if (Rounded.bInexact && bExact) Fpscr |= FPSCR_IXC;
  if (!Rounded.Sig) return FpSigned<T>(Value.bNeg, 0);
  return FpRound<T>({Value.bNeg, 0, Rounded.Sig}, FP_ROUND::ZERO, Fpscr);
}

template <class TO, class FROM>
TO FpConvert(FROM A, U32& Fpscr) {
  const FP_VALUE Value = FpUnpack(A, Fpscr);
  if (Value.IsNaN()) return ConvertNaN<TO>(Value.Kind, A, Fpscr);
  if (Value.IsInf()) return ConvertInf<TO>(Value.bNeg, Fpscr);
  if (Value.IsZero()) return FpSigned<TO>(Value.bNeg, 0);
  return FpRound<TO>({Value.bNeg, Value.Exp, Value.Sig}, RoundingOf(Fpscr), Fpscr);
}

#define SIM_FP_INSTANCES(T)                                     \
  template U32 FpToFixed(T, FIXED_FORMAT, FP_ROUND, U32&);      \
  template T FpFromFixed<T>(U32, FIXED_FORMAT, FP_ROUND, U32&); \
  template T FpRoundInt(T, FP_ROUND, bool, U32&);               \
  template U16 FpConvert<U16>(T, U32&);                         \
  template T FpConvert<T>(U16, U32&);
SIM_FP_INSTANCES(U32)
SIM_FP_INSTANCES(U64)
#undef SIM_FP_INSTANCES
template U32 FpConvert<U32>(U64, U32&);
template U64 FpConvert<U64>(U32, U32&);

}  // namespace sim
