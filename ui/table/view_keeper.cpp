#include "ui/table/view_keeper.h"

#include <QScrollBar>

#include "ui/table/sort_filter.h"
#include "ui/table/tree_view.h"

CViewKeeper::CViewKeeper(CTreeView* pView, CSortFilter* pProxy, QObject* pParent)
    : QObject(pParent), m_pView(pView), m_pProxy(pProxy) {
  connect(pProxy, &QAbstractItemModel::layoutAboutToBeChanged, this, &CViewKeeper::OnLayoutAboutToBeChanged);
  connect(pProxy, &QAbstractItemModel::layoutChanged, this, &CViewKeeper::OnLayoutChanged);
  connect(pProxy, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
    m_Expanded.clear();
    m_Current = QPersistentModelIndex();
  });
  connect(pView, &QTreeView::expanded, this,
          [this](const QModelIndex& Index) { m_Expanded.insert(m_pProxy->mapToSource(Index)); });
  connect(pView, &QTreeView::collapsed, this,
          [this](const QModelIndex& Index) { m_Expanded.remove(m_pProxy->mapToSource(Index)); });
  connect(pView->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& Index) {
    if (!m_bChanging) m_Current = m_pProxy->mapToSource(Index);
  });
}

void CViewKeeper::OnLayoutAboutToBeChanged() {
  m_bChanging = true;
  const QModelIndexList Rows = m_pView->VisibleRows();
  const QModelIndex Current = m_pView->currentIndex().siblingAtColumn(0);
  m_RowsAbove = static_cast<int>(Rows.indexOf(Current));
  m_Anchor = Current;
  if (m_RowsAbove < 0) {
    m_Anchor = Rows.value(0);
    m_RowsAbove = 0;
  }
}

// A row that vanishes does so without a word, so that it is still listed here when it comes back.
void CViewKeeper::ShowAgain() {
  m_Expanded.removeIf([](const QPersistentModelIndex& Source) { return !Source.isValid(); });
  for (const QPersistentModelIndex& Source : QSet<QPersistentModelIndex>(m_Expanded)) {
    const QModelIndex Index = m_pProxy->mapFromSource(Source);
    if (Index.isValid() && !m_pView->isExpanded(Index)) m_pView->setExpanded(Index, true);
  }
  if (m_pView->currentIndex().isValid()) return;
  const QModelIndex Index = m_pProxy->mapFromSource(m_Current);
  if (!Index.isValid()) return m_pView->clearSelection();
  m_pView->selectionModel()->setCurrentIndex(Index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  m_Anchor = QPersistentModelIndex();
  m_pView->scrollTo(Index);
}

void CViewKeeper::ScrollToAnchor() {
  const bool bCurrent = m_Anchor.isValid() && m_Anchor.row() == m_pView->currentIndex().row() &&
                        m_Anchor.parent() == m_pView->currentIndex().parent();
  const bool bSorted = m_SortColumn != m_pProxy->GetSortColumn() || m_SortOrder != m_pProxy->GetSortOrder();
  m_SortColumn = m_pProxy->GetSortColumn();
  m_SortOrder = m_pProxy->GetSortOrder();
  // In a new order the top row has no place worth keeping.
  if (!m_Anchor.isValid() || (bSorted && !bCurrent)) return;
  m_pView->scrollTo(m_Anchor, QAbstractItemView::PositionAtTop);
  QScrollBar* const pBar = m_pView->verticalScrollBar();
  pBar->setValue(pBar->value() - m_RowsAbove);
}

void CViewKeeper::OnLayoutChanged() {
  ShowAgain();
  ScrollToAnchor();
  m_Anchor = QPersistentModelIndex();
  m_bChanging = false;
}
