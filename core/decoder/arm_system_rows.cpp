// ARM encodings with a condition: branches, status registers, hints, exceptions, coprocessors.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Branches
  {"cccc 1010 iiiiiiiiiiiiiiiiiiiiiiii", 4, KIND_ARM_B, "B<c>\t<target>"},
  {"cccc 1011 iiiiiiiiiiiiiiiiiiiiiiii", 4, KIND_ARM_BL, "BL<c>\t<target>"},
  {"cccc 0001 0010 1111 1111 1111 0001 mmmm", 5, KIND_ARM_BX, "BX<c>\t<R0>"},
  {"cccc 0001 0010 1111 1111 1111 0010 mmmm", 5, KIND_ARM_BX, "BXJ<c>\t<R0>"},
  {"cccc 0001 0010 1111 1111 1111 0011 mmmm", 5, KIND_BLX, "BLX<c>\t<R0>"},

  // Exceptions
  {"cccc 1111 iiiiiiiiiiiiiiiiiiiiiiii", 4, KIND_ARM_SVC, "SVC<c>\t<hex0.24>"},
  {"cccc 0001 0010 iiii iiii iiii 0111 iiii", 5, KIND_ARM_BKPT, "BKPT\t<immgap2>"},
  {"cccc 0001 0000 iiii iiii iiii 0111 iiii", 8, KIND_ARM_ALWAYS, "HLT\t<immgap2>"},
  {"cccc 0001 0100 iiii iiii iiii 0111 iiii", 7, KIND_ARM_HVC, "HVC\t<immgap4>"},
  {"cccc 0001 0110 0000 0000 0000 0111 iiii", 6, KIND_SMC, "SMC<c>\t<dec0.4>"},
  {"cccc 0001 0110 0000 0000 0000 0110 1110", 7, KIND_ERET, "ERET<c>"},

  // Status registers
  {"cccc 0001 0 r 00 1111 dddd 0000 0000 0000", 4, KIND_PLAIN, "MRS<c>\t<R12>, <psr>"},
  {"cccc 0001 0 r 10 mmmm 1111 0000 0000 nnnn", 4, KIND_PLAIN, "MSR<c>\t<psrfields>, <R0>"},
  {"cccc 0001 0 r 00 mmmm dddd 001m 0000 0000", 7, KIND_BANKED, "MRS<c>\t<R12>, <bankedreg>"},
  {"cccc 0001 0 r 10 mmmm 1111 001m 0000 nnnn", 7, KIND_BANKED, "MSR<c>\t<bankedreg>, <R0>"},

  // Hints stand in the place of writes to no field
  {"cccc 0011 0010 0000 1111 0000 0000 0001", 6, KIND_PLAIN, "YIELD<c>"},
  {"cccc 0011 0010 0000 1111 0000 0000 0010", 6, KIND_PLAIN, "WFE<c>"},
  {"cccc 0011 0010 0000 1111 0000 0000 0011", 6, KIND_PLAIN, "WFI<c>"},
  {"cccc 0011 0010 0000 1111 0000 0000 0100", 6, KIND_PLAIN, "SEV<c>"},
  {"cccc 0011 0010 0000 1111 0000 0000 0101", 8, KIND_PLAIN, "SEVL<c>"},
  {"cccc 0011 0010 0000 1111 0000 0001 0100", 7, KIND_PLAIN, "CSDB<c>"},
  {"cccc 0011 0010 0000 1111 0000 1111 oooo", 7, KIND_PLAIN, "DBG<c>\t<hex0.4>"},
  {"cccc 0011 0010 0000 1111 0000 xxxx xxxx", 6, KIND_PLAIN, "NOP<c>"},
  {"cccc 0011 0 0 10 0000 xxxx xxxx xxxx xxxx", 4, KIND_REFUSED, ""},
  {"cccc 0011 0 r 10 mmmm 1111 rrrr iiiiiiii", 4, KIND_PLAIN, "MSR<c>\t<psrfields>, <rotimm>"},

  // Coprocessors; 10 and 11 are those of floating point
  {"cccc 110x xxxx xxxx xxxx 101x xxxx xxxx", 4, KIND_REFUSED, ""},
  {"cccc 1110 xxxx xxxx xxxx 101x xxxx xxxx", 4, KIND_REFUSED, ""},
  {"cccc 1100 0100 uuuu tttt pppp oooo mmmm", 5, KIND_PLAIN, "MCRR<c>\t<cp>, <hex4.4>, <R12>, <R16>, <cr0>"},
  {"cccc 1100 0101 uuuu tttt pppp oooo mmmm", 5, KIND_PLAIN, "MRRC<c>\t<cp>, <hex4.4>, <R12>, <R16>, <cr0>"},
  {"cccc 1100 0x0x xxxx xxxx xxxx xxxx xxxx", 4, KIND_REFUSED, ""},
  {"cccc 110 p u 0 w 0 nnnn dddd pppp iiii iiii", 4, KIND_MEM, "STC<c>\t<cp>, <cr12>, <cpindexed>"},
  {"cccc 110 p u 1 w 0 nnnn dddd pppp iiii iiii", 4, KIND_MEM, "STCL<c>\t<cp>, <cr12>, <cpindexed>"},
  {"cccc 110 p u 0 w 1 nnnn dddd pppp iiii iiii", 4, KIND_MEM, "LDC<c>\t<cp>, <cr12>, <cpindexed>"},
  {"cccc 110 p u 1 w 1 nnnn dddd pppp iiii iiii", 4, KIND_MEM, "LDCL<c>\t<cp>, <cr12>, <cpindexed>"},
  {"cccc 1110 oooo nnnn dddd pppp ooo 0 mmmm", 4, KIND_PLAIN, "CDP<c>\t<cp>, <hex20.4>, <cr12>, <cr16>, <cr0>, <hex5.3>"},
  {"cccc 1110 ooo 0 nnnn tttt pppp ooo 1 mmmm", 4, KIND_PLAIN, "MCR<c>\t<cp>, <hex21.3>, <R12>, <cr16>, <cr0>, <hex5.3>"},
  {"cccc 1110 ooo 1 nnnn tttt pppp ooo 1 mmmm", 4, KIND_PLAIN, "MRC<c>\t<cp>, <hex21.3>, <Rflags12>, <cr16>, <cr0>, <hex5.3>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> ArmSystemRows() {
  return aRow;
}
