// The steps of a session that commands start.

#include "shell/session_controller.h"

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "rtos/plugin_host.h"
#include "script/vscript.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/session_trace.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"
#include "ui/status_bar.h"

namespace {

constexpr int MESSAGE_BOX_DELAY_MS = 100;
constexpr int HALT_WAIT_MS = 100;
constexpr U32 NO_ADDRESS = 0xFFFFFFFF;

CDevice& Device() {
  return CDevice::Get();
}

// Suppresses the events of a job type while a script function does the job's work.
class CSuppressEvents {
public:
  CSuppressEvents(std::initializer_list<U32> Types) : m_Types(Types) { Set(true); }
  ~CSuppressEvents() { Set(false); }
  CSuppressEvents(const CSuppressEvents&) = delete;
  CSuppressEvents& operator=(const CSuppressEvents&) = delete;

private:
  void Set(bool bOn) {
    for (const U32 Type : m_Types) Device().SetSuppressEvent(Type, bOn);
  }
  std::vector<U32> m_Types;
};

}  // namespace

void PrintProjectError() {
  PrintConsoleError(QStringLiteral("Error in project file: ") + VScript::GetErrorText());
  for (const QString& sLine : VScript::GetErrorExcerpt()) PrintConsoleColor(sLine, COLOR_LOGGING_ERROR, true);
}

CSessionController::CSessionController(ISessionView& View) : m_View(View) {
  m_HaltedTimer.setSingleShot(true);
  connect(&m_HaltedTimer, &QTimer::timeout, this, &CSessionController::OnTargetHaltedAndTOElapsed);
  m_MessageBoxTimer.setSingleShot(true);
  m_MessageBoxTimer.setInterval(MESSAGE_BOX_DELAY_MS);
  connect(&m_MessageBoxTimer, &QTimer::timeout, this, &CSessionController::OnMessageBoxTimerTimeout);
}

void CSessionController::Start() {
  const auto Mode = static_cast<CONNECT_MODES>(GetVarValue(VAR_CONNECT_MODE));
  if (!m_View.ConfirmModifiedSources()) {
    OnDeviceConnectCanceled(Mode);
    SetVarValue(GetVarInfo(VAR_ALLOW_DEBUG_MODIFIED_SRC), 0, 0);
    return;
  }
  SetVarValue(GetVarInfo(VAR_ALLOW_DEBUG_MODIFIED_SRC), 1, 0);
  const QStringList Errors = VScript::HasError() ? QStringList() : CProject::Get().GetProjectErrors();
  if (!Errors.isEmpty() && !m_View.ConfirmProjectErrors(Errors)) {
    OnDeviceConnectCanceled(Mode);
    return;
  }
  if (VScript::HasFunction(HOOK_DEBUG_START)) {
    ExecScriptFunc(HOOK_DEBUG_START);
  } else {
    ConnectDevice(Mode);
  }
}

int CSessionController::ExecScriptFunc(int FuncID) {
  if (VScript::HasError()) {
    LogMsg(QStringLiteral("Not executing script function: %1. Project file contains errors").arg(GetHookName(FuncID)),
           MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
    return -1;
  }
  if (m_View.IsClosing()) {
    LogMsg(QStringLiteral("Not executing script function: %1. Project is about to close").arg(GetHookName(FuncID)),
           MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
    return -1;
  }
  if (VScript::IsLoaded() && !VScript::HasFunction(FuncID)) return 0;
  const int Result = VScript::ExecFunction(FuncID);
  if (VScript::HasError()) {
    m_View.RaiseConsole();
    PrintProjectError();
  }
  return Result;
}

void CSessionController::ConnectDevice(CONNECT_MODES Mode) {
  if (Device().IsConnected()) return;
  CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Connecting..."));
  UpdateTrace(m_View.NeedsTrace());
  ExecScriptFunc(HOOK_BEFORE_TARGET_CONNECT);
  if (!VScript::HasFunction(HOOK_TARGET_CONNECT)) {
    Device().ScheduleConnect(Mode);
    return;
  }
  LogMsg("Executing Script Function SF_TARGET_CONNECT", MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
  {
    const CSuppressEvents Suppress{JT_CONNECT};
    ExecScriptFunc(HOOK_TARGET_CONNECT);
  }
  CPluginHost::Get().OnDebugStart();
  Device().RequestFinishConnect(static_cast<CONNECT_MODES>(GetVarValue(VAR_CONNECT_MODE)));
}

void CSessionController::DisconnectDevice() {
  if (!Device().IsConnected()) return;
  ExecScriptFunc(HOOK_BEFORE_TARGET_DISCONNECT);
  CPluginHost::Get().OnDebugEnd();
  Device().ScheduleDisconnect();
}

void CSessionController::ResetDevice(RESET_MODES Mode) {
  if (!Device().IsConnected()) return;
  CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Resetting Device..."));
  ExecScriptFunc(HOOK_BEFORE_TARGET_RESET);
  if (!VScript::HasFunction(HOOK_TARGET_RESET)) {
    Device().ScheduleReset(Mode);
    return;
  }
  {
    const CSuppressEvents Suppress{JT_RESET, JT_HALT};
    Device().ScheduleHalt();
    Device().WaitForJob(JT_HALT, false);
    Device().WaitUntilHalted(HALT_WAIT_MS);
    ExecScriptFunc(HOOK_TARGET_RESET);
  }
  Device().RequestFinishReset(Mode == RM_BEFORE_DOWNLOAD ? Mode
                                                         : static_cast<RESET_MODES>(GetVarValue(VAR_RESET_MODE)));
}

void CSessionController::ResumeDevice() {
  if (!Device().IsConnected() || !Device().IsHalted()) return;
  ExecScriptFunc(HOOK_BEFORE_TARGET_RESUME);
  Device().ScheduleContinue(GO_USER);
}

bool CSessionController::EvalBreakSymbol() {
  PARSED_LOC_KIND Kind{};
  const QString sSymbol = GetVarString(VAR_BREAK_AT_THIS_SYMBOL);
  const CAddrRange Range = sSymbol.isEmpty() ? CAddrRange() : ELFAPI_ParseLocation(sSymbol, Kind);
  const bool bFound = !sSymbol.isEmpty() && Kind != PARSED_LOC_NONE;
  Device().ScheduleSetConfigParam(DCP_BREAK_SYMBOL_ADDR, bFound ? static_cast<int>(Range.Start) : -1);
  return bFound;
}

int CSessionController::RunToBreakSymbol() {
  if (!Device().IsConnected()) return -1;
  U32 Addr = static_cast<U32>(Device().Context().Config.Value(DCP_BREAK_SYMBOL_ADDR));
  if (Addr == NO_ADDRESS) return -1;
  Addr &= ~(VCore::GetInfo().InstAlign - 1);
  if (Addr == static_cast<U32>(Device().GetPC())) return -1;
  if (!Device().IsHalted()) Device().ScheduleHalt();
  return Device().ScheduleRunTo(Addr);
}

void CSessionController::OnMessageBoxTimerTimeout() {
  CMessageBox::Show(QStringLiteral("Break at Symbol"),
                    QStringLiteral("Symbol %1 is unknown. Program halts at first instruction.")
                        .arg(GetVarString(VAR_BREAK_AT_THIS_SYMBOL)),
                    CMessageBox::FOR_GOOD, QString(), QDialogButtonBox::Ok);
}

void CSessionController::UpdateConnectionInfo() {
  QString sText = QStringLiteral("Disconnected");
  if (Device().IsConnected()) {
    const U32 Speed = Device().Context().State.TIFSpeed;
    sText = QStringLiteral("Connected @ ") +
            (Speed == VNODE_SPEED_ADAPTIVE ? QStringLiteral("Adaptive Speed") : FrequencyText(Speed));
  }
  CStatusBar::_GetSingleton()->SetConnectionInfo(sText);
}
