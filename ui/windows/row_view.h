#pragma once

#include <QAbstractScrollArea>

// A view of equally high rows, scrolled by rows, that a side bar can stand beside.
class CRowView : public QAbstractScrollArea {
  Q_OBJECT

public:
  using QAbstractScrollArea::QAbstractScrollArea;

  virtual int NumRows() const = 0;
  // First row in view.
  virtual int TopRow() const = 0;
  // In pixels.
  virtual int RowHeight() const = 0;
  // Row at a y of the viewport, -1 outside of it and behind the last one.
  int RowAt(int y) const {
    const int Row = TopRow() + y / RowHeight();
    return y >= 0 && y < viewport()->height() && Row < NumRows() ? Row : -1;
  }

Q_SIGNALS:
  // Other rows are in view, or the same ones somewhere else.
  void Scrolled();
};
