#pragma once

#include <QPersistentModelIndex>
#include <QSet>

class CSortFilter;
class CTreeView;

// Keeps what the user sees and has chosen while filters and order change: the current row stays where it is on the
// screen, and rows that a filter hid come back expanded and selected as they were.
class CViewKeeper : public QObject {
  Q_OBJECT

public:
  // Made after the view has its model; both outlive it.
  CViewKeeper(CTreeView* pView, CSortFilter* pProxy, QObject* pParent);

private:
  void OnLayoutAboutToBeChanged();
  void OnLayoutChanged();
  void ShowAgain();
  void ScrollToAnchor();

  CTreeView* m_pView;
  CSortFilter* m_pProxy;
  QSet<QPersistentModelIndex> m_Expanded;  // of the source model, hidden ones, too
  QPersistentModelIndex m_Current;         // likewise
  bool m_bChanging = false;
  // Before a change: the row to hold on to and the number of rows above it in the viewport.
  QPersistentModelIndex m_Anchor;
  int m_RowsAbove = 0;
  int m_SortColumn = -1;
  Qt::SortOrder m_SortOrder = Qt::AscendingOrder;
};
