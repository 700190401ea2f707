#pragma once
// The vocabulary of enumerated arguments: symbols that scripts and the console know, their values and display texts.

#include <QString>

#include "base/types.h"

struct NAMED_CONST {
  U32 Value;
  const char* sSymbol;
  const char* sDisplayText;
};

inline constexpr U32 NUM_NAMED_CONSTS = 90;
extern const NAMED_CONST NamedConsts[NUM_NAMED_CONSTS];

// The alias of a constant's symbol.
inline constexpr const char* NAMED_CONST_ALIAS = "RM_BREAK_AT_MAIN";
inline constexpr const char* NAMED_CONST_ALIAS_OF = "RM_BREAK_AT_SYMBOL";

enum DISPLAY_FORMAT : U32 {
  DISPLAY_FORMAT_AUTO = 0,
  DISPLAY_FORMAT_BINARY = 2,
  DISPLAY_FORMAT_CHAR = 8,
  DISPLAY_FORMAT_DEC = 10,
  DISPLAY_FORMAT_HEX = 16,
};
enum TRACE_SOURCE : U32 { TRACE_SOURCE_NONE = 0, TRACE_SOURCE_ETM = 1, TRACE_SOURCE_ETB = 2, TRACE_SOURCE_SWO = 3 };

// First row whose symbol or display text equals the text, double quotes stripped, in any case; null if there is none.
const NAMED_CONST* FindNamedConst(const QString& sText);
// Value of that row, -1 if there is none.
I64 NamedConstValue(const QString& sText);
// First row with the value whose symbol starts with the prefix, such as "AW_"; null if there is none.
const NAMED_CONST* FindNamedConstByValue(const QString& sSymbolPrefix, U32 Value);

// Integer with automatic base (0x hexadecimal, leading 0 octal, otherwise decimal), negative too.
I64 ParseNumber(const QString& sText, bool* pOk);
// Named constant, or else ParseNumber: how every command reads a numeric argument.
I64 ParseConstOrNumber(const QString& sText, bool* pOk);
// "auto" (0), "adaptive" (65535), or a number with Hz, kHz or MHz, in any case, in Hz.
U32 ParseFrequency(const QString& sText, bool* pOk);
// A frequency as its display text, such as "4 MHz"; the decimal number with " Hz" if no constant has that value.
QString FrequencyText(U32 FreqHz);
// The boolean words on, yes, true, enabled, active, 1, 0x1 and their opposites, in any case.
bool ParseBool(const QString& sText, bool* pOk);
