#pragma once

#include <array>

#include <QPainter>
#include <QPalette>

#include "ui/windows/source_colors.h"
#include "ui/windows/source_cursor.h"
#include "ui/windows/source_highlights.h"
#include "ui/windows/source_layout.h"

// What is painted.
struct SOURCE_SCENE {
  const CSourceRows& Rows;
  const CTextMetrics& Metrics;
  const CSourceLayout& Layout;
  const CSourceCursor& Cursor;
  const CSourceHighlights& Highlights;
  CSourceColors& Colors;
  QPalette Palette;
  QSize Size;       // of the viewport
  int TopRow = 0;   // first one in view
  int ScrollX = 0;  // pixels
  bool bFocus = false;
  bool bCursorShown = false;  // at this moment of its blinking
};

// Paints the rows in view: their grounds, the selection, the texts, then line numbers and expansion indicators. Made
// for one paint event.
class CSourcePainter {
public:
  CSourcePainter(QPainter& Painter, const SOURCE_SCENE& Scene) : m_Painter(Painter), m_S(Scene) {}
  // Rows that lie outside of the rectangle are left out.
  void Paint(const QRect& Dirty);
  // Of the cursor, wherever it is.
  static QRect CursorRect(const SOURCE_SCENE& Scene);

private:
  static constexpr size_t NUM_KINDS = SYNTAX_REGISTER + 1;
  struct TEXT_ROW;
  int YOf(int Row) const { return (Row - m_S.TopRow) * m_S.Metrics.RowHeight(); }
  QColor Ground(int Row) const;
  ROW_GROUND GroundOf(int Row) const;
  void PaintGrounds(int First, int Last);
  void PaintSelection(int First, int Last);
  void PaintText(int Row);
  const QColor& TextColor(SYNTAX_KIND Kind, bool bLightGround);
  void PaintUniform(const TEXT_ROW& Row);
  void PaintAscii(qreal x, qreal Baseline, QStringView sText);
  void PaintMixed(const TEXT_ROW& Row);
  void PaintPieces(const TEXT_ROW& Row, int Start, int End, qreal& x);
  void PaintNumber(int Row);
  void PaintIndicator(int Row);
  void PaintCursor();

  QPainter& m_Painter;
  const SOURCE_SCENE& m_S;
  QRect m_TextArea;                            // what is to be painted of the text
  std::array<QColor, 2 * NUM_KINDS> m_aColor;  // of the kinds, on a dark and on a light ground, once they are known
  QList<quint32> m_Glyphs;
  QList<QPointF> m_Positions;
};
