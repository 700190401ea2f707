// The way out, and what is looked at when the user comes back from another program.

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>

#include "core/vcore.h"
#include "device/device.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "rtos/plugin_host.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "shell/session_controller.h"
#include "shell/settings/sys_vars.h"
#include "ui/message_box.h"
#include "ui/windows/source_window.h"

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
  CPluginHost::Get().SetClosing();
  CMessageBox::PurgeSessionTimeouts();
  StopTimers();
  VScript::RequestClose();
  SaveMainWindowState();
  SavePerspective();
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
  if (m_bClosing || m_pLoader->IsReading()) return;
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
    RaiseConsole();
    PrintProjectError();
  }
  m_pSource->CheckOutsideChanges();
  UpdateActions();
}
