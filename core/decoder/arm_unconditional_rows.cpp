// ARM encodings in the space of condition 15.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Processor state
  {"1111 0001 0000 10 0 0 0000000 aif 0 00000",  6, KIND_NOCOND, "CPSIE\t<aif6>"},
  {"1111 0001 0000 10 1 0 0000000 aif 0 mmmmm",  6, KIND_NOCOND, "CPSIE\t<aif6>, <dec0.5>"},
  {"1111 0001 0000 11 0 0 0000000 aif 0 00000",  6, KIND_NOCOND, "CPSID\t<aif6>"},
  {"1111 0001 0000 11 1 0 0000000 aif 0 mmmmm",  6, KIND_NOCOND, "CPSID\t<aif6>, <dec0.5>"},
  {"1111 0001 0000 00 1 0 0000000 000 0 mmmmm",  6, KIND_NOCOND, "CPS\t<dec0.5>"},
  {"1111 0001 0000 000 1 000000 0 0 0000 0000",  6, KIND_NOCOND, "SETEND\tLE"},
  {"1111 0001 0000 000 1 000000 1 0 0000 0000",  6, KIND_NOCOND, "SETEND\tBE"},

  // Preload
  {"1111 0101 u 101 1111 1111 iiii iiii iiii", 5, KIND_ARM_PRELOAD_LITERAL, "PLD\t<target>"},
  {"1111 0101 u 101 nnnn 1111 iiii iiii iiii", 5, KIND_NOCOND, "PLD\t<preload>"},
  {"1111 0101 u 001 nnnn 1111 iiii iiii iiii", 7, KIND_NOCOND, "PLDW\t<preload>"},
  {"1111 0100 u 101 1111 1111 iiii iiii iiii", 7, KIND_ARM_PRELOAD_LITERAL, "PLI\t<target>"},
  {"1111 0100 u 101 nnnn 1111 iiii iiii iiii", 7, KIND_NOCOND, "PLI\t<preload>"},
  {"1111 0111 u 101 nnnn 1111 iiiii tt 0 mmmm", 5, KIND_NOCOND, "PLD\t<preloadshifted>"},
  {"1111 0111 u 001 nnnn 1111 iiiii tt 0 mmmm", 7, KIND_NOCOND, "PLDW\t<preloadshifted>"},
  {"1111 0110 u 101 nnnn 1111 iiiii tt 0 mmmm", 7, KIND_NOCOND, "PLI\t<preloadshifted>"},

  // Exclusive monitor and barriers
  {"1111 0101 0111 1111 1111 0000 0001 1111", 6, KIND_NOCOND, "CLREX"},
  {"1111 0101 0111 1111 1111 0000 0100 oooo", 7, KIND_NOCOND, "DSB\t<barrier>"},
  {"1111 0101 0111 1111 1111 0000 0101 oooo", 7, KIND_NOCOND, "DMB\t<barrier>"},
  {"1111 0101 0111 1111 1111 0000 0110 oooo", 7, KIND_NOCOND, "ISB\t<barrier>"},

  // Exceptions and branches
  {"1111 100 00 1 w 0 1101 0000 0101 000 mmmmm", 6, KIND_MEM_NOCOND, "SRSDA\tSP<writeback21>, <hex0.5>"},
  {"1111 100 01 1 w 0 1101 0000 0101 000 mmmmm", 6, KIND_MEM_NOCOND, "SRSIA\tSP<writeback21>, <hex0.5>"},
  {"1111 100 10 1 w 0 1101 0000 0101 000 mmmmm", 6, KIND_MEM_NOCOND, "SRSDB\tSP<writeback21>, <hex0.5>"},
  {"1111 100 11 1 w 0 1101 0000 0101 000 mmmmm", 6, KIND_MEM_NOCOND, "SRSIB\tSP<writeback21>, <hex0.5>"},
  {"1111 100 00 0 w 1 nnnn 0000 1010 000 00000", 6, KIND_RFE, "RFEDA\t<R16><writeback21>"},
  {"1111 100 01 0 w 1 nnnn 0000 1010 000 00000", 6, KIND_RFE, "RFEIA\t<R16><writeback21>"},
  {"1111 100 10 0 w 1 nnnn 0000 1010 000 00000", 6, KIND_RFE, "RFEDB\t<R16><writeback21>"},
  {"1111 100 11 0 w 1 nnnn 0000 1010 000 00000", 6, KIND_RFE, "RFEIB\t<R16><writeback21>"},
  {"1111 101 h iiiiiiiiiiiiiiiiiiiiiiii",        5, KIND_ARM_BLX_IMM, "BLX\t<target>"},

  // Coprocessors
  {"1111 11xx xxxx xxxx xxxx 101x xxxx xxxx", 4, KIND_REFUSED, ""},
  {"1111 1100 0100 uuuu tttt pppp oooo mmmm", 6, KIND_NOCOND, "MCRR2\t<cp>, <hex4.4>, <R12>, <R16>, <cr0>"},
  {"1111 1100 0101 uuuu tttt pppp oooo mmmm", 6, KIND_NOCOND, "MRRC2\t<cp>, <hex4.4>, <R12>, <R16>, <cr0>"},
  {"1111 1100 0x0x xxxx xxxx xxxx xxxx xxxx", 4, KIND_REFUSED, ""},
  {"1111 110 p u 0 w 0 nnnn dddd pppp iiii iiii", 5, KIND_MEM_NOCOND, "STC2\t<cp>, <cr12>, <cpindexed>"},
  {"1111 110 p u 1 w 0 nnnn dddd pppp iiii iiii", 5, KIND_MEM_NOCOND, "STC2L\t<cp>, <cr12>, <cpindexed>"},
  {"1111 110 p u 0 w 1 nnnn dddd pppp iiii iiii", 5, KIND_MEM_NOCOND, "LDC2\t<cp>, <cr12>, <cpindexed>"},
  {"1111 110 p u 1 w 1 nnnn dddd pppp iiii iiii", 5, KIND_MEM_NOCOND, "LDC2L\t<cp>, <cr12>, <cpindexed>"},
  {"1111 1110 oooo nnnn dddd pppp ooo 0 mmmm", 5, KIND_NOCOND, "CDP2\t<cp>, <hex20.4>, <cr12>, <cr16>, <cr0>, <hex5.3>"},
  {"1111 1110 ooo 0 nnnn tttt pppp ooo 1 mmmm", 5, KIND_NOCOND, "MCR2\t<cp>, <hex21.3>, <R12>, <cr16>, <cr0>, <hex5.3>"},
  {"1111 1110 ooo 1 nnnn tttt pppp ooo 1 mmmm", 5, KIND_NOCOND, "MRC2\t<cp>, <hex21.3>, <Rflags12>, <cr16>, <cr0>, <hex5.3>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> ArmUnconditionalRows() {
  return aRow;
}
