#pragma once

#include <QMenu>

// A context menu. Separators stand between entries only, whatever entries the caller leaves out.
class CPopupMenu : public QMenu {
  Q_OBJECT

public:
  explicit CPopupMenu(QWidget* pParent = nullptr);

  // A separator in front of the next entry, if there is an entry before it.
  void AddSeparator();
  // Null and invisible actions are left out.
  void AddAction(QAction* pAction);
  // Runs the menu at the mouse pointer, or with its corner at a point of the screen; it is moved as far as the screen's
  // edges demand. pCurrent is active at the start. Returns the chosen entry or null. An empty menu isn't shown.
  QAction* Run();
  QAction* Run(const QPoint& GlobalPos, QAction* pCurrent = nullptr);
};
