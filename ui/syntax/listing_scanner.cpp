#include "ui/syntax/listing_scanner.h"

#include "ui/syntax/syntax_words.h"

namespace {

constexpr std::u16string_view BEFORE_WORDS = u"[ {,";
constexpr std::u16string_view IMMEDIATE_CHARS = u"0123456789xXabcdefABCDEF.,+-";

bool IsOneOf(char16_t Char, std::u16string_view sChars) {
  return sChars.find(Char) != std::u16string_view::npos;
}

bool IsListingWordChar(char16_t Char) {
  return IsWordChar(Char) || Char == u'.';
}

}  // namespace

SYNTAX_STATE CListingScanner::Run() {
  while (m_Pos < m_sText.size()) Step();
  CloseAtEnd();
  return m_State;
}

// Moves on by at least one character, or ends the current span.
void CListingScanner::Step() {
  switch (m_State) {
    case SYNTAX_IN_LABEL:
      return ScanLabel();
    case SYNTAX_IN_IMMEDIATE:
      return ScanImmediate();
    case SYNTAX_IN_LISTING_WORD:
      return ScanWord();
    default:
      return Open();
  }
}

void CListingScanner::Open() {
  m_State = OpenedState();
  m_Start = m_Pos;
  ++m_Pos;
}

SYNTAX_STATE CListingScanner::OpenedState() const {
  const char16_t Char = m_sText[m_Pos];
  if (Char == u'<') return SYNTAX_IN_LABEL;
  if (Char == u'#') return SYNTAX_IN_IMMEDIATE;
  if (!IsWordStart(Char)) return SYNTAX_IDLE;
  return m_Pos == 0 || IsOneOf(m_sText[m_Pos - 1], BEFORE_WORDS) ? SYNTAX_IN_LISTING_WORD : SYNTAX_IDLE;
}

void CListingScanner::ScanLabel() {
  const size_t End = m_sText.find(u'>', m_Pos);
  if (End == std::u16string_view::npos) {
    m_Pos = m_sText.size();
    return;
  }
  EndSpan(End + 1, SYNTAX_LABEL);
}

void CListingScanner::ScanImmediate() {
  while (m_Pos < m_sText.size() && IsOneOf(m_sText[m_Pos], IMMEDIATE_CHARS)) ++m_Pos;
  if (m_Pos < m_sText.size()) EndSpan(m_Pos, SYNTAX_IMMEDIATE);
}

void CListingScanner::ScanWord() {
  while (m_Pos < m_sText.size() && IsListingWordChar(m_sText[m_Pos])) ++m_Pos;
  if (m_Pos < m_sText.size()) EndSpan(m_Pos, WordKind(SYNTAX_DEFAULT));
}

void CListingScanner::EndSpan(size_t End, SYNTAX_KIND Kind) {
  m_Out.Add(m_Start, End, Kind);
  m_Pos = End;
  m_State = SYNTAX_IDLE;
}

SYNTAX_KIND CListingScanner::WordKind(SYNTAX_KIND Other) const {
  if (IsRegister(m_sText.substr(m_Start, m_Pos - m_Start))) return SYNTAX_REGISTER;
  const I64 Column = static_cast<I64>(m_Start);
  return Column >= m_Columns.Start && Column < m_Columns.End ? SYNTAX_MNEMONIC : Other;
}

// The last word of a row is the target of a branch, unless it is a register or the mnemonic itself.
void CListingScanner::CloseAtEnd() {
  switch (m_State) {
    case SYNTAX_IN_LABEL:
      return EndSpan(m_Pos, SYNTAX_LABEL);
    case SYNTAX_IN_LISTING_WORD:
      return EndSpan(m_Pos, WordKind(SYNTAX_LABEL));
    case SYNTAX_IN_IMMEDIATE:
      return m_Out.Add(m_Start, m_Pos, SYNTAX_IMMEDIATE);
    default:
      return;
  }
}
