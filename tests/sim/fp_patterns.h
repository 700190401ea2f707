#pragma once
// Encodings of floating point instructions. Every register of the bank may be read and written, so that its number is
// any bits; in double precision the extra bit of the number is 0.

#include "tests/sim/pattern.h"

namespace sim_test {

inline constexpr sim::ARCH EM = sim::ARCH::ARMV7EM;
inline constexpr sim::FPU F4 = sim::FPU::V4_SINGLE, F5 = sim::FPU::V5_SINGLE, FD = sim::FPU::V5_DOUBLE;

// clang-format off
inline constexpr PATTERN FP_PATTERNS[] = {
    {"VMLx.F32",   "111011100.00........1010...0....", EM, ANY, F4},
    {"VNMLx.F32",  "111011100.01........1010...0....", EM, ANY, F4},
    {"VMUL.F32",   "111011100.10........1010...0....", EM, ANY, F4},
    {"VADD.F32",   "111011100.11........1010...0....", EM, ANY, F4},
    {"VDIV.F32",   "111011101.00........1010.0.0....", EM, ANY, F4},
    {"VFNMx.F32",  "111011101.01........1010...0....", EM, ANY, F4},
    {"VFMx.F32",   "111011101.10........1010...0....", EM, ANY, F4},
    {"VMOV imm",   "111011101.11........10100000....", EM, ANY, F4},
    {"VABS.F32",   "111011101.110000....1010.1.0....", EM, ANY, F4},
    {"VNEG.F32",   "111011101.110001....101001.0....", EM, ANY, F4},
    {"VSQRT.F32",  "111011101.110001....101011.0....", EM, ANY, F4},
    {"VCVTBT.F32", "111011101.11001.....1010.1.0....", EM, ANY, F4},
    {"VCMP.F32",   "111011101.110100....1010.1.0....", EM, ANY, F4},
    {"VCMPZ.F32",  "111011101.110101....1010.1000000", EM, ANY, F4},
    {"VCVT F,I",   "111011101.111000....1010.1.0....", EM, ANY, F4},
    {"VCVT I,F",   "111011101.11110.....1010.1.0....", EM, ANY, F4},
    {"VCVT fix16", "111011101.111.1.....101001.0....", EM, FIXED_FITS, F4},
    {"VCVT to32",  "111011101.11111.....101011.0....", EM, ANY, F4},
    {"VCVT fr32",  "111011101.11101.....101011.0....", EM, ANY, F4, ANYWHERE, PEER_RULE::OLD_ROUNDING},
    {"VMOV r,s",   "111011100001....dddd1010.0010000", EM, ANY, F4},
    {"VMOV s,r",   "111011100000....nnnn1010.0010000", EM, ANY, F4},
    {"VMOV r,d[]", "1110111000.1....dddd101100010000", EM, ANY, F4},
    {"VMOV d[],r", "1110111000.0....nnnn101100010000", EM, ANY, F4},
    {"VMOV rr,ss", "111011000101eeeedddd101000.1....", EM, PAIR_FITS, F4},
    {"VMOV ss,rr", "111011000100nnnnaaaa101000.1....", EM, PAIR_FITS, F4},
    {"VMOV rr,d",  "111011000101eeeedddd10110001....", EM, ANY, F4},
    {"VMOV d,rr",  "111011000100nnnnaaaa10110001....", EM, ANY, F4},
    {"VMRS APSR",  "11101110111100011111101000010000", EM, ANY, F4},
    {"VMRS",       "1110111011110001dddd101000010000", EM, ANY, F4},
    {"VLDR s",     "11101101..01bbbb....1010........", EM, ANY, F4},
    {"VSTR s",     "11101101..00bbbb....1010........", EM, ANY, F4},
    {"VLDR d",     "11101101.001bbbb....1011........", EM, ANY, F4},
    {"VSTR d",     "11101101.000bbbb....1011........", EM, ANY, F4},
    {"VLDR lit",   "111011011.011111....101000......", EM, ANY, F4},
    {"VLDM/VSTM",  "111011001...bbbb....1010000.....", EM, FP_LIST, F4},
    {"V..MDB",     "111011010.1.bbbb....1010000.....", EM, FP_LIST, F4},
    {"V..M d",     "1110110010..bbbb....1011000....0", EM, FP_LIST_D, F4},
    {"V..MDB d",   "11101101001.bbbb....1011000....0", EM, FP_LIST_D, F4},
    {"VPUSH",      "111011010.101101....1010000.....", EM, FP_LIST, F4},
    {"VPOP",       "111011001.111101....1010000.....", EM, FP_LIST, F4},

    {"VSEL.F32",   "111111100...........1010.0.0....", EM, ANY, F5, NOT_IN_BLOCK},
    {"VxxxNM.F32", "111111101.00........1010...0....", EM, ANY, F5, NOT_IN_BLOCK},
    {"VRINTd.F32", "111111101.1110......101001.0....", EM, ANY, F5, NOT_IN_BLOCK},
    {"VCVTd.F32",  "111111101.1111......1010.1.0....", EM, ANY, F5, NOT_IN_BLOCK},
    {"VRINTR/Z",   "111011101.110110....1010.1.0....", EM, ANY, F5},
    {"VRINTX",     "111011101.110111....101001.0....", EM, ANY, F5},

    {"VMLx.F64",   "111011100000........10110.00....", EM, ANY, FD},
    {"VNMLx.F64",  "111011100001........10110.00....", EM, ANY, FD},
    {"VMUL.F64",   "111011100010........10110.00....", EM, ANY, FD},
    {"VADD.F64",   "111011100011........10110.00....", EM, ANY, FD},
    {"VDIV.F64",   "111011101000........10110000....", EM, ANY, FD},
    {"VFNMx.F64",  "111011101001........10110.00....", EM, ANY, FD},
    {"VFMx.F64",   "111011101010........10110.00....", EM, ANY, FD},
    {"VMOVD imm",  "111011101011........10110000....", EM, ANY, FD},
    {"VABS.F64",   "1110111010110000....1011.100....", EM, ANY, FD},
    {"VNEG.F64",   "1110111010110001....10110100....", EM, ANY, FD},
    {"VSQRT.F64",  "1110111010110001....10111100....", EM, ANY, FD},
    {"VCVTBT F,H", "1110111010110010....1011.1.0....", EM, ANY, FD},
    {"VCVTBT H,F", "111011101.110011....1011.100....", EM, ANY, FD},
    {"VCMP.F64",   "1110111010110100....1011.100....", EM, ANY, FD},
    {"VCMPZ.F64",  "1110111010110101....1011.1000000", EM, ANY, FD},
    {"VCVT D,I",   "1110111010111000....1011.1.0....", EM, ANY, FD},
    {"VCVT I,D",   "111011101.11110.....1011.100....", EM, ANY, FD},
    {"VCVT D fix", "1110111010111.1.....1011.1.0....", EM, FIXED_FITS, FD},
    {"VCVT S,D",   "111011101.110111....10111100....", EM, ANY, FD},
    {"VCVT D,S",   "1110111010110111....101011.0....", EM, ANY, FD},
    {"VSEL.F64",   "1111111000..........10110000....", EM, ANY, FD, NOT_IN_BLOCK},
    {"VxxxNM.F64", "111111101000........10110.00....", EM, ANY, FD, NOT_IN_BLOCK},
    {"VRINTd.F64", "11111110101110......10110100....", EM, ANY, FD, NOT_IN_BLOCK},
    {"VCVTd.F64",  "111111101.1111......1011.100....", EM, ANY, FD, NOT_IN_BLOCK},
    {"VRINTR/Z D", "1110111010110110....1011.100....", EM, ANY, FD},
    {"VRINTX D",   "1110111010110111....10110100....", EM, ANY, FD},
};
// clang-format on

}  // namespace sim_test
