// The download step: data to the target, and what follows.

#include <QFileInfo>
#include <QThread>

#include "core/vcore.h"
#include "device/data_files/vfile.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "device/downloader.h"
#include "project/file_classes.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/log/console_print.h"
#include "shell/session_controller.h"
#include "shell/session_trace.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/status_bar.h"
#include "ui/warnings_dialog.h"

namespace {

constexpr int INIT_REGS_WAIT_MS = 25;
constexpr QLatin1String WRITING_MEMORY("Writing Memory...");

CDevice& Device() {
  return CDevice::Get();
}

// The writes of all blocks as one job.
int ScheduleBlocks(const QMemBlocks& Blocks) {
  std::vector<U32> Ranges;
  QByteArray Data;
  for (const CMemBlock& Block : Blocks) {
    Ranges.push_back(Block.Addr);
    Ranges.push_back(CAddrRange{Block.Addr, Block.NumBytes}.End());
    Data += Block.Data;
  }
  const DEVICE_STATE& State = Device().Context().State;
  const U32 Flags = MEM_FLAG_DOWNLOAD | (State.aCapability[HW_CAP_BMA] ? 0u : static_cast<U32>(MEM_FLAG_HALT));
  return Device().ScheduleWriteMemMultiple(static_cast<U32>(Blocks.size()), Ranges.data(),
                                           static_cast<U32>(Data.size()), reinterpret_cast<const U8*>(Data.constData()),
                                           DownloadChunkSize(State.TIFSpeed), AW_AUTO, Flags);
}

bool HasData(const QMemBlocks& Blocks) {
  return std::any_of(Blocks.begin(), Blocks.end(), [](const CMemBlock& Block) { return Block.NumBytes != 0; });
}

// The program has its place already; another binary file needs one.
QMemBlocks DataOf(const QString& sFile, I64 Addr) {
  if (sFile == CProject::Get().GetProgramFile()) return VCore::GetImage();
  if (IsBinFile(sFile) && Addr < 0) return {};
  return VFile::CFileWorker::Get()->ReadDataFile(sFile, Addr);
}

}  // namespace

void CSessionController::DownloadFile(const QString& sFile, DOWNLOAD_KINDS Kind, I64 Addr) {
  if ((Kind != DOWNLOAD_PROGRAM && sFile.isEmpty()) || !Device().IsConnected()) return;
  m_DownloadKind = Kind;
  CStatusBar::_GetSingleton()->SetStatusMessage(WRITING_MEMORY);
  if (Kind != DOWNLOAD_INTERNAL) ExecScriptFunc(HOOK_BEFORE_TARGET_DOWNLOAD);
  // The hook may have downloaded something else.
  m_DownloadKind = Kind;
  if (Kind == DOWNLOAD_PROGRAM) {
    if (VScript::HasFunction(HOOK_TARGET_DOWNLOAD)) {
      Device().Context().State.LastDownloadResult = 0;
      Device().SetSuppressEvent(JT_END_DOWNLOAD, true);
      ExecScriptFunc(HOOK_TARGET_DOWNLOAD);
      Device().SetSuppressEvent(JT_END_DOWNLOAD, false);
      const I32 Result = Device().Context().State.LastDownloadResult;
      if (Result < 0) ShowDownloadError(Result);
      FinishDownload();
      return;
    }
    if (sFile.isEmpty()) {
      FinishDownload();
      return;
    }
  }
  if (WriteFileToTarget(sFile, Addr) < 0) ContinueAfterDownload();
}

int CSessionController::WriteFileToTarget(const QString& sFile, I64 Addr) {
  if (!Device().IsConnected() || sFile.isEmpty()) return -1;
  const QMemBlocks Blocks = DataOf(sFile, Addr);
  if (!HasData(Blocks)) {
    PrintConsole(QStringLiteral("\"%1\" was not written: there is no data to write").arg(sFile));
    CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Download Failed."));
    return -1;
  }
  if (ScheduleBlocks(Blocks) < 0) return -1;
  if (Device().ScheduleEndDownload(false, sFile.toUtf8().constData()) < 0) return -1;
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  const U32 ChunkSize = DownloadChunkSize(Device().Context().State.TIFSpeed);
  for (const CMemBlock& Block : Blocks) {
    // What is known already is what the download replaces.
    Provider.MarkMemStale(Block.Addr, Block.NumBytes);
    Provider.RequestMem(this, Block.Addr, Block.NumBytes, ChunkSize, AW_AUTO, 0);
  }
  return 0;
}

void CSessionController::OnDeviceEndDownloadDone(const char* sFileName) {
  if (sFileName == nullptr || *sFileName == 0) return;
  CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Download Complete."));
  ContinueAfterDownload();
}

void CSessionController::OnDeviceEndDownloadFailed(const char*, int Error) {
  OnDownloadFailed(Error);
}

void CSessionController::ShowDownloadError(int Error) {
  if (!GetVarValue(VAR_VERIFY_DOWNLOAD)) return;
  CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Download Failed."));
  PrintConsole(QString::fromUtf8(DownloadErrorText(Error)));
  CWarningsDialog::ShowText(QStringLiteral("Unsuccessfull Data Download"),
                            QStringLiteral("The data file was not downloaded correctly."),
                            QStringLiteral("It is recommended to restart the debug session or to download\n"
                                           "the program file manually using command File.Download"));
}

void CSessionController::OnDownloadFailed(int Error) {
  ShowDownloadError(Error);
  ContinueAfterDownload();
}

// A download that told nothing of its end, such as one by the project's own function, must not seem to go on.
void CSessionController::EndWritingStatus() {
  if (CStatusBar::_GetSingleton()->GetStatusMessage() == WRITING_MEMORY) ShowRunState();
}

void CSessionController::ContinueAfterDownload() {
  EndWritingStatus();
  if (m_DownloadKind == DOWNLOAD_FILE && VScript::HasFunction(HOOK_AFTER_TARGET_DOWNLOAD)) {
    ExecScriptFunc(HOOK_AFTER_TARGET_DOWNLOAD);
  } else if (m_DownloadKind == DOWNLOAD_PROGRAM) {
    FinishDownload();
  }
}

void CSessionController::FinishDownload() {
  EndWritingStatus();
  if (VScript::HasFunction(HOOK_AFTER_TARGET_DOWNLOAD)) {
    ExecScriptFunc(HOOK_AFTER_TARGET_DOWNLOAD);
  } else {
    Device().RequestInitRegsAfterDownload();
    QThread::msleep(INIT_REGS_WAIT_MS);
  }
  StartTrace();
  if (GetVarValue(VAR_CONNECT_MODE) == CM_DOWNLOAD_RESET) StartProgram();
  m_View.RefreshWindows();
}

void CSessionController::StartProgram() {
  switch (GetVarValue(VAR_RESET_MODE)) {
    case RM_RESET_HALT:
      Device().SetSessionReady();
      Device().ScheduleHalt();
      break;
    case RM_BREAK_AT_SYMBOL:
      if (RunToBreakSymbol() >= 0) {
        Device().SetSessionReady();
      } else {
        m_MessageBoxTimer.start();
        Device().SetSessionReady();
        Device().ScheduleHalt();
      }
      break;
    case RM_RESET_AND_RUN:
      Device().SetSessionReady();
      ResumeDevice();
      break;
    default:
      break;
  }
}
