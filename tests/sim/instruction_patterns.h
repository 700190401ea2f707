#pragma once
// Encodings to draw random instructions from. 0 and 1 are fixed; '.' is any bit; letters are register fields of three
// or four bits: d and e are written (and differ), n, m and a are read, s and t are stored, b is a base, x an index, h a
// written high register; l are bits of a register list. Blanks do not count.

#include "probe/sim/machine.h"

namespace sim_test {

inline constexpr sim::ARCH V6 = sim::ARCH::ARMV6M, V7 = sim::ARCH::ARMV7M, DSP = sim::ARCH::ARMV7EM;

enum RULE {
  ANY,
  FIELD_FITS,   // extraction: position plus width within a word
  FIELD_ORDER,  // insertion: highest bit not below the lowest
  LIST_OF_TWO,  // at least two registers in the list
  EXPANDABLE,   // the constant is not one of the unpredictable ones
  SHIFT_NOT_0,
};

struct PATTERN {
  const char* sName;
  const char* sBits;
  sim::ARCH Needs;  // at least
  RULE Rule = ANY;
};

// clang-format off
inline constexpr PATTERN PATTERNS[] = {
    {"LSL/R imm",  "0000......mmmddd", V6},
    {"ASR imm",   "00010.....mmmddd", V6},
    {"ADD/SUB",   "00011..mmmnnnddd", V6},
    {"MOV imm8",  "00100ddd........", V6},
    {"CMP imm8",  "00101nnn........", V6},
    {"ADDS imm8",  "0011.ddd........", V6},
    {"DP reg",    "010000....mmmddd", V6},
    {"ADD high",  "010001000mmmmddd", V6},
    {"ADD high2", "010001001mmmmhhh", V6},
    {"CMP high",  "010001011nnnnhhh", V6},
    {"MOV high",  "010001100mmmmddd", V6},
    {"MOV high2", "010001101mmmmhhh", V6},
    {"LDR lit",   "01001ddd000.....", V6},
    {"ST reg",    "010100.xxxbbbsss", V6},
    {"STRB reg",  "0101010xxxbbbsss", V6},
    {"LDRS reg",  "0101.11xxxbbbddd", V6},
    {"LD reg",    "010110.xxxbbbddd", V6},
    {"LDRB reg",  "0101110xxxbbbddd", V6},
    {"ST imm",     "011.0.....bbbsss", V6},
    {"LD imm",     "011.1.....bbbddd", V6},
    {"STRH imm",  "10000.....bbbsss", V6},
    {"LDRH imm",  "10001.....bbbddd", V6},
    {"STR sp",    "10010sss........", V6},
    {"LDR sp",    "10011ddd........", V6},
    {"ADR",       "10100ddd........", V6},
    {"ADD rd,sp", "10101ddd........", V6},
    {"ADD sp",    "10110000.000....", V6},
    {"EXTEND",    "10110010..mmmddd", V6},
    {"PUSH",      "1011010.llllllll", V6, LIST_OF_TWO},
    {"POP",       "1011110000llllll", V6, LIST_OF_TWO},
    {"REV",       "10111010 0.mmmddd", V6},
    {"REVSH",     "10111010 11mmmddd", V6},
    {"STMIA",     "11000bbb00llllll", V6, LIST_OF_TWO},
    {"LDMIA",     "11001bbb00llllll", V6, LIST_OF_TWO},
    {"MRS APSR",  "1111001111101111 1000dddd00000000", V6},
    {"MSR APSR",  "111100111000nnnn 1000100000000000", V7},
    {"MSR GE",    "111100111000nnnn 1000.10000000000", DSP},
    {"DMB",       "1111001110111111 1000111101011111", V6},

    {"LOGIC imm",  "11110.000...nnnn 0...dddd........", V7, EXPANDABLE},
    {"EOR imm",   "11110.00100.nnnn 0...dddd........", V7, EXPANDABLE},
    {"MOV imm",    "11110.0001..1111 0...dddd........", V7, EXPANDABLE},
    {"ADD imm",   "11110.01000.nnnn 0...dddd........", V7, EXPANDABLE},
    {"ADC imm",    "11110.0101..nnnn 0...dddd........", V7, EXPANDABLE},
    {"SUB imm",   "11110.01101.nnnn 0...dddd........", V7, EXPANDABLE},
    {"RSB imm",   "11110.01110.nnnn 0...dddd........", V7, EXPANDABLE},
    {"TST imm",    "11110.00.001nnnn 0...1111........", V7, EXPANDABLE},
    {"CMN imm",   "11110.010001nnnn 0...1111........", V7, EXPANDABLE},
    {"CMP imm",   "11110.011011nnnn 0...1111........", V7, EXPANDABLE},
    {"ADDW",      "11110.100000nnnn 0...dddd........", V7},
    {"SUBW",      "11110.101010nnnn 0...dddd........", V7},
    {"ADR.W",     "1111001000001111 0000dddd........", V7},
    {"ADR.W neg", "1111001010101111 0000dddd........", V7},
    {"MOVW/T",     "11110.10.100.... 0...dddd........", V7},
    {"xSAT",       "11110011.0.0nnnn 0...dddd..0.....", V7, SHIFT_NOT_0},
    {"xBFX",       "11110011.100nnnn 0...dddd..0.....", V7, FIELD_FITS},
    {"BFI",       "111100110110nnnn 0...dddd..0.....", V7, FIELD_ORDER},
    {"BFC",       "1111001101101111 0...dddd..0.....", V7, FIELD_ORDER},
    {"LOGIC reg",  "111010100...nnnn 0...dddd....mmmm", V7},
    {"EOR reg",   "11101010100.nnnn 0...dddd....mmmm", V7},
    {"MOV shift",  "1110101001..1111 0...dddd....mmmm", V7},
    {"ADD reg",   "11101011000.nnnn 0...dddd....mmmm", V7},
    {"ADC reg",    "1110101101..nnnn 0...dddd....mmmm", V7},
    {"SUB reg",   "11101011101.nnnn 0...dddd....mmmm", V7},
    {"RSB reg",   "11101011110.nnnn 0...dddd....mmmm", V7},
    {"TST reg",    "11101010.001nnnn 0...1111....mmmm", V7},
    {"CMN reg",   "111010110001nnnn 0...1111....mmmm", V7},
    {"CMP reg",   "111010111011nnnn 0...1111....mmmm", V7},
    {"SHIFT reg", "11111010 0...nnnn 1111dddd0000mmmm", V7},
    {"XTH.W",      "11111010000.1111 1111dddd10..mmmm", V7},
    {"XTB.W",      "11111010010.1111 1111dddd10..mmmm", V7},
    {"REV.W",     "111110101001mmmm 1111dddd10..mmmm", V7},
    {"CLZ",       "111110101011mmmm 1111dddd1000mmmm", V7},
    {"MUL",       "111110110000nnnn 1111dddd0000mmmm", V7},
    {"MLA/MLS",   "111110110000nnnn aaaadddd000.mmmm", V7},
    {"MULL/MLAL",  "111110111..0nnnn ddddeeee0000mmmm", V7},
    {"xDIV",       "1111101110.1nnnn 1111dddd1111mmmm", V7},
    {"ST imm12",  "1111100010.0bbbb ssss....00......", V7},
    {"STR imm12", "111110001100bbbb ssss....00......", V7},
    {"LD imm12",  "1111100.10.1bbbb dddd....00......", V7},
    {"LDR imm12", "111110001101bbbb dddd....00......", V7},
    {"ST index",  "1111100000.0bbbb ssss1..1......00", V7},
    {"STR index", "111110000100bbbb ssss1..1......00", V7},
    {"LD index",  "1111100.00.1bbbb dddd1..1......00", V7},
    {"LDR index", "111110000101bbbb dddd1..1......00", V7},
    {"LD neg",    "1111100.00.1bbbb dddd1100........", V7},
    {"STR neg",   "111110000100bbbb ssss1100........", V7},
    {"ST reg.W",  "1111100000.0bbbb ssss000000..xxxx", V7},
    {"LD reg.W",  "1111100.00.1bbbb dddd000000..xxxx", V7},
    {"LDR lit.W", "1111100011011111 dddd0000........", V7},
    {"LDRD",      "1110100111.1bbbb ddddeeee0.......", V7},
    {"LDRD post", "111010001111bbbb ddddeeee00......", V7},
    {"STRD",      "1110100101.0bbbb sssstttt0.......", V7},
    {"STMIA.W",   "1110100010.0bbbb 0.0...000.llllll", V7, LIST_OF_TWO},
    {"STMDB.W",   "1110100100.0bbbb 0.0...000.llllll", V7, LIST_OF_TWO},
    {"LDMIA.W",   "1110100010.1bbbb 0.0...0.00llllll", V7, LIST_OF_TWO},
    {"LDMDB.W",   "1110100100.1bbbb 0.0...0.00llllll", V7, LIST_OF_TWO},

    {"PKH",       "111010101100nnnn 0...dddd...0mmmm", DSP},
    {"xSAT16",     "11110011.010nnnn 0000dddd0000....", DSP},
    {"XTAH/B16",   "1111101000..nnnn 1111dddd10..mmmm", DSP},
    {"XTB16",     "11111010001.1111 1111dddd10..mmmm", DSP},
    {"XTAB",      "11111010010.nnnn 1111dddd10..mmmm", DSP},
    {"PAR8/16",    "111110101.0.nnnn 1111dddd0.0.mmmm", DSP},
    {"PAR half",   "111110101.0.nnnn 1111dddd0.10mmmm", DSP},
    {"PARX",       "111110101.10nnnn 1111dddd0.0.mmmm", DSP},
    {"PARX half", "111110101.10nnnn 1111dddd0.10mmmm", DSP},
    {"QADD",      "111110101000nnnn 1111dddd10..mmmm", DSP},
    {"SEL",       "111110101010nnnn 1111dddd1000mmmm", DSP},
    {"SMULxy",    "111110110001nnnn 1111dddd00..mmmm", DSP},
    {"SMLAxy",    "111110110001nnnn aaaadddd00..mmmm", DSP},
    {"SMUAD/W",    "11111011001.nnnn 1111dddd000.mmmm", DSP},
    {"SMLAD/W",    "11111011001.nnnn aaaadddd000.mmmm", DSP},
    {"SMUSD/MM",   "11111011010.nnnn 1111dddd000.mmmm", DSP},
    {"SMLSD/MM",   "11111011010.nnnn aaaadddd000.mmmm", DSP},
    {"SMMLS",     "111110110110nnnn aaaadddd000.mmmm", DSP},
    {"USAD8",     "111110110111nnnn 1111dddd0000mmmm", DSP},
    {"USADA8",    "111110110111nnnn aaaadddd0000mmmm", DSP},
    {"SMLALxy",   "111110111100nnnn ddddeeee10..mmmm", DSP},
    {"SMLxLD",     "11111011110.nnnn ddddeeee110.mmmm", DSP},
    {"UMAAL",     "111110111110nnnn ddddeeee0110mmmm", DSP},
};
// clang-format on

}  // namespace sim_test
