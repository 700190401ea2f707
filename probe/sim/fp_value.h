#pragma once
// Numbers taken apart, and put together again with rounding: what the operations of fp.h are made of.

#include <bit>

#include "probe/sim/fp.h"

namespace sim {

using U128 = unsigned __int128;

template <class T>
struct FP_FORMAT;
template <>
struct FP_FORMAT<U16> {
  static constexpr U32 FRACTION_BITS = 10;
  static constexpr U32 EXP_BITS = 5;
};
template <>
struct FP_FORMAT<U32> {
  static constexpr U32 FRACTION_BITS = 23;
  static constexpr U32 EXP_BITS = 8;
};
template <>
struct FP_FORMAT<U64> {
  static constexpr U32 FRACTION_BITS = 52;
  static constexpr U32 EXP_BITS = 11;
};

template <class T>
inline constexpr U32 FRACTION_BITS = FP_FORMAT<T>::FRACTION_BITS;
template <class T>
inline constexpr U32 MAX_BIASED_EXP = (1u << FP_FORMAT<T>::EXP_BITS) - 1;
template <class T>
inline constexpr I32 MIN_EXP = 2 - (1 << (FP_FORMAT<T>::EXP_BITS - 1));  // of the smallest normal number
template <class T>
inline constexpr T FP_INFINITY = static_cast<T>(static_cast<T>(MAX_BIASED_EXP<T>) << FRACTION_BITS<T>);
template <class T>
inline constexpr T FP_QUIET_BIT = static_cast<T>(static_cast<T>(1) << (FRACTION_BITS<T> - 1));
template <class T>
inline constexpr T FP_DEFAULT_NAN = FP_INFINITY<T> | FP_QUIET_BIT<T>;

enum class FP_KIND : U8 { ZERO, FINITE, INF, QUIET_NAN, SIGNALLING_NAN };

inline constexpr I32 SIG_TOP = 63;  // position of the leading bit of FP_VALUE::Sig

struct FP_VALUE {
  FP_KIND Kind = FP_KIND::ZERO;
  bool bNeg = false;
  I32 Exp = 0;  // FINITE: the value is Sig * 2^Exp
  U64 Sig = 0;
  bool IsNaN() const { return Kind >= FP_KIND::QUIET_NAN; }
  bool IsInf() const { return Kind == FP_KIND::INF; }
  bool IsZero() const { return Kind == FP_KIND::ZERO; }
};

// A magnitude that is not rounded yet: Sig * 2^Exp; what lies below the lowest bit is or-ed into it.
struct FP_EXACT {
  bool bNeg = false;
  I32 Exp = 0;
  U128 Sig = 0;
};

inline U128 ShiftRightJam(U128 Sig, U32 Num) {
  if (!Num) return Sig;
  if (Num > 127) return Sig != 0;
  return Sig >> Num | ((Sig << (128 - Num)) != 0);
}

inline I32 TopBit(U128 Sig) {
  const U64 High = static_cast<U64>(Sig >> 64);
  return High ? 127 - std::countl_zero(High) : 63 - std::countl_zero(static_cast<U64>(Sig));
}

// Sig >> Shift, rounded; Shift is 1 to 127.
struct ROUNDED {
  U128 Sig;
  bool bInexact;
};
ROUNDED RoundShift(U128 Sig, U32 Shift, bool bNeg, FP_ROUND Rounding);

// Flushes denormal numbers where FPSCR says so, with the flag for it.
template <class T>
FP_VALUE FpUnpack(T Bits, U32& Fpscr);
// Exact.Sig is not 0.
template <class T>
T FpRound(const FP_EXACT& Exact, FP_ROUND Rounding, U32& Fpscr);

template <class T>
inline T FpSigned(bool bNeg, T Magnitude) {
  return static_cast<T>(Magnitude | (bNeg ? FP_SIGN<T> : 0));
}

template <class T>
inline T FpInvalid(U32& Fpscr) {
  Fpscr |= FPSCR_IOC;
  return FP_DEFAULT_NAN<T>;
}

// What an operation makes of its operand A, which is a NaN.
template <class T>
inline T FpProcessNaN(FP_KIND Kind, T A, U32& Fpscr) {
  if (Kind == FP_KIND::SIGNALLING_NAN) Fpscr |= FPSCR_IOC;
  return Fpscr & FPSCR_DN ? FP_DEFAULT_NAN<T> : A | FP_QUIET_BIT<T>;
}

}  // namespace sim
