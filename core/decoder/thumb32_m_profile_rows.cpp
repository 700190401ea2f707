// 32-bit Thumb encodings that only the M profile has: security, loops, conditional selection, pointer authentication.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Security gateway and test target
  {"1110 1001 0111 1111 1110 1001 0111 1111", 8, KIND_NOCOND, "SG"},
  {"11101000 0100 nnnn 1111 dddd 00 000000",  8, KIND_PLAIN, "TT<c>\t<R8>, <R16>"},
  {"11101000 0100 nnnn 1111 dddd 01 000000",  8, KIND_PLAIN, "TTT<c>\t<R8>, <R16>"},
  {"11101000 0100 nnnn 1111 dddd 10 000000",  8, KIND_PLAIN, "TTA<c>\t<R8>, <R16>"},
  {"11101000 0100 nnnn 1111 dddd 11 000000",  8, KIND_PLAIN, "TTAT<c>\t<R8>, <R16>"},

  // Loops; those with a size go on by vector elements
  {"11110 0 000 100 1111 110 0 i iiiiiiiiii 1", 8, KIND_REFUSED, ""},
  {"11110 0 000 100 nnnn 110 0 i iiiiiiiiii 1", 8, KIND_LOOP_START, "WLS\tLR, <R16>, <target>"},
  {"11110 0 000 100 1111 111 0 0 0000000000 1", 8, KIND_REFUSED, ""},
  {"11110 0 000 100 nnnn 111 0 0 0000000000 1", 8, KIND_NOCOND, "DLS\tLR, <R16>"},
  {"11110 0 000 000 1111 110 0 i iiiiiiiiii 1", 8, KIND_LOOP_END, "LE\tLR, <target>"},
  {"11110 0 000 010 1111 110 0 i iiiiiiiiii 1", 8, KIND_LOOP_END, "LE\t<target>"},
  {"11110 0 000 001 1111 110 0 i iiiiiiiiii 1", 8, KIND_LOOP_END, "LETP\tLR, <target>"},
  {"11110 0 000 000 1111 111 0 0 0000000000 1", 8, KIND_PLAIN, "LCTP<c>"},
  {"11110 0 000 0xx 1111 11x 0 x xxxxxxxxxx 1", 8, KIND_REFUSED, ""},
  {"11110 0 000 0ss nnnn 110 0 i iiiiiiiiii 1", 8, KIND_LOOP_START, "WLSTP.<size20>\tLR, <R16>, <target>"},
  {"11110 0 000 0ss nnnn 111 0 0 0000000000 1", 8, KIND_NOCOND, "DLSTP.<size20>\tLR, <R16>"},

  // Selection by the flags
  {"11101010 0101 nnnn 10 oo dddd cccc mmmm", 8, KIND_SELECT, "<select>"},

  // Pointer authentication; the hints run as NOP on other cores
  {"11110 0 1110 1 0 1111 1000 0 000 0000 1101", 8, KIND_NOCOND, "PACBTI\tR12, LR, SP"},
  {"11110 0 1110 1 0 1111 1000 0 000 0000 1111", 8, KIND_NOCOND, "BTI"},
  {"11110 0 1110 1 0 1111 1000 0 000 0001 1101", 8, KIND_NOCOND, "PAC\tR12, LR, SP"},
  {"11110 0 1110 1 0 1111 1000 0 000 0010 1101", 8, KIND_NOCOND, "AUT\tR12, LR, SP"},
  {"11111011 0 110 nnnn 1111 dddd 0000 mmmm", 8, KIND_PLAIN, "PACG<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 101 nnnn aaaa 1111 0000 mmmm", 8, KIND_PLAIN, "AUTG<c>\t<R12>, <R16>, <R0>"},
  {"11111011 0 101 nnnn aaaa 1111 0001 mmmm", 8, KIND_BXAUT, "BXAUT<c>\t<R12>, <R16>, <R0>"},

  // Clearing registers before a change of the security state
  {"11101000 1001 1111 0000 0000 0000 0000",  8, KIND_REFUSED, ""},
  {"11101000 1001 1111 ll0l llll llll llll",  8, KIND_PLAIN, "CLRM<c>\t{<clearlist>}"},
  {"1110 1100 1 D 01 1111 dddd 1010 iiii iiii", 8, KIND_FLOAT_CLEAR, "VSCCLRM<c>\t{<vlist>, VPR}"},
  {"1110 1100 1 D 01 1111 dddd 1011 iiii iii0", 8, KIND_FLOAT_CLEAR, "VSCCLRM<c>\t{<vlist>, VPR}"},

  // Floating point state of the other security state
  {"1110 1100 0010 nnnn 0000 1010 0000 0000", 8, KIND_MEM, "VLSTM<c>\t<R16>, {D0-D15}"},
  {"1110 1100 0010 nnnn 0000 1010 1000 0000", 8, KIND_MEM, "VLSTM<c>\t<R16>, {D0-D31}"},
  {"1110 1100 0011 nnnn 0000 1010 0000 0000", 8, KIND_MEM, "VLLDM<c>\t<R16>, {D0-D15}"},
  {"1110 1100 0011 nnnn 0000 1010 1000 0000", 8, KIND_MEM, "VLLDM<c>\t<R16>, {D0-D31}"},

  // Registers of the floating point unit
  {"1110 1101 u D w0 nnnn rrr0 1111 1 iii iiii", 8, KIND_FLOAT_SYSTEM, "VSTR<c>\t<fpsystem>, <indexed0.7.2>"},
  {"1110 1101 u D w1 nnnn rrr0 1111 1 iii iiii", 8, KIND_FLOAT_SYSTEM, "VLDR<c>\t<fpsystem>, <indexed0.7.2>"},
  {"1110 1100 u D 10 nnnn rrr0 1111 1 iii iiii", 8, KIND_FLOAT_SYSTEM, "VSTR<c>\t<fpsystem>, <indexed0.7.2>"},
  {"1110 1100 u D 11 nnnn rrr0 1111 1 iii iiii", 8, KIND_FLOAT_SYSTEM, "VLDR<c>\t<fpsystem>, <indexed0.7.2>"},
  {"1110 1110 1110 0010 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMSR<c>\tFPSCR_nzcvqc, <R12>"},
  {"1110 1110 1111 0010 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMRS<c>\t<R12>, FPSCR_nzcvqc"},
  {"1110 1110 1110 1100 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMSR<c>\tVPR, <R12>"},
  {"1110 1110 1111 1100 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMRS<c>\t<R12>, VPR"},
  {"1110 1110 1110 1101 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMSR<c>\tP0, <R12>"},
  {"1110 1110 1111 1101 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMRS<c>\t<R12>, P0"},
  {"1110 1110 1110 1110 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMSR<c>\tFPCXTNS, <R12>"},
  {"1110 1110 1111 1110 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMRS<c>\t<R12>, FPCXTNS"},
  {"1110 1110 1110 1111 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMSR<c>\tFPCXTS, <R12>"},
  {"1110 1110 1111 1111 tttt 1010 0001 0000", 8, KIND_PLAIN, "VMRS<c>\t<R12>, FPCXTS"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> Thumb32MProfileRows() {
  return aRow;
}
