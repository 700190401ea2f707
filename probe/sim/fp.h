#pragma once
// IEEE 754 arithmetic on the bits of single (U32) and double precision (U64) numbers, exactly as the core's FPU does
// it. Modes are taken from an FPSCR value, and cumulative flags are added to it.

#include "base/types.h"

namespace sim {

inline constexpr U32 FPSCR_IOC = 1u << 0;
inline constexpr U32 FPSCR_DZC = 1u << 1;
inline constexpr U32 FPSCR_OFC = 1u << 2;
inline constexpr U32 FPSCR_UFC = 1u << 3;
inline constexpr U32 FPSCR_IXC = 1u << 4;
inline constexpr U32 FPSCR_IDC = 1u << 7;
inline constexpr U32 FPSCR_RMODE_SHIFT = 22;
inline constexpr U32 FPSCR_RMODE = 3u << FPSCR_RMODE_SHIFT;
inline constexpr U32 FPSCR_FZ = 1u << 24;
inline constexpr U32 FPSCR_DN = 1u << 25;
inline constexpr U32 FPSCR_AHP = 1u << 26;
inline constexpr U32 FPSCR_NZCV = 0xF0000000;
inline constexpr U32 FPSCR_MASK = 0xF7C0009F;
inline constexpr U32 FPDSCR_MASK = FPSCR_AHP | FPSCR_DN | FPSCR_FZ | FPSCR_RMODE;

// The first four as FPSCR codes them.
enum class FP_ROUND : U8 { NEAREST, PLUS_INF, MINUS_INF, ZERO, TIES_AWAY };

inline FP_ROUND RoundingOf(U32 Fpscr) {
  return static_cast<FP_ROUND>(Fpscr >> FPSCR_RMODE_SHIFT & 3);
}

template <class T>
inline constexpr T FP_SIGN = static_cast<T>(static_cast<T>(1) << (8 * sizeof(T) - 1));

template <class T>
inline T FpNeg(T A) {
  return A ^ FP_SIGN<T>;
}
template <class T>
inline T FpAbs(T A) {
  return A & ~FP_SIGN<T>;
}

template <class T>
T FpAdd(T A, T B, U32& Fpscr);
template <class T>
T FpMul(T A, T B, U32& Fpscr);
template <class T>
T FpDiv(T A, T B, U32& Fpscr);
template <class T>
T FpSqrt(T A, U32& Fpscr);
// Addend + A * B with one rounding.
template <class T>
T FpMulAdd(T Addend, T A, T B, U32& Fpscr);
// A single quiet NaN loses against a number.
template <class T>
T FpMaxNum(T A, T B, U32& Fpscr);
template <class T>
T FpMinNum(T A, T B, U32& Fpscr);
// NZCV at their place in FPSCR. With bQuietToo a quiet NaN is an invalid operation, too.
template <class T>
U32 FpCompare(T A, T B, bool bQuietToo, U32& Fpscr);
// To an integral value. With bExact a change of value raises the inexact flag.
template <class T>
T FpRoundInt(T A, FP_ROUND Rounding, bool bExact, U32& Fpscr);

// What an integer or fixed point number looks like.
struct FIXED_FORMAT {
  U32 NumBits;       // 16 or 32
  U32 FractionBits;  // at most NumBits
  bool bUnsigned;
};

// Saturates; the result is extended to 32 bits by its sign.
template <class T>
U32 FpToFixed(T A, FIXED_FORMAT Format, FP_ROUND Rounding, U32& Fpscr);
template <class T>
T FpFromFixed(U32 Value, FIXED_FORMAT Format, FP_ROUND Rounding, U32& Fpscr);

// Between formats: U16 (half precision, IEEE or alternative by FPSCR), U32, U64.
template <class TO, class FROM>
TO FpConvert(FROM A, U32& Fpscr);

}  // namespace sim
