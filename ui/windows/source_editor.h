#pragma once

#include <QAbstractScrollArea>
#include <QMap>
#include <QMenu>

#include "base/types.h"
#include "ui/windows/source_colors.h"

// Where a text stands: column and row from 0.
using TEXT_POS = QPoint;

// The text of one document, row by row, painted by itself: for reading, selecting and marking lines. It shows the rows
// that fit and knows nothing of the files that they come from.
class CSourceEditor : public QAbstractScrollArea {
  Q_OBJECT

public:
  explicit CSourceEditor(QWidget* pParent);

  // Shows a text; the selection, marks and positions of the former one go. In a message only the text is shown.
  void SetText(const QString& sText, bool bMessage = false, SYNTAX_LANGUAGE Language = SYNTAX_PLAIN);
  int NumRows() const { return static_cast<int>(m_Rows.size()); }
  // Background of a row, by number from 0; an invalid colour takes it away.
  void SetRowColor(int Row, const QColor& Color);
  void ClearRowColors();

  TEXT_POS CursorPos() const { return m_Cursor; }
  // Puts the cursor there, selects nothing, and scrolls as little as needed.
  void SetCursorPos(TEXT_POS Pos);
  // Scrolls a row into view, to the middle when it was out of view.
  void EnsureRowVisible(int Row);
  int TopRow() const;
  int RowHeight() const { return m_RowHeight; }
  // Row at a y of the viewport, -1 behind the text.
  int RowAt(int y) const;
  QString SelectedText() const;

  void SetFonts(const QFont& TextFont, const QFont& LineNumberFont);
  void SetTabSpacing(int Columns);
  // Value of PREF_LINE_NUMBER_FREQ: off, current line, all, every 5, every 10.
  void SetLineNumberFreq(int Freq);

public Q_SLOTS:
  void SelectAll();
  void Copy();

Q_SIGNALS:
  void CursorPositionChanged(QPoint Pos);
  // The context menu is about to be shown: the time to add entries.
  void MenuRequested(QMenu* pMenu);
  void Scrolled();

protected:
  void paintEvent(QPaintEvent* pEvent) override;
  void resizeEvent(QResizeEvent* pEvent) override;
  void mousePressEvent(QMouseEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
  void keyPressEvent(QKeyEvent* pEvent) override;
  void contextMenuEvent(QContextMenuEvent* pEvent) override;
  void scrollContentsBy(int dx, int dy) override;
  void focusInEvent(QFocusEvent* pEvent) override;
  void focusOutEvent(QFocusEvent* pEvent) override;

private:
  struct RANGE {
    TEXT_POS Start;
    TEXT_POS End;
  };

  RANGE Selection() const;
  bool HasSelection() const { return m_Cursor != m_Anchor; }
  void MoveTo(TEXT_POS Pos, bool bSelect);
  TEXT_POS MovedCursor(const QKeyEvent* pEvent) const;
  TEXT_POS WordBoundary(TEXT_POS Pos, int Direction) const;
  TEXT_POS Clamped(TEXT_POS Pos) const;
  TEXT_POS PosAt(const QPoint& Point) const;
  int VisibleRows() const;
  int LineNumberWidth() const;
  bool ShowsLineNumber(int Row) const;
  QString Expanded(const QString& sText) const;
  int PixelOf(int Row, int Column) const;
  int ColumnOf(int Row, int x) const;
  void UpdateScrollBars();
  void MeasureRows();
  // Shows the cursor, and blinks it from now on while the editor has the focus.
  void RestartBlink();
  QRect CursorRect() const;
  void PaintRow(QPainter& Painter, int Row, int y);
  void PaintSelection(QPainter& Painter, int Row, int y);
  QColor RowBackground(int Row) const;

  QStringList m_Rows;
  CSourceColors m_Colors;
  bool m_bMessage = false;
  QMap<int, QColor> m_RowColors;
  TEXT_POS m_Cursor;
  TEXT_POS m_Anchor;
  QFont m_LineNumberFont;
  int m_RowHeight = 16;
  int m_CharWidth = 8;
  int m_TabSpacing = 4;
  int m_LineNumberFreq = 2;
  int m_WidestRow = 0;  // by columns, tabs expanded
  bool m_bCursorShown = true;
  QTimer m_BlinkTimer;
};
