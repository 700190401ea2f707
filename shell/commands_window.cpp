// Window.*, Toolbar.*, and the entries of the View menu.

#include "base/text.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/main_window.h"
#include "shell/menu_table.h"
#include "shell/settings/named_constants.h"
#include "shell/window_table.h"
#include "ui/dock_window.h"
#include "ui/item_window.h"
#include "ui/window.h"

namespace {

void Fail(U32 ActionID, const char* sError) {
  SetActionError(ActionID, QLatin1String(sError));
}

// The name stands in the text itself: mostly it is the only argument.
void FailUnknown(U32 ActionID, const char* sError, const QString& sName) {
  SetActionError(ActionID, QStringLiteral("%1: %2").arg(QLatin1String(sError), QuotedArg(sName)));
}

// ---- Windows

CWindow* FindArgWindow(COMMAND_CONTEXT& Context, U32 ActionID, bool bVisibleOnly) {
  const QString sName = GetActionArgs(ActionID).value(0);
  CWindow* const pWindow = Context.Window.FindWindow(sName, bVisibleOnly);
  if (pWindow == nullptr) FailUnknown(ActionID, ActionError::UNKNOWN_WINDOW, sName);
  return pWindow;
}

void WindowShow(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_WINDOW_SHOW)) return;
  const QString sName = GetActionArgs(ACTION_WINDOW_SHOW).value(0);
  CWindow* const pWindow = Context.Window.Registry().FindToShow(sName);
  if (pWindow == nullptr) return FailUnknown(ACTION_WINDOW_SHOW, ActionError::UNKNOWN_WINDOW, sName);
  Context.Window.ShowWindow(pWindow);
}

void WindowClose(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_WINDOW_CLOSE;
  if (!CheckActionArgs(ID, 0)) return;
  CWindow* pWindow = nullptr;
  if (GetActionArgs(ID).isEmpty()) {
    const CDockWindow* const pDock = GetDock(QApplication::focusWidget());
    if (pDock == nullptr || !pDock->HasFocus()) return SuppressEcho(ID);
    pWindow = Context.Window.FindWindow(pDock->objectName(), true);
  } else {
    pWindow = FindArgWindow(Context, ID, true);
  }
  if (pWindow == nullptr) return;
  if (pWindow->GetDock() == nullptr) return Fail(ID, ActionError::INVALID_PARAMETER);
  SetActionArgs(ID, QStringList{pWindow->GetName()});
  pWindow->GetDock()->setFloating(false);
  pWindow->GetDock()->hide();
}

void WindowClear(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_WINDOW_CLEAR;
  if (!CheckActionArgs(ID)) return;
  CWindow* const pWindow = FindArgWindow(Context, ID, false);
  if (pWindow == nullptr) return;
  if (!pWindow->IsContentsModifiable()) return Fail(ID, ActionError::INVALID_PARAMETER);
  pWindow->Clear();
}

template <U32 ID, void (CWindow::*Operation)()>
void OnWindow(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ID)) return;
  if (CWindow* const pWindow = FindArgWindow(Context, ID, false)) (pWindow->*Operation)();
}

void SetDisplayFormat(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_WIN_SET_DISPLAY_FORMAT;
  if (!CheckActionArgs(ID)) return;
  CWindow* const pWindow = FindArgWindow(Context, ID, false);
  if (pWindow == nullptr) return;
  bool bOk = false;
  const I64 Format = ParseConstOrNumber(GetActionArgs(ID).value(1), &bOk);
  if (!bOk || FindNamedConstByValue(QStringLiteral("DISPLAY_FORMAT_"), static_cast<U32>(Format)) == nullptr) {
    return Fail(ID, ActionError::INVALID_PARAMETER);
  }
  pWindow->SetDisplayFormat(static_cast<int>(Format));
}

// Window.Add and Window.Remove, on windows whose contents are the user's choice.
template <U32 ID, void (IItemWindow::*Operation)(const QString&)>
void OnItem(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ID)) return;
  CWindow* const pWindow = FindArgWindow(Context, ID, false);
  if (pWindow == nullptr) return;
  auto* const pItems = dynamic_cast<IItemWindow*>(pWindow);
  if (pItems == nullptr || !pWindow->IsContentsModifiable()) return Fail(ID, ActionError::INVALID_PARAMETER);
  const QString sSymbol = GetActionArgs(ID).value(1);
  if (sSymbol.isEmpty()) return Fail(ID, ActionError::UNKNOWN_SYMBOL);
  (pItems->*Operation)(sSymbol);
  if (ID == ACTION_WINDOW_ADD && !pWindow->IsOpen()) PerformAction(ACTION_WINDOW_SHOW, pWindow->GetName());
}

// An entry of the View menu. The title finds a memory window that is closed.
void ShowByEntry(const WINDOW_ROW& Row) {
  PerformAction(ACTION_WINDOW_SHOW, QLatin1String(Row.sTitle));
}

// ---- Tool bars

QToolBar* FindArgToolBar(COMMAND_CONTEXT& Context, U32 ActionID) {
  if (!CheckActionArgs(ActionID)) return nullptr;
  const QString sName = GetActionArgs(ActionID).value(0);
  QToolBar* const pBar = Context.Window.FindToolBar(sName);
  if (pBar == nullptr) FailUnknown(ActionID, ActionError::UNKNOWN_TOOLBAR, sName);
  return pBar;
}

void ToolbarShow(COMMAND_CONTEXT& Context) {
  if (QToolBar* const pBar = FindArgToolBar(Context, ACTION_TOOLBAR_SHOW)) pBar->show();
}

void ToolbarClose(COMMAND_CONTEXT& Context) {
  if (QToolBar* const pBar = FindArgToolBar(Context, ACTION_TOOLBAR_CLOSE)) pBar->hide();
}

// An entry of View | Toolbars.
void ToggleToolBar(COMMAND_CONTEXT& Context, const TOOL_BAR_TABLE& Row) {
  const QToolBar* const pBar = Context.Window.FindToolBar(QLatin1String(Row.sName));
  PerformAction(pBar->isHidden() ? ACTION_TOOLBAR_SHOW : ACTION_TOOLBAR_CLOSE, QLatin1String(Row.sTitle));
}

constexpr COMMAND_HANDLER WINDOW_HANDLERS[] = {
    {ACTION_WINDOW_SHOW, WindowShow},
    {ACTION_WINDOW_CLOSE, WindowClose},
    {ACTION_WINDOW_CLEAR, WindowClear},
    {ACTION_WINDOW_EXPAND_ALL, OnWindow<ACTION_WINDOW_EXPAND_ALL, &CWindow::ExpandAll>},
    {ACTION_WINDOW_COLLAPSE_ALL, OnWindow<ACTION_WINDOW_COLLAPSE_ALL, &CWindow::CollapseAll>},
    {ACTION_WIN_SET_DISPLAY_FORMAT, SetDisplayFormat},
    {ACTION_WINDOW_ADD, OnItem<ACTION_WINDOW_ADD, &IItemWindow::AddItem>},
    {ACTION_WINDOW_REMOVE, OnItem<ACTION_WINDOW_REMOVE, &IItemWindow::RemoveItem>},
    {ACTION_TOOLBAR_SHOW, ToolbarShow},
    {ACTION_TOOLBAR_CLOSE, ToolbarClose},
};

}  // namespace

void RegisterWindowCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, WINDOW_HANDLERS);
  for (const WINDOW_ROW& Row : GetWindowTable()) {
    if (Row.Create && Row.ShowID != NUM_ACTIONS) {
      RegisterActionHandler(Row.ShowID, [&Row] { ShowByEntry(Row); });
    }
  }
  for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) {
    RegisterActionHandler(Row.ToggleID, [&Context, &Row] { ToggleToolBar(Context, Row); });
    GetAction(Row.ToggleID)->setCheckable(true);
  }
}
