#include "device/breakpoints/windows/breakpoint_window.h"

#include <QKeyEvent>
#include <QMenu>

#include "base/text.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/breakpoints/windows/breakpoint_actions.h"
#include "device/breakpoints/windows/breakpoint_cells.h"
#include "device/breakpoints/windows/breakpoint_offer.h"
#include "device/breakpoints/windows/breakpoints_data_model.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "ui/popup_menu.h"
#include "ui/table/sort_filter.h"
#include "ui/table/tree_view.h"

namespace {

CBreakpointManager& Breakpoints() {
  return CBreakpointManager::Get();
}

BREAKPOINT_LOCATION PlaceOf(const CBreakpointRec& Record) {
  return Record.bIsSource ? BREAKPOINT_LOCATION{Record.Loc, INVALID_ADDR} : BREAKPOINT_LOCATION{{}, Record.Addr};
}

}  // namespace

CBreakpointWindow::CBreakpointWindow(QWidget* pParent)
    : CModelViewWindow(pParent, QStringLiteral("Breakpoints"), new CBreakpointsDataModel) {
  m_pRows = static_cast<CBreakpointsDataModel*>(Model());
  Flags = (Flags | WF_MODIFIABLE | WF_CONFIRM_CLEAR) &
          ~(WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT | WF_ITEMS_EDITABLE | WF_ITEMS_DROPPABLE | WF_ACCEPT_DROPS);
  actionBpSet =
      AddBreakpointAction("actionBpSet", "&Set Breakpoint", "breakpoint-set.png", SLOT(OnActionBPSetTriggered()));
  actionBpClear = AddBreakpointAction("actionBpClear", "&Clear Breakpoint", "breakpoint-clear.png",
                                      SLOT(OnActionBPClearTriggered()));
  actionBpEnable = AddBreakpointAction("actionBpEnable", "&Enable Breakpoint", "breakpoint-enable.png",
                                       SLOT(OnActionBPEnableTriggered()));
  actionBpDisable = AddBreakpointAction("actionBpDisable", "&Disable Breakpoint", "breakpoint-disable.png",
                                        SLOT(OnActionBPDisableTriggered()));
  actionBpEditDialog = AddBreakpointAction("actionBpEditDialog", "&Properties...", "breakpoint-dialog.png",
                                           SLOT(OnActionBPEditDialogTriggered()));
  actionBpClearAll = AddBreakpointAction("actionBpClearAll", "Clear &All Breakpoints", "breakpoint-clear-all.png",
                                         SLOT(OnActionBPClearAllTriggered()));
  connect(&Breakpoints(), &CBreakpointManager::Changed, this, &CBreakpointWindow::Reload);
  Init();
  Reload();
}

QAction* CBreakpointWindow::AddBreakpointAction(const char* sObjectName, const char* sText, const char* sIcon,
                                                const char* sSlot) {
  auto* const pAction = new QAction(GetIcon(QLatin1String(sIcon)), QLatin1String(sText), this);
  pAction->setObjectName(QLatin1String(sObjectName));
  Connect(pAction, SIGNAL(triggered()), this, sSlot);
  return pAction;
}

// ---- Contents

void CBreakpointWindow::Reload() {
  m_pRows->SetRows(Breakpoints().Rows());
  UpdateActions();
}

// Hits are counted on while nothing else changes.
void CBreakpointWindow::Update(U32) {
  Reload();
}

void CBreakpointWindow::Clear() {
  if (!Breakpoints().IsEmpty()) Breakpoints().ClearAll();
  CModelViewWindow::Clear();
}

QString CBreakpointWindow::GetEmptyWindowText(DEBUG_STATES) const {
  return QStringLiteral("No breakpoints set");
}

QString CBreakpointWindow::GetUserConfigStr() const {
  return Breakpoints().GetUserConfigStr();
}

void CBreakpointWindow::SetUserConfigStr(const QString& sConfig) {
  Breakpoints().SetUserConfigStr(sConfig);
}

void CBreakpointWindow::ClearStateBackup() {
  CModelViewWindow::ClearStateBackup();
  Breakpoints().ClearStateBackup();
}

QString CBreakpointWindow::GetItemTooltip(const QModelIndex& Index, CToolTip::PAIRS& Pairs) const {
  const CBreakpointRec* const pRecord = m_pRows->GetRecord(Index);
  if (pRecord == nullptr) return {};
  const auto Add = [&Pairs](const char* sName, const QString& sText) {
    if (!sText.isEmpty()) Pairs << qMakePair(QString(QLatin1String(sName)), sText);
  };
  if (pRecord->sProblem.isEmpty()) Add("Context", pRecord->Context);
  Add("Not set", pRecord->sProblem);
  Add("Hits", pRecord->HitCount > 0 ? GroupedText(pRecord->HitCount) : QString());
  Add("Condition", BreakpointText(*pRecord, BREAKPOINT_CONDITION));
  Add("Console", pRecord->Props.ExtraActionConsoleText);
  Add("Popup", pRecord->Props.ExtraActionMsgBoxText);
  return BreakpointText(*pRecord, BREAKPOINT_LOCATION_COLUMN);
}

const CBreakpointRec* CBreakpointWindow::CurrentRecord() const {
  return m_pRows->GetRecord(GetCurrentItem());
}

// ---- Actions

void CBreakpointWindow::UpdateActions() {
  CModelViewWindow::UpdateActions();
  if (actionBpClearAll == nullptr || CBreakpointOffer::Current()) return;
  const CBreakpointRec* const pRecord = CurrentRecord();
  const bool bEnabled = pRecord && pRecord->State == BP_STATE_ENABLED;
  const auto Offer = [](QAction* pAction, bool bOn) {
    pAction->setEnabled(bOn);
    pAction->setVisible(bOn);
  };
  // Of two with the same key only one may be on: adding and clearing have actions of their own here.
  for (QAction* const pAction : {actionBpSet, actionWinAdd, actionWinClear}) pAction->setEnabled(false);
  Offer(actionBpClear, pRecord && !pRecord->bIsDerived);
  Offer(actionBpDisable, bEnabled);
  Offer(actionBpEnable, pRecord && !bEnabled);
  Offer(actionBpEditDialog, pRecord != nullptr);
  actionBpClearAll->setEnabled(!IsEmpty());
}

BREAKPOINT_LOCATION CBreakpointWindow::Place() const {
  if (const BREAKPOINT_LOCATION* const pOffered = CBreakpointOffer::Current()) return *pOffered;
  const CBreakpointRec* const pRecord = CurrentRecord();
  return pRecord ? PlaceOf(*pRecord) : BREAKPOINT_LOCATION{};
}

void CBreakpointWindow::OnActionAddTriggered() {
  AskForBreakpoint();
}

void CBreakpointWindow::OnActionBPSetTriggered() {
  PerformBreakpoint(Place(), ACTION_BREAK_SET_ON_SRC, ACTION_BREAK_SET);
}

void CBreakpointWindow::OnActionBPClearTriggered() {
  PerformBreakpoint(Place(), ACTION_BREAK_CLEAR_ON_SRC, ACTION_BREAK_CLEAR);
}

void CBreakpointWindow::OnActionBPEnableTriggered() {
  PerformBreakpoint(Place(), ACTION_BREAK_ENABLE_ON_SRC, ACTION_BREAK_ENABLE);
}

void CBreakpointWindow::OnActionBPDisableTriggered() {
  PerformBreakpoint(Place(), ACTION_BREAK_DISABLE_ON_SRC, ACTION_BREAK_DISABLE);
}

void CBreakpointWindow::OnActionBPEditDialogTriggered() {
  if (Place().IsValid()) EditBreakpoint(Place());
}

void CBreakpointWindow::OnActionBPClearAllTriggered() {
  PerformAction(ACTION_BREAK_CLEAR_ALL);
}

void CBreakpointWindow::OnTypeMenuActionTriggered(QAction* pAction) {
  SetType(GetCurrentItem(), pAction);
}

void CBreakpointWindow::SetType(const QModelIndex& Index, const QAction* pEntry) {
  const CBreakpointRec* const pRecord = m_pRows->GetRecord(Index);
  if (pEntry && pRecord) PerformAction(ACTION_BREAK_SET_TYPE, LocationArg(PlaceOf(*pRecord)), pEntry->data().toUInt());
}

// ---- Menus

void CBreakpointWindow::SetActionStyle(U32 ActionID, QAction* pAction) {
  if (ActionID != ACTION_WIN_ADD) return;
  pAction->setText(QStringLiteral("Set &Breakpoint..."));
  pAction->setIcon(GetIcon(QStringLiteral("breakpoint-dialog.png")));
}

void CBreakpointWindow::AddTypeEntries(QMenu* pMenu, const CBreakpointRec& Record) {
  const QStringList Names = BreakpointTypeNames();
  for (U32 Type = BP_TYPE_ANY; Type <= BP_TYPE_SOFT; ++Type) {
    QAction* const pAction = pMenu->addAction(Names[static_cast<int>(Type)]);
    pAction->setData(Type);
    pAction->setCheckable(true);
    pAction->setChecked(Type == Record.Type);
  }
}

void CBreakpointWindow::AddItemEntries(CPopupMenu& Menu, const QModelIndex& Index) {
  const CBreakpointRec* const pRecord = m_pRows->GetRecord(Index);
  if (pRecord) {
    for (QAction* const pAction : {actionBpClear, actionBpEnable, actionBpDisable, actionBpEditDialog})
      Menu.AddAction(pAction);
    auto* const pTypes = new QMenu(QStringLiteral("Permitted &Implementation"), &Menu);
    AddTypeEntries(pTypes, *pRecord);
    connect(pTypes, &QMenu::triggered, this, &CBreakpointWindow::OnTypeMenuActionTriggered);
    Menu.addMenu(pTypes);
    Menu.AddSeparator();
    QAction* const pShow = Menu.addAction(GetIcon(QStringLiteral("document-text.png")), QStringLiteral("Show S&ource"));
    pShow->setEnabled(pRecord->Loc.IsValid());
    connect(pShow, &QAction::triggered, this,
            [this, Item = QPersistentModelIndex(Index)] { OnItemDoubleClicked(Item); });
    Menu.AddSeparator();
  }
  Menu.AddAction(GetAction(ACTION_BP_OPEN_DIALOG));
  Menu.AddAction(actionBpClearAll);
}

void CBreakpointWindow::ShowTypeMenu(const QPersistentModelIndex& Item) {
  const CBreakpointRec* const pRecord = m_pRows->GetRecord(Item);
  if (pRecord == nullptr) return;
  const QRect Cell = View()->visualRect(Proxy()->mapFromSource(Item));
  CPopupMenu Menu(this);
  AddTypeEntries(&Menu, *pRecord);
  // Rows come and go, and others become the current one, while the menu waits.
  SetType(Item, Menu.Run(View()->viewport()->mapToGlobal(Cell.bottomLeft())));
}

// ---- Places

void CBreakpointWindow::OnItemClicked(const QModelIndex& Index) {
  const CBreakpointRec* const pRecord = m_pRows->GetRecord(Index);
  if (pRecord == nullptr) return;
  // Those who hear of the place may change the rows.
  const QPersistentModelIndex Item = Index;
  m_bTelling = true;
  if (pRecord->bIsSource) {
    Q_EMIT SrcLocSelected(pRecord->Loc, 0);
  } else {
    Q_EMIT InstrSelected(pRecord->Addr);
  }
  m_bTelling = false;
  if (Item.column() == BREAKPOINT_PERMITTED_IMP) ShowTypeMenu(Item);
}

void CBreakpointWindow::OnItemDoubleClicked(const QModelIndex& Index) {
  const CBreakpointRec* const pRecord = m_pRows->GetRecord(Index);
  if (pRecord && pRecord->Loc.IsValid()) PerformAction(ACTION_VIEW_SOURCE, LocationArg({pRecord->Loc, INVALID_ADDR}));
}

bool CBreakpointWindow::OnKeyPressed(QKeyEvent* pEvent) {
  if (pEvent->key() != Qt::Key_Delete || pEvent->modifiers() != Qt::NoModifier)
    return CModelViewWindow::OnKeyPressed(pEvent);
  if (actionBpClear->isEnabled()) OnActionBPClearTriggered();
  return true;
}

void CBreakpointWindow::Select(const std::function<bool(const CBreakpointRec&)>& IsWanted) {
  if (m_bTelling) return;
  const auto SelectIn = [&](const QModelIndex& Parent) {
    for (int Row = 0; Row < m_pRows->rowCount(Parent); ++Row) {
      const QModelIndex Index = m_pRows->index(Row, 0, Parent);
      if (!IsWanted(*m_pRows->GetRecord(Index))) continue;
      SelectItem(Index);
      return true;
    }
    return false;
  };
  bool bFound = SelectIn({});
  for (int Row = 0; !bFound && Row < m_pRows->rowCount(); ++Row) bFound = SelectIn(m_pRows->index(Row, 0));
}

void CBreakpointWindow::OnSrcLocSelected(const CSrcLoc& Loc, int) {
  Select([&Loc](const CBreakpointRec& Record) { return Record.bIsSource && Record.Loc == Loc; });
}

void CBreakpointWindow::OnInstrSelected(I64 Addr) {
  Select([Addr](const CBreakpointRec& Record) { return !Record.bIsSource && Record.Addr == static_cast<U32>(Addr); });
}
