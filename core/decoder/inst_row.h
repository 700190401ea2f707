#pragma once
// The form of the decode tables: one row per encoding, the first matching row of a table wins.

#include <span>
#include <string_view>

#include "base/types.h"

// What an encoding does to the flow of control and to memory. The meaning of each is in inst_kind.cpp.
enum INST_KIND : U8 {
  KIND_PLAIN,   // takes the condition of the IT block, touches nothing
  KIND_NOCOND,  // has no condition
  KIND_MEM,
  KIND_MEM_NOCOND,
  KIND_IT,
  KIND_B8,
  KIND_B11,
  KIND_B20,
  KIND_B24,
  KIND_CBZ,
  KIND_LOOP_START,
  KIND_LOOP_END,
  KIND_BL,
  KIND_BLX_IMM,
  KIND_BX,
  KIND_BLX,
  KIND_BXJ,
  KIND_BXAUT,
  KIND_TABLE_BRANCH,
  KIND_POP16,
  KIND_POP32,
  KIND_LDM32,
  KIND_LDR32,
  KIND_LITERAL16,
  KIND_LITERAL32,
  KIND_LITERAL_DUAL,
  KIND_LITERAL_HALF,
  KIND_PRELOAD_LITERAL,
  KIND_ADR16,
  KIND_ADR_ADD,
  KIND_ADR_SUB,
  KIND_HIGH_REG,
  KIND_BKPT,
  KIND_SVC16,
  KIND_SMC,
  KIND_RFE,
  KIND_ERET,
  KIND_SELECT,        // refused without a condition of its own
  KIND_BIT_FIELD,     // refused when the field ends below its start
  KIND_FLOAT_LIST,    // refused when the list runs past the last register
  KIND_FLOAT_CLEAR,   // the same, without memory
  KIND_FLOAT_SYSTEM,  // refused when there is no such register
  KIND_FLOAT_FIXED,   // refused when the fraction has more bits than the number
  KIND_DUAL,          // load or store of two registers in a row, refused when the first is the PC
  KIND_DUAL_STORE,    // the same with the registers in the low bits
  KIND_BANKED,        // refused when there is no such register
  KIND_ALU,           // ARM data processing
  KIND_ARM_MOV,
  KIND_ARM_ADR_ADD,
  KIND_ARM_ADR_SUB,
  KIND_ARM_LITERAL,
  KIND_ARM_LITERAL_SPLIT,
  KIND_ARM_LITERAL_DUAL,
  KIND_ARM_PRELOAD_LITERAL,
  KIND_ARM_B,
  KIND_ARM_BL,
  KIND_ARM_BLX_IMM,
  KIND_ARM_BX,
  KIND_ARM_SVC,
  KIND_ARM_ALWAYS,  // refused under another condition than "always"
  KIND_ARM_BKPT,
  KIND_ARM_HVC,
  KIND_ARM_BIT_FIELD,
  KIND_SIMD_DNM,        // Advanced SIMD; quad registers have even numbers
  KIND_SIMD_DNM_SMALL,  // the same, refused for elements of 64 bits
  KIND_SIMD_DM,
  KIND_SIMD_D,
  KIND_SIMD_DN24,
  KIND_SIMD_TABLE,  // refused when the list runs past the last register, as are those below
  KIND_SIMD_MULTIPLE,
  KIND_SIMD_LANE,
  KIND_SIMD_ALL,
  KIND_REFUSED,  // no valid instruction; the text, if any, is the warning to log
  KIND_COUNT
};

// How a row stands to the rows behind it in its table that some words match as well.
enum ROW_ORDER : U8 {
  ROW_SPECIAL_CASE,  // its words all match the later row too, or none do
  ROW_FIRST,         // it takes the words that both match
};

// The first architecture version that has an encoding, and whether the M profile has it at all.
struct ARCH_GATE {
  U8 Version;
  bool bOnM;

  constexpr ARCH_GATE(int FirstVersion = 0, bool bIsOnM = true)
      : Version(static_cast<U8>(FirstVersion)), bOnM(bIsOnM) {}
};

constexpr ARCH_GATE NotOnM(int FirstVersion) {
  return {FirstVersion, false};
}

// A row is written as its bits from the highest down: 0 and 1 must match, any other character is an operand bit, blanks
// are for the eye. A row that begins with "cccc" is an ARM encoding for every condition but 15; it holds the condition
// "always" in that place, and so does the word that is looked up. sText is the template of the assembler text, see
// text_template.h.
struct INST_ROW {
  U32 Mask = 0;
  U32 Value = 0;
  ARCH_GATE Gate;
  INST_KIND Kind = KIND_PLAIN;
  ROW_ORDER Order = ROW_SPECIAL_CASE;
  const char* sText = nullptr;

  consteval INST_ROW(const char* sBits, ARCH_GATE RowGate, INST_KIND RowKind, const char* sTemplate,
                     ROW_ORDER RowOrder = ROW_SPECIAL_CASE)
      : Gate(RowGate), Kind(RowKind), Order(RowKind == KIND_REFUSED ? ROW_FIRST : RowOrder), sText(sTemplate) {
    U32 NumBits = 0;
    if (std::string_view(sBits).starts_with("cccc")) {
      Mask = 0xF;
      Value = 0xE;
      NumBits = 4;
      sBits += NumBits;
    }
    for (const char* s = sBits; *s != 0; ++s) {
      if (*s == ' ') continue;
      Mask = Mask << 1 | (*s == '0' || *s == '1' ? 1u : 0u);
      Value = Value << 1 | (*s == '1' ? 1u : 0u);
      ++NumBits;
    }
    if (NumBits != 16 && NumBits != 32) throw "a row has 16 or 32 bits";
  }
};

// The tables, each a data file of its own.
std::span<const INST_ROW> Thumb16Rows();
std::span<const INST_ROW> Thumb32Rows();
std::span<const INST_ROW> Thumb32LoadRows();
std::span<const INST_ROW> Thumb32DspRows();
std::span<const INST_ROW> Thumb32MProfileRows();
std::span<const INST_ROW> ArmDataRows();
std::span<const INST_ROW> ArmMultiplyRows();
std::span<const INST_ROW> ArmLoadRows();
std::span<const INST_ROW> ArmMediaRows();
std::span<const INST_ROW> ArmSystemRows();
std::span<const INST_ROW> ArmUnconditionalRows();
std::span<const INST_ROW> FloatRows();  // of both instruction sets
std::span<const INST_ROW> HalfRows();   // of both
std::span<const INST_ROW> SimdRows();   // of both, as ARM words
