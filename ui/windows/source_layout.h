#pragma once

#include "ui/windows/source_rows.h"
#include "ui/windows/text_metrics.h"

// How the view is set up: values of the preferences.
struct SOURCE_VIEW_OPTIONS {
  int LineNumberFreq = 2;  // PREF_LINE_NUMBER_FREQ
  bool bExpansionBar = true;
  bool bIndentInstructions = true;
  bool bMessage = false;  // no line numbers and no bar
};

// Where rows and columns lie, from the view's left edge on: line numbers, the bar of expansion indicators, the text.
// Horizontally in pixels of the unscrolled view.
class CSourceLayout {
public:
  CSourceLayout(const CSourceRows& Rows, const CTextMetrics& Metrics) : m_Rows(Rows), m_Metrics(Metrics) {}

  SOURCE_VIEW_OPTIONS Options;
  void SetLineNumberFont(const QFont& Font) { m_LineNumberFont = Font; }
  const QFont& LineNumberFont() const { return m_LineNumberFont; }

  int NumberWidth() const;
  int BarWidth() const;
  // What is to the left of it does not scroll.
  int BarEnd() const { return NumberWidth() + BarWidth(); }
  // Left edge of the text, not of the rows that are indented.
  int TextLeft() const { return BarEnd() + LEFT_MARGIN; }
  // Ahead of the text of an instruction row, as wide as the blanks that its line begins with.
  qreal Indent(int Row) const;
  qreal XOf(TEXT_POS Pos) const {
    return TextLeft() + Indent(Pos.y()) + m_Metrics.XOf(m_Rows.RowText(Pos.y()), Pos.x());
  }
  int NearestColumn(int Row, qreal x) const;
  int ColumnAt(int Row, qreal x) const;
  bool ShowsLineNumber(U32 Line, U32 CursorLine) const;
  // Of all rows, with the columns ahead of the text.
  int Width() const;
  // The text, the rows or the font have changed. For a change of the text alone, only what was replaced is looked at.
  void Invalidate() { m_WidestLine = -1; }
  void InvalidateLines(const LINE_CHANGE& Change);

  static constexpr int NUMBER_MARGIN = 6;  // pixels on each side of a line number

private:
  int Cells(QStringView sRow) const;
  void FindWidest(int First, int End) const;

  static constexpr int LEFT_MARGIN = 2;  // pixels
  const CSourceRows& m_Rows;
  const CTextMetrics& m_Metrics;
  QFont m_LineNumberFont;
  mutable int m_WidestLine = -1;  // from 0; -1 for not known
  mutable int m_WidestCells = 0;
};
