#include "shell/program_loader.h"

#include <QGuiApplication>

#include "core/vcore.h"
#include "device/data_files/vfile.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/file_classes.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/program_reader.h"
#include "shell/session_controller.h"
#include "ui/message_box.h"
#include "ui/status_bar.h"

namespace {

constexpr int RESET_STATE_WAIT_MS = 100;

CDevice& Device() {
  return CDevice::Get();
}

class CCursorShape {
public:
  explicit CCursorShape(Qt::CursorShape Shape) { QGuiApplication::setOverrideCursor(Shape); }
  ~CCursorShape() { QGuiApplication::restoreOverrideCursor(); }
  CCursorShape(const CCursorShape&) = delete;
  CCursorShape& operator=(const CCursorShape&) = delete;
};

}  // namespace

CProgramLoader::CProgramLoader(CSessionController& Session, QWidget* pMainWindow)
    : m_Session(Session), m_pMainWindow(pMainWindow) {}

void CProgramLoader::OpenDataFile(const QString& sPath) {
  if (m_bReading) {
    SetActionError(ACTION_FILE_OPEN, QLatin1String(PROGRAM_IS_BEING_OPENED));
    return PrintConsole(QStringLiteral("\"%1\" was not opened: another program is being opened").arg(sPath));
  }
  if (!m_Clock.isValid()) m_Clock.start();
  Q_EMIT Opening(sPath);
  if (IsElfFile(sPath)) {
    CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Opening File..."));
    SetActionEnabled(ACTION_DEBUG_DOWNLOAD_RESET, false);  // until the next update of all actions
    OpenElfDataFile(sPath);
  } else if (IsBinFile(sPath)) {
    OpenBinDataFile(sPath);
  } else {
    OpenOtherDataFile(sPath);
  }
  m_Clock.invalidate();
}

void CProgramLoader::EndOpen() {
  if (!m_bReading) m_bUserChosen = m_bReload = false;
}

void CProgramLoader::OpenElfDataFile(const QString& sPath) {
  const CCursorShape Wait(Qt::WaitCursor);
  auto pBuild = std::make_unique<CProgramBuild>();
  // A file that is written again while it is read counts as changed.
  const QDateTime Time = QFileInfo(sPath).lastModified();
  const PROGRAM_BUILD_RESULT Result = Read(*pBuild, sPath);
  if (Result == PROGRAM_BUILD_STOPPED) return OnCancelled(sPath);
  CProject::Get().SetProgramFile(sPath);
  CProject::Get().SetProgramFileTime(Time);
  CFileFinder::Get()->SetProgramPath(sPath);
  CDeviceDataProvider::Get().ClearCaches(true);
  if (!Device().IsSessionReady()) Device().ScheduleResetTargetExecState();
  ClearProgramViews();
  if (Result == PROGRAM_BUILT) {
    if (ELFAPI_IsLoaded() && ELFAPI_HasRelocations()) {
      LogMsg("The symbols are not relocated any more: Project.RelocateSymbols was for the program as it was.",
             MSG_WARNING | MSG_TO_ALL);
    }
    pBuild->TakeOver();
    Free(std::move(pBuild));
  } else {
    ELFAPI_Unload();
    StoreProgramData(QString());
    LogMsg(QStringLiteral("Could not read the program file \"%1\"").arg(sPath), MSG_ERROR | MSG_TO_ALL);
  }
  OnDataFileOpened(sPath);
}

PROGRAM_BUILD_RESULT CProgramLoader::Read(CProgramBuild& Build, const QString& sPath) {
  m_bReading = true;
  const PROGRAM_BUILD_RESULT Result = ReadProgram(Build, sPath, m_pMainWindow);
  m_bReading = false;
  return Result;
}

void CProgramLoader::OnCancelled(const QString& sPath) {
  SetActionError(ACTION_FILE_OPEN, QLatin1String(ActionError::CANCELLED));
  LogMsg(QStringLiteral("File.Open: \"%1\" was cancelled").arg(sPath), MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
  m_Session.ShowRunState();
  Q_EMIT Cancelled();
}

// The tables of a big program take a tenth of a second to free.
void CProgramLoader::Free(std::unique_ptr<CProgramBuild> pProgram) {
  m_Freeing = std::async(std::launch::async, [pProgram = std::move(pProgram)]() mutable { pProgram.reset(); });
}

void CProgramLoader::OpenBinDataFile(const QString& sPath) {
  if (m_Session.GetLoadAddress() == 0) {
    U32 Addr = 0;
    if (!m_AskAddress || !m_AskAddress(sPath, &Addr)) {
      PrintConsole(QStringLiteral("\"%1\" was not opened: no base address").arg(sPath));
      return;
    }
    m_Session.SetLoadAddress(Addr);
  }
  OpenOtherDataFile(sPath);
}

void CProgramLoader::OpenOtherDataFile(const QString& sPath) {
  CProject::Get().SetProgramFile(sPath);
  CFileFinder::Get()->SetProgramPath(sPath);
  CDeviceDataProvider::Get().ClearCaches(true);
  ClearProgramViews();
  ELFAPI_Unload();
  StoreProgramData(sPath);
  if (!Device().IsSessionReady()) {
    Device().ScheduleResetTargetExecState();
    Device().WaitForJob(JT_RESET_TARGET_EXEC_STATE, true, RESET_STATE_WAIT_MS);
  }
  OnDataFileOpened(sPath);
}

void CProgramLoader::StoreProgramData(const QString& sPath) {
  QMemBlocks Blocks;
  if (!sPath.isEmpty()) Blocks = VFile::CFileWorker::Get()->ReadDataFile(sPath, m_Session.GetLoadAddress());
  VCore::AttachElf(nullptr);
  VCore::SetImage(Blocks);
}

void CProgramLoader::ClearProgramViews() {
  Q_EMIT AboutToChange();
}

void CProgramLoader::ConfigTargetEndianess() {
  const U32 Encoding = ELFAPI_IsLoaded() ? ELFAPI_GetEncoding() : 0;
  Device().ScheduleSetConfigParam(DCP_ENDIAN, Encoding == 1 ? ENDIAN_BIG : ENDIAN_LITTLE);
}

void CProgramLoader::OnDataFileOpened(const QString& sPath) {
  const bool bSame = !sPath.isEmpty() && sPath == m_sProgramPath;
  if (!sPath.isEmpty()) ConfigTargetEndianess();
  if (sPath != m_sProgramPath) {
    Device().ScheduleClearAllBreakpoints();
    Device().ScheduleClearAllWatchpoints();
  }
  m_Session.EvalBreakSymbol();
  Q_EMIT DataFileOpened(sPath, bSame);
  ContinueSession(sPath);
  m_Session.EvalBreakSymbol();
  if (IsElfFile(sPath)) {
    const QString sText =
        QStringLiteral("File.Open: completed in %1 ms").arg(m_Clock.isValid() ? m_Clock.elapsed() : 0);
    PrintConsole(sText);
    LogMsg(sText, MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
  }
  m_sProgramPath = sPath;
  m_bUserChosen = m_bReload = false;
}

void CProgramLoader::ContinueSession(const QString& sPath) {
  if (!sPath.isEmpty() && Device().IsConnected() && WantsDownload(sPath)) {
    m_Session.ResetDevice(RM_BEFORE_DOWNLOAD);
  } else {
    m_Session.ShowRunState();
  }
}

bool CProgramLoader::WantsDownload(const QString& sPath) {
  if (!Device().IsSessionReady() || !IsElfFile(sPath) || (m_bReload && sPath == m_sProgramPath)) return true;
  if (!m_bUserChosen) return false;
  const CCursorShape Arrow(Qt::ArrowCursor);
  return CMessageBox::Show(QStringLiteral("Download Program"),
                           QStringLiteral("Program file opened. Download to target?"), CMessageBox::NO_CHECK_BOX,
                           QString(), QDialogButtonBox::Yes | QDialogButtonBox::No) == CMessageBox::ACCEPTED;
}
