#pragma once

#include <QKeyEvent>

#include "ui/windows/source_rows.h"
#include "ui/windows/text_metrics.h"

struct TEXT_RANGE {
  TEXT_POS Start;
  TEXT_POS End;
};

inline bool IsAhead(const TEXT_POS& a, const TEXT_POS& b) {
  return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x());
}
bool IsWordChar(QChar Char);
// The word that holds a column or ends at it: [first, second), empty where there is none.
std::pair<int, int> WordRange(QStringView sRow, int Column);

// Where the cursor stands and what is selected, and how keys move it over a document's rows.
class CSourceCursor {
public:
  CSourceCursor(const CSourceRows& Rows, const CTextMetrics& Metrics) : m_Rows(Rows), m_Metrics(Metrics) {}

  TEXT_POS Pos() const { return m_Pos; }
  TEXT_POS Anchor() const { return m_Anchor; }
  bool HasSelection() const { return m_Pos != m_Anchor; }
  TEXT_RANGE Selection() const;
  bool IsSelected(TEXT_POS Pos) const;
  QString SelectedText() const;
  // Both are brought into the document.
  void MoveTo(TEXT_POS Pos, bool bSelect);
  void Select(TEXT_POS Anchor, TEXT_POS Pos);
  // Whether a key moves the cursor.
  static bool IsMove(const QKeyEvent& Event);
  // PageRows: rows in view.
  void Move(const QKeyEvent& Event, int PageRows);
  TEXT_POS Clamped(TEXT_POS Pos) const;
  // The last row's end.
  TEXT_POS End() const;

private:
  TEXT_POS Moved(const QKeyEvent& Event, int PageRows) const;
  TEXT_POS Left(bool bWord) const;
  TEXT_POS Right(bool bWord) const;
  TEXT_POS Vertically(int NumRows) const;

  const CSourceRows& m_Rows;
  const CTextMetrics& m_Metrics;
  TEXT_POS m_Pos;
  TEXT_POS m_Anchor;
  qreal m_GoalX = -1;  // that moves up and down keep; -1 for where the cursor is
};
