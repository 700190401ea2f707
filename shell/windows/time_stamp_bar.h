#pragma once

#include <QWidget>

class CConsoleView;

// The time stamps beside the lines of the console's journal. Scrolls with it, and passes the wheel on to it.
class CTimeStampBar : public QWidget {
  Q_OBJECT

public:
  CTimeStampBar(QWidget* pParent, CConsoleView* pView);
  // As wide as the stamps in sight need it, 0 while there is none.
  void ResizeToOptWidth();
  // The stamp of a line, empty for a line that continues a message.
  QString TextOf(int Line) const;

protected:
  void paintEvent(QPaintEvent* pEvent) override;
  void wheelEvent(QWheelEvent* pEvent) override;

private:
  CConsoleView* m_pView;
};
