// 16-bit Thumb encodings.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Shift, add, subtract, move and compare
  {"000 00 00000 mmm ddd",  4, KIND_PLAIN, "MOVS\t<r0>, <r3>"},
  {"000 00 iiiii mmm ddd",  4, KIND_PLAIN, "LSL<z><c>\t<r0>, <r3>, <hex6.5>"},
  {"000 01 iiiii mmm ddd",  4, KIND_PLAIN, "LSR<z><c>\t<r0>, <r3>, <amount6.5>"},
  {"000 10 iiiii mmm ddd",  4, KIND_PLAIN, "ASR<z><c>\t<r0>, <r3>, <amount6.5>"},
  {"000 11 0 0 mmm nnn ddd", 4, KIND_PLAIN, "ADD<z><c>\t<r0>, <r3>, <r6>"},
  {"000 11 0 1 mmm nnn ddd", 4, KIND_PLAIN, "SUB<z><c>\t<r0>, <r3>, <r6>"},
  {"000 11 1 0 iii nnn ddd", 4, KIND_PLAIN, "ADD<z><c>\t<r0>, <r3>, <hex6.3>"},
  {"000 11 1 1 iii nnn ddd", 4, KIND_PLAIN, "SUB<z><c>\t<r0>, <r3>, <hex6.3>"},
  {"001 00 ddd iiiiiiii",   4, KIND_PLAIN, "MOV<z><c>\t<r8>, <hex0.8>"},
  {"001 01 nnn iiiiiiii",   4, KIND_PLAIN, "CMP<c>\t<r8>, <hex0.8>"},
  {"001 10 ddd iiiiiiii",   4, KIND_PLAIN, "ADD<z><c>\t<r8>, <hex0.8>"},
  {"001 11 ddd iiiiiiii",   4, KIND_PLAIN, "SUB<z><c>\t<r8>, <hex0.8>"},

  // Data processing, registers
  {"010000 0000 mmm ddd",   4, KIND_PLAIN, "AND<z><c>\t<r0>, <r3>"},
  {"010000 0001 mmm ddd",   4, KIND_PLAIN, "EOR<z><c>\t<r0>, <r3>"},
  {"010000 0010 mmm ddd",   4, KIND_PLAIN, "LSL<z><c>\t<r0>, <r3>"},
  {"010000 0011 mmm ddd",   4, KIND_PLAIN, "LSR<z><c>\t<r0>, <r3>"},
  {"010000 0100 mmm ddd",   4, KIND_PLAIN, "ASR<z><c>\t<r0>, <r3>"},
  {"010000 0101 mmm ddd",   4, KIND_PLAIN, "ADC<z><c>\t<r0>, <r3>"},
  {"010000 0110 mmm ddd",   4, KIND_PLAIN, "SBC<z><c>\t<r0>, <r3>"},
  {"010000 0111 mmm ddd",   4, KIND_PLAIN, "ROR<z><c>\t<r0>, <r3>"},
  {"010000 1000 mmm ddd",   4, KIND_PLAIN, "TST<c>\t<r0>, <r3>"},
  {"010000 1001 mmm ddd",   4, KIND_PLAIN, "RSB<z><c>\t<r0>, <r3>, #0"},
  {"010000 1010 mmm ddd",   4, KIND_PLAIN, "CMP<c>\t<r0>, <r3>"},
  {"010000 1011 mmm ddd",   4, KIND_PLAIN, "CMN<c>\t<r0>, <r3>"},
  {"010000 1100 mmm ddd",   4, KIND_PLAIN, "ORR<z><c>\t<r0>, <r3>"},
  {"010000 1101 mmm ddd",   4, KIND_PLAIN, "MUL<z><c>\t<r0>, <r3>"},
  {"010000 1110 mmm ddd",   4, KIND_PLAIN, "BIC<z><c>\t<r0>, <r3>"},
  {"010000 1111 mmm ddd",   4, KIND_PLAIN, "MVN<z><c>\t<r0>, <r3>"},
  {"010001 00 d mmmm ddd",  4, KIND_HIGH_REG, "ADD<c>\t<hd>, <R3>"},
  {"010001 01 d mmmm ddd",  4, KIND_PLAIN, "CMP<c>\t<hd>, <R3>"},
  {"010001 10 d mmmm ddd",  4, KIND_HIGH_REG, "MOV<c>\t<hd>, <R3>"},
  {"010001 110 mmmm 100",   8, KIND_BX, "BXNS<c>\t<R3>"},
  {"010001 110 mmmm xxx",   4, KIND_BX, "BX<c>\t<R3>"},
  {"010001 111 mmmm 100",   8, KIND_BLX, "BLXNS<c>\t<R3>"},
  {"010001 111 mmmm 000",   5, KIND_BLX, "BLX<c>\t<R3>"},

  // Load and store
  {"01001 ttt iiiiiiii",    4, KIND_LITERAL16, "LDR<c>\t<r8>, <literal>"},
  {"0101 000 mmm nnn ttt",  4, KIND_MEM, "STR<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 001 mmm nnn ttt",  4, KIND_MEM, "STRH<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 010 mmm nnn ttt",  4, KIND_MEM, "STRB<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 011 mmm nnn ttt",  4, KIND_MEM, "LDRSB<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 100 mmm nnn ttt",  4, KIND_MEM, "LDR<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 101 mmm nnn ttt",  4, KIND_MEM, "LDRH<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 110 mmm nnn ttt",  4, KIND_MEM, "LDRB<c>\t<r0>, [<r3>, <r6>]"},
  {"0101 111 mmm nnn ttt",  4, KIND_MEM, "LDRSH<c>\t<r0>, [<r3>, <r6>]"},
  {"01100 iiiii nnn ttt",   4, KIND_MEM, "STR<c>\t<r0>, [<r3><offset6.5.2>]"},
  {"01101 iiiii nnn ttt",   4, KIND_MEM, "LDR<c>\t<r0>, [<r3><offset6.5.2>]"},
  {"01110 iiiii nnn ttt",   4, KIND_MEM, "STRB<c>\t<r0>, [<r3><offset6.5.0>]"},
  {"01111 iiiii nnn ttt",   4, KIND_MEM, "LDRB<c>\t<r0>, [<r3><offset6.5.0>]"},
  {"10000 iiiii nnn ttt",   4, KIND_MEM, "STRH<c>\t<r0>, [<r3><offset6.5.1>]"},
  {"10001 iiiii nnn ttt",   4, KIND_MEM, "LDRH<c>\t<r0>, [<r3><offset6.5.1>]"},
  {"10010 ttt iiiiiiii",    4, KIND_MEM, "STR<c>\t<r8>, [SP, <hex0.8.2>]"},
  {"10011 ttt iiiiiiii",    4, KIND_MEM, "LDR<c>\t<r8>, [SP, <hex0.8.2>]"},

  // Addresses
  {"10100 ddd iiiiiiii",    4, KIND_ADR16, "ADR<c>\t<r8>, <target>"},
  {"10101 ddd iiiiiiii",    4, KIND_PLAIN, "ADD<c>\t<r8>, SP, <hex0.8.2>"},

  // Miscellaneous
  {"1011 0000 0 iiiiiii",   4, KIND_PLAIN, "ADD<c>\tSP, SP, <hex0.7.2>"},
  {"1011 0000 1 iiiiiii",   4, KIND_PLAIN, "SUB<c>\tSP, SP, <hex0.7.2>"},
  {"1011 00i1 iiiii nnn",   7, KIND_CBZ, "CBZ\t<r0>, <target>"},
  {"1011 10i1 iiiii nnn",   7, KIND_CBZ, "CBNZ\t<r0>, <target>"},
  {"1011 0010 00 mmm ddd",  6, KIND_PLAIN, "SXTH<c>\t<r0>, <r3>"},
  {"1011 0010 01 mmm ddd",  6, KIND_PLAIN, "SXTB<c>\t<r0>, <r3>"},
  {"1011 0010 10 mmm ddd",  6, KIND_PLAIN, "UXTH<c>\t<r0>, <r3>"},
  {"1011 0010 11 mmm ddd",  6, KIND_PLAIN, "UXTB<c>\t<r0>, <r3>"},
  {"1011 x10 0 00000000",   4, KIND_REFUSED, ""},
  {"1011 010 p llllllll",   4, KIND_MEM, "PUSH<c>\t{<pushlist>}"},
  {"1011 0110 010 1 0 000", NotOnM(6), KIND_NOCOND, "SETEND\tLE"},
  {"1011 0110 010 1 1 000", NotOnM(6), KIND_NOCOND, "SETEND\tBE"},
  {"1011 0110 011 0 0 aif", 6, KIND_NOCOND, "CPSIE\t<aif0>"},
  {"1011 0110 011 1 0 aif", 6, KIND_NOCOND, "CPSID\t<aif0>"},
  {"1011 1010 00 mmm ddd",  6, KIND_PLAIN, "REV<c>\t<r0>, <r3>"},
  {"1011 1010 01 mmm ddd",  6, KIND_PLAIN, "REV16<c>\t<r0>, <r3>"},
  {"1011 1010 10 iiiiii",      NotOnM(8), KIND_NOCOND, "HLT\t<hex0.6>"},
  {"1011 1010 11 mmm ddd",  6, KIND_PLAIN, "REVSH<c>\t<r0>, <r3>"},
  {"1011 110 p llllllll",   4, KIND_POP16, "POP<c>\t{<poplist>}"},
  {"1011 1110 iiiiiiii",    5, KIND_BKPT, "BKPT\t<hex0.8>"},
  {"1011 1111 0001 0000",   6, KIND_PLAIN, "YIELD<c>"},
  {"1011 1111 0010 0000",   6, KIND_PLAIN, "WFE<c>"},
  {"1011 1111 0011 0000",   6, KIND_PLAIN, "WFI<c>"},
  {"1011 1111 0100 0000",   6, KIND_PLAIN, "SEV<c>"},
  {"1011 1111 0101 0000",   NotOnM(8), KIND_PLAIN, "SEVL<c>"},
  {"1011 1111 xxxx 0000",   6, KIND_PLAIN, "NOP<c>", ROW_FIRST},
  {"1011 1111 1111 mmmm",   7, KIND_REFUSED, ""},
  {"1011 1111 cccc mmmm",   7, KIND_IT, "IT<itmask>\t<cond4>"},

  // Multiple and branches
  {"1100x nnn 00000000",    4, KIND_REFUSED, ""},
  {"11000 nnn llllllll",    4, KIND_MEM, "STM<c>\t<r8>!, {<list0.8>}"},
  {"11001 nnn llllllll",    4, KIND_MEM, "LDM<c>\t<r8><notinlist>, {<list0.8>}"},
  {"1101 1110 iiiiiiii",    4, KIND_PLAIN, "UDF<c>\t<bare0.8>"},
  {"1101 1111 iiiiiiii",    4, KIND_SVC16, "SVC<c>\t<hex0.8>"},
  {"1101 cccc iiiiiiii",    4, KIND_B8, "B<cond8>\t<target>"},
  {"11100 iiiiiiiiiii",     4, KIND_B11, "B<c>\t<target>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> Thumb16Rows() {
  return aRow;
}
