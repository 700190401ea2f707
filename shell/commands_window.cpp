// Window.* and Toolbar.* as far as their windows exist.

#include "base/text.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/main_window.h"
#include "shell/settings/named_constants.h"
#include "ui/dock_window.h"
#include "ui/window.h"

namespace {

void Fail(U32 ActionID, const char* sError, const QString& sDetail = QString()) {
  SetActionError(ActionID, QLatin1String(sError), sDetail.isEmpty() ? QString() : QuotedArg(sDetail));
}

// ---- Windows

CWindow* FindArgWindow(COMMAND_CONTEXT& Context, U32 ActionID, bool bVisibleOnly) {
  const QString sName = GetActionArgs(ActionID).value(0);
  CWindow* const pWindow = Context.Window.FindWindow(sName, bVisibleOnly);
  if (pWindow == nullptr)
    SetActionError(ActionID,
                   QStringLiteral("%1: %2").arg(QLatin1String(ActionError::UNKNOWN_WINDOW), QuotedArg(sName)));
  return pWindow;
}

void WindowShow(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_WINDOW_SHOW)) return;
  if (CWindow* const pWindow = FindArgWindow(Context, ACTION_WINDOW_SHOW, false)) Context.Window.ShowWindow(pWindow);
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
  if (pWindow == nullptr || pWindow->GetDock() == nullptr) return;
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

void ShowConsole(COMMAND_CONTEXT&) {
  PerformAction(ACTION_WINDOW_SHOW, QStringLiteral("Console"));
}

QToolBar* FindArgToolBar(COMMAND_CONTEXT& Context, U32 ActionID) {
  if (!CheckActionArgs(ActionID)) return nullptr;
  const QString sName = GetActionArgs(ActionID).value(0);
  QToolBar* const pBar = Context.Window.FindToolBar(sName);
  if (pBar == nullptr)
    SetActionError(ActionID,
                   QStringLiteral("%1: %2").arg(QLatin1String(ActionError::UNKNOWN_TOOLBAR), QuotedArg(sName)));
  return pBar;
}

void ToolbarShow(COMMAND_CONTEXT& Context) {
  if (QToolBar* const pBar = FindArgToolBar(Context, ACTION_TOOLBAR_SHOW)) pBar->show();
}

void ToolbarClose(COMMAND_CONTEXT& Context) {
  if (QToolBar* const pBar = FindArgToolBar(Context, ACTION_TOOLBAR_CLOSE)) pBar->hide();
}

constexpr COMMAND_HANDLER WINDOW_HANDLERS[] = {
    {ACTION_WINDOW_SHOW, WindowShow},
    {ACTION_WINDOW_CLOSE, WindowClose},
    {ACTION_WINDOW_CLEAR, WindowClear},
    {ACTION_WINDOW_EXPAND_ALL, OnWindow<ACTION_WINDOW_EXPAND_ALL, &CWindow::ExpandAll>},
    {ACTION_WINDOW_COLLAPSE_ALL, OnWindow<ACTION_WINDOW_COLLAPSE_ALL, &CWindow::CollapseAll>},
    {ACTION_WIN_SET_DISPLAY_FORMAT, SetDisplayFormat},
    {ACTION_WINDOW_SHOW_CONSOLE, ShowConsole},
    {ACTION_TOOLBAR_SHOW, ToolbarShow},
    {ACTION_TOOLBAR_CLOSE, ToolbarClose},
};

}  // namespace

void RegisterWindowCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, WINDOW_HANDLERS);
}
