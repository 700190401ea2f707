// 32-bit Thumb encodings: loads and stores of one register, preload hints.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // A store never has the PC as its base
  {"11111000 xxx 0 1111 xxxx xxxx xxxx xxxx", 7, KIND_REFUSED, ""},

  // STRB
  {"11111000 100 0 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "STRB<c>.W\t<R12>, [<R16><offset0.12>]"},
  {"11111000 000 0 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "STRB<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111000 000 0 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "STRBT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111000 000 0 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "STRB<c>\t<R12>, <indexedbyte>"},
  {"11111000 000 0 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "STRB<c>\t<R12>, <indexedbyte>"},

  // STRH
  {"11111000 101 0 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "STRH<c>.W\t<R12>, [<R16><offset0.12>]"},
  {"11111000 001 0 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "STRH<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111000 001 0 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "STRHT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111000 001 0 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "STRH<c>\t<R12>, <indexedbyte>"},
  {"11111000 001 0 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "STRH<c>\t<R12>, <indexedbyte>"},

  // STR
  {"11111000 110 0 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "STR<c>.W\t<R12>, [<R16><offset0.12>]"},
  {"11111000 010 0 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "STR<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111000 010 0 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "STRT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111000 010 0 1101 tttt 1101 0000 0100", 7, KIND_MEM, "PUSH<c>.W\t{<R12>}"},
  {"11111000 010 0 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "STR<c>\t<R12>, <indexedbyte>"},
  {"11111000 010 0 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "STR<c>\t<R12>, <indexedbyte>"},

  // LDRB and the hint in the place of a load to PC
  {"11111000 u00 1 1111 1111 iiii iiii iiii", 7, KIND_PRELOAD_LITERAL, "PLD<c>\t<target>", ROW_FIRST},
  {"11111000 100 1 nnnn 1111 iiii iiii iiii", 7, KIND_PLAIN, "PLD<c>\t[<R16><offset0.12>]", ROW_FIRST},
  {"11111000 000 1 nnnn 1111 1100 iiii iiii", 7, KIND_PLAIN, "PLD<c>\t<indexedbyte>", ROW_FIRST},
  {"11111000 000 1 nnnn 1111 000000 ii mmmm", 7, KIND_PLAIN, "PLD<c>\t[<R16>, <R0><index>]", ROW_FIRST},
  {"11111000 u00 1 1111 tttt iiii iiii iiii", 7, KIND_LITERAL32, "LDRB<c>\t<R12>, <literal>", ROW_FIRST},
  {"11111000 100 1 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "LDRB<c>.W\t<R12>, [<R16><offset0.12>]"},
  {"11111000 000 1 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "LDRB<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111000 000 1 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "LDRBT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111000 000 1 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "LDRB<c>\t<R12>, <indexedbyte>"},
  {"11111000 000 1 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "LDRB<c>\t<R12>, <indexedbyte>"},

  // LDRH and the hint in the place of a load to PC
  {"11111000 u01 1 1111 1111 iiii iiii iiii", 7, KIND_PRELOAD_LITERAL, "PLDW<c>\t<target>", ROW_FIRST},
  {"11111000 101 1 nnnn 1111 iiii iiii iiii", 7, KIND_PLAIN, "PLDW<c>\t[<R16><offset0.12>]", ROW_FIRST},
  {"11111000 001 1 nnnn 1111 1100 iiii iiii", 7, KIND_PLAIN, "PLDW<c>\t<indexedbyte>", ROW_FIRST},
  {"11111000 001 1 nnnn 1111 000000 ii mmmm", 7, KIND_PLAIN, "PLDW<c>\t[<R16>, <R0><index>]", ROW_FIRST},
  {"11111000 u01 1 1111 tttt iiii iiii iiii", 7, KIND_LITERAL32, "LDRH<c>\t<R12>, <literal>", ROW_FIRST},
  {"11111000 101 1 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "LDRH<c>.W\t<R12>, [<R16><offset0.12>]"},
  {"11111000 001 1 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "LDRH<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111000 001 1 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "LDRHT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111000 001 1 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "LDRH<c>\t<R12>, <indexedbyte>"},
  {"11111000 001 1 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "LDRH<c>\t<R12>, <indexedbyte>"},

  // LDR
  {"11111000 u10 1 1111 tttt iiii iiii iiii", 7, KIND_LITERAL32, "LDR<c>.W\t<R12>, <literal>", ROW_FIRST},
  {"11111000 110 1 nnnn tttt iiii iiii iiii", 7, KIND_LDR32, "LDR<c>.W\t<R12>, [<R16><offset0.12>]"},
  {"11111000 010 1 nnnn tttt 000000 ii mmmm", 7, KIND_LDR32, "LDR<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111000 010 1 nnnn tttt 1110 iiii iiii", 7, KIND_LDR32, "LDRT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111000 010 1 1101 tttt 1011 0000 0100", 7, KIND_LDR32, "POP<c>.W\t{<R12>}"},
  {"11111000 010 1 nnnn tttt 1100 iiii iiii", 7, KIND_LDR32, "LDR<c>\t<R12>, <indexedbyte>"},
  {"11111000 010 1 nnnn tttt 1pu1 iiii iiii", 7, KIND_LDR32, "LDR<c>\t<R12>, <indexedbyte>"},

  // LDRSB and the hint in the place of a load to PC
  {"11111001 u00 1 1111 1111 iiii iiii iiii", 7, KIND_PRELOAD_LITERAL, "PLI<c>\t<target>", ROW_FIRST},
  {"11111001 100 1 nnnn 1111 iiii iiii iiii", 7, KIND_PLAIN, "PLI<c>\t[<R16><offset0.12>]", ROW_FIRST},
  {"11111001 000 1 nnnn 1111 1100 iiii iiii", 7, KIND_PLAIN, "PLI<c>\t<indexedbyte>", ROW_FIRST},
  {"11111001 000 1 nnnn 1111 000000 ii mmmm", 7, KIND_PLAIN, "PLI<c>\t[<R16>, <R0><index>]", ROW_FIRST},
  {"11111001 u00 1 1111 tttt iiii iiii iiii", 7, KIND_LITERAL32, "LDRSB<c>\t<R12>, <literal>", ROW_FIRST},
  {"11111001 100 1 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "LDRSB<c>\t<R12>, [<R16><offset0.12>]"},
  {"11111001 000 1 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "LDRSB<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111001 000 1 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "LDRSBT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111001 000 1 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "LDRSB<c>\t<R12>, <indexedbyte>"},
  {"11111001 000 1 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "LDRSB<c>\t<R12>, <indexedbyte>"},

  // LDRSH and the hint in the place of a load to PC
  {"11111001 u01 1 1111 1111 iiii iiii iiii", 7, KIND_PLAIN, "NOP<c>.W", ROW_FIRST},
  {"11111001 101 1 nnnn 1111 iiii iiii iiii", 7, KIND_PLAIN, "NOP<c>.W", ROW_FIRST},
  {"11111001 001 1 nnnn 1111 1100 iiii iiii", 7, KIND_PLAIN, "NOP<c>.W", ROW_FIRST},
  {"11111001 001 1 nnnn 1111 000000 ii mmmm", 7, KIND_PLAIN, "NOP<c>.W", ROW_FIRST},
  {"11111001 u01 1 1111 tttt iiii iiii iiii", 7, KIND_LITERAL32, "LDRSH<c>\t<R12>, <literal>", ROW_FIRST},
  {"11111001 101 1 nnnn tttt iiii iiii iiii", 7, KIND_MEM, "LDRSH<c>\t<R12>, [<R16><offset0.12>]"},
  {"11111001 001 1 nnnn tttt 000000 ii mmmm", 7, KIND_MEM, "LDRSH<c>.W\t<R12>, [<R16>, <R0><index>]"},
  {"11111001 001 1 nnnn tttt 1110 iiii iiii", 7, KIND_MEM, "LDRSHT<c>\t<R12>, [<R16><offset0.8>]"},
  {"11111001 001 1 nnnn tttt 1100 iiii iiii", 7, KIND_MEM, "LDRSH<c>\t<R12>, <indexedbyte>"},
  {"11111001 001 1 nnnn tttt 1pu1 iiii iiii", 7, KIND_MEM, "LDRSH<c>\t<R12>, <indexedbyte>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> Thumb32LoadRows() {
  return aRow;
}
