#pragma once
// Scans rows of disassembly.

#include "ui/syntax/span_list.h"

// The columns in which mnemonics begin: [Start, End).
struct MNEMONIC_COLUMNS {
  I32 Start;
  I32 End;
};

// Made for one text. Every character is looked at a few times at most.
class CListingScanner {
public:
  CListingScanner(std::u16string_view sText, MNEMONIC_COLUMNS Columns, SPAN_LIST Out)
      : m_sText(sText), m_Columns(Columns), m_Out(Out) {}

  // The state in which the text ends: idle, or in an immediate.
  SYNTAX_STATE Run();

private:
  void Step();
  void Open();
  SYNTAX_STATE OpenedState() const;
  void ScanLabel();
  void ScanImmediate();
  void ScanWord();
  void EndSpan(size_t End, SYNTAX_KIND Kind);
  // Of the word as far as the current position; Other for one that is neither register nor mnemonic.
  SYNTAX_KIND WordKind(SYNTAX_KIND Other) const;
  void CloseAtEnd();

  std::u16string_view m_sText;
  MNEMONIC_COLUMNS m_Columns;
  SPAN_LIST m_Out;
  SYNTAX_STATE m_State = SYNTAX_IDLE;
  size_t m_Pos = 0;
  size_t m_Start = 0;  // of the current span
};
