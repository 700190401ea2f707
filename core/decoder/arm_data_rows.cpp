// ARM encodings: data processing.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Immediate
  {"cccc 001 0000 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "AND<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0001 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "EOR<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0010 0 1111 dddd rrrr iiiiiiii", 4, KIND_ARM_ADR_SUB, "ADR<c>\t<R12>, <target>"},
  {"cccc 001 0010 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "SUB<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0011 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "RSB<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0100 0 1111 dddd rrrr iiiiiiii", 4, KIND_ARM_ADR_ADD, "ADR<c>\t<R12>, <target>"},
  {"cccc 001 0100 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "ADD<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0101 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "ADC<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0110 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "SBC<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 0111 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "RSC<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 1000 1 nnnn xxxx rrrr iiiiiiii", 4, KIND_PLAIN, "TST<c>\t<R16>, <rotimm>"},
  {"cccc 001 1001 1 nnnn xxxx rrrr iiiiiiii", 4, KIND_PLAIN, "TEQ<c>\t<R16>, <rotimm>"},
  {"cccc 001 1010 1 nnnn xxxx rrrr iiiiiiii", 4, KIND_PLAIN, "CMP<c>\t<R16>, <rotimm>"},
  {"cccc 001 1011 1 nnnn xxxx rrrr iiiiiiii", 4, KIND_PLAIN, "CMN<c>\t<R16>, <rotimm>"},
  {"cccc 001 1100 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "ORR<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 1101 s 0000 dddd rrrr iiiiiiii", 4, KIND_ALU, "MOV<s><c>\t<R12>, <rotimm>"},
  {"cccc 001 1110 s nnnn dddd rrrr iiiiiiii", 4, KIND_ALU, "BIC<s><c>\t<R12>, <R16>, <rotimm>"},
  {"cccc 001 1111 s 0000 dddd rrrr iiiiiiii", 4, KIND_ALU, "MVN<s><c>\t<R12>, <rotimm>"},
  {"cccc 001 1000 0 iiii dddd iiii iiiiiiii", 7, KIND_PLAIN, "MOVW<c>\t<R12>, <immsplit2>"},
  {"cccc 001 1010 0 iiii dddd iiii iiiiiiii", 7, KIND_PLAIN, "MOVT<c>\t<R12>, <immsplit2>"},

  // Register, shifted by an immediate
  {"cccc 000 0000 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "AND<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0001 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "EOR<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0010 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "SUB<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0011 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "RSB<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0100 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "ADD<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0101 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "ADC<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0110 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "SBC<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 0111 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "RSC<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 1000 1 nnnn xxxx iiiii tt 0 mmmm", 4, KIND_PLAIN, "TST<c>\t<R16>, <R0><armshift>"},
  {"cccc 000 1001 1 nnnn xxxx iiiii tt 0 mmmm", 4, KIND_PLAIN, "TEQ<c>\t<R16>, <R0><armshift>"},
  {"cccc 000 1010 1 nnnn xxxx iiiii tt 0 mmmm", 4, KIND_PLAIN, "CMP<c>\t<R16>, <R0><armshift>"},
  {"cccc 000 1011 1 nnnn xxxx iiiii tt 0 mmmm", 4, KIND_PLAIN, "CMN<c>\t<R16>, <R0><armshift>"},
  {"cccc 000 1100 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "ORR<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 1101 s 0000 dddd 00000 00 0 mmmm", 4, KIND_ARM_MOV, "MOV<s><c>\t<R12>, <R0>"},
  {"cccc 000 1101 s 0000 dddd iiiii 00 0 mmmm", 4, KIND_ALU, "LSL<s><c>\t<R12>, <R0>, <hex7.5>"},
  {"cccc 000 1101 s 0000 dddd iiiii 01 0 mmmm", 4, KIND_ALU, "LSR<s><c>\t<R12>, <R0>, <amount7.5>"},
  {"cccc 000 1101 s 0000 dddd iiiii 10 0 mmmm", 4, KIND_ALU, "ASR<s><c>\t<R12>, <R0>, <amount7.5>"},
  {"cccc 000 1101 s 0000 dddd 00000 11 0 mmmm", 4, KIND_ALU, "RRX<s><c>\t<R12>, <R0>"},
  {"cccc 000 1101 s 0000 dddd iiiii 11 0 mmmm", 4, KIND_ALU, "ROR<s><c>\t<R12>, <R0>, <hex7.5>"},
  {"cccc 000 1110 s nnnn dddd iiiii tt 0 mmmm", 4, KIND_ALU, "BIC<s><c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 000 1111 s 0000 dddd iiiii tt 0 mmmm", 4, KIND_ALU, "MVN<s><c>\t<R12>, <R0><armshift>"},

  // Register, shifted by a register
  {"cccc 000 0000 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "AND<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0001 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "EOR<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0010 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "SUB<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0011 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "RSB<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0100 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "ADD<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0101 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "ADC<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0110 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "SBC<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 0111 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "RSC<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 1000 1 nnnn xxxx ssss 0 tt 1 mmmm", 4, KIND_PLAIN, "TST<c>\t<R16>, <R0><regshift>"},
  {"cccc 000 1001 1 nnnn xxxx ssss 0 tt 1 mmmm", 4, KIND_PLAIN, "TEQ<c>\t<R16>, <R0><regshift>"},
  {"cccc 000 1010 1 nnnn xxxx ssss 0 tt 1 mmmm", 4, KIND_PLAIN, "CMP<c>\t<R16>, <R0><regshift>"},
  {"cccc 000 1011 1 nnnn xxxx ssss 0 tt 1 mmmm", 4, KIND_PLAIN, "CMN<c>\t<R16>, <R0><regshift>"},
  {"cccc 000 1100 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "ORR<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 1101 s 0000 dddd ssss 0 00 1 mmmm", 4, KIND_ALU, "LSL<s><c>\t<R12>, <R0>, <R8>"},
  {"cccc 000 1101 s 0000 dddd ssss 0 01 1 mmmm", 4, KIND_ALU, "LSR<s><c>\t<R12>, <R0>, <R8>"},
  {"cccc 000 1101 s 0000 dddd ssss 0 10 1 mmmm", 4, KIND_ALU, "ASR<s><c>\t<R12>, <R0>, <R8>"},
  {"cccc 000 1101 s 0000 dddd ssss 0 11 1 mmmm", 4, KIND_ALU, "ROR<s><c>\t<R12>, <R0>, <R8>"},
  {"cccc 000 1110 s nnnn dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "BIC<s><c>\t<R12>, <R16>, <R0><regshift>"},
  {"cccc 000 1111 s 0000 dddd ssss 0 tt 1 mmmm", 4, KIND_ALU, "MVN<s><c>\t<R12>, <R0><regshift>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> ArmDataRows() {
  return aRow;
}
