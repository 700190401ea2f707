#pragma once

#include <functional>

#include <QWidget>

// What the side bar shows at one row.
enum SIDE_BAR_MARKS : unsigned {
  SIDE_BAR_NONE = 0,
  SIDE_BAR_CODE = 1,  // the line has code
  SIDE_BAR_BREAKPOINT = 2,
  SIDE_BAR_BREAKPOINT_DISABLED = 4,
  SIDE_BAR_PC = 8,
  SIDE_BAR_PC_INACTIVE = 16,  // another code view is the active one
};

class CSourceEditor;

// The column of icons beside the editor, row by row in step with it.
class CSideBar : public QWidget {
  Q_OBJECT

public:
  // MarksOf: SIDE_BAR_MARKS of a row; asked for the visible rows only, at each paint.
  CSideBar(CSourceEditor* pEditor, std::function<unsigned(int Row)> MarksOf, QWidget* pParent);

  void UpdateWidth();

protected:
  void paintEvent(QPaintEvent* pEvent) override;
  void wheelEvent(QWheelEvent* pEvent) override;

private:
  CSourceEditor* m_pEditor;
  std::function<unsigned(int Row)> m_MarksOf;
};
