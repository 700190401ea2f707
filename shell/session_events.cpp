// What the session does when the device has news.

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "rtos/plugin_host.h"
#include "script/vscript.h"
#include "shell/core_binding.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/session_controller.h"
#include "shell/session_trace.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"
#include "ui/status_bar.h"
#include "ui/window_types.h"

namespace {

constexpr int HALT_DELAY_MS = 100;
constexpr QLatin1String READY("Ready");
constexpr QLatin1String CPU_HALTED("CPU halted");
constexpr QLatin1String CPU_RUNNING("CPU running...");

CDevice& Device() {
  return CDevice::Get();
}
CStatusBar& Status() {
  return *CStatusBar::_GetSingleton();
}

}  // namespace

void CSessionController::StartPulse() {
  m_bPulsing = true;
  Status().SetProgressMessage(CPU_RUNNING);
  Status().StartProgress(0, 0);
}

void CSessionController::EndPulse() {
  m_bPulsing = false;
  Status().EndProgress();
}

void CSessionController::ShowRunState() {
  const QLatin1String sState = Device().IsHalted() ? CPU_HALTED : CPU_RUNNING;
  Status().SetStatusMessage(Device().IsConnected() ? sState : READY);
}

void CSessionController::OnDeviceConnectDone(CONNECT_MODES Mode) {
  PrintConsoleColor(QStringLiteral("V-Node: connected to target device"), COLOR_LOGGING_VNODE);
  Status().SetStatusMessage(QStringLiteral("Connected"));
  UpdateConnectionInfo();
  // Where a script connects, this came behind its function.
  if (!VScript::HasFunction(HOOK_TARGET_CONNECT)) CPluginHost::Get().OnDebugStart();
  m_View.OnSessionStateChanged();
  ExecScriptFunc(HOOK_AFTER_TARGET_CONNECT);
  if (Mode <= CM_ATTACH_HALT && GetVarValue(VAR_CONNECT_MODE) != static_cast<U32>(Mode)) {
    LogMsg("Changing the connection mode while the connection sequence is in progress may lead to undefined behaviour.",
           MSG_ERROR | MSG_TO_ALL);
  }
  switch (Mode) {
    case CM_DOWNLOAD_RESET:
      ResetDevice(RM_BEFORE_DOWNLOAD);
      break;
    case CM_ATTACH:
      if (Device().IsHalted()) {
        Device().ScheduleHalt();
      } else {
        StartPulse();
      }
      InitTraceCache();
      StartTrace();
      break;
    case CM_ATTACH_HALT:
      Device().ScheduleHalt();
      InitTraceCache();
      StartTrace();
      break;
    default:
      break;
  }
  m_View.WatchTarget(true);
}

void CSessionController::OnDeviceConnectFailed(CONNECT_MODES) {
  Status().SetStatusMessage(QStringLiteral("V-Node: error connecting to device"));
  PrintConsoleColor(QStringLiteral("Connection failed"), COLOR_LOGGING_VNODE);
  SetVarValue(GetVarInfo(VAR_ALLOW_DEBUG_MODIFIED_SRC), 0, 0);
  m_View.OnSessionStateChanged();
}

void CSessionController::OnDeviceConnectCanceled(CONNECT_MODES) {
  Status().SetStatusMessage(READY);
  PrintConsole(QStringLiteral("Connection aborted"));
  m_View.OnSessionStateChanged();
}

void CSessionController::OnDeviceAboutToDisconnect() {
  m_View.WatchTarget(false);
  m_HaltedTimer.stop();
}

void CSessionController::OnDeviceDisconnectDone() {
  ELFAPI_SetCurrentPC(INVALID_ADDR);
  PrintConsoleColor(QStringLiteral("V-Node: disconnected from target device"), COLOR_LOGGING_VNODE);
  Status().SetStatusMessage(READY);
  EndPulse();
  UpdateConnectionInfo();
  m_View.OnSessionStateChanged();
  ExecScriptFunc(HOOK_AFTER_TARGET_DISCONNECT);
  SetVarValue(GetVarInfo(VAR_ALLOW_DEBUG_MODIFIED_SRC), 0, 0);
}

void CSessionController::OnDeviceConnectionLost() {
  PrintConsoleColor(QStringLiteral("V-Node: connection to target device lost."), COLOR_LOGGING_VNODE);
  if (Device().IsConnected()) {
    const int Answer = CMessageBox::Show(QStringLiteral("Target Connection Lost"),
                                         QStringLiteral("Failed to read target status. Abort Debug Session?"),
                                         CMessageBox::NO_CHECK_BOX, QStringLiteral("control-power-red.png"),
                                         QDialogButtonBox::Yes | QDialogButtonBox::No);
    if (Answer == CMessageBox::ACCEPTED) DisconnectDevice();
  }
  m_View.OnSessionStateChanged();
}

void CSessionController::OnDeviceResumeDone(RESUME_MODES) {
  Status().SetStatusMessage(CPU_RUNNING);
  if (GetVarValue(PREF_SHOW_PROGBAR_WHILE_RUNNING)) StartPulse();
  m_View.OnSessionStateChanged();
}

void CSessionController::OnDeviceResetDone(U32 PC, RESET_MODES Mode) {
  ELFAPI_SetCurrentPC(PC);
  if (Mode == RM_BEFORE_DOWNLOAD) {
    if (GetVarValue(VAR_CONNECT_MODE) != CM_DOWNLOAD_RESET) return;
    ExecScriptFunc(HOOK_AFTER_TARGET_RESET);
    DownloadFile(CProject::Get().GetProgramFile(), DOWNLOAD_PROGRAM, -1);
    m_bBeforeDownload = true;
    return;
  }
  m_View.RefreshWindows();
  if (Mode == RM_STATE_CHANGED) return;
  ExecScriptFunc(HOOK_AFTER_TARGET_RESET);
  switch (Mode) {
    case RM_RESET_HALT:
      Status().SetStatusMessage(QStringLiteral("Device was reset"));
      break;
    case RM_RESET_AND_RUN:
      ResumeDevice();
      break;
    case RM_BREAK_AT_SYMBOL:
      if (RunToBreakSymbol() < 0) m_MessageBoxTimer.start();
      m_View.ShowPC(PC);
      m_View.OnSessionStateChanged();
      break;
    default:
      break;
  }
}

// What was under way is said to be so no longer: the target stands or runs as before.
void CSessionController::ShowTargetState() {
  ShowRunState();
  if (Device().IsHalted()) {
    const U32 PC = static_cast<U32>(Device().GetPC());
    ELFAPI_SetCurrentPC(PC);
    m_View.ShowPC(PC);
  }
  m_View.RefreshWindows();
  m_View.OnSessionStateChanged();
}

void CSessionController::OnDeviceResetFailed(U32, RESET_MODES) {
  if (Device().IsConnected()) ShowTargetState();
}

// The reset ahead of it was not shown, for the target was to leave it at once.
void CSessionController::OnDeviceRunToSymbolFailed(U32) {
  if (Device().IsConnected()) ShowTargetState();
}

// The session hears of a halt ahead of the windows, which ask for the names that are in scope there.
void CSessionController::OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) {
  ELFAPI_SetCurrentPC(PC);
  // The target may run on: the next halt is on its way.
  if (std::exchange(m_bBeforeDownload, false) || !IsStandingStill()) return;
  m_View.ShowPC(PC);
  Status().SetStatusMessage(CPU_HALTED);
  EndPulse();
  m_View.OnSessionStateChanged();
  // A halt on the way to the start of the program is none of the session's, even if the hook's time comes behind it.
  if (Reason == HR_STATE_CHANGED || !Device().IsSessionReady()) return;
  m_HaltedTimer.start(Reason == HR_GENERAL || Reason == HR_BREAKPOINT ? 0 : HALT_DELAY_MS);
}

void CSessionController::OnDeviceStepped(U32 PC) {
  ELFAPI_SetCurrentPC(PC);
  Status().SetStatusMessage(CPU_HALTED);
  EndPulse();
  m_HaltedTimer.start(HALT_DELAY_MS);
  m_View.ShowPC(PC);
  m_View.OnSessionStateChanged();
}

bool CSessionController::IsBusy() const {
  return m_MessageBoxTimer.isActive() || (m_HaltedTimer.isActive() && VScript::HasFunction(HOOK_AFTER_TARGET_HALT));
}

void CSessionController::OnTargetHaltedAndTOElapsed() {
  if (Device().IsSessionReady()) ExecScriptFunc(HOOK_AFTER_TARGET_HALT);
}

void CSessionController::OnDeviceRunToSymbolDone(U32) {
  m_View.RefreshWindows();
  m_View.FocusSourceWindow();
}

void CSessionController::OnDeviceConfigParamChanged(int Param, int Value) {
  if (Param == DCP_DEVICE_INDEX) {
    // A configuration names the device that was chosen already, too.
    if (Value == m_DeviceIndex && Value >= 0) return;
    m_DeviceIndex = Value;
    const U32 Core = Device().Context().Facts.Get().Core;
    if (Core != m_CoreId || Core == 0) BindCoreModel(Core);
    m_CoreId = Core;
    if (!m_bLoadingProject) Q_EMIT DeviceChanged();
  } else if (Param == DCP_SPEED) {
    UpdateConnectionInfo();
  } else if (Param == DCP_ENDIAN) {
    // Where the byte order is another one, the core model decodes the program anew.
    const DEVICE_STATE& State = Device().Context().State;
    VCore::SetCpuInfo({VCore::GetCpuInfo().CoreId, State.DataEndian, State.InstEndian});
  }
}

void CSessionController::OnDeviceLogMsg(const char* sText, MSG_INFO_FLAGS Flags) {
  LogMsg(sText, Flags);
}
void CSessionController::OnDeviceStartProgress(int Min, int Max) {
  Status().StartProgress(Min, Max);
}
void CSessionController::OnDeviceEndProgress() {
  if (m_bPulsing) {
    StartPulse();
  } else {
    Status().EndProgress();
  }
}
void CSessionController::OnDeviceSetProgressValue(int Value) {
  Status().SetProgressValue(Value);
}
void CSessionController::OnDeviceSetProgressMsg(const char* sText) {
  Status().SetProgressMessage(QString::fromUtf8(sText));
}
void CSessionController::OnDeviceSetStatusMsg(const char* sText) {
  Status().SetStatusMessage(QString::fromUtf8(sText));
}
