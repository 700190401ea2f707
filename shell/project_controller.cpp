#include "shell/project_controller.h"

#include <QDir>
#include <QFileInfo>

#include "device/device.h"
#include "device/device_types.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/file_classes.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/directories.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/plugin_binding.h"
#include "shell/program_loader.h"
#include "shell/register_files.h"
#include "shell/session_controller.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"

CProjectController::CProjectController(IProjectView& View, CSessionController& Session, CProgramLoader& Loader)
    : sDefaultDirOpen(QDir::homePath()),
      sDefaultDirSave(QDir::homePath()),
      m_View(View),
      m_Session(Session),
      m_Loader(Loader),
      m_RecentProjects(MAX_RECENT_PROJECTS, IsProjectFile),
      m_RecentPrograms(MAX_RECENT_PROGRAMS, IsDataFile) {
  CProject& Project = CProject::Get();
  connect(&Project, &CProject::Opened, this, &CProjectController::OnProjectFileOpened);
  connect(&Project, &CProject::Closed, this, &CProjectController::OnProjectFileClosed);
  connect(&Project, &CProject::ModifiedChanged, this, [this] { m_View.OnProjectStateChanged(); });
  connect(&m_Loader, &CProgramLoader::Opening, this, [this](const QString& sPath) {
    if (!sPath.isEmpty()) m_RecentPrograms.Update(QString(), sPath);
  });
  connect(&m_Loader, &CProgramLoader::DataFileOpened, this, [this] { m_View.OnProjectStateChanged(); });
  connect(&m_Loader, &CProgramLoader::Cancelled, this, [this] { m_View.OnProjectStateChanged(); });
}

void CProjectController::OpenFile(const QString& sPath) {
  if (sPath.isEmpty() || !QFileInfo(sPath).isFile()) return;
  if (!m_Loader.IsReading()) m_Loader.StartClock();
  if (IsProjectFile(sPath)) {
    OpenProject(sPath);
  } else if (IsSourceFile(sPath)) {
    m_View.OpenSourceFile(sPath);
  } else if (IsDataFile(sPath) || QFileInfo(sPath).suffix().isEmpty()) {
    m_Loader.OpenDataFile(sPath);
  } else {
    m_View.OpenSourceFile(sPath);
  }
}

bool CProjectController::LeaveProject(U32 ActionID) {
  if (m_Loader.IsReading()) {
    SetActionError(ActionID, QLatin1String(PROGRAM_IS_BEING_OPENED));
    return false;
  }
  if (CDevice::Get().IsConnected()) {
    const int Answer = CMessageBox::Show(QStringLiteral("Stop Debugging"), QStringLiteral("Close this Session?"),
                                         CMessageBox::NO_CHECK_BOX, QStringLiteral("control-power-red.png"),
                                         QDialogButtonBox::Yes | QDialogButtonBox::No);
    if (Answer != CMessageBox::ACCEPTED) return false;
    PerformAction(ACTION_DEBUG_STOP);
  }
  return SaveProjectIfModified() != CMessageBox::OTHER && m_View.CloseDocuments();
}

void CProjectController::OpenProject(const QString& sPath) {
  const QString sProject = QFileInfo(sPath).absoluteFilePath();
  if (CProject::Get().IsLoading(sProject)) {
    return PrintConsole(QStringLiteral("\"%1\" was not opened: it is being opened already").arg(sPath));
  }
  if (!QFileInfo(sPath).isFile() || !LeaveProject(ACTION_FILE_OPEN)) return;
  SetCompanionScript(sProject);
  m_Session.SetLoadAddress(0);
  m_Loader.OpenDataFile(QString());
  CProject::Get().Open(sProject);
}

void CProjectController::SetCompanionScript(const QString& sProject) {
  QString sScript = sProject;
  sScript.replace(QLatin1String("vdebug"), QLatin1String("vnode"));
  // Without one the script of the project before must not stay.
  if (sScript == sProject || !QFileInfo(sScript).isFile()) sScript.clear();
  CDevice::Get().ScheduleSetConfigParam(DCP_SCRIPT_FILE, sScript.toUtf8().constData());
}

void CProjectController::NewProject() {
  if (!LeaveProject(ACTION_FILE_NEW_PROJECT)) {
    SuppressEcho(ACTION_FILE_NEW_PROJECT);
    return;
  }
  CProject::Get().Close();
  // Without it the first save would write the text of the project that was left.
  VScript::Close();
  m_Session.SetLoadAddress(0);
  m_Loader.OpenDataFile(QString());
  m_View.OnProjectStateChanged();
}

void CProjectController::CreateProject(const QString& sFilePath, const QStringList& Commands) {
  if (!LeaveProject(ACTION_FILE_NEW_PROJECT_WIZARD)) return;
  const QString sPath = sFilePath.isEmpty() ? QString() : QFileInfo(sFilePath).absoluteFilePath();
  CProject::Get().Close();
  VScript::SetFilePath(sPath);
  CFileFinder::Get()->SetProjectPath(sPath);
  ResetSymbolSettings();
  m_Session.SetLoadAddress(0);
  m_Loader.OpenDataFile(QString());
  m_Session.SetLoadingProject(true);
  CProject::Get().Create(Commands);
  m_Session.SetLoadingProject(false);
  if (VScript::HasError()) {
    m_View.FocusConsole();
    PrintProjectError();
  }
  LoadDefaultRegisterFile();
  m_View.OnProjectStateChanged();
}

int CProjectController::SaveProjectIfModified() {
  CProject& Project = CProject::Get();
  if (!Project.IsModified()) return 0;
  const int Answer = CMessageBox::Show(QStringLiteral("Save Project Changes?"),
                                       QStringLiteral("The current project was modified. Save changes?"),
                                       CMessageBox::NO_CHECK_BOX, QStringLiteral("document--pencil.png"),
                                       QDialogButtonBox::Yes | QDialogButtonBox::No | QDialogButtonBox::Cancel);
  if (Answer != CMessageBox::ACCEPTED) return Answer;
  if (QFileInfo(Project.GetFileName()).isFile()) return SaveProject(Project.GetFileName()) ? 0 : CMessageBox::OTHER;
  ClearActionArgs(ACTION_FILE_SAVE_PROJ_AS);
  return static_cast<int>(PerformAction(ACTION_FILE_SAVE_PROJ_AS));
}

bool CProjectController::SaveProject(const QString& sPath) {
  const QString sOld = CProject::Get().GetFileName();
  if (!CProject::Get().Save(sPath)) return false;
  m_RecentProjects.Update(sOld, sPath);
  m_View.OnProjectStateChanged();
  return true;
}

void CProjectController::ResetSymbolSettings() {
  const SYS_VAR* const pSymbol = GetVarInfo(VAR_BREAK_AT_THIS_SYMBOL);
  SetVarFromText(pSymbol, QString::fromLatin1(pSymbol->sDefault), 0);
  SetVarValue(GetVarInfo(VAR_TRACE_SOURCE), 0, 0);
}

void CProjectController::OnProjectFileOpened(const QString& sPath) {
  if (QFileInfo(sPath).isFile()) m_RecentProjects.Update(QString(), sPath);
  m_View.OnProjectStateChanged();
  if (!CProject::Get().IsOpen()) return;
  if (VScript::HasError()) {
    LogMsg("Project file is not valid", MSG_WARNING | MSG_TO_ALL);
    PrintProjectError();
    SetActionError(ACTION_FILE_OPEN, VScript::GetErrorText());
    m_View.KeepUserFile(CProject::GetUserFileName(sPath));
    m_View.FocusConsole();
    return;
  }
  ResetSymbolSettings();
  m_Session.SetLoadingProject(true);
  m_Session.ExecScriptFunc(HOOK_ON_PROJECT_LOAD);
  m_Session.SetLoadingProject(false);
  LoadDefaultRegisterFile();
  HintAtPlugins();
  if (!AreSettingsInMemory()) m_View.LoadUserFile(CProject::GetUserFileName(sPath));
  m_View.OnProjectStateChanged();
}

void CProjectController::LoadDefaultRegisterFile() {
  if (CRegisterFiles::Get().HasCpuRegisters()) return;
  const QString sFile = CRegisterFiles::DefaultFile();
  if (sFile.isEmpty()) {
    LogMsg("Project Warning: no CPU register set description file specified and could not determine default.",
           MSG_WARNING | MSG_TO_ALL);
    return;
  }
  LogMsg(
      QStringLiteral("No CPU register set description file specified, loading default: ") + QFileInfo(sFile).fileName(),
      MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
  PerformAction(ACTION_PROJ_ADD_SVD_FILE, sFile);
}

void CProjectController::OnProjectFileClosed(const QString& sPath) {
  if (!sPath.isEmpty() && !AreSettingsInMemory()) m_View.SaveUserFile(CProject::GetUserFileName(sPath));
  UnloadPlugin();
}

QString CProjectController::MakeTitle() const {
  const CProject& Project = CProject::Get();
  if (!Project.IsOpen()) return ProductTitle(true, true);
  const QString sProduct = ProductTitle(false, false);
  const QString sFile = Project.GetFileName();
  const bool bConnected = CDevice::Get().IsConnected();
  if (bConnected && !Project.GetProgramFile().isEmpty())
    return sProduct + QStringLiteral(" - ") + Project.GetProgramFile();
  QString sName = QStringLiteral("New Project");
  if (!sFile.isEmpty()) sName = bConnected ? QFileInfo(sFile).completeBaseName() : sFile;
  return sProduct + (Project.IsModified() ? QStringLiteral(" - *") : QStringLiteral(" - ")) + sName;
}
