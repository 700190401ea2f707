#include "shell/startup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "device/device.h"
#include "device/device_context.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/command_text.h"
#include "shell/batch_session.h"
#include "shell/dialogs/welcome_screen.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/project_controller.h"
#include "shell/register_files.h"
#include "shell/settings/cmd_line_args.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

// The statements of a project from the command line's options; those without a first argument are left out.
QStringList ProjectCommands(const CMD_LINE_ARGS& Args) {
  struct STATEMENT {
    U32 ActionID;
    QStringList Arguments;
  };
  const QStringList JTAG = Args.sJTAGConfig.split(QLatin1Char(','));
  const STATEMENT aStatements[] = {
      {ACTION_SET_DEVICE, {Args.sDevice}},
      {ACTION_SET_HOST_INTERFACE, {Args.sHostIF, Args.sHostIFIdent}},
      {ACTION_SET_TARGET_INTERFACE, {Args.sTargetIF}},
      {ACTION_SET_TIF_SPEED, {Args.sTIFSpeed}},
      {ACTION_SET_VNODE_SCRIPT, {Args.sVNodeScriptFile}},
      {ACTION_SET_JTAG_CONFIG, JTAG.size() == 2 ? JTAG : QStringList{QString()}},
  };
  QStringList Commands;
  for (const STATEMENT& Statement : aStatements) {
    if (!Statement.Arguments.first().isEmpty()) Commands << MakeCommandText(Statement.ActionID, Statement.Arguments);
  }
  for (const QString& sFile : CRegisterFiles::FilesOfDevice(Args.sDevice)) {
    Commands << MakeCommandText(ACTION_PROJ_ADD_SVD_FILE, {sFile});
  }
  if (!Args.sProgramFile.isEmpty()) Commands << MakeCommandText(ACTION_FILE_OPEN, {Args.sProgramFile});
  return Commands;
}

// A device alone is no project: the host and the target interface have to be given too.
void CreateProjectFromCmdLine(CProjectController& Projects) {
  const CMD_LINE_ARGS& Args = GetCmdLineArgs();
  QStringList Missing;
  if (Args.sHostIF.isEmpty()) Missing << QStringLiteral("-usb or -ip");
  if (Args.sTargetIF.isEmpty()) Missing << QStringLiteral("-if");
  if (!Missing.isEmpty()) {
    PrintConsoleError(QStringLiteral("No project was made for the device %1: the command line lacks %2.")
                          .arg(Args.sDevice, Missing.join(QStringLiteral(" and "))));
    return;
  }
  const QStringList Commands = ProjectCommands(Args);
  if (QFileInfo(Args.sProjectFile).isFile()) {
    CProject::Get().AddCommands(Args.sProjectFile, Commands);
    Projects.OpenProject(Args.sProjectFile);
  } else {
    Projects.CreateProject(Args.sProjectFile, Commands);
  }
}

void StartNewProject() {
  PerformAction(ACTION_FILE_NEW_PROJECT);
  if (GetAction(ACTION_FILE_NEW_PROJECT_WIZARD)) PerformAction(ACTION_FILE_NEW_PROJECT_WIZARD);
}

void AskWhatToOpen(CMainWindow& Window, CProjectController& Projects) {
  CWelcomeScreen Welcome(&Window, Projects.RecentProjects().Paths());
  if (Welcome.exec() != QDialog::Accepted) return;
  QString sPath = Welcome.Path();
  switch (Welcome.Choice()) {
    case CWelcomeScreen::EMPTY_PROJECT:
      PerformAction(ACTION_FILE_NEW_PROJECT);
      return;
    case CWelcomeScreen::NEW_PROJECT:
      StartNewProject();
      return;
    case CWelcomeScreen::OPEN_PROJECT:
      sPath = QFileDialog::getOpenFileName(&Window, QStringLiteral("Open File"), Projects.sDefaultDirOpen,
                                           QStringLiteral("*.vdebug"));
      break;
    case CWelcomeScreen::RECENT_PROJECT:
      break;
  }
  if (!sPath.isEmpty()) PerformAction(ACTION_FILE_OPEN, sPath);
}

}  // namespace

void LoadApplicationSettings() {
  // What is said from here on waits for the console window, which is made in a moment.
  SetConsoleExists(true);
  LoadSettings();
  ResetVars();
  LoadPreferences();
  UpdatePaletteColors();
  LoadColorsAndFonts();
}

void ReportProbeLibrary() {
  const QString sLibrary = CDevice::Get().Context().Facts.Get().sLibraryPath;
  if (!sLibrary.isEmpty()) {
    const QString sText = QStringLiteral("V-Node software found at: ") + QFileInfo(sLibrary).absolutePath();
    PrintConsole(sText);
    LogMsg(sText, MSG_INFO | MSG_TO_STDOUT);
  }
}

void OpenWhatComesFirst(CMainWindow& Window, CProjectController& Projects) {
  const QString sFirst = CBatchSession::WithoutFile(QCoreApplication::arguments()).value(1);
  if (QFileInfo(sFirst).suffix() == QLatin1String("vdebug")) {
    PerformAction(ACTION_FILE_OPEN, sFirst);
  } else if (!GetCmdLineArgs().sDevice.isEmpty()) {
    CreateProjectFromCmdLine(Projects);
  } else if (CBatchSession::IsActive()) {
    return;
  } else if (Projects.RecentProjects().Paths().isEmpty()) {
    StartNewProject();
  } else if (GetVarValue(PREF_START_WITH_MOST_RECENT_PROJ) == 0) {
    AskWhatToOpen(Window, Projects);
  } else {
    PerformAction(ACTION_FILE_OPEN, Projects.RecentProjects().Paths().first());
  }
}
