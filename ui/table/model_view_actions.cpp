// What the user does in a table window: actions, menus, keys, tool tips.

#include <QKeyEvent>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/named_constants.h"
#include "ui/popup_menu.h"
#include "ui/table/filter_header_view.h"
#include "ui/table/model_view_window.h"
#include "ui/table/sort_filter.h"
#include "ui/table/table_header.h"
#include "ui/table/tree_view.h"

namespace {

struct FORMAT_ACTION {
  int Format;
  const char* sObjectName;
  const char* sText;
};
constexpr FORMAT_ACTION FORMATS[] = {
    {DISPLAY_FORMAT_HEX, "actionDisplayAsHex", "Display as &Hexadecimal"},
    {DISPLAY_FORMAT_DEC, "actionDisplayAsDec", "Display as &Decimal"},
    {DISPLAY_FORMAT_BINARY, "actionDisplayAsBinary", "Display as &Binary"},
    {DISPLAY_FORMAT_CHAR, "actionDisplayAsChar", "Display as Cha&racter"},
};

}  // namespace

QAction* CModelViewWindow::AddTableAction(const char* sObjectName, const char* sText, const char* sIcon,
                                          const char* sSlot) {
  auto* const pAction = new QAction(QLatin1String(sText), this);
  pAction->setObjectName(QLatin1String(sObjectName));
  if (sIcon) pAction->setIcon(GetIcon(QLatin1String(sIcon)));
  Connect(pAction, SIGNAL(triggered()), this, sSlot);
  return pAction;
}

void CModelViewWindow::CreateTableActions() {
  actionExpandAll =
      AddTableAction("actionExpandAll", "&Expand All", "expand-all.png", SLOT(OnActionExpandAllTriggered()));
  actionCollapseAll =
      AddTableAction("actionCollapseAll", "C&ollapse All", "collapse-all.png", SLOT(OnActionCollapseAllTriggered()));
  actionRefreshItem =
      AddTableAction("actionRefreshItem", "&Refresh Item", nullptr, SLOT(OnActionRefreshItemTriggered()));
  actionRefreshAll =
      AddTableAction("actionRefreshAll", "Refresh &All", "refresh.png", SLOT(OnActionRefreshAllTriggered()));
  actionToggleFilterBar =
      AddTableAction("actionToggleFilterBar", "Show &Filter Bar", nullptr, SLOT(OnActionToggleFilterBarTriggered()));
  actionToggleFilterBar->setCheckable(true);
  for (const FORMAT_ACTION& Format : FORMATS) {
    QAction* const pAction =
        AddTableAction(Format.sObjectName, Format.sText, nullptr, SLOT(OnItemDisplayFormatActionTriggered()));
    pAction->setCheckable(true);
    ItemFormatActions.insert(Format.Format, pAction);
  }
}

void CModelViewWindow::UpdateActions() {
  CWindow::UpdateActions();
  if (actionToggleFilterBar == nullptr) return;
  const bool bRows = !IsEmpty();
  const QModelIndex Current = GetCurrentItem();
  const auto Offer = [](QAction* pAction, bool bVisible, bool bEnabled) {
    pAction->setVisible(bVisible);
    pAction->setEnabled(bVisible && bEnabled);
  };
  for (QAction* const pAction : {actionExpandAll, actionCollapseAll}) Offer(pAction, !pModel->IsFlat(), bRows);
  Offer(actionRefreshItem, bShowsTarget, Current.isValid());
  Offer(actionRefreshAll, bShowsTarget, bRows);
  Offer(actionToggleFilterBar, !bFilterBarsDisabled, true);
  actionToggleFilterBar->setChecked(TestFlag(WF_FILTER_BAR));
  const int Format = Current.isValid() ? GetItemDisplayFormat(Current) : -1;
  for (auto it = ItemFormatActions.cbegin(); it != ItemFormatActions.cend(); ++it) {
    Offer(it.value(), pModel->HasDisplayFormats(), Current.isValid());
    it.value()->setChecked(it.key() == Format);
  }
}

void CModelViewWindow::OnActionExpandAllTriggered() {
  PerformAction(ACTION_WINDOW_EXPAND_ALL, GetName());
}

void CModelViewWindow::OnActionCollapseAllTriggered() {
  PerformAction(ACTION_WINDOW_COLLAPSE_ALL, GetName());
}

void CModelViewWindow::OnActionRefreshItemTriggered() {
  const QModelIndex Current = GetCurrentItem();
  if (!Current.isValid()) return;
  States.SetRefreshState(static_cast<CItemStates::KEY>(Current.internalId()), ITEM_STALE);
  ReadSoon();
}

void CModelViewWindow::OnActionRefreshAllTriggered() {
  Invalidate();
}

void CModelViewWindow::OnActionToggleFilterBarTriggered() {
  SetFlag(WF_FILTER_BAR, !TestFlag(WF_FILTER_BAR));
}

void CModelViewWindow::OnItemDisplayFormatActionTriggered() {
  const int Format = ItemFormatActions.key(qobject_cast<QAction*>(sender()), -1);
  if (Format >= 0) SetItemDisplayFormat(GetCurrentItem(), Format);
}

// ---- Menus

void CModelViewWindow::OnHeaderContextMenuRequested(const QPoint& Pos) {
  CPopupMenu Menu(this);
  pHeader->AddColumnEntries(&Menu);
  Menu.AddSeparator();
  pFilterBar->AddFilterEntries(&Menu, pHeader->logicalIndexAt(Pos));
  Menu.Run(pHeader->viewport()->mapToGlobal(Pos));
}

void CModelViewWindow::OnContextMenuRequested(const QPoint& ScreenPos) {
  const QModelIndex Index = pProxy->mapToSource(pView->indexAt(pView->viewport()->mapFromGlobal(ScreenPos)));
  UpdateActions();
  CPopupMenu Menu(this);
  AddItemEntries(Menu, Index);
  AddCommonEntries(Menu);
  Menu.Run(ScreenPos);
}

void CModelViewWindow::AddCommonEntries(CPopupMenu& Menu) {
  Menu.AddSeparator();
  for (QAction* const pAction : std::as_const(ItemFormatActions)) Menu.AddAction(pAction);
  Menu.AddSeparator();
  for (QAction* const pAction : {actionRefreshItem, actionRefreshAll}) Menu.AddAction(pAction);
  Menu.AddSeparator();
  for (QAction* const pAction : {actionExpandAll, actionCollapseAll}) Menu.AddAction(pAction);
  Menu.AddSeparator();
  Menu.AddAction(actionToggleFilterBar);
}

// ---- Keys

void CModelViewWindow::OnKeyPlusPressed() {
  pView->expand(pView->currentIndex().siblingAtColumn(0));
}

void CModelViewWindow::OnKeyMinusPressed() {
  pView->collapse(pView->currentIndex().siblingAtColumn(0));
}

bool CModelViewWindow::MoveToFilterBar() {
  const QModelIndex Current = pView->currentIndex();
  if (Current.isValid() && (Current.row() > 0 || Current.parent().isValid())) return false;
  int Column = Current.isValid() ? Current.column() : pHeader->logicalIndex(0);
  if (pHeader->isSectionHidden(Column)) Column = pHeader->logicalIndexAt(0);
  return pFilterBar->EditFilter(Column);
}

void CModelViewWindow::TriggerDelete() {
  for (QAction* const pAction : actions()) {
    if (pAction->shortcut() == QKeySequence(Qt::Key_Delete) && pAction->isEnabled() && pAction->isVisible()) {
      return pAction->trigger();
    }
  }
}

bool CModelViewWindow::OnKeyPressed(QKeyEvent* pEvent) {
  if (pEvent->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
  const QModelIndex Current = GetCurrentItem();
  switch (pEvent->key()) {
    case Qt::Key_Plus:
      if (!pModel->IsFlat()) OnKeyPlusPressed();
      return !pModel->IsFlat();
    case Qt::Key_Minus:
      if (!pModel->IsFlat()) OnKeyMinusPressed();
      return !pModel->IsFlat();
    case Qt::Key_Up:
      return MoveToFilterBar();
    case Qt::Key_Delete:
      TriggerDelete();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // As a double click: what can be edited is.
      if (pView->currentIndex().flags() & Qt::ItemIsEditable) {
        pView->edit(pView->currentIndex());
      } else if (Current.isValid()) {
        OnItemDoubleClicked(pProxy->mapToSource(pView->currentIndex()));
      }
      return Current.isValid();
    default:
      return false;
  }
}

// ---- Tool tips

void CModelViewWindow::OnTooltipRequested(const QPoint& ScreenPos) {
  const QModelIndex Index = pView->indexAt(pView->viewport()->mapFromGlobal(ScreenPos));
  CToolTip* const pTip = CToolTip::_GetSingleton();
  if (!Index.isValid()) return pTip->Hide();
  CToolTip::PAIRS Pairs;
  const QString sTitle = GetItemTooltip(pProxy->mapToSource(Index), Pairs);
  if (!sTitle.isEmpty() || !Pairs.isEmpty()) return pTip->ShowPairs(pView->viewport(), ScreenPos, sTitle, Pairs);
  const bool bCut = pView->sizeHintForIndex(Index).width() > pView->visualRect(Index).width();
  pTip->ShowText(pView->viewport(), ScreenPos, bCut ? Index.data().toString() : QString());
}
