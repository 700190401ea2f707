#pragma once

#include <QTabBar>

class QToolButton;

// The bar of the open documents: a tab each, and a list of them for when there are more than fit.
class CDocumentTabs : public QWidget {
  Q_OBJECT

public:
  explicit CDocumentTabs(QWidget* pParent);

  QTabBar* Bar() { return m_pBar; }
  void UpdateStyle();

Q_SIGNALS:
  void CloseRequested(int Index);
  // The menu of a tab is about to be shown, at a point of the screen.
  void MenuRequested(int Index, const QPoint& GlobalPos);

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  void ShowList();

  QTabBar* m_pBar;
  QToolButton* m_pListButton;
};
