#pragma once
// The everyday cases of fp.h on the host's own floating point: rounding to nearest, no flushing, a normal result that
// is far enough from the ends of the range. There the only flag is "inexact", and an error term that can be computed
// without error tells whether to set it. Everything else goes the exact way.

#include <bit>
#include <cmath>
#include <type_traits>

#include "probe/sim/fp_value.h"

namespace sim {

template <class T>
using HOST_FP = std::conditional_t<sizeof(T) == sizeof(U32), float, double>;

template <class T>
inline HOST_FP<T> ToHost(T Bits) {
  return std::bit_cast<HOST_FP<T>>(Bits);
}
template <class T>
inline T FromHost(HOST_FP<T> Value) {
  return std::bit_cast<T>(Value);
}

inline bool HasFastModes(U32 Fpscr) {
  return !(Fpscr & (FPSCR_RMODE | FPSCR_FZ));
}
inline bool WantsInexact(U32 Fpscr) {
  return !(Fpscr & FPSCR_IXC);
}

// True when error terms of numbers of this size are normal numbers, too.
template <class T>
inline bool IsMiddling(T Bits) {
  constexpr U32 MARGIN = 2 * (FRACTION_BITS<T> + 2);
  return (static_cast<U32>(Bits >> FRACTION_BITS<T>) & MAX_BIASED_EXP<T>)-MARGIN < MAX_BIASED_EXP<T> - MARGIN;
}

template <class T>
inline T FastAdd(T BitsA, T BitsB, U32& Fpscr) {
  using F = HOST_FP<T>;
  const F A = ToHost(BitsA);
  const F B = ToHost(BitsB);
  const F Sum = A + B;
  const T Bits = FromHost<T>(Sum);
  if (!HasFastModes(Fpscr) || !IsMiddling(Bits)) [[unlikely]]
    return FpAdd(BitsA, BitsB, Fpscr);
  if (WantsInexact(Fpscr)) {
    const F PartB = Sum - A;
    const F PartA = Sum - PartB;
    if ((A - PartA) + (B - PartB) != 0) Fpscr |= FPSCR_IXC;
  }
  return Bits;
}

template <class T>
inline T FastMul(T BitsA, T BitsB, U32& Fpscr) {
  using F = HOST_FP<T>;
  const F A = ToHost(BitsA);
  const F B = ToHost(BitsB);
  const T Bits = FromHost<T>(A * B);
  if (!HasFastModes(Fpscr) || !IsMiddling(Bits)) [[unlikely]]
    return FpMul(BitsA, BitsB, Fpscr);
  if (WantsInexact(Fpscr) && std::fma(A, B, -ToHost(Bits)) != 0) Fpscr |= FPSCR_IXC;
  return Bits;
}

template <class T>
inline T FastDiv(T BitsA, T BitsB, U32& Fpscr) {
  using F = HOST_FP<T>;
  const F A = ToHost(BitsA);
  const F B = ToHost(BitsB);
  const T Bits = FromHost<T>(A / B);
  if (!HasFastModes(Fpscr) || !IsMiddling(Bits) || !IsMiddling(BitsA)) [[unlikely]]
    return FpDiv(BitsA, BitsB, Fpscr);
  if (WantsInexact(Fpscr) && std::fma(ToHost(Bits), B, -A) != 0) Fpscr |= FPSCR_IXC;
  return Bits;
}

template <class T>
inline T FastSqrt(T BitsA, U32& Fpscr) {
  if (!HasFastModes(Fpscr) || !IsMiddling(BitsA) || (BitsA & FP_SIGN<T>)) [[unlikely]]
    return FpSqrt(BitsA, Fpscr);
  const HOST_FP<T> Root = std::sqrt(ToHost(BitsA));
  if (WantsInexact(Fpscr) && std::fma(Root, Root, -ToHost(BitsA)) != 0) Fpscr |= FPSCR_IXC;
  return FromHost<T>(Root);
}

// Whether a fused result is exact is only known the exact way.
template <class T>
inline T FastMulAdd(T Addend, T A, T B, U32& Fpscr) {
  const T Bits = FromHost<T>(std::fma(ToHost(A), ToHost(B), ToHost(Addend)));
  if (!HasFastModes(Fpscr) || WantsInexact(Fpscr) || !IsMiddling(Bits)) [[unlikely]]
    return FpMulAdd(Addend, A, B, Fpscr);
  return Bits;
}

template <class T>
inline U32 FastCompare(T BitsA, T BitsB, bool bQuietToo, U32& Fpscr) {
  if (!IsMiddling(BitsA) || (BitsB && !IsMiddling(BitsB))) [[unlikely]]
    return FpCompare(BitsA, BitsB, bQuietToo, Fpscr);
  const HOST_FP<T> A = ToHost(BitsA);
  const HOST_FP<T> B = ToHost(BitsB);
  return (A < B ? 8u : A > B ? 2u : 6u) << 28;
}

// To a 32-bit integer, towards zero.
template <class T>
inline U32 FastToInteger(T BitsA, bool bSigned, FP_ROUND Rounding, U32& Fpscr) {
  using F = HOST_FP<T>;
  constexpr F LIMIT = 2147483648.0;
  const F A = ToHost(BitsA);
  const bool bFits = bSigned ? A > -LIMIT && A < LIMIT : A >= 0 && A < 2 * LIMIT;
  if (Rounding != FP_ROUND::ZERO || !IsMiddling(BitsA) || !bFits) [[unlikely]]
    return FpToFixed(BitsA, {32, 0, !bSigned}, Rounding, Fpscr);
  const I64 Integer = static_cast<I64>(A);
  if (static_cast<F>(Integer) != A) Fpscr |= FPSCR_IXC;
  return static_cast<U32>(Integer);
}

template <class T>
inline T FastFromInteger(U32 Value, bool bSigned, U32& Fpscr) {
  const double Exact = bSigned ? static_cast<double>(static_cast<I32>(Value)) : static_cast<double>(Value);
  if (Fpscr & FPSCR_RMODE) [[unlikely]]
    return FpFromFixed<T>(Value, {32, 0, !bSigned}, RoundingOf(Fpscr), Fpscr);
  const HOST_FP<T> Rounded = static_cast<HOST_FP<T>>(Exact);
  if (static_cast<double>(Rounded) != Exact) Fpscr |= FPSCR_IXC;
  return FromHost<T>(Rounded);
}

}  // namespace sim
