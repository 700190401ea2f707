#include "ui/windows/source_colors.h"

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"

namespace {

QColor TextColor(U32 ColorID, bool bLightGround) {
  return bLightGround ? GetColor(ColorID) : GetTextColor(ColorID);
}

}  // namespace

QString ExpandTabs(const QString& sText, int TabSpacing) {
  if (!sText.contains(QLatin1Char('\t'))) return sText;
  QString sResult;
  for (const QChar c : sText) {
    if (c == QLatin1Char('\t')) {
      sResult += QString(TabSpacing - sResult.size() % TabSpacing, QLatin1Char(' '));
    } else {
      sResult += c;
    }
  }
  return sResult;
}

void CSourceColors::SetText(const QStringList& Rows, SYNTAX_LANGUAGE Language) {
  m_Language = Language;
  m_States.clear();
  m_States.reserve(static_cast<size_t>(Rows.size()));
  const CSyntaxHighlighter Highlighter;
  std::vector<TextSpan> Spans;
  std::vector<SYNTAX_KIND> Kinds;
  I32 State = 0;
  for (const QString& sRow : Rows) {
    m_States.push_back(State);
    Highlighter.Highlight(Language, sRow, Spans, Kinds, State);
  }
}

QList<QTextLayout::FormatRange> CSourceColors::FormatsOf(int Row, const QString& sText, int TabSpacing,
                                                         bool bLightGround) const {
  std::vector<TextSpan> Spans;
  std::vector<SYNTAX_KIND> Kinds;
  I32 State = Row >= 0 && static_cast<size_t>(Row) < m_States.size() ? m_States[static_cast<size_t>(Row)] : 0;
  CSyntaxHighlighter().Highlight(m_Language, sText, Spans, Kinds, State);
  CSyntaxHighlighter::FillGaps(Spans, Kinds, static_cast<I32>(sText.size()));
  QList<QTextLayout::FormatRange> Formats;
  int Column = 0;
  for (size_t i = 0; i < Spans.size(); ++i) {
    const int Start = Column;
    for (const QChar c : QStringView(sText).mid(Spans[i].Start, Spans[i].Length)) {
      Column += c == QLatin1Char('\t') ? TabSpacing - Column % TabSpacing : 1;
    }
    const int ColorID = CSyntaxHighlighter::GetColorID(Kinds[i]);
    QTextCharFormat Format;
    Format.setForeground(TextColor(ColorID < 0 ? COLOR_SYNTAX_TEXT : static_cast<U32>(ColorID), bLightGround));
    Formats.append({Start, Column - Start, Format});
  }
  return Formats;
}
