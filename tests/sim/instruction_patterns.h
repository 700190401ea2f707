#pragma once
// Encodings to draw random instructions from.

#include "tests/sim/pattern.h"

namespace sim_test {

inline constexpr sim::ARCH V6 = sim::ARCH::ARMV6M, V7 = sim::ARCH::ARMV7M, DSP = sim::ARCH::ARMV7EM;

// clang-format off
inline constexpr PATTERN PATTERNS[] = {
    {"LSL/R imm",  "0000......mmmddd", V6},                   {"ASR imm",    "00010.....mmmddd", V6},
    {"ADD/SUB",    "00011..mmmnnnddd", V6},                   {"MOV imm8",   "00100ddd........", V6},
    {"CMP imm8",   "00101nnn........", V6},                   {"ADDS imm8",  "0011.ddd........", V6},
    {"DP reg",     "010000....mmmddd", V6},                   {"ADD high",   "010001000mmmmddd", V6},
    {"ADD high2",  "010001001mmmmhhh", V6},                   {"CMP high",   "010001011nnnnhhh", V6},
    {"MOV high",   "010001100mmmmddd", V6},                   {"MOV high2",  "010001101mmmmhhh", V6},
    {"LDR lit",    "01001ddd000.....", V6},                   {"ST reg",     "010100.xxxbbbsss", V6},
    {"STRB reg",   "0101010xxxbbbsss", V6},                   {"LDRS reg",   "0101.11xxxbbbddd", V6},
    {"LD reg",     "010110.xxxbbbddd", V6},                   {"LDRB reg",   "0101110xxxbbbddd", V6},
    {"ST imm",     "011.0.....bbbsss", V6},                   {"LD imm",     "011.1.....bbbddd", V6},
    {"STRH imm",   "10000.....bbbsss", V6},                   {"LDRH imm",   "10001.....bbbddd", V6},
    {"STR sp",     "10010sss........", V6},                   {"LDR sp",     "10011ddd........", V6},
    {"ADR",        "10100ddd........", V6},                   {"ADD rd,sp",  "10101ddd........", V6},
    {"ADD sp",     "10110000.000....", V6},                   {"EXTEND",     "10110010..mmmddd", V6},
    {"PUSH",       "1011010.llllllll", V6, LIST_OF_TWO},      {"POP",        "1011110000llllll", V6, LIST_OF_TWO},
    {"REV",        "101110100.mmmddd", V6},                   {"REVSH",      "1011101011mmmddd", V6},
    {"STMIA",      "11000bbb00llllll", V6, LIST_OF_TWO},      {"LDMIA",      "11001bbb00llllll", V6, LIST_OF_TWO},
    {"MRS APSR",   "11110011111011111000dddd00000000", V6, ANY, sim::FPU::NONE, ANYWHERE, PEER_RULE::PROFILE},
    {"MSR APSR",   "111100111000nnnn1000100000000000", V7},   {"MSR GE",     "111100111000nnnn1000.10000000000", DSP},
    {"DMB",        "11110011101111111000111101011111", V6},

    {"LOGIC imm",  "11110.000...nnnn0...dddd........", V7, EXPANDABLE},
    {"EOR imm",    "11110.00100.nnnn0...dddd........", V7, EXPANDABLE},
    {"MOV imm",    "11110.0001..11110...dddd........", V7, EXPANDABLE},
    {"ADD imm",    "11110.01000.nnnn0...dddd........", V7, EXPANDABLE},
    {"ADC imm",    "11110.0101..nnnn0...dddd........", V7, EXPANDABLE},
    {"SUB imm",    "11110.01101.nnnn0...dddd........", V7, EXPANDABLE},
    {"RSB imm",    "11110.01110.nnnn0...dddd........", V7, EXPANDABLE},
    {"TST imm",    "11110.00.001nnnn0...1111........", V7, EXPANDABLE},
    {"CMN imm",    "11110.010001nnnn0...1111........", V7, EXPANDABLE},
    {"CMP imm",    "11110.011011nnnn0...1111........", V7, EXPANDABLE},
    {"ADDW",       "11110.100000nnnn0...dddd........", V7},   {"SUBW",       "11110.101010nnnn0...dddd........", V7},
    {"ADR.W",      "11110010000011110000dddd........", V7},   {"ADR.W neg",  "11110010101011110000dddd........", V7},
    {"MOVW/T",     "11110.10.100....0...dddd........", V7},
    {"xSAT",       "11110011.0.0nnnn0...dddd..0.....", V7, SHIFT_NOT_0},
    {"xBFX",       "11110011.100nnnn0...dddd..0.....", V7, FIELD_FITS},
    {"BFI",        "111100110110nnnn0...dddd..0.....", V7, FIELD_ORDER},
    {"BFC",        "11110011011011110...dddd..0.....", V7, FIELD_ORDER},
    {"LOGIC reg",  "111010100...nnnn0...dddd....mmmm", V7},   {"EOR reg",    "11101010100.nnnn0...dddd....mmmm", V7},
    {"MOV shift",  "1110101001..11110...dddd....mmmm", V7},   {"ADD reg",    "11101011000.nnnn0...dddd....mmmm", V7},
    {"ADC reg",    "1110101101..nnnn0...dddd....mmmm", V7},   {"SUB reg",    "11101011101.nnnn0...dddd....mmmm", V7},
    {"RSB reg",    "11101011110.nnnn0...dddd....mmmm", V7},   {"TST reg",    "11101010.001nnnn0...1111....mmmm", V7},
    {"CMN reg",    "111010110001nnnn0...1111....mmmm", V7},   {"CMP reg",    "111010111011nnnn0...1111....mmmm", V7},
    {"SHIFT reg",  "111110100...nnnn1111dddd0000mmmm", V7},   {"XTH.W",      "11111010000.11111111dddd10..mmmm", V7},
    {"XTB.W",      "11111010010.11111111dddd10..mmmm", V7},   {"REV.W",      "111110101001mmmm1111dddd10..mmmm", V7},
    {"CLZ",        "111110101011mmmm1111dddd1000mmmm", V7},   {"MUL",        "111110110000nnnn1111dddd0000mmmm", V7},
    {"MLA/MLS",    "111110110000nnnnaaaadddd000.mmmm", V7},   {"MULL/MLAL",  "111110111..0nnnnddddeeee0000mmmm", V7},
    {"xDIV",       "1111101110.1nnnn1111dddd1111mmmm", V7},   {"ST imm12",   "1111100010.0bbbbssss....00......", V7},
    {"STR imm12",  "111110001100bbbbssss....00......", V7},   {"LD imm12",   "1111100.10.1bbbbdddd....00......", V7},
    {"LDR imm12",  "111110001101bbbbdddd....00......", V7},   {"ST index",   "1111100000.0bbbbssss1..1......00", V7},
    {"STR index",  "111110000100bbbbssss1..1......00", V7},   {"LD index",   "1111100.00.1bbbbdddd1..1......00", V7},
    {"LDR index",  "111110000101bbbbdddd1..1......00", V7},   {"LD neg",     "1111100.00.1bbbbdddd1100........", V7},
    {"STR neg",    "111110000100bbbbssss1100........", V7},   {"ST reg.W",   "1111100000.0bbbbssss000000..xxxx", V7},
    {"LD reg.W",   "1111100.00.1bbbbdddd000000..xxxx", V7},   {"LDR lit.W",  "1111100011011111dddd0000........", V7},
    {"LDRD",       "1110100111.1bbbbddddeeee0.......", V7},   {"LDRD post",  "111010001111bbbbddddeeee00......", V7},
    {"STRD",       "1110100101.0bbbbsssstttt0.......", V7},
    {"STMIA.W",    "1110100010.0bbbb0.0...000.llllll", V7, LIST_OF_TWO},
    {"STMDB.W",    "1110100100.0bbbb0.0...000.llllll", V7, LIST_OF_TWO},
    {"LDMIA.W",    "1110100010.1bbbb0.0...0.00llllll", V7, LIST_OF_TWO},
    {"LDMDB.W",    "1110100100.1bbbb0.0...0.00llllll", V7, LIST_OF_TWO},

    {"PKH",        "111010101100nnnn0...dddd...0mmmm", DSP},  {"xSAT16",     "11110011.010nnnn0000dddd0000....", DSP},
    {"XTAH/B16",   "1111101000..nnnn1111dddd10..mmmm", DSP},  {"XTB16",      "11111010001.11111111dddd10..mmmm", DSP},
    {"XTAB",       "11111010010.nnnn1111dddd10..mmmm", DSP},  {"PAR8/16",    "111110101.0.nnnn1111dddd0.0.mmmm", DSP},
    {"PAR half",   "111110101.0.nnnn1111dddd0.10mmmm", DSP},  {"PARX",       "111110101.10nnnn1111dddd0.0.mmmm", DSP},
    {"PARX half",  "111110101.10nnnn1111dddd0.10mmmm", DSP},  {"QADD",       "111110101000nnnn1111dddd10..mmmm", DSP},
    {"SEL",        "111110101010nnnn1111dddd1000mmmm", DSP},  {"SMULxy",     "111110110001nnnn1111dddd00..mmmm", DSP},
    {"SMLAxy",     "111110110001nnnnaaaadddd00..mmmm", DSP},  {"SMUAD/W",    "11111011001.nnnn1111dddd000.mmmm", DSP},
    {"SMLAD",      "111110110010nnnnaaaadddd000.mmmm", DSP, ANY, sim::FPU::NONE, ANYWHERE, PEER_RULE::EARLY_OVERFLOW},
    {"SMLAW",      "111110110011nnnnaaaadddd000.mmmm", DSP},  {"SMUSD/MM",   "11111011010.nnnn1111dddd000.mmmm", DSP},
    {"SMLSD/MM",   "11111011010.nnnnaaaadddd000.mmmm", DSP},  {"SMMLS",      "111110110110nnnnaaaadddd000.mmmm", DSP},
    {"USAD8",      "111110110111nnnn1111dddd0000mmmm", DSP},  {"USADA8",     "111110110111nnnnaaaadddd0000mmmm", DSP},
    {"SMLALxy",    "111110111100nnnnddddeeee10..mmmm", DSP},  {"SMLxLD",     "11111011110.nnnnddddeeee110.mmmm", DSP},
    {"UMAAL",      "111110111110nnnnddddeeee0110mmmm", DSP},
};
// clang-format on

}  // namespace sim_test
