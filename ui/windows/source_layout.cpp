#include "ui/windows/source_layout.h"

#include <QFontMetrics>
#include <algorithm>

namespace {

constexpr int BAR_MARGIN = 3;            // pixels beside an indicator
constexpr int MIN_NUMBERS = 999;         // the column of line numbers has room for this one
constexpr char16_t FIRST_WIDE = 0x1100;  // characters from here on may take two cells

}  // namespace

int CSourceLayout::NumberWidth() const {
  if (Options.LineNumberFreq == 0 || Options.bMessage) return 0;
  const QString sWidest(QString::number(std::max(m_Rows.Text().NumLines(), MIN_NUMBERS)).size(), QLatin1Char('0'));
  return QFontMetrics(m_LineNumberFont).horizontalAdvance(sWidest) + 2 * NUMBER_MARGIN;
}

int CSourceLayout::BarWidth() const {
  if (!Options.bExpansionBar || Options.bMessage) return 0;
  return (m_Metrics.RowHeight() / 2 | 1) + 2 * BAR_MARGIN;
}

qreal CSourceLayout::Indent(int Row) const {
  if (!Options.bIndentInstructions || m_Rows.IsSource(Row)) return 0;
  const U32 Line = m_Rows.LineOfRow(Row);
  if (Line == 0) return 0;
  const QStringView sLine = m_Rows.Text().Line(static_cast<int>(Line) - 1);
  int Column = 0;
  while (Column < sLine.size() && (sLine[Column] == QLatin1Char(' ') || sLine[Column] == QLatin1Char('\t'))) ++Column;
  return m_Metrics.XOf(sLine, Column);
}

int CSourceLayout::NearestColumn(int Row, qreal x) const {
  return m_Metrics.NearestColumn(m_Rows.RowText(Row), x - TextLeft() - Indent(Row));
}

int CSourceLayout::ColumnAt(int Row, qreal x) const {
  return m_Metrics.ColumnAt(m_Rows.RowText(Row), x - TextLeft() - Indent(Row));
}

bool CSourceLayout::ShowsLineNumber(U32 Line, U32 CursorLine) const {
  switch (Options.LineNumberFreq) {
    case 1:
      return Line == CursorLine;
    case 2:
      return true;
    case 3:
      return Line % 5 == 0 || Line == 1;
    case 4:
      return Line % 10 == 0 || Line == 1;
    default:
      return false;
  }
}

// A guess at a row's width that needs no font; only the widest is measured.
int CSourceLayout::Cells(QStringView sRow) const {
  int Cells = 0;
  for (const QChar Char : sRow) {
    if (Char == QLatin1Char('\t')) {
      Cells += m_Metrics.TabSpacing() - Cells % m_Metrics.TabSpacing();
    } else {
      Cells += Char.unicode() < FIRST_WIDE ? 1 : 2;
    }
  }
  return Cells;
}

void CSourceLayout::FindWidest(int First, int End) const {
  for (int Line = First; Line < End; ++Line) {
    const QStringView sLine = m_Rows.Text().Line(Line);
    // No character takes more cells than a tab or a wide one.
    if (sLine.size() * std::max(2, m_Metrics.TabSpacing()) <= m_WidestCells) continue;
    const int NumCells = Cells(sLine);
    if (NumCells <= m_WidestCells) continue;
    m_WidestCells = NumCells;
    m_WidestLine = Line;
  }
}

void CSourceLayout::InvalidateLines(const LINE_CHANGE& Change) {
  if (m_WidestLine < 0 || (m_WidestLine >= Change.First && m_WidestLine < Change.First + Change.NumOld)) {
    m_WidestLine = -1;
    return;
  }
  if (m_WidestLine >= Change.First) m_WidestLine += Change.NumNew - Change.NumOld;
  FindWidest(Change.First, Change.First + Change.NumNew);
}

int CSourceLayout::Width() const {
  if (m_WidestLine < 0) {
    m_WidestLine = 0;
    m_WidestCells = 0;
    FindWidest(0, m_Rows.Text().NumLines());
  }
  const QStringView sWidest = m_Rows.Text().Line(m_WidestLine);
  qreal Width = m_Metrics.XOf(sWidest, static_cast<int>(sWidest.size()));
  const int LongestInstruction = m_Rows.LongestInstruction();
  if (LongestInstruction > 0) {
    qreal Widest = 0;
    for (const CSrcLoc& Loc : m_Rows.ExpandedLocs()) Widest = std::max(Widest, Indent(m_Rows.RowOfLine(Loc.Line) + 1));
    Width = std::max(Width, Widest + LongestInstruction * m_Metrics.CharWidth());
  }
  return TextLeft() + static_cast<int>(Width + m_Metrics.CharWidth() + 1);
}
