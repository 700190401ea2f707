#include "ui/windows/source_colors.h"

#include <algorithm>

#include "core/vcore.h"
#include "ui/windows/text_metrics.h"

namespace {

constexpr qsizetype MAX_KEPT = 4096;  // lines with spans

// The state in which a line that begins in a state leaves the next: in a block comment, or, where a backslash joins the
// two, in a line comment or string.
SYNTAX_STATE StateBehind(QStringView sLine, SYNTAX_STATE State) {
  const qsizetype Size = sLine.size();
  const auto Is = [&](qsizetype i, char16_t Char) { return i < Size && sLine[i].unicode() == Char; };
  for (qsizetype i = 0; i < Size && State != SYNTAX_IN_LINE_COMMENT; ++i) {
    const char16_t Char = sLine[i].unicode();
    if (State == SYNTAX_IN_BLOCK_COMMENT) {
      if (Char != u'*' || !Is(i + 1, u'/')) continue;
      State = SYNTAX_IDLE;
      ++i;
    } else if (State == SYNTAX_IN_STRING) {
      if (Char == u'\\') ++i;
      if (Char == u'"') State = SYNTAX_IDLE;
    } else if (Char == u'"') {
      if (i == 0 || sLine[i - 1] != u'\'') State = SYNTAX_IN_STRING;
    } else if (Char == u'/') {
      if (Is(i + 1, u'/')) State = SYNTAX_IN_LINE_COMMENT;
      if (!Is(i + 1, u'*')) continue;
      State = SYNTAX_IN_BLOCK_COMMENT;
      ++i;
    }
  }
  const bool bJoined = Size > 0 && sLine.back() == u'\\';
  return State == SYNTAX_IN_BLOCK_COMMENT || bJoined ? State : SYNTAX_IDLE;
}

}  // namespace

void CSourceColors::SetText(const CSourceText& Text, SYNTAX_LANGUAGE Language) {
  m_Language = Language;
  m_Spans.clear();
  m_States.assign(static_cast<size_t>(Text.NumLines()), SYNTAX_IDLE);
  SYNTAX_STATE State = SYNTAX_IDLE;
  for (int Line = 0; Line < Text.NumLines(); ++Line) {
    m_States[static_cast<size_t>(Line)] = static_cast<U8>(State);
    State = StateBehind(Text.Line(Line), State);
  }
}

int CSourceColors::Update(const CSourceText& Text, const LINE_CHANGE& Change) {
  const int NumLines = Text.NumLines();
  if (Change.NumOld != Change.NumNew) {
    m_Spans.clear();
    const auto First = m_States.begin() + Change.First;
    const auto Inserted = m_States.erase(First, First + Change.NumOld);
    m_States.insert(Inserted, static_cast<size_t>(Change.NumNew), SYNTAX_IDLE);
  }
  m_States.resize(static_cast<size_t>(NumLines), SYNTAX_IDLE);
  SYNTAX_STATE State = SYNTAX_IDLE;
  if (Change.First > 0) {
    const auto Before = static_cast<SYNTAX_STATE>(m_States[static_cast<size_t>(Change.First) - 1]);
    State = StateBehind(Text.Line(Change.First - 1), Before);
  }
  // Lines behind the change are done where they begin as they did.
  for (int Line = Change.First; Line < NumLines; ++Line) {
    U8& Known = m_States[static_cast<size_t>(Line)];
    if (Line >= Change.First + Change.NumNew && Known == State) return Line;
    Known = static_cast<U8>(State);
    m_Spans.remove(Line);
    State = StateBehind(Text.Line(Line), State);
  }
  return NumLines;
}

const ROW_SPANS& CSourceColors::SpansOf(int Line, QStringView sText) {
  const auto Known = m_Spans.constFind(Line);
  if (Known != m_Spans.constEnd()) return *Known;
  if (m_Spans.size() >= MAX_KEPT) m_Spans.clear();
  ROW_SPANS& Row = m_Spans[Line];
  I32 State = Line >= 0 && Line < static_cast<int>(m_States.size()) ? m_States[static_cast<size_t>(Line)] : 0;
  CSyntaxHighlighter().Highlight(m_Language, sText, Row.Spans, Row.Kinds, State);
  CSyntaxHighlighter::FillGaps(Row.Spans, Row.Kinds, static_cast<I32>(sText.size()));
  Row.bAscii = IsPrintableAscii(sText);
  return Row;
}

ROW_SPANS CSourceColors::InstructionSpans(QStringView sText, int MnemonicColumn) {
  ROW_SPANS Row;
  I32 State = SYNTAX_IDLE;
  const CSyntaxHighlighter Highlighter(MnemonicColumn, static_cast<int>(VCore::GetInfo().MaxMnemonicLen));
  Highlighter.Highlight(SYNTAX_ASM_LISTING, sText, Row.Spans, Row.Kinds, State);
  CSyntaxHighlighter::FillGaps(Row.Spans, Row.Kinds, static_cast<I32>(sText.size()));
  Row.bAscii = IsPrintableAscii(sText);
  return Row;
}
