#include "ui/windows/source_cursor.h"

#include <algorithm>
#include <climits>

bool IsWordChar(QChar Char) {
  return Char.isLetterOrNumber() || Char == QLatin1Char('_') || Char.isSurrogate();
}

std::pair<int, int> WordRange(QStringView sRow, int Column) {
  int Start = Column, End = Column;
  while (Start > 0 && IsWordChar(sRow[Start - 1])) --Start;
  while (End < sRow.size() && IsWordChar(sRow[End])) ++End;
  return {Start, End};
}

TEXT_RANGE CSourceCursor::Selection() const {
  return IsAhead(m_Pos, m_Anchor) ? TEXT_RANGE{m_Pos, m_Anchor} : TEXT_RANGE{m_Anchor, m_Pos};
}

bool CSourceCursor::IsSelected(TEXT_POS Pos) const {
  const TEXT_RANGE Range = Selection();
  return !IsAhead(Pos, Range.Start) && IsAhead(Pos, Range.End);
}

QString CSourceCursor::SelectedText() const {
  const TEXT_RANGE Range = Selection();
  QString sResult;
  for (int Row = Range.Start.y(); Row <= Range.End.y(); ++Row) {
    const QStringView sRow = m_Rows.RowText(Row);
    const int From = Row == Range.Start.y() ? Range.Start.x() : 0;
    const int To = Row == Range.End.y() ? Range.End.x() : static_cast<int>(sRow.size());
    if (Row > Range.Start.y()) sResult += QLatin1Char('\n');
    sResult += sRow.mid(From, To - From);
  }
  return sResult;
}

TEXT_POS CSourceCursor::Clamped(TEXT_POS Pos) const {
  const int Row = std::clamp(Pos.y(), 0, std::max(0, m_Rows.NumRows() - 1));
  return {std::clamp(Pos.x(), 0, m_Rows.RowLength(Row)), Row};
}

TEXT_POS CSourceCursor::End() const {
  return Clamped({INT_MAX, m_Rows.NumRows() - 1});
}

void CSourceCursor::MoveTo(TEXT_POS Pos, bool bSelect) {
  m_Pos = Clamped(Pos);
  if (!bSelect) m_Anchor = m_Pos;
  m_GoalX = -1;
}

void CSourceCursor::Select(TEXT_POS Anchor, TEXT_POS Pos) {
  m_Anchor = Clamped(Anchor);
  MoveTo(Pos, true);
}

bool CSourceCursor::IsMove(const QKeyEvent& Event) {
  const bool bPlain = !(Event.modifiers() & (Qt::AltModifier | Qt::MetaModifier));
  return bPlain && Event.key() >= Qt::Key_Home && Event.key() <= Qt::Key_PageDown;
}

void CSourceCursor::Move(const QKeyEvent& Event, int PageRows) {
  const bool bVertical = Event.key() == Qt::Key_Up || Event.key() == Qt::Key_Down || Event.key() == Qt::Key_PageUp ||
                         Event.key() == Qt::Key_PageDown;
  const qreal GoalX = m_GoalX >= 0 ? m_GoalX : m_Metrics.XOf(m_Rows.RowText(m_Pos.y()), m_Pos.x());
  MoveTo(Moved(Event, PageRows), Event.modifiers() & Qt::ShiftModifier);
  m_GoalX = bVertical ? GoalX : -1;
}

TEXT_POS CSourceCursor::Moved(const QKeyEvent& Event, int PageRows) const {
  const bool bCtrl = Event.modifiers() & Qt::ControlModifier;
  switch (Event.key()) {
    case Qt::Key_Left:
      return Left(bCtrl);
    case Qt::Key_Right:
      return Right(bCtrl);
    case Qt::Key_Up:
      return Vertically(-1);
    case Qt::Key_Down:
      return Vertically(1);
    case Qt::Key_PageUp:
      return Vertically(-PageRows);
    case Qt::Key_PageDown:
      return Vertically(PageRows);
    case Qt::Key_Home:
      return bCtrl ? TEXT_POS(0, 0) : TEXT_POS(0, m_Pos.y());
    default:
      return bCtrl ? End() : TEXT_POS(INT_MAX, m_Pos.y());
  }
}

TEXT_POS CSourceCursor::Left(bool bWord) const {
  int Column = m_Pos.x();
  const int Row = m_Pos.y();
  if (Column == 0) return Row > 0 ? TEXT_POS(INT_MAX, Row - 1) : m_Pos;
  const QStringView sRow = m_Rows.RowText(Row);
  if (!bWord) return {CTextMetrics::PreviousColumn(sRow, Column), Row};
  while (Column > 0 && !IsWordChar(sRow[Column - 1])) --Column;
  while (Column > 0 && IsWordChar(sRow[Column - 1])) --Column;
  return {Column, Row};
}

TEXT_POS CSourceCursor::Right(bool bWord) const {
  int Column = m_Pos.x();
  const int Row = m_Pos.y();
  const QStringView sRow = m_Rows.RowText(Row);
  const int Length = static_cast<int>(sRow.size());
  if (Column >= Length) return Row + 1 < m_Rows.NumRows() ? TEXT_POS(0, Row + 1) : m_Pos;
  if (!bWord) return {CTextMetrics::NextColumn(sRow, Column), Row};
  while (Column < Length && !IsWordChar(sRow[Column])) ++Column;
  while (Column < Length && IsWordChar(sRow[Column])) ++Column;
  return {Column, Row};
}

TEXT_POS CSourceCursor::Vertically(int NumRows) const {
  const int Last = std::max(0, m_Rows.NumRows() - 1);
  const int Row = std::clamp(m_Pos.y() + NumRows, 0, Last);
  if (Row == m_Pos.y()) return m_Pos;
  const qreal x = m_GoalX >= 0 ? m_GoalX : m_Metrics.XOf(m_Rows.RowText(m_Pos.y()), m_Pos.x());
  return {m_Metrics.NearestColumn(m_Rows.RowText(Row), x), Row};
}
