// Debug.* and Exec.*

#include <QFileInfo>

#include "base/text.h"
#include "core/vcore.h"
#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/main_window.h"
#include "shell/session_controller.h"
#include "shell/session_trace.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/status_bar.h"

namespace {

CDevice& Device() {
  return CDevice::Get();
}

bool CheckNotConnected(U32 ActionID) {
  if (!Device().IsConnected()) return true;
  SetActionError(ActionID, QLatin1String(ActionError::ALREADY_CONNECTED));
  return false;
}

void Start(COMMAND_CONTEXT& Context) {
  if (CheckActionArgs(ACTION_DEBUG_START) && CheckNotConnected(ACTION_DEBUG_START)) Context.Session.Start();
}

void Connect(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_DEBUG_CONNECT) || !CheckNotConnected(ACTION_DEBUG_CONNECT)) return;
  Context.Session.ConnectDevice(static_cast<CONNECT_MODES>(GetVarValue(VAR_CONNECT_MODE)));
}

template <U32 ID>
void Disconnect(COMMAND_CONTEXT& Context) {
  if (CheckActionArgs(ID) && CheckConnected(ID)) Context.Session.DisconnectDevice();
}

void Continue(COMMAND_CONTEXT& Context) {
  if (CheckActionArgs(ACTION_DEBUG_CONTINUE) && CheckHalted(ACTION_DEBUG_CONTINUE)) Context.Session.ResumeDevice();
}

void Halt(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_DEBUG_HALT)) Device().ScheduleHalt();
}

void Reset(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_DEBUG_RESET) || !CheckConnected(ACTION_DEBUG_RESET)) return;
  Context.Session.ResetDevice(static_cast<RESET_MODES>(GetVarValue(VAR_RESET_MODE)));
}

// One instruction: source steps need the line tables of the stepper, which a later layer brings.
void StepInto(COMMAND_CONTEXT&) {
  const auto Refuse = [](const char* sError) {
    SuppressEcho(ACTION_DEBUG_STEP_INTO);
    SetActionError(ACTION_DEBUG_STEP_INTO, QLatin1String(sError));
  };
  if (!Device().IsConnected()) return Refuse(ActionError::NOT_CONNECTED);
  if (!Device().IsHalted()) return Refuse(ActionError::PROGRAM_IS_RUNNING);
  if (Device().IsStepping()) return Refuse(ActionError::STEP_IN_PROGRESS);
  Device().ScheduleStepInst();
}

void Download(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_DEBUG_DOWNLOAD) || !CheckConnected(ACTION_DEBUG_DOWNLOAD)) return;
  Context.Session.DownloadFile(CProject::Get().GetProgramFile(), DOWNLOAD_PROGRAM, -1);
}

template <U32 ID>
void SetNextPC(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID)) return;
  if (ID == ACTION_DEBUG_SET_NEXT_PC) {
    QString sText = GetActionArgs(ID).value(0);
    bool bOk = false;
    Addr = sText.remove(GROUP_BLANK).toUInt(&bOk, 16);
    if (!bOk) return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER));
  } else if (!GetAddressArg(ID, 0, &Addr)) {
    return;
  }
  Device().ScheduleWriteReg(VCore::MapRegIndex(VCore::GetInfo().PCReg), Addr);
}

void RunTo(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  if (!CheckActionArgs(ACTION_DEBUG_RUN_TO) || !CheckConnected(ACTION_DEBUG_RUN_TO)) return;
  if (GetAddressArg(ACTION_DEBUG_RUN_TO, 0, &Addr)) Device().ScheduleRunTo(Addr);
}

// A mode variable by the name of one of its modes or by number; the canonical name becomes the argument, for the echo.
void SetMode(COMMAND_CONTEXT& Context, U32 ActionID, U32 VarID, const char* sPrefix) {
  if (!CheckActionArgs(ActionID)) return;
  const QString sMode = GetActionArgs(ActionID).value(0);
  bool bOk = false;
  const U32 Value = sMode.toUInt(&bOk, 0);
  const NAMED_CONST* pConst = bOk ? FindNamedConstByValue(QLatin1String(sPrefix), Value) : FindNamedConst(sMode);
  if (pConst && !QLatin1String(pConst->sSymbol).startsWith(QLatin1String(sPrefix))) pConst = nullptr;
  if (pConst == nullptr) return SetActionError(ActionID, QLatin1String(ActionError::INVALID_PARAMETER));
  SetVarValue(GetVarInfo(VarID), static_cast<U32>(pConst->Value), 0);
  SetActionArgs(ActionID, QStringList{QLatin1String(pConst->sSymbol)});
  Context.Window.UpdateModeButtons();
}

void SetResetMode(COMMAND_CONTEXT& Context) {
  SetMode(Context, ACTION_DEBUG_SET_RESET_MODE, VAR_RESET_MODE, "RM_");
}
void SetConnectMode(COMMAND_CONTEXT& Context) {
  SetMode(Context, ACTION_DEBUG_SET_CONNECT_MODE, VAR_CONNECT_MODE, "CM_");
}

// An entry of a mode menu: sets the mode by its command, so that it is echoed, then does the operation.
template <U32 ModeCommand, U32 Command>
void PerformInMode(const char* sMode) {
  PerformAction(ModeCommand, QLatin1String(sMode));
  ClearActionArgs(Command);
  TriggerAction(Command);
}

void StartDownloadReset(COMMAND_CONTEXT&) {
  PerformInMode<ACTION_DEBUG_SET_CONNECT_MODE, ACTION_DEBUG_START>("CM_DOWNLOAD_RESET");
}
void StartAttach(COMMAND_CONTEXT&) {
  PerformInMode<ACTION_DEBUG_SET_CONNECT_MODE, ACTION_DEBUG_START>("CM_ATTACH");
}
void StartAttachHalt(COMMAND_CONTEXT&) {
  PerformInMode<ACTION_DEBUG_SET_CONNECT_MODE, ACTION_DEBUG_START>("CM_ATTACH_HALT");
}
void ResetBreakAtSymbol(COMMAND_CONTEXT&) {
  PerformInMode<ACTION_DEBUG_SET_RESET_MODE, ACTION_DEBUG_RESET>("RM_BREAK_AT_SYMBOL");
}
void ResetHalt(COMMAND_CONTEXT&) {
  PerformInMode<ACTION_DEBUG_SET_RESET_MODE, ACTION_DEBUG_RESET>("RM_RESET_HALT");
}
void ResetRun(COMMAND_CONTEXT&) {
  PerformInMode<ACTION_DEBUG_SET_RESET_MODE, ACTION_DEBUG_RESET>("RM_RESET_AND_RUN");
}

void SetSteppingMode(COMMAND_CONTEXT&) {
  U32 Mode = 0;
  if (!CheckActionArgs(ACTION_DEBUG_SET_STEPPING_MODE)) return;
  if (GetNumberArg(ACTION_DEBUG_SET_STEPPING_MODE, 0, &Mode)) {
    Device().ScheduleSetConfigParam(DCP_STEPPING_MODE, static_cast<int>(Mode));
  }
}

void ExecConnect(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_EXEC_CONNECT) && CheckNotConnected(ACTION_EXEC_CONNECT)) Device().ScheduleConnectSimple();
}

void ExecReset(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_EXEC_RESET) && CheckConnected(ACTION_EXEC_RESET)) Device().ScheduleReset(RM_HARDWARE_ONLY);
}

void ExecDownload(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_EXEC_DOWNLOAD) || !CheckHalted(ACTION_EXEC_DOWNLOAD)) return;
  const QString sPath = CFileFinder::Get()->ResolvePath(GetActionArgs(ACTION_EXEC_DOWNLOAD).value(0));
  if (!QFileInfo(sPath).isFile()) {
    return SetActionError(ACTION_EXEC_DOWNLOAD, QLatin1String(ActionError::FILE_NOT_FOUND));
  }
  Context.Session.SetDownloadKind(DOWNLOAD_INTERNAL);
  CStatusBar::_GetSingleton()->SetStatusMessage(QStringLiteral("Writing Memory..."));
  Context.Session.WriteFileToTarget(sPath, 0);
}

void ExecCommand(COMMAND_CONTEXT&) {
  if (!CheckActionArgs(ACTION_DEBUG_EXEC)) return;
  Device().ScheduleExecVNodeCmd(GetActionArgs(ACTION_DEBUG_EXEC).value(0).toUtf8().constData());
}

void ReadTraceCache(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_DEBUG_READ_INTO_TRACE_CACHE;
  U32 Addr = 0;
  U32 NumBytes = 0;
  if (!CheckActionArgs(ID) || !GetNumberArg(ID, 0, &Addr) || !GetNumberArg(ID, 1, &NumBytes) || !CheckConnected(ID)) {
    return;
  }
  ReadIntoTraceCache(Addr, NumBytes);
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_DEBUG_START, Start},
    {ACTION_DEBUG_STOP, Disconnect<ACTION_DEBUG_STOP>},
    {ACTION_DEBUG_CONNECT, Connect},
    {ACTION_DEBUG_DISCONNECT, Disconnect<ACTION_DEBUG_DISCONNECT>},
    {ACTION_DEBUG_CONTINUE, Continue},
    {ACTION_DEBUG_HALT, Halt},
    {ACTION_DEBUG_RESET, Reset},
    {ACTION_DEBUG_STEP_INTO, StepInto},
    {ACTION_DEBUG_DOWNLOAD, Download},
    {ACTION_DEBUG_SET_NEXT_PC, SetNextPC<ACTION_DEBUG_SET_NEXT_PC>},
    {ACTION_DEBUG_SET_NEXT_STMNT, SetNextPC<ACTION_DEBUG_SET_NEXT_STMNT>},
    {ACTION_DEBUG_RUN_TO, RunTo},
    {ACTION_DEBUG_SET_RESET_MODE, SetResetMode},
    {ACTION_DEBUG_SET_CONNECT_MODE, SetConnectMode},
    {ACTION_DEBUG_SET_STEPPING_MODE, SetSteppingMode},
    {ACTION_DEBUG_DOWNLOAD_RESET, StartDownloadReset},
    {ACTION_DEBUG_ATTACH, StartAttach},
    {ACTION_DEBUG_ATTACH_HALT, StartAttachHalt},
    {ACTION_DEBUG_RESET_BREAK_AT_SYMBOL, ResetBreakAtSymbol},
    {ACTION_DEBUG_RESET_HALT, ResetHalt},
    {ACTION_DEBUG_RESET_RUN, ResetRun},
    {ACTION_EXEC_CONNECT, ExecConnect},
    {ACTION_EXEC_RESET, ExecReset},
    {ACTION_EXEC_DOWNLOAD, ExecDownload},
    {ACTION_DEBUG_EXEC, ExecCommand},
    {ACTION_DEBUG_READ_INTO_TRACE_CACHE, ReadTraceCache},
};

}  // namespace

void RegisterDebugCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
