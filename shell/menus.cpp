#include "shell/menus.h"

#include <QMenuBar>
#include <QToolButton>
#include <span>

#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int TOOL_BAR_HEIGHT = 26;  // pixels
constexpr int ICON_SIZE = 16;        // pixels

constexpr U32 SEPARATOR = 0xFFFFFFFF;
constexpr U32 RECENT_PROJECTS = 0xFFFFFFFE;
constexpr U32 RECENT_PROGRAMS = 0xFFFFFFFD;

struct MENU_ROW {
  U32 ActionID;
  const char* sText;
  const char* sIcon;  // null for none
};

struct MENU {
  const char* sTitle;
  std::initializer_list<MENU_ROW> Rows;
};

const MENU MENUS[] = {
    {"&File",
     {{ACTION_FILE_NEW_PROJECT, "&New Project", nullptr},
      {ACTION_FILE_OPEN, "&Open...", "file-open.png"},
      {ACTION_FILE_CLOSE, "&Close", nullptr},
      {ACTION_FILE_CLOSE_ALL, "Close All", nullptr},
      {ACTION_FILE_CLOSE_ALL_BUT_THIS, "Close All &But This", nullptr},
      {SEPARATOR, nullptr, nullptr},
      {RECENT_PROJECTS, "Recent &Projects", nullptr},
      {RECENT_PROGRAMS, "Recent P&rograms", nullptr},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_FILE_SAVE_PROJ_AS, "Save Project &As...", nullptr},
      {ACTION_FILE_SAVE_ALL, "Save A&ll", "file-save.png"},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_FILE_EXIT, "E&xit", nullptr}}},
    {"&Edit",
     {{ACTION_EDIT_PREFERENCES, "&Preferences...", nullptr}, {ACTION_EDIT_SYS_VARS, "System &Variables...", nullptr}}},
    {"&View",
     {{ACTION_WINDOW_SHOW_CONSOLE, "&Console", "window-console.png"},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_VIEW_PC, "Show &PC", "arrow-pc.png"},
      {ACTION_SRC_VIEW_LINE, "&Go to Line...", nullptr},
      {ACTION_SRC_SHOW_NEXT_DOCUMENT, "&Next Document", nullptr}}},
    {"&Debug",
     {{ACTION_DEBUG_START, "&Start Debugging", "debug-start.png"},
      {ACTION_DEBUG_STOP, "S&top Debugging", "debug-stop.png"},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_DEBUG_CONTINUE, "&Continue", "debug-continue.png"},
      {ACTION_DEBUG_HALT, "&Halt", "debug-halt.png"},
      {ACTION_DEBUG_RESET, "&Reset", "debug-reset.png"},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_DEBUG_STEP_INTO, "Step &Into", "debug-step-into.png"},
      {ACTION_DEBUG_STEP_OVER, "Step &Over", "debug-step-over.png"},
      {ACTION_DEBUG_STEP_OUT, "Step O&ut", "debug-step-out.png"},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_BREAK_CLEAR_ALL, "Clear All &Breakpoints", nullptr}}},
    {"&Help",
     {{ACTION_HELP_MANUAL, "&User Guide", "help-manual.png"},
      {ACTION_HELP_COMMANDS, "&Commands", "help-commands.png"},
      {SEPARATOR, nullptr, nullptr},
      {ACTION_HELP_ABOUT, "&About...", "help-about.png"}}},
};

const MENU_ROW START_MODES[] = {
    {ACTION_DEBUG_DOWNLOAD_RESET, "&Download && Reset Program", "debug-start.png"},
    {ACTION_DEBUG_ATTACH, "&Attach to Running Program", "debug-start.png"},
    {ACTION_DEBUG_ATTACH_HALT, "Attach && &Halt Program", "debug-start.png"},
};
const MENU_ROW RESET_MODES_ROWS[] = {
    {ACTION_DEBUG_RESET_HALT, "Reset && &Halt", "debug-reset.png"},
    {ACTION_DEBUG_RESET_BREAK_AT_SYMBOL, "Reset && &Break at Symbol", "debug-reset.png"},
    {ACTION_DEBUG_RESET_RUN, "Reset && &Run", "debug-reset.png"},
};

struct TOOL_BAR {
  const char* sName;  // object name
  const char* sTitle;
  std::initializer_list<U32> Rows;
};
const TOOL_BAR TOOL_BARS[] = {
    {"ToolbarFile", "File", {ACTION_FILE_OPEN, ACTION_FILE_SAVE_ALL}},
    {"ToolbarDebug",
     "Debug",
     {ACTION_DEBUG_START, ACTION_DEBUG_STOP, ACTION_DEBUG_CONTINUE, ACTION_DEBUG_HALT, ACTION_DEBUG_RESET, SEPARATOR,
      ACTION_DEBUG_STEP_OVER, ACTION_DEBUG_STEP_INTO, ACTION_DEBUG_STEP_OUT}},
    {"ToolbarViews", "Views", {ACTION_WINDOW_SHOW_CONSOLE}},
};

// The row's action with its menu text and icon; null where nothing serves the row.
QAction* PrepareAction(const MENU_ROW& Row) {
  QAction* const pAction = GetAction(Row.ActionID);
  if (pAction == nullptr) return nullptr;
  const ACTION_INFO Info = GetActionInfo(Row.ActionID);
  pAction->setText(QLatin1String(Row.sText));
  if (Row.sIcon) pAction->setIcon(GetIcon(QLatin1String(Row.sIcon)));
  QString sTip = Info.sDisplayText.isEmpty() ? Info.sDescription : Info.sDisplayText;
  if (!Info.sHotkey.isEmpty()) sTip += QStringLiteral(" (%1)").arg(Info.sHotkey);
  pAction->setToolTip(sTip);
  pAction->setStatusTip(Info.sDescription);
  return pAction;
}

// Separators stand between rows only.
void AddSeparator(QWidget* pTarget) {
  if (!pTarget->actions().isEmpty() && !pTarget->actions().last()->isSeparator()) {
    auto* const pSeparator = new QAction(pTarget);
    pSeparator->setSeparator(true);
    pTarget->addAction(pSeparator);
  }
}

void FillMenu(QMenu* pMenu, const MENU& Source, DYNAMIC_MENUS* pDynamic) {
  for (const MENU_ROW& Row : Source.Rows) {
    if (Row.ActionID == SEPARATOR) {
      AddSeparator(pMenu);
    } else if (Row.ActionID == RECENT_PROJECTS) {
      pDynamic->pRecentProjects = pMenu->addMenu(QLatin1String(Row.sText));
    } else if (Row.ActionID == RECENT_PROGRAMS) {
      pDynamic->pRecentPrograms = pMenu->addMenu(QLatin1String(Row.sText));
    } else if (QAction* const pAction = PrepareAction(Row)) {
      pMenu->addAction(pAction);
    }
  }
}

// A tool button with a drop-down of modes.
void AddModeMenu(QToolBar* pBar, U32 ActionID, std::span<const MENU_ROW> Modes) {
  auto* const pButton = qobject_cast<QToolButton*>(pBar->widgetForAction(GetAction(ActionID)));
  if (pButton == nullptr) return;
  auto* const pMenu = new QMenu(pButton);
  for (const MENU_ROW& Row : Modes) {
    if (QAction* const pAction = PrepareAction(Row)) pMenu->addAction(pAction);
  }
  pButton->setMenu(pMenu);
  pButton->setPopupMode(QToolButton::MenuButtonPopup);
}

void ShowMode(U32 ActionID, std::span<const MENU_ROW> Modes, U32 Mode) {
  QAction* const pTarget = GetAction(ActionID);
  const QAction* const pMode = Mode < Modes.size() ? GetAction(Modes[Mode].ActionID) : nullptr;
  if (pTarget == nullptr || pMode == nullptr) return;
  pTarget->setIcon(pMode->icon());
  pTarget->setToolTip(
      QString(pMode->text()).remove(QLatin1Char('&')).replace(QLatin1String("  "), QLatin1String(" & ")) +
      QStringLiteral(" (%1)").arg(GetHotkey(ActionID)));
  pTarget->setStatusTip(pMode->statusTip());
}

}  // namespace

DYNAMIC_MENUS CreateMenuBar(QMainWindow* pWindow) {
  DYNAMIC_MENUS Dynamic;
  for (const MENU& Source : MENUS) {
    QMenu* const pMenu = pWindow->menuBar()->addMenu(QLatin1String(Source.sTitle));
    FillMenu(pMenu, Source, &Dynamic);
    if (pMenu->isEmpty()) pMenu->menuAction()->setVisible(false);
  }
  return Dynamic;
}

QList<QToolBar*> CreateToolBars(QMainWindow* pWindow) {
  QList<QToolBar*> Bars;
  for (const TOOL_BAR& Source : TOOL_BARS) {
    QToolBar* const pBar = pWindow->addToolBar(QLatin1String(Source.sTitle));
    pBar->setObjectName(QLatin1String(Source.sName));
    pBar->setFixedHeight(TOOL_BAR_HEIGHT);
    pBar->setIconSize(QSize(ICON_SIZE, ICON_SIZE));
    for (const U32 ID : Source.Rows) {
      if (ID == SEPARATOR) {
        AddSeparator(pBar);
      } else if (QAction* const pAction = GetAction(ID)) {
        pBar->addAction(pAction);
      }
    }
    if (Source.sName == TOOL_BARS[1].sName) {
      AddModeMenu(pBar, ACTION_DEBUG_START, START_MODES);
      AddModeMenu(pBar, ACTION_DEBUG_RESET, RESET_MODES_ROWS);
    }
    Bars << pBar;
  }
  return Bars;
}

void UpdateModeButtons() {
  ShowMode(ACTION_DEBUG_START, START_MODES, GetVarValue(VAR_CONNECT_MODE));
  ShowMode(ACTION_DEBUG_RESET, RESET_MODES_ROWS, GetVarValue(VAR_RESET_MODE));
}
