// Floating point encodings of both instruction sets, single and double precision.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Arithmetic
  {"1110 1110 0 D 00 nnnn dddd 101 z N 0 M 0 mmmm", 5, KIND_PLAIN, "VMLA<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 00 nnnn dddd 101 z N 1 M 0 mmmm", 5, KIND_PLAIN, "VMLS<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 01 nnnn dddd 101 z N 0 M 0 mmmm", 5, KIND_PLAIN, "VNMLS<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 01 nnnn dddd 101 z N 1 M 0 mmmm", 5, KIND_PLAIN, "VNMLA<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 10 nnnn dddd 101 z N 0 M 0 mmmm", 5, KIND_PLAIN, "VMUL<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 10 nnnn dddd 101 z N 1 M 0 mmmm", 5, KIND_PLAIN, "VNMUL<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 11 nnnn dddd 101 z N 0 M 0 mmmm", 5, KIND_PLAIN, "VADD<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 0 D 11 nnnn dddd 101 z N 1 M 0 mmmm", 5, KIND_PLAIN, "VSUB<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 1 D 00 nnnn dddd 101 z N 0 M 0 mmmm", 5, KIND_PLAIN, "VDIV<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 1 D 01 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_PLAIN, "VFNMS<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 1 D 01 nnnn dddd 101 z N 1 M 0 mmmm", 7, KIND_PLAIN, "VFNMA<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 1 D 10 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_PLAIN, "VFMA<c><f>\t<vd>, <vn>, <vm>"},
  {"1110 1110 1 D 10 nnnn dddd 101 z N 1 M 0 mmmm", 7, KIND_PLAIN, "VFMS<c><f>\t<vd>, <vn>, <vm>"},

  // One operand, immediate, compare
  {"1110 1110 1 D 11 iiii dddd 101 z 0 0 0 0 iiii", 7, KIND_PLAIN, "VMOV<c><f>\t<vd>, <vimm>"},
  {"1110 1110 1 D 11 0000 dddd 101 z 0 1 M 0 mmmm", 5, KIND_PLAIN, "VMOV<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0000 dddd 101 z 1 1 M 0 mmmm", 5, KIND_PLAIN, "VABS<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0001 dddd 101 z 0 1 M 0 mmmm", 5, KIND_PLAIN, "VNEG<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0001 dddd 101 z 1 1 M 0 mmmm", 5, KIND_PLAIN, "VSQRT<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0100 dddd 101 z 0 1 M 0 mmmm", 5, KIND_PLAIN, "VCMP<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0100 dddd 101 z 1 1 M 0 mmmm", 5, KIND_PLAIN, "VCMPE<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0101 dddd 101 z 0 1 0 0 0000", 5, KIND_PLAIN, "VCMP<c><f>\t<vd>, #0.0"},
  {"1110 1110 1 D 11 0101 dddd 101 z 1 1 0 0 0000", 5, KIND_PLAIN, "VCMPE<c><f>\t<vd>, #0.0"},
  {"1110 1110 1 D 11 0110 dddd 101 z 0 1 M 0 mmmm", 7, KIND_PLAIN, "VRINTR<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0110 dddd 101 z 1 1 M 0 mmmm", 7, KIND_PLAIN, "VRINTZ<c><f>\t<vd>, <vm>"},
  {"1110 1110 1 D 11 0111 dddd 101 z 0 1 M 0 mmmm", 7, KIND_PLAIN, "VRINTX<c><f>\t<vd>, <vm>"},

  // Conversions
  {"1110 1110 1 D 11 0010 dddd 101 0 0 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTB<c>.F32.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0010 dddd 101 0 1 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTT<c>.F32.F16\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0011 dddd 101 0 0 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTB<c>.F16.F32\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0011 dddd 101 0 1 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTT<c>.F16.F32\t<sd>, <sm>"},
  {"1110 1110 1 D 11 0010 dddd 101 1 0 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTB<c>.F64.F16\t<dd>, <sm>"},
  {"1110 1110 1 D 11 0010 dddd 101 1 1 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTT<c>.F64.F16\t<dd>, <sm>"},
  {"1110 1110 1 D 11 0011 dddd 101 1 0 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTB<c>.F16.F64\t<sd>, <dm>"},
  {"1110 1110 1 D 11 0011 dddd 101 1 1 1 M 0 mmmm", 7, KIND_PLAIN, "VCVTT<c>.F16.F64\t<sd>, <dm>"},
  {"1110 1110 1 D 11 0111 dddd 101 0 1 1 M 0 mmmm", 5, KIND_PLAIN, "VCVT<c>.F64.F32\t<dd>, <sm>"},
  {"1110 1110 1 D 11 0111 dddd 101 1 1 1 M 0 mmmm", 5, KIND_PLAIN, "VCVT<c>.F32.F64\t<sd>, <dm>"},
  {"1110 1110 1 D 11 1000 dddd 101 z 0 1 M 0 mmmm", 5, KIND_PLAIN, "VCVT<c><f>.U32\t<vd>, <sm>"},
  {"1110 1110 1 D 11 1000 dddd 101 z 1 1 M 0 mmmm", 5, KIND_PLAIN, "VCVT<c><f>.S32\t<vd>, <sm>"},
  {"1110 1110 1 D 11 1100 dddd 101 z 0 1 M 0 mmmm", 5, KIND_PLAIN, "VCVTR<c>.U32<f>\t<sd>, <vm>"},
  {"1110 1110 1 D 11 1100 dddd 101 z 1 1 M 0 mmmm", 5, KIND_PLAIN, "VCVT<c>.U32<f>\t<sd>, <vm>"},
  {"1110 1110 1 D 11 1101 dddd 101 z 0 1 M 0 mmmm", 5, KIND_PLAIN, "VCVTR<c>.S32<f>\t<sd>, <vm>"},
  {"1110 1110 1 D 11 1101 dddd 101 z 1 1 M 0 mmmm", 5, KIND_PLAIN, "VCVT<c>.S32<f>\t<sd>, <vm>"},
  {"1110 1110 1 D 11 1010 dddd 101 z k 1 i 0 iiii", 7, KIND_FLOAT_FIXED, "VCVT<c><f>.S<fixsize>\t<vd>, <vd>, <fixbits>"},
  {"1110 1110 1 D 11 1011 dddd 101 z k 1 i 0 iiii", 7, KIND_FLOAT_FIXED, "VCVT<c><f>.U<fixsize>\t<vd>, <vd>, <fixbits>"},
  {"1110 1110 1 D 11 1110 dddd 101 z k 1 i 0 iiii", 7, KIND_FLOAT_FIXED, "VCVT<c>.S<fixsize><f>\t<vd>, <vd>, <fixbits>"},
  {"1110 1110 1 D 11 1111 dddd 101 z k 1 i 0 iiii", 7, KIND_FLOAT_FIXED, "VCVT<c>.U<fixsize><f>\t<vd>, <vd>, <fixbits>"},

  // Unconditional forms
  {"1111 1110 0 D 00 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_NOCOND, "VSELEQ<f>\t<vd>, <vn>, <vm>"},
  {"1111 1110 0 D 01 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_NOCOND, "VSELVS<f>\t<vd>, <vn>, <vm>"},
  {"1111 1110 0 D 10 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_NOCOND, "VSELGE<f>\t<vd>, <vn>, <vm>"},
  {"1111 1110 0 D 11 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_NOCOND, "VSELGT<f>\t<vd>, <vn>, <vm>"},
  {"1111 1110 1 D 00 nnnn dddd 101 z N 0 M 0 mmmm", 7, KIND_NOCOND, "VMAXNM<f>\t<vd>, <vn>, <vm>"},
  {"1111 1110 1 D 00 nnnn dddd 101 z N 1 M 0 mmmm", 7, KIND_NOCOND, "VMINNM<f>\t<vd>, <vn>, <vm>"},
  {"1111 1110 1 D 11 10rr dddd 101 z 0 1 M 0 mmmm", 7, KIND_NOCOND, "VRINT<rounding><f>\t<vd>, <vm>"},
  {"1111 1110 1 D 11 11rr dddd 101 z 0 1 M 0 mmmm", 7, KIND_NOCOND, "VCVT<rounding>.U32<f>\t<sd>, <vm>"},
  {"1111 1110 1 D 11 11rr dddd 101 z 1 1 M 0 mmmm", 7, KIND_NOCOND, "VCVT<rounding>.S32<f>\t<sd>, <vm>"},

  // Load and store
  {"1110 1101 u D 01 1111 dddd 101 0 iiii iiii", 5, KIND_LITERAL_DUAL, "VLDR<c>.32\t<vd>, <literal>"},
  {"1110 1101 u D 01 1111 dddd 101 1 iiii iiii", 5, KIND_LITERAL_DUAL, "VLDR<c>.64\t<vd>, <literal>"},
  {"1110 1101 u D 01 nnnn dddd 101 0 iiii iiii", 5, KIND_MEM, "VLDR<c>.32\t<vd>, <indexed0.8.2>"},
  {"1110 1101 u D 01 nnnn dddd 101 1 iiii iiii", 5, KIND_MEM, "VLDR<c>.64\t<vd>, <indexed0.8.2>"},
  {"1110 1101 u D 00 nnnn dddd 101 0 iiii iiii", 5, KIND_MEM, "VSTR<c>.32\t<vd>, <indexed0.8.2>"},
  {"1110 1101 u D 00 nnnn dddd 101 1 iiii iiii", 5, KIND_MEM, "VSTR<c>.64\t<vd>, <indexed0.8.2>"},
  {"1110 1100 1 D w0 nnnn dddd 1011 iiii iii1", 5, KIND_FLOAT_LIST, "FSTMIAX<c>\t<R16><writeback21>, {<vlist>}"},
  {"1110 1100 1 D w1 nnnn dddd 1011 iiii iii1", 5, KIND_FLOAT_LIST, "FLDMIAX<c>\t<R16><writeback21>, {<vlist>}"},
  {"1110 1101 0 D 10 nnnn dddd 1011 iiii iii1", 5, KIND_FLOAT_LIST, "FSTMDBX<c>\t<R16>!, {<vlist>}"},
  {"1110 1101 0 D 11 nnnn dddd 1011 iiii iii1", 5, KIND_FLOAT_LIST, "FLDMDBX<c>\t<R16>!, {<vlist>}"},
  {"1110 1101 0 D 10 1101 dddd 101 z iiii iiii", 5, KIND_FLOAT_LIST, "VPUSH<c>\t{<vlist>}"},
  {"1110 1100 1 D 11 1101 dddd 101 z iiii iiii", 5, KIND_FLOAT_LIST, "VPOP<c>\t{<vlist>}"},
  {"1110 1100 1 D w0 nnnn dddd 101 z iiii iiii", 5, KIND_FLOAT_LIST, "VSTM<c>\t<R16><writeback21>, {<vlist>}"},
  {"1110 1100 1 D w1 nnnn dddd 101 z iiii iiii", 5, KIND_FLOAT_LIST, "VLDM<c>\t<R16><writeback21>, {<vlist>}"},
  {"1110 1101 0 D 10 nnnn dddd 101 z iiii iiii", 5, KIND_FLOAT_LIST, "VSTMDB<c>\t<R16>!, {<vlist>}"},
  {"1110 1101 0 D 11 nnnn dddd 101 z iiii iiii", 5, KIND_FLOAT_LIST, "VLDMDB<c>\t<R16>!, {<vlist>}"},

  // Transfers; a pair of singles never begins with the last one
  {"1110 1100 010x xxxx xxxx 1010 0011 1111", 4, KIND_REFUSED, ""},
  {"1110 1100 0100 uuuu tttt 1010 00M1 mmmm", 5, KIND_PLAIN, "VMOV<c>\t<sm>, <snext>, <R12>, <R16>"},
  {"1110 1100 0101 uuuu tttt 1010 00M1 mmmm", 5, KIND_PLAIN, "VMOV<c>\t<R12>, <R16>, <sm>, <snext>"},
  {"1110 1100 0100 uuuu tttt 1011 00M1 mmmm", 5, KIND_PLAIN, "VMOV<c>\t<dm>, <R12>, <R16>"},
  {"1110 1100 0101 uuuu tttt 1011 00M1 mmmm", 5, KIND_PLAIN, "VMOV<c>\t<R12>, <R16>, <dm>"},
  {"1110 1110 0000 nnnn tttt 1010 N001 0000", 5, KIND_PLAIN, "VMOV<c>\t<sn>, <R12>"},
  {"1110 1110 0001 nnnn tttt 1010 N001 0000", 5, KIND_PLAIN, "VMOV<c>\t<R12>, <sn>"},
  {"1110 1110 0 0 i 0 nnnn tttt 1011 N001 0000", 5, KIND_PLAIN, "VMOV<c>\t<dn>[<digits21.1>], <R12>"},
  {"1110 1110 0 0 i 1 nnnn tttt 1011 N001 0000", 5, KIND_PLAIN, "VMOV<c>\t<R12>, <dn>[<digits21.1>]"},
  {"1110 1110 1110 0001 tttt 1010 0001 0000", 5, KIND_PLAIN, "VMSR<c>\tFPSCR, <R12>"},
  {"1110 1110 1111 0001 1111 1010 0001 0000", 5, KIND_PLAIN, "VMRS<c>\tAPSR_nzcv, FPSCR"},
  {"1110 1110 1111 0001 tttt 1010 0001 0000", 5, KIND_PLAIN, "VMRS<c>\t<R12>, FPSCR"},
  {"1110 1110 1110 0000 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMSR<c>\tFPSID, <R12>"},
  {"1110 1110 1111 0000 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, FPSID"},
  {"1110 1110 1111 0101 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, MVFR2"},
  {"1110 1110 1111 0110 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, MVFR1"},
  {"1110 1110 1111 0111 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, MVFR0"},
  {"1110 1110 1110 1000 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMSR<c>\tFPEXC, <R12>"},
  {"1110 1110 1111 1000 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, FPEXC"},
  {"1110 1110 1110 1001 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMSR<c>\tFPINST, <R12>"},
  {"1110 1110 1111 1001 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, FPINST"},
  {"1110 1110 1110 1010 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMSR<c>\tFPINST2, <R12>"},
  {"1110 1110 1111 1010 tttt 1010 0001 0000", NotOnM(5), KIND_PLAIN, "VMRS<c>\t<R12>, FPINST2"},

  // Lanes of vectors
  {"1110 1110 0 1 i 0 nnnn tttt 1011 N ii 1 0000", 7, KIND_PLAIN, "VMOV<c>.8\t<dn>[<bytelane>], <R12>"},
  {"1110 1110 0 0 i 0 nnnn tttt 1011 N i1 1 0000", 7, KIND_PLAIN, "VMOV<c>.16\t<dn>[<halflane>], <R12>"},
  {"1110 1110 0 1 i 1 nnnn tttt 1011 N ii 1 0000", 7, KIND_PLAIN, "VMOV<c>.S8\t<R12>, <dn>[<bytelane>]"},
  {"1110 1110 0 0 i 1 nnnn tttt 1011 N i1 1 0000", 7, KIND_PLAIN, "VMOV<c>.S16\t<R12>, <dn>[<halflane>]"},
  {"1110 1110 1 1 i 1 nnnn tttt 1011 N ii 1 0000", 7, KIND_PLAIN, "VMOV<c>.U8\t<R12>, <dn>[<bytelane>]"},
  {"1110 1110 1 0 i 1 nnnn tttt 1011 N i1 1 0000", 7, KIND_PLAIN, "VMOV<c>.U16\t<R12>, <dn>[<halflane>]"},
  {"1110 1110 1 1 0 0 dddd tttt 1011 D 00 1 0000", 7, KIND_PLAIN, "VDUP<c>.8\t<dn>, <R12>"},
  {"1110 1110 1 0 0 0 dddd tttt 1011 D 01 1 0000", 7, KIND_PLAIN, "VDUP<c>.16\t<dn>, <R12>"},
  {"1110 1110 1 0 0 0 dddd tttt 1011 D 00 1 0000", 7, KIND_PLAIN, "VDUP<c>.32\t<dn>, <R12>"},
  {"1110 1110 1 1 1 0 ddd0 tttt 1011 D 00 1 0000", 7, KIND_PLAIN, "VDUP<c>.8\t<qn>, <R12>"},
  {"1110 1110 1 0 1 0 ddd0 tttt 1011 D 01 1 0000", 7, KIND_PLAIN, "VDUP<c>.16\t<qn>, <R12>"},
  {"1110 1110 1 0 1 0 ddd0 tttt 1011 D 00 1 0000", 7, KIND_PLAIN, "VDUP<c>.32\t<qn>, <R12>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> FloatRows() {
  return aRow;
}
