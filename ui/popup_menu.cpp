#include "ui/popup_menu.h"

#include <QCursor>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"

CPopupMenu::CPopupMenu(QWidget* pParent) : QMenu(pParent) {
  setFont(GetFont(FONT_APP));
  setSeparatorsCollapsible(true);
  setToolTipsVisible(true);
}

void CPopupMenu::AddSeparator() {
  if (!actions().isEmpty() && !actions().last()->isSeparator()) addSeparator();
}

void CPopupMenu::AddAction(QAction* pAction) {
  if (pAction && pAction->isVisible()) addAction(pAction);
}

QAction* CPopupMenu::Run() {
  return Run(QCursor::pos());
}

QAction* CPopupMenu::Run(const QPoint& GlobalPos, QAction* pCurrent) {
  while (!actions().isEmpty() && actions().last()->isSeparator()) removeAction(actions().last());
  if (isEmpty()) return nullptr;
  // The menu forgets its active entry when it opens.
  const auto Activate = [this, pCurrent] {
    if (isVisible()) setActiveAction(pCurrent);
  };
  if (pCurrent) QMetaObject::invokeMethod(this, Activate, Qt::QueuedConnection);
  return exec(GlobalPos);
}
