// Half precision floating point encodings of both instruction sets.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Arithmetic
  {"1110 1110 0 D 00 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VMLA<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 00 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_PLAIN, "VMLS<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 01 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VNMLS<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 01 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_PLAIN, "VNMLA<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 10 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VMUL<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 10 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_PLAIN, "VNMUL<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 11 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VADD<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 0 D 11 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_PLAIN, "VSUB<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 1 D 00 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VDIV<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 1 D 01 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VFNMS<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 1 D 01 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_PLAIN, "VFNMA<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 1 D 10 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_PLAIN, "VFMA<c>.F16\t<sd>, <sn>, <sm>"},
  {"1110 1110 1 D 10 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_PLAIN, "VFMS<c>.F16\t<sd>, <sn>, <sm>"},

  // One operand, immediate, compare
  {"1110 1110 1 D 11 iiii dddd 1001 0 0 0 0 iiii", 8, KIND_PLAIN, "VMOV<c>.F16\t<sd>, <vimm>"},
  {"1110 1110 1 D 11 0000 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VABS<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0001 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VNEG<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0001 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VSQRT<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0100 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VCMP<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0100 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VCMPE<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0101 dddd 1001 0 1 0 0 0000", 8, KIND_PLAIN, "VCMP<c>.F16\t<sd>, #0.0"},
  {"1110 1110 1 D 11 0101 dddd 1001 1 1 0 0 0000", 8, KIND_PLAIN, "VCMPE<c>.F16\t<sd>, #0.0"},
  {"1110 1110 1 D 11 0110 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VRINTR<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0110 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VRINTZ<c>.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0111 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VRINTX<c>.F16\t<sd>, <sm>"},

  // Conversions
  {"1110 1110 1 D 11 1000 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VCVT<c>.F16.U32\t<sd>, <sm>"},
  {"1110 1110 1 D 11 1000 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VCVT<c>.F16.S32\t<sd>, <sm>"},
  {"1110 1110 1 D 11 1100 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VCVTR<c>.U32.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 1100 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VCVT<c>.U32.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 1101 dddd 1001 0 1 M 0 mmmm", 8, KIND_PLAIN, "VCVTR<c>.S32.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 1101 dddd 1001 1 1 M 0 mmmm", 8, KIND_PLAIN, "VCVT<c>.S32.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 1010 dddd 1001 k 1 i 0 iiii", 8, KIND_FLOAT_FIXED, "VCVT<c>.F16.S<fixsize>\t<sd>, <sd>, <fixbits>"},
  {"1110 1110 1 D 11 1011 dddd 1001 k 1 i 0 iiii", 8, KIND_FLOAT_FIXED, "VCVT<c>.F16.U<fixsize>\t<sd>, <sd>, <fixbits>"},
  {"1110 1110 1 D 11 1110 dddd 1001 k 1 i 0 iiii", 8, KIND_FLOAT_FIXED, "VCVT<c>.S<fixsize>.F16\t<sd>, <sd>, <fixbits>"},
  {"1110 1110 1 D 11 1111 dddd 1001 k 1 i 0 iiii", 8, KIND_FLOAT_FIXED, "VCVT<c>.U<fixsize>.F16\t<sd>, <sd>, <fixbits>"},

  // Unconditional forms
  {"1111 1110 0 D 00 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_NOCOND, "VSELEQ.F16\t<sd>, <sn>, <sm>"},
  {"1111 1110 0 D 01 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_NOCOND, "VSELVS.F16\t<sd>, <sn>, <sm>"},
  {"1111 1110 0 D 10 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_NOCOND, "VSELGE.F16\t<sd>, <sn>, <sm>"},
  {"1111 1110 0 D 11 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_NOCOND, "VSELGT.F16\t<sd>, <sn>, <sm>"},
  {"1111 1110 1 D 00 nnnn dddd 1001 N 0 M 0 mmmm", 8, KIND_NOCOND, "VMAXNM.F16\t<sd>, <sn>, <sm>"},
  {"1111 1110 1 D 00 nnnn dddd 1001 N 1 M 0 mmmm", 8, KIND_NOCOND, "VMINNM.F16\t<sd>, <sn>, <sm>"},
  {"1111 1110 1 D 11 10rr dddd 1001 0 1 M 0 mmmm", 8, KIND_NOCOND, "VRINT<rounding>.F16\t<sd>, <sm>"},
  {"1111 1110 1 D 11 11rr dddd 1001 0 1 M 0 mmmm", 8, KIND_NOCOND, "VCVT<rounding>.U32.F16\t<sd>, <sm>"},
  {"1111 1110 1 D 11 11rr dddd 1001 1 1 M 0 mmmm", 8, KIND_NOCOND, "VCVT<rounding>.S32.F16\t<sd>, <sm>"},
  {"1111 1110 1 D 11 0000 dddd 1010 0 1 M 0 mmmm", 8, KIND_NOCOND, "VMOVX.F16\t<sd>, <sm>"},
  {"1111 1110 1 D 11 0000 dddd 1010 1 1 M 0 mmmm", 8, KIND_NOCOND, "VINS.F16\t<sd>, <sm>"},

  // Load, store and transfer
  {"1110 1101 u D 01 1111 dddd 1001 iiii iiii", 8, KIND_LITERAL_HALF, "VLDR<c>.16\t<sd>, <literal>"},
  {"1110 1101 u D 01 nnnn dddd 1001 iiii iiii", 8, KIND_MEM, "VLDR<c>.16\t<sd>, <indexed0.8.1>"},
  {"1110 1101 u D 00 nnnn dddd 1001 iiii iiii", 8, KIND_MEM, "VSTR<c>.16\t<sd>, <indexed0.8.1>"},
  {"1110 1110 0000 nnnn tttt 1001 N 001 0000", 8, KIND_PLAIN, "VMOV<c>.F16\t<sn>, <R12>"},
  {"1110 1110 0001 nnnn tttt 1001 N 001 0000", 8, KIND_PLAIN, "VMOV<c>.F16\t<R12>, <sn>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> HalfRows() {
  return aRow;
}
