#include "program/windows/functions_window.h"

#include <QElapsedTimer>

#include "base/msg_flags.h"
#include "base/text.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "program/windows/functions_data_model.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/settings/var_ids.h"
#include "ui/popup_menu.h"

namespace {

struct BREAKPOINT_TEXT {
  U32 Addr;
  U32 ClearID;        // the command that clears it
  QString sLocation;  // its argument
};

// All addresses that have a breakpoint.
QList<BREAKPOINT_TEXT> ListBreakpoints() {
  QList<BREAKPOINT_TEXT> List;
  for (const CBreakpointRec& Rec : CBreakpointManager::Get().Rows()) {
    if (!Rec.bIsSource) {
      List << BREAKPOINT_TEXT{Rec.Addr, ACTION_BREAK_CLEAR, HexText(Rec.Addr)};
      continue;
    }
    // Files in different folders may have the same name.
    const QString sLine = UniqueLineText(Rec.Loc, CBreakpointManager::Get().PathOf(Rec.Loc));
    for (const CBreakpointRec& Child : Rec.Children) {
      List << BREAKPOINT_TEXT{Child.Addr, ACTION_BREAK_CLEAR_ON_SRC, sLine};
    }
  }
  return List;
}

// Commands that take the function; those that nothing serves yet are left out of the menu.
struct FUNC_COMMAND {
  U32 ActionID;
  const char* sText;
  const char* sIcon;
};
constexpr FUNC_COMMAND COMMANDS[] = {
    {ACTION_VIEW_SOURCE, "Show &Source", "document-text.png"},
    {ACTION_VIEW_DISASSEMBLY, "Show &Disassembly", "window-disassembly.png"},
    {ACTION_VIEW_CALL_GRAPH, "Show Call &Graph", "window-call-graph.png"},
    {ACTION_VIEW_MEMORY_MAP, "Show in &Memory Map", "window-memory-usage.png"},
};

}  // namespace

CFunctionsWindow::CFunctionsWindow(QWidget* pParent)
    : CModelViewWindow(pParent, QStringLiteral("Functions"), new CFunctionsDataModel),
      pFunctions(static_cast<CFunctionsDataModel*>(pModel)) {
  Flags |= WF_FILTER_BAR;
  actionFuncSetBP = new QAction(GetIcon(QStringLiteral("breakpoint-set.png")), QStringLiteral("Set &Breakpoint"), this);
  actionFuncSetBP->setObjectName(QStringLiteral("actionFuncSetBP"));
  Connect(actionFuncSetBP, SIGNAL(triggered()), this, SLOT(OnActionSetBpTriggered()));
  actionFuncClearAllBP =
      new QAction(GetIcon(QStringLiteral("breakpoint-clear-all.png")), QStringLiteral("&Clear All Breakpoints"), this);
  actionFuncClearAllBP->setObjectName(QStringLiteral("actionFuncClearAllBP"));
  Connect(actionFuncClearAllBP, SIGNAL(triggered()), this, SLOT(OnActionClearAllBpTriggered()));
  connect(&CBreakpointManager::Get(), &CBreakpointManager::Changed, this, &CFunctionsWindow::TakeBreakpoints);
  Init();
}

void CFunctionsWindow::Clear() {
  pFunctions->Clear();
  CModelViewWindow::Clear();
}

void CFunctionsWindow::Reload() {
  QElapsedTimer Timer;
  Timer.start();
  pFunctions->Reload();
  LogMsg(QStringLiteral("Function window initialized in %1 ms").arg(Timer.elapsed()),
         MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

void CFunctionsWindow::SetPreference(int VarID, int Value) {
  CModelViewWindow::SetPreference(VarID, Value);
  if (VarID == PREF_PREPEND_FUNC_CLASS_NAMES) pFunctions->SetClassNamesShown(Value != 0);
}

QString CFunctionsWindow::GetEmptyWindowText(DEBUG_STATES) const {
  return QStringLiteral("No functions");
}

void CFunctionsWindow::TakeBreakpoints() {
  QAddrList Addrs;
  for (const BREAKPOINT_TEXT& Breakpoint : ListBreakpoints()) Addrs << Breakpoint.Addr;
  pFunctions->SetBreakpoints(Addrs);
  UpdateActions();
}

void CFunctionsWindow::UpdateActions() {
  CModelViewWindow::UpdateActions();
  if (actionFuncClearAllBP == nullptr) return;
  const QModelIndex Current = GetCurrentItem();
  const bool bSet = pFunctions->HasBreakpoint(Current);
  const bool bCode = !pFunctions->RangesOf(Current).isEmpty();
  actionFuncSetBP->setVisible(!bSet);
  actionFuncSetBP->setEnabled(bCode && !bSet);
  actionFuncClearAllBP->setVisible(bSet);
  actionFuncClearAllBP->setEnabled(bSet);
}

void CFunctionsWindow::OnItemClicked(const QModelIndex& Index) {
  Q_EMIT FuncSelected(pFunctions->FuncOf(Index));
}

void CFunctionsWindow::OnItemDoubleClicked(const QModelIndex& Index) {
  const CSrcLoc Loc = pFunctions->LocOf(Index);
  if (Loc.IsValid()) {
    PerformAction(ACTION_VIEW_SOURCE, UniqueLineText(Loc));
  } else if (GetAction(ACTION_VIEW_DISASSEMBLY)) {
    PerformAction(ACTION_VIEW_DISASSEMBLY, pFunctions->CommandTextOf(Index));
  }
}

void CFunctionsWindow::AddItemEntries(CPopupMenu& Menu, const QModelIndex& Index) {
  if (!Index.isValid()) return;
  Menu.AddAction(actionFuncSetBP);
  Menu.AddAction(actionFuncClearAllBP);
  Menu.AddSeparator();
  for (const FUNC_COMMAND& Command : COMMANDS) {
    if (GetAction(Command.ActionID) == nullptr) continue;
    const bool bSource = Command.ActionID == ACTION_VIEW_SOURCE;
    const CSrcLoc Loc = bSource ? pFunctions->LocOf(Index) : CSrcLoc();
    const QString sLine = Loc.IsValid() ? UniqueLineText(Loc) : QString();
    const QString sText = bSource ? sLine : pFunctions->CommandTextOf(Index);
    QAction* const pEntry = Menu.addAction(GetIcon(QLatin1String(Command.sIcon)), QLatin1String(Command.sText));
    pEntry->setEnabled(!sText.isEmpty());
    connect(pEntry, &QAction::triggered, this, [&Command, sText] { PerformAction(Command.ActionID, sText); });
  }
}

void CFunctionsWindow::OnActionSetBpTriggered() {
  const QModelIndex Current = GetCurrentItem();
  if (Current.isValid()) PerformAction(ACTION_BREAK_SET_ON_SRC, pFunctions->CommandTextOf(Current));
}

void CFunctionsWindow::OnActionClearAllBpTriggered() {
  const QAddrRanges Ranges = pFunctions->RangesOf(GetCurrentItem());
  QStringList Cleared;
  for (const BREAKPOINT_TEXT& Breakpoint : ListBreakpoints()) {
    const bool bInside =
        std::ranges::any_of(Ranges, [&Breakpoint](const CAddrRange& Range) { return Range.Contains(Breakpoint.Addr); });
    // A line's breakpoint goes as a whole.
    if (!bInside || Cleared.contains(Breakpoint.sLocation)) continue;
    Cleared << Breakpoint.sLocation;
    PerformAction(Breakpoint.ClearID, Breakpoint.sLocation);
  }
  pModel->TellChanged(GetCurrentItem());
}
