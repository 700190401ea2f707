#include "ui/syntax/source_scanner.h"

#include "ui/syntax/syntax_words.h"

namespace {

constexpr std::u16string_view DELIMITERS = u"(), *[]\t;:}{><";
// Before a delimiter, words and directives of more characters are taken as they are without a look into the tables.
constexpr size_t MAX_KEYWORD_CHARS = 13;
constexpr size_t MAX_DIRECTIVE_CHARS = 9;

bool IsDelimiter(char16_t Char) {
  return DELIMITERS.find(Char) != std::u16string_view::npos;
}

}  // namespace

SYNTAX_STATE CSourceScanner::Run(SYNTAX_STATE State) {
  m_State = State;
  while (m_Pos < m_sText.size()) Step();
  CloseAtEnd();
  return m_State;
}

// Moves on by at least one character, or ends the current span.
void CSourceScanner::Step() {
  switch (m_State) {
    case SYNTAX_IN_BLOCK_COMMENT:
      return ScanBlockComment();
    case SYNTAX_IN_LINE_COMMENT:
    case SYNTAX_IN_ASM_COMMENT:
      return ScanThrough(u'\n', SYNTAX_COMMENT);
    case SYNTAX_IN_WORD:
      return ScanWord();
    case SYNTAX_IN_STRING:
      return ScanString();
    case SYNTAX_IN_PATH:
      return ScanThrough(u'>', SYNTAX_STRING);
    case SYNTAX_IN_DIRECTIVE:
      return ScanDirective();
    default:
      return Open();
  }
}

void CSourceScanner::Open() {
  m_State = OpenedState();
  m_Start = m_Pos;
  ++m_Pos;
}

SYNTAX_STATE CSourceScanner::OpenedState() const {
  const char16_t Char = m_sText[m_Pos];
  const char16_t Next = m_Pos + 1 < m_sText.size() ? m_sText[m_Pos + 1] : u'\0';
  switch (Char) {
    case u'/':
      if (Next == u'/') return SYNTAX_IN_LINE_COMMENT;
      return Next == u'*' ? SYNTAX_IN_BLOCK_COMMENT : SYNTAX_IDLE;
    case u';':
      return m_Language == SYNTAX_GNU_ASM ? SYNTAX_IN_ASM_COMMENT : SYNTAX_IDLE;
    case u'"':
      return CharBefore() == u'\'' ? SYNTAX_IDLE : SYNTAX_IN_STRING;
    case u'<':
      return m_DirectiveEnd == m_Pos ? SYNTAX_IN_PATH : SYNTAX_IDLE;
    case u'#':
      return SYNTAX_IN_DIRECTIVE;
    default:
      return IsWordStart(Char) && (m_Pos == 0 || IsDelimiter(CharBefore())) ? SYNTAX_IN_WORD : SYNTAX_IDLE;
  }
}

void CSourceScanner::ScanBlockComment() {
  const size_t End = m_sText.find(u"*/", m_Pos);
  if (End == std::u16string_view::npos) {
    m_Pos = m_sText.size();
    return;
  }
  EndSpan(End + 2, SYNTAX_COMMENT);
}

// A quote after a backslash is part of the string, even where the backslash itself follows one.
void CSourceScanner::ScanString() {
  const auto IsEscaped = [this](size_t Quote) { return Quote > 0 && m_sText[Quote - 1] == u'\\'; };
  size_t Quote = m_sText.find(u'"', m_Pos);
  while (Quote != std::u16string_view::npos && IsEscaped(Quote)) Quote = m_sText.find(u'"', Quote + 1);
  if (Quote == std::u16string_view::npos) {
    m_Pos = m_sText.size();
    return;
  }
  EndSpan(Quote + 1, SYNTAX_STRING);
}

void CSourceScanner::ScanThrough(char16_t Last, SYNTAX_KIND Kind) {
  const size_t End = m_sText.find(Last, m_Pos);
  if (End == std::u16string_view::npos) {
    m_Pos = m_sText.size();
    return;
  }
  EndSpan(End + 1, Kind);
}

void CSourceScanner::ScanDirective() {
  while (m_Pos < m_sText.size() && IsWordStart(m_sText[m_Pos])) ++m_Pos;
  if (m_Pos == m_sText.size()) return;
  m_State = SYNTAX_IDLE;
  if (m_Pos - m_Start > MAX_DIRECTIVE_CHARS || !IsDirective(CurrentSpan())) return;
  EndSpan(m_Pos, SYNTAX_DIRECTIVE);
  m_DirectiveEnd = m_Pos;
}

void CSourceScanner::ScanWord() {
  while (m_Pos < m_sText.size() && IsWordChar(m_sText[m_Pos])) ++m_Pos;
  if (m_Pos == m_sText.size()) return;
  const bool bKeyword =
      HasKeywords() && IsDelimiter(m_sText[m_Pos]) && m_Pos - m_Start <= MAX_KEYWORD_CHARS && IsKeyword(CurrentSpan());
  EndSpan(m_Pos, bKeyword ? SYNTAX_KEYWORD : SYNTAX_IDENTIFIER);
}

void CSourceScanner::EndSpan(size_t End, SYNTAX_KIND Kind) {
  m_Out.Add(m_Start, End, Kind);
  m_Pos = End;
  m_State = SYNTAX_IDLE;
}

// Block comments, strings and paths stay open; everything else ends with the text.
void CSourceScanner::CloseAtEnd() {
  const auto Close = [this](SYNTAX_KIND Kind) { m_Out.Add(m_Start, m_Pos, Kind); };
  switch (m_State) {
    case SYNTAX_IN_BLOCK_COMMENT:
      return Close(SYNTAX_COMMENT);
    case SYNTAX_IN_STRING:
    case SYNTAX_IN_PATH:
      return Close(SYNTAX_STRING);
    case SYNTAX_IN_LINE_COMMENT:
    case SYNTAX_IN_ASM_COMMENT:
      Close(SYNTAX_COMMENT);
      break;
    case SYNTAX_IN_DIRECTIVE:
      if (IsDirective(CurrentSpan())) Close(SYNTAX_DIRECTIVE);
      break;
    case SYNTAX_IN_WORD:
      if (HasKeywords() && IsKeyword(CurrentSpan())) Close(SYNTAX_KEYWORD);
      break;
    default:
      break;
  }
  m_State = SYNTAX_IDLE;
}
