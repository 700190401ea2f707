// What is remembered of the window: geometry, docks, tool bars, recent lists, directories; and, in a project's user
// file, the layout for the project.

#include <QFileInfo>

#include "script/text_file.h"
#include "shell/directories.h"
#include "shell/log/log.h"
#include "shell/main_window.h"
#include "shell/menu_table.h"
#include "shell/settings/settings_cache.h"
#include "shell/table_windows.h"
#include "shell/user_layout.h"
#include "shell/window_table.h"
#include "ui/dock_window.h"

namespace {

constexpr int STATE_VERSION = 0;

const SETTING_GROUP WINDOW_GROUP = {QStringLiteral("AppData"), QStringLiteral("MainWindow")};
const SETTING_GROUP PERSPECTIVE_GROUP = {QStringLiteral("AppData"), QStringLiteral("Perspectives"),
                                         QStringLiteral("Debug")};
const QString DIR_OPEN = QStringLiteral("DefaultDirOpen");
const QString DIR_SAVE = QStringLiteral("DefaultDirSave");
const QString GEOMETRY = QStringLiteral("Geometry");
const QString RECENT_PROJECTS = QStringLiteral("RecentProjects");
const QString RECENT_PROGRAMS = QStringLiteral("RecentPrograms");
const QString WINDOW_STATE = QStringLiteral("WindowState");

}  // namespace

void CMainWindow::LoadMainWindowState() {
  m_pProjects->sDefaultDirOpen = GetSetting(WINDOW_GROUP, DIR_OPEN, m_pProjects->sDefaultDirOpen).toString();
  m_pProjects->sDefaultDirSave = GetSetting(WINDOW_GROUP, DIR_SAVE, m_pProjects->sDefaultDirSave).toString();
  restoreGeometry(GetSetting(WINDOW_GROUP, GEOMETRY, QByteArray()).toByteArray());
  m_pProjects->RecentProjects().Install(GetSetting(WINDOW_GROUP, RECENT_PROJECTS, QStringList()).toStringList());
  m_pProjects->RecentPrograms().Install(GetSetting(WINDOW_GROUP, RECENT_PROGRAMS, QStringList()).toStringList());
  LoadTableHeaders(GetWindowList());
}

void CMainWindow::SaveMainWindowState() {
  SetSetting(WINDOW_GROUP, DIR_OPEN, m_pProjects->sDefaultDirOpen);
  SetSetting(WINDOW_GROUP, DIR_SAVE, m_pProjects->sDefaultDirSave);
  SetSetting(WINDOW_GROUP, GEOMETRY, saveGeometry());
  SetSetting(WINDOW_GROUP, RECENT_PROJECTS, m_pProjects->RecentProjects().Paths());
  SetSetting(WINDOW_GROUP, RECENT_PROGRAMS, m_pProjects->RecentPrograms().Paths());
  SetSetting(WINDOW_GROUP, QStringLiteral("Version"), ProgramVersionText());
  StoreTableHeaders(GetWindowList());
}

void CMainWindow::ApplyDefaultLayout() {
  for (const TOOL_BAR_TABLE& Row : GetToolBarTables())
    FindToolBar(QLatin1String(Row.sName))->setVisible(Row.ShownFirst);
  for (CDockWindow* const pDock : m_Registry.Docks()) pDock->hide();
  for (const WINDOW_ROW& Row : GetWindowTable()) {
    const CWindow* const pWindow = Row.ShownFirst ? FindWindow(QLatin1String(Row.sName), false) : nullptr;
    if (pWindow && pWindow->GetDock()) pWindow->GetDock()->show();
  }
  UpdateToolBarChecks();
}

void CMainWindow::RestorePerspective() {
  const QByteArray State = GetSetting(PERSPECTIVE_GROUP, WINDOW_STATE, QByteArray()).toByteArray();
  if (State.isEmpty()) return;
  restoreState(State, STATE_VERSION);
  for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) {
    FindToolBar(QLatin1String(Row.sName))
        ->setVisible(GetSetting(PERSPECTIVE_GROUP, QLatin1String(Row.sSettingKey), Row.ShownFirst).toBool());
  }
  UpdateToolBarChecks();
}

void CMainWindow::SavePerspective() {
  SetSetting(PERSPECTIVE_GROUP, WINDOW_STATE, saveState(STATE_VERSION));
  for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) {
    SetSetting(PERSPECTIVE_GROUP, QLatin1String(Row.sSettingKey), !FindToolBar(QLatin1String(Row.sName))->isHidden());
  }
}

void CMainWindow::KeepUserFile(const QString& sPath) {
  m_sUnreadUserFile = QFileInfo(sPath).isFile() ? sPath : QString();
}

void CMainWindow::LoadUserFile(const QString& sPath) {
  m_sUnreadUserFile.clear();
  if (!QFileInfo(sPath).isFile()) return;
  bool bOk = false;
  const QString sText = ReadTextFile(sPath, &bOk);
  if (!bOk) {
    m_sUnreadUserFile = sPath;
    LogMsg(
        QStringLiteral("The layout in \"%1\" can't be read. It stays as it is, and that of this session won't be kept.")
            .arg(sPath),
        MSG_WARNING | MSG_TO_ALL);
    return;
  }
  for (CWindow* const pWindow : GetWindowList()) pWindow->ClearStateBackup();
  ApplyLayout(ParseUserFile(sText), *this, GetWindowList(), m_ToolBars);
  UpdateToolBarChecks();
  for (CWindow* const pWindow : GetWindowList()) pWindow->SetUserConfigStr(sText);
}

void CMainWindow::SaveUserFile(const QString& sPath) {
  if (sPath.isEmpty() || sPath == m_sUnreadUserFile) return;
  WriteTextFile(sPath, MakeUserFileText(MeasureLayout(*this, GetWindowList(), m_ToolBars)));
}
