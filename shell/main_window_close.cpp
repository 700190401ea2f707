// The way out, and what is remembered of the window.

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>

#include "core/vcore.h"
#include "device/device.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/directories.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "shell/session_controller.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/windows/console_window.h"
#include "ui/dock_window.h"
#include "ui/message_box.h"

namespace {

const SETTING_GROUP WINDOW_GROUP = {QStringLiteral("AppData"), QStringLiteral("MainWindow")};
const SETTING_GROUP PERSPECTIVE_GROUP = {QStringLiteral("AppData"), QStringLiteral("Perspectives"),
                                         QStringLiteral("Debug")};

struct TOOL_BAR_STATE {
  const char* sBar;
  const char* sKey;
  bool Default;
};
constexpr TOOL_BAR_STATE TOOL_BAR_STATES[] = {
    {"ToolbarFile", "ToolbarFileState", false},
    {"ToolbarViews", "ToolbarWindowState", false},
    {"ToolbarDebug", "ToolbarDebugState", true},
};

}  // namespace

void CMainWindow::ApplyDefaultLayout() {
  for (QToolBar* const pBar : m_ToolBars) pBar->setVisible(pBar->objectName() == QLatin1String("ToolbarDebug"));
  for (CDockWindow* const pDock : m_Docks) pDock->hide();
  m_pConsole->GetDock()->show();
}

void CMainWindow::RestoreState() {
  m_pProjects->sDefaultDirOpen =
      GetSetting(WINDOW_GROUP, QStringLiteral("DefaultDirOpen"), m_pProjects->sDefaultDirOpen).toString();
  m_pProjects->sDefaultDirSave =
      GetSetting(WINDOW_GROUP, QStringLiteral("DefaultDirSave"), m_pProjects->sDefaultDirSave).toString();
  restoreGeometry(GetSetting(WINDOW_GROUP, QStringLiteral("Geometry"), QByteArray()).toByteArray());
  m_pProjects->RecentProjects().Install(
      GetSetting(WINDOW_GROUP, QStringLiteral("RecentProjects"), QStringList()).toStringList());
  m_pProjects->RecentPrograms().Install(
      GetSetting(WINDOW_GROUP, QStringLiteral("RecentPrograms"), QStringList()).toStringList());
  ApplyDefaultLayout();
  const QByteArray State = GetSetting(PERSPECTIVE_GROUP, QStringLiteral("WindowState"), QByteArray()).toByteArray();
  if (State.isEmpty()) return;
  restoreState(State, 0);
  for (const TOOL_BAR_STATE& Row : TOOL_BAR_STATES) {
    if (QToolBar* const pBar = FindToolBar(QLatin1String(Row.sBar))) {
      pBar->setVisible(GetSetting(PERSPECTIVE_GROUP, QLatin1String(Row.sKey), Row.Default).toBool());
    }
  }
}

void CMainWindow::SaveState() {
  SetSetting(WINDOW_GROUP, QStringLiteral("DefaultDirOpen"), m_pProjects->sDefaultDirOpen);
  SetSetting(WINDOW_GROUP, QStringLiteral("DefaultDirSave"), m_pProjects->sDefaultDirSave);
  SetSetting(WINDOW_GROUP, QStringLiteral("Geometry"), saveGeometry());
  SetSetting(WINDOW_GROUP, QStringLiteral("RecentProjects"), m_pProjects->RecentProjects().Paths());
  SetSetting(WINDOW_GROUP, QStringLiteral("RecentPrograms"), m_pProjects->RecentPrograms().Paths());
  SetSetting(WINDOW_GROUP, QStringLiteral("Version"), ProgramVersionText());
  SetSetting(PERSPECTIVE_GROUP, QStringLiteral("WindowState"), saveState(0));
  for (const TOOL_BAR_STATE& Row : TOOL_BAR_STATES) {
    if (const QToolBar* const pBar = FindToolBar(QLatin1String(Row.sBar))) {
      SetSetting(PERSPECTIVE_GROUP, QLatin1String(Row.sKey), pBar->isVisible());
    }
  }
}

void CMainWindow::StopTimers() {
  for (QTimer* const pTimer : findChildren<QTimer*>()) pTimer->stop();
  m_WindowShownTimer.stop();
  m_ToolbarUpdateTimer.stop();
}

void CMainWindow::closeEvent(QCloseEvent* pEvent) {
  if (m_bClosing) {
    pEvent->accept();
    return;
  }
  if (m_pProjects->SaveProjectIfModified() == CMessageBox::OTHER || !CloseDocuments()) {
    pEvent->ignore();
    return;
  }
  m_bClosing = true;
  CMessageBox::PurgeSessionTimeouts();
  StopTimers();
  VScript::RequestClose();
  SaveState();
  CProject::Get().Close();
  CDevice::Get().Shutdown();
  ELFAPI_Unload();
  SaveColorsAndFonts();
  SavePreferences();
  VCore::Exit();
  QMainWindow::closeEvent(pEvent);
  QApplication::closeAllWindows();
  pEvent->accept();
  QCoreApplication::quit();
}

void CMainWindow::OnApplicationActivated() {
  if (m_bClosing) return;
  CProject& Project = CProject::Get();
  const QFileInfo Program(Project.GetProgramFile());
  if (!Project.GetProgramFile().isEmpty() && Program.exists() &&
      Program.lastModified() != Project.GetProgramFileTime()) {
    Project.SetProgramFileTime(Program.lastModified());
    const int Answer =
        CMessageBox::Show(QStringLiteral("Reload Program File"),
                          QStringLiteral("The program file has been modified by another "
                                         "application.<br>Do you want to reload it?"),
                          CMessageBox::FOR_THIS_RUN, QString(), QDialogButtonBox::Yes | QDialogButtonBox::No);
    if (Answer == CMessageBox::ACCEPTED) {
      m_pLoader->SetReload(true);
      PerformAction(ACTION_FILE_OPEN, Project.GetProgramFile());
    }
  }
  if (!Project.IsOpening() && VScript::CallLevel() == 0 && VScript::Reload() == 1 && VScript::HasError()) {
    PrintProjectError();
  }
  UpdateAll();
}
