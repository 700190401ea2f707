#pragma once
// Scans C, C++, assembler and plain text.

#include "ui/syntax/span_list.h"

// Made for one text. Moves over it from one end of a span to the next, so that no character is looked at more than a
// few times.
class CSourceScanner {
public:
  CSourceScanner(SYNTAX_LANGUAGE Language, std::u16string_view sText, SPAN_LIST Out)
      : m_Language(Language), m_sText(sText), m_Out(Out) {}

  // From the state in which the text begins to the one in which it leaves the next.
  SYNTAX_STATE Run(SYNTAX_STATE State);

private:
  void Step();
  void Open();
  SYNTAX_STATE OpenedState() const;
  void ScanBlockComment();
  void ScanString();
  void ScanThrough(char16_t Last, SYNTAX_KIND Kind);
  void ScanDirective();
  void ScanWord();
  void EndSpan(size_t End, SYNTAX_KIND Kind);
  void CloseAtEnd();

  bool HasKeywords() const { return m_Language == SYNTAX_C || m_Language == SYNTAX_CPP; }
  // As far as the current position.
  std::u16string_view CurrentSpan() const { return m_sText.substr(m_Start, m_Pos - m_Start); }
  // The character before the current position, 0 at the start of the text.
  char16_t CharBefore() const { return m_Pos > 0 ? m_sText[m_Pos - 1] : u'\0'; }

  SYNTAX_LANGUAGE m_Language;
  std::u16string_view m_sText;
  SPAN_LIST m_Out;
  SYNTAX_STATE m_State = SYNTAX_IDLE;
  size_t m_Pos = 0;
  size_t m_Start = 0;                                 // of the current span
  size_t m_DirectiveEnd = std::u16string_view::npos;  // end of the last directive
};
