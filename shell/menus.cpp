#include "shell/menus.h"

#include <QMenuBar>
#include <QToolButton>

#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "shell/menu_table.h"
#include "shell/press_button.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int TOOL_BAR_HEIGHT = 26;  // pixels
constexpr int ICON_SIZE = 16;        // pixels

// The row's action with its menu text and icon; null where nothing serves the row.
QAction* PrepareAction(const MENU_ITEM& Item) {
  QAction* const pAction = GetAction(Item.ActionID);
  if (pAction == nullptr) return nullptr;
  if (Item.sText) pAction->setText(QLatin1String(Item.sText));
  if (Item.sIcon) pAction->setIcon(GetIcon(QLatin1String(Item.sIcon)));
  return pAction;
}

bool EndsWithSeparator(const QWidget* pTarget) {
  return pTarget->actions().isEmpty() || pTarget->actions().last()->isSeparator();
}

// Separators stand between entries only.
void AddSeparator(QWidget* pTarget) {
  if (EndsWithSeparator(pTarget)) return;
  auto* const pSeparator = new QAction(pTarget);
  pSeparator->setSeparator(true);
  pTarget->addAction(pSeparator);
}

void DropLastSeparator(QWidget* pTarget) {
  if (!pTarget->actions().isEmpty() && EndsWithSeparator(pTarget)) delete pTarget->actions().last();
}

void FillMenu(QMenu* pMenu, std::span<const MENU_ITEM> Items, DYNAMIC_MENUS* pDynamic) {
  for (const MENU_ITEM& Item : Items) {
    switch (Item.Kind) {
      case MENU_ACTION:
        if (QAction* const pAction = PrepareAction(Item)) pMenu->addAction(pAction);
        break;
      case MENU_SEPARATOR:
        AddSeparator(pMenu);
        break;
      case MENU_SUBMENU: {
        auto* const pSub = new QMenu(QLatin1String(Item.sText), pMenu);
        if (Item.sIcon) pSub->setIcon(GetIcon(QLatin1String(Item.sIcon)));
        FillMenu(pSub, Item.pSub->Items, pDynamic);
        if (!pSub->isEmpty()) pMenu->addMenu(pSub);
        break;
      }
      case MENU_RECENT_PROJECTS:
        pDynamic->pRecentProjects = pMenu->addMenu(QLatin1String(Item.sText));
        break;
      case MENU_RECENT_PROGRAMS:
        pDynamic->pRecentPrograms = pMenu->addMenu(QLatin1String(Item.sText));
        break;
      case MENU_WINDOW_LIST:
        pDynamic->pWindowList = pMenu;
        return;
    }
  }
  DropLastSeparator(pMenu);
}

// A tool button with a drop-down of modes.
void AddModeMenu(QToolBar* pBar, U32 ActionID, std::span<const MENU_ITEM> Modes) {
  auto* const pButton = qobject_cast<QToolButton*>(pBar->widgetForAction(GetAction(ActionID)));
  if (pButton == nullptr) return;
  auto* const pMenu = new QMenu(pButton);
  for (const MENU_ITEM& Item : Modes) {
    if (QAction* const pAction = PrepareAction(Item)) pMenu->addAction(pAction);
  }
  pButton->setMenu(pMenu);
  pButton->setPopupMode(QToolButton::MenuButtonPopup);
}

void ShowMode(U32 ActionID, std::span<const MENU_ITEM> Modes, U32 Mode) {
  QAction* const pTarget = GetAction(ActionID);
  const QAction* const pMode = Mode < Modes.size() ? GetAction(Modes[Mode].ActionID) : nullptr;
  if (pTarget == nullptr || pMode == nullptr) return;
  pTarget->setIcon(pMode->icon());
  pTarget->setToolTip(pMode->toolTip() + QStringLiteral(" (%1)").arg(GetHotkey(ActionID)));
  pTarget->setStatusTip(pMode->statusTip());
}

QToolBar* CreateToolBar(QMainWindow* pWindow, const TOOL_BAR_TABLE& Source) {
  QToolBar* const pBar = pWindow->addToolBar(QLatin1String(Source.sTitle));
  pBar->setObjectName(QLatin1String(Source.sName));
  pBar->setFixedHeight(TOOL_BAR_HEIGHT);
  pBar->setIconSize(QSize(ICON_SIZE, ICON_SIZE));
  for (const MENU_ITEM& Item : Source.Items) {
    if (Item.Kind == MENU_SEPARATOR) {
      AddSeparator(pBar);
    } else if (QAction* const pAction = PrepareAction(Item)) {
      pBar->addAction(pAction);
    }
  }
  DropLastSeparator(pBar);
  return pBar;
}

}  // namespace

DYNAMIC_MENUS CreateMenuBar(QMainWindow* pWindow) {
  DYNAMIC_MENUS Dynamic;
  for (const MENU_TABLE& Source : GetMenuTables()) {
    QMenu* const pMenu = pWindow->menuBar()->addMenu(QLatin1String(Source.sTitle));
    FillMenu(pMenu, Source.Items, &Dynamic);
    if (pMenu->isEmpty()) pMenu->menuAction()->setVisible(false);
  }
  return Dynamic;
}

QList<QToolBar*> CreateToolBars(QMainWindow* pWindow) {
  QList<QToolBar*> Bars;
  for (const TOOL_BAR_TABLE& Source : GetToolBarTables()) {
    QToolBar* const pBar = CreateToolBar(pWindow, Source);
    AddModeMenu(pBar, ACTION_DEBUG_START, GetStartModeItems());
    AddModeMenu(pBar, ACTION_DEBUG_RESET, GetResetModeItems());
    for (const U32 ID : GetPressActions()) {
      if (auto* const pButton = qobject_cast<QToolButton*>(pBar->widgetForAction(GetAction(ID)))) {
        ActOnPress(pButton);
      }
    }
    Bars << pBar;
  }
  return Bars;
}

void UpdateModeButtons() {
  ShowMode(ACTION_DEBUG_START, GetStartModeItems(), GetVarValue(VAR_CONNECT_MODE));
  ShowMode(ACTION_DEBUG_RESET, GetResetModeItems(), GetVarValue(VAR_RESET_MODE));
}
