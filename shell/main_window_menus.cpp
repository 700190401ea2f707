// Menu bar, tool bars, and the menus that are filled at run time.

#include <QToolButton>

#include "base/text.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/builtin_commands.h"
#include "shell/commands.h"
#include "shell/main_window.h"
#include "shell/menu_table.h"
#include "shell/program_loader.h"
#include "ui/dock_window.h"

namespace {

constexpr int MAX_NUMBERED = 10;  // entries of a recent list that have a digit to press

QString RecentText(int Index, const QString& sPath) {
  const QString sText = MenuText(sPath);
  return Index < MAX_NUMBERED ? QStringLiteral("&%1 %2").arg((Index + 1) % MAX_NUMBERED).arg(sText) : sText;
}

}  // namespace

void CMainWindow::CreateMenus() {
  RegisterBuiltinCommands([] { return IsShuttingDown() || VScript::IsStopping(); });
  RegisterFileCommands(*m_pCommands);
  RegisterHelpCommands(*m_pCommands);
  RegisterDebugCommands(*m_pCommands);
  RegisterBreakCommands(*m_pCommands);
  RegisterTargetCommands(*m_pCommands);
  RegisterMemoryCommands(*m_pCommands);
  RegisterProjectCommands(*m_pCommands);
  RegisterTerminalCommands(*m_pCommands);
  RegisterPluginCommands(*m_pCommands);
  RegisterWindowCommands(*m_pCommands);
  RegisterEditCommands(*m_pCommands);
  RegisterViewCommands(*m_pCommands);
  RegisterSourceCommands(*m_pCommands);
  m_Menus = CreateMenuBar(this);
  m_ToolBars = CreateToolBars(this);
  // So that keys act while no menu is open. Those of a window act in that window only.
  for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
    QAction* const pAction = GetAction(ID);
    if (pAction && pAction->shortcutContext() == Qt::WindowShortcut) addAction(pAction);
  }
  for (const QToolBar* const pBar : m_ToolBars) {
    connect(pBar, &QToolBar::visibilityChanged, this, &CMainWindow::UpdateToolBarChecks);
  }
  connect(m_Menus.pWindowList, &QMenu::aboutToShow, this, &CMainWindow::UpdateWindowList);
  UpdateWindowList();
  m_pProjects->RecentProjects().SetListener([this] { UpdateRecentMenus(); });
  m_pProjects->RecentPrograms().SetListener([this] { UpdateRecentMenus(); });
  UpdateRecentMenus();
}

void CMainWindow::UpdateToolBarChecks() {
  for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) {
    const QToolBar* const pBar = FindToolBar(QLatin1String(Row.sName));
    QAction* const pToggle = GetAction(Row.ToggleID);
    if (pBar && pToggle) pToggle->setChecked(!pBar->isHidden());
  }
}

QToolBar* CMainWindow::FindToolBar(const QString& sName) const {
  for (QToolBar* const pBar : m_ToolBars) {
    if (pBar->objectName().compare(sName, Qt::CaseInsensitive) == 0) return pBar;
    if (pBar->windowTitle().compare(sName, Qt::CaseInsensitive) == 0) return pBar;
  }
  return nullptr;
}

void CMainWindow::UpdateRecentMenus() {
  const auto Fill = [this](QMenu* pMenu, const QStringList& Paths, bool bProgram) {
    pMenu->clear();
    for (int i = 0; i < Paths.size(); ++i) {
      QAction* const pEntry = pMenu->addAction(RecentText(i, Paths[i]));
      pEntry->setData(Paths[i]);
      connect(pEntry, &QAction::triggered, this, [this, sPath = Paths[i], bProgram] {
        m_pLoader->SetUserChosen(bProgram);
        PerformAction(ACTION_FILE_OPEN, sPath);
      });
    }
    pMenu->setEnabled(!Paths.isEmpty());
  };
  Fill(m_Menus.pRecentProjects, m_pProjects->RecentProjects().Paths(), false);
  Fill(m_Menus.pRecentPrograms, m_pProjects->RecentPrograms().Paths(), true);
}

void CMainWindow::UpdateWindowList() {
  qDeleteAll(m_WindowEntries);
  m_WindowEntries.clear();
  const qsizetype NumBefore = m_Menus.pWindowList->actions().size();
  AddWindowEntries(m_Menus.pWindowList);
  m_WindowEntries = m_Menus.pWindowList->actions().sliced(NumBefore);
}

// Checked while the window is open; without an icon, which would take the place of the check mark. One that a tab hides
// is brought to the front.
void CMainWindow::AddWindowEntries(QMenu* pMenu) {
  for (CWindow* const pWindow : GetWindowList()) {
    if (pWindow->GetDock() == nullptr) continue;
    QAction* const pEntry = pMenu->addAction(pWindow->GetName());
    pEntry->setCheckable(true);
    pEntry->setChecked(!pWindow->GetDock()->isHidden());
    connect(pEntry, &QAction::triggered, this, [pWindow] {
      PerformAction(pWindow->IsVisible() ? ACTION_WINDOW_CLOSE : ACTION_WINDOW_SHOW, pWindow->GetName());
    });
  }
}

QMenu* CMainWindow::createPopupMenu() {
  auto* const pMenu = new QMenu(this);
  AddWindowEntries(pMenu);
  pMenu->addSeparator();
  for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) {
    if (QAction* const pToggle = GetAction(Row.ToggleID)) pMenu->addAction(pToggle);
  }
  return pMenu;
}
