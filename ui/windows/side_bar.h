#pragma once

#include <functional>
#include <optional>

#include <QWidget>

#include "base/types.h"

// What the side bar shows at one row.
enum SIDE_BAR_MARKS : unsigned {
  SIDE_BAR_NONE = 0,
  SIDE_BAR_CODE = 1,  // the row has code
  SIDE_BAR_BREAKPOINT = 2,
  SIDE_BAR_BREAKPOINT_DISABLED = 4,
  SIDE_BAR_PC = 8,
  SIDE_BAR_PC_INACTIVE = 16,  // another code view is the active one, or the row is a call site
  SIDE_BAR_SMALL = 32,        // the breakpoint is of an address alone, and not of a source line
  SIDE_BAR_EXECUTED = 64,     // of a row with code: it was fetched
};

// What the instructions of a row have done.
enum ROW_PROFILE : U8 { ROW_NOT_FETCHED, ROW_COVERED, ROW_PARTLY_COVERED };

struct ROW_COUNTERS {
  QString sPlace;  // the line, "main.c:12", or the address
  U64 FetchCount = 0;
  U64 SkipCount = 0;
  U64 TotalFetchCount = 0;  // of the whole program
  ROW_PROFILE Profile = ROW_NOT_FETCHED;

  U64 RunCount() const { return FetchCount > SkipCount ? FetchCount - SkipCount : 0; }
};

class CRowView;

// The column beside a view of code, row by row in step with it: icons, and on demand two columns of execution counters
// with a tool tip. It knows what a row shows only through its callbacks, which are asked for the visible rows alone, at
// each paint; call update() when their answers change.
class CSideBar : public QWidget {
  Q_OBJECT

public:
  using MARKS_OF = std::function<unsigned(int Row)>;
  // None for a row without code.
  using COUNTERS_OF = std::function<std::optional<ROW_COUNTERS>(int Row)>;

  // MarksOf: SIDE_BAR_MARKS of a row.
  CSideBar(CRowView* pView, MARKS_OF MarksOf, QWidget* pParent);

  // The source of the counters; until it is set no row has any.
  void SetCounters(COUNTERS_OF CountersOf);
  void SetCountersShown(bool bShown);
  bool AreCountersShown() const { return m_bCountersShown; }
  // After a change of the view's font.
  void UpdateWidth();

Q_SIGNALS:
  // A row was pressed; Button is a Qt::MouseButton.
  void Clicked(int Row, int Button);

protected:
  bool event(QEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;
  void wheelEvent(QWheelEvent* pEvent) override;
  void mousePressEvent(QMouseEvent* pEvent) override;

private:
  int IconColumnWidth() const;
  int CounterColumnWidth() const;
  // Nothing while they are not shown.
  std::optional<ROW_COUNTERS> CountersAt(int Row) const;
  void PaintIcons(QPainter& Painter, int Row, int y, bool bFetched) const;
  void PaintCounters(QPainter& Painter, const ROW_COUNTERS& Counters, int y) const;
  bool ShowCounterTip(const QPoint& Pos, const QPoint& GlobalPos);

  CRowView* m_pView;
  MARKS_OF m_MarksOf;
  COUNTERS_OF m_CountersOf;
  bool m_bCountersShown = false;
};
