#include "project/project.h"

#include <QFileInfo>

#include "base/msg_flags.h"
#include "base/stable_hash.h"
#include "script/vscript.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/command_text.h"
#include "shell/log/log.h"

namespace {

constexpr int OPEN_INTERVAL_MS = 10;

// The next save makes the text anew, from the settings of then.
void DropText() {
  const QString sPath = VScript::GetFilePath();
  VScript::Close();
  VScript::SetFilePath(sPath);
}

}  // namespace

CProject& CProject::Get() {
  static CProject* const pInstance = new CProject;
  return *pInstance;
}

CProject::CProject() {
  m_OpenTimer.setInterval(OPEN_INTERVAL_MS);
  connect(&m_OpenTimer, &QTimer::timeout, this, &CProject::OnOpenTimeout);
}

void CProject::Open(const QString& sPath) {
  if (IsLoading(sPath)) return;
  VScript::RequestClose();
  Q_EMIT AboutToOpen(sPath);
  m_sPendingPath = sPath;
  m_OpenTimer.start();
}

void CProject::OnOpenTimeout() {
  if (m_sPendingPath.isEmpty() || VScript::CurrentFuncID() != HOOK_NONE || VScript::CallLevel() != 0) return;
  if (m_Host.IsBusy && m_Host.IsBusy()) return;
  m_OpenTimer.stop();
  const QString sPath = m_sPendingPath;
  m_bLoading = true;
  DoOpen(sPath);
  m_bLoading = false;
  if (m_sPendingPath == sPath) m_sPendingPath.clear();
}

void CProject::DoOpen(const QString& sPath) {
  if (QFileInfo(sPath).isFile()) {
    Close();
    if (m_Host.ResetFileFinder) m_Host.ResetFileFinder(QFileInfo(sPath).canonicalFilePath());
    VScript::Load(sPath);
    m_bOpen = true;
  } else {
    LogMsg(QStringLiteral("file not found: \"%1\"").arg(sPath), MSG_WARNING | MSG_TO_ALL);
    m_bOpen = false;
  }
  SetModified(false);
  Q_EMIT Opened(sPath);
}

void CProject::Close() {
  const QString sPath = GetFileName();
  VScript::RequestClose();
  VScript::SetFilePath(QString());
  if (m_Host.ResetFileFinder) m_Host.ResetFileFinder(QString());
  m_sProgramFile.clear();
  m_ProgramFileTime = QDateTime();
  m_ProjectIds.clear();
  m_sExpectedDevice.clear();
  ClearSvdFiles();
  if (m_Host.ClearRelocations) m_Host.ClearRelocations();
  if (m_Host.ClearRTTSearchRanges) m_Host.ClearRTTSearchRanges();
  SetModified(false);
  m_bOpen = true;
  Q_EMIT Closed(sPath);
}

void CProject::Create(const QStringList& Commands) {
  if (VScript::LoadText(MakeProjectText(Commands)) == 0) VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
  SetModified(true);
}

bool CProject::Save(const QString& sPath) {
  const bool bMakeText = VScript::GetText().isEmpty();
  if (bMakeText && VScript::HasError() && sPath == GetFileName() && QFileInfo(sPath).size() > 0) {
    LogMsg(QStringLiteral("\"%1\" was not saved: its text could not be loaded").arg(sPath), MSG_WARNING | MSG_TO_ALL);
    return false;
  }
  if (bMakeText) VScript::LoadText(MakeProjectText(GetCommands()));
  if (!VScript::SaveText(sPath)) {
    if (bMakeText) DropText();
    return false;
  }
  m_ProjectIds.clear();
  if (m_Host.SetProjectPath) m_Host.SetProjectPath(GetProjectId());
  SetModified(false);
  return true;
}

void CProject::SetModified(bool Modified) {
  if (signalsBlocked()) return;
  m_bModified = Modified;
  Q_EMIT ModifiedChanged(Modified);
}

QString CProject::GetFileName() const {
  return VScript::GetFilePath();
}

void CProject::SetProgramFile(const QString& sPath) {
  m_sProgramFile = sPath;
  const QFileInfo Info(sPath);
  m_ProgramFileTime = !sPath.isEmpty() && Info.exists() ? Info.lastModified() : QDateTime();
}

void CProject::AddSvdFile(const QString& sPath) {
  if (sPath.isEmpty() || m_SvdFiles.contains(sPath)) return;
  m_SvdFiles << sPath;
  if (m_Host.AddSvdFile) m_Host.AddSvdFile(sPath);
}

void CProject::ClearSvdFiles() {
  m_SvdFiles.clear();
  m_NumFormerSvdFiles.reset();
  if (m_Host.ClearSvdFiles) m_Host.ClearSvdFiles();
}

void CProject::ExpectDevice(const QString& sDevice) {
  if (sDevice == m_sExpectedDevice) return;
  m_sExpectedDevice = sDevice;
  m_NumFormerSvdFiles = m_SvdFiles.size();
}

void CProject::SetSvdFileOfDevice(const QString& sPath, bool bMoreExpected) {
  const QStringList Kept = m_SvdFiles.mid(m_NumFormerSvdFiles.value_or(m_SvdFiles.size()));
  ClearSvdFiles();
  AddSvdFile(sPath);
  if (bMoreExpected) m_NumFormerSvdFiles = m_SvdFiles.size();
  for (const QString& sFile : Kept) AddSvdFile(sFile);
}

QStringList CProject::GetProjectErrors() const {
  QStringList Errors;
  if (m_Host.HasCpuRegisters && !m_Host.HasCpuRegisters()) {
    Errors << QStringLiteral(
        "CPU register set description file not found (specify with 'Project.AddSvdFile') - debugging w/o core "
        "registers.");
  }
  for (const QString& sFile : m_SvdFiles) {
    const QString sPath = m_Host.ResolvePath ? m_Host.ResolvePath(sFile) : sFile;
    if (!QFileInfo(sPath).isFile()) Errors << QStringLiteral("file not found: ") + sFile;
  }
  if (!m_sProgramFile.isEmpty() && !QFileInfo(m_sProgramFile).isFile()) {
    Errors << QStringLiteral("file not found: ") + m_sProgramFile;
  }
  return Errors;
}

QStringList CProject::GetCommands() const {
  QStringList Commands = m_Host.DeviceCommands ? m_Host.DeviceCommands() : QStringList();
  for (const QString& sFile : m_SvdFiles) Commands << MakeCommandText(ACTION_PROJ_ADD_SVD_FILE, {sFile});
  if (!m_sProgramFile.isEmpty()) Commands << MakeCommandText(ACTION_FILE_OPEN, {m_sProgramFile});
  return Commands;
}

bool CProject::Edit(const QString& sPath, const PROJECT_EDIT& Edit) {
  if (!EditProjectFile(sPath, Edit)) return false;
  // Without it the next save would write the text from before the edit.
  const bool bLoaded = QFileInfo(sPath) == QFileInfo(GetFileName());
  if (bLoaded && !m_bModified && VScript::CallLevel() == 0) VScript::Reload();
  return true;
}

bool CProject::AddCommands(const QString& sPath, const QStringList& Commands) {
  return Edit(sPath, [&Commands](const QString& sText) { return ReplaceCommands(sText, Commands); });
}

bool CProject::AppendCommands(const QString& sPath, const QStringList& Commands) {
  return Edit(sPath, [&Commands](const QString& sText) { return ::AppendCommands(sText, Commands); });
}

bool CProject::UpdateVNodeCommands(const QString& sPath, const QStringList& Commands) {
  return Edit(sPath, [&Commands](const QString& sText) { return ReplaceVNodeCommands(sText, Commands); });
}

bool CProject::UpdateTraceCommands(const QString& sPath, const QStringList& Commands) {
  return Edit(sPath, [&Commands](const QString& sText) { return ReplaceTraceCommands(sText, Commands); });
}

bool CProject::HasCommand(const QString& sName) const {
  return HasProjectCommand(GetFileName(), sName);
}

QString CProject::GetProjectId() const {
  const QString sPath = GetFileName();
  const auto Known = m_ProjectIds.constFind(sPath);
  if (Known != m_ProjectIds.cend()) return *Known;
  const QString sCanonical = QFileInfo(sPath).canonicalFilePath();
  if (sCanonical.isEmpty()) return sPath;
  return *m_ProjectIds.insert(sPath, sCanonical);
}

QString CProject::GetUserFileName(const QString& sProjectPath) {
  const qsizetype Dot = sProjectPath.lastIndexOf(QLatin1Char('.'));
  return Dot < 0 ? QString() : sProjectPath.left(Dot + 1) + QStringLiteral("vdebug.user");
}

U32 CProject::GetProjectHash() const {
  return (StableHash32(m_sProgramFile.toLower()) + 713u) * 31u + StableHash32(GetFileName().toLower());
}
