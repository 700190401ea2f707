// Project.*

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <cmath>

#include "device/breakpoints/breakpoint_manager.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/interface_speed.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "program/windows/source_files_window.h"
#include "project/file_classes.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/dialogs/device_selection_dialog.h"
#include "shell/log/log.h"
#include "shell/main_window.h"
#include "shell/session_controller.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/windows/console_window.h"
#include "ui/windows/source_window.h"

namespace {

constexpr int TIMING_STEP_PS = 50;
constexpr U64 RESULT_FAILED = static_cast<U64>(-1);

CDevice& Device() {
  return CDevice::Get();
}
QString Arg(U32 ActionID, int Index) {
  return GetActionArgs(ActionID).value(Index);
}
void Fail(U32 ActionID, const char* sError, const QString& sDetail = QString()) {
  SetActionError(ActionID, QLatin1String(sError), sDetail.isEmpty() ? QString() : QuotedArg(sDetail));
}

// The constant that a text names, if it is one of these.
const NAMED_CONST* FindOneOf(const QString& sText, std::initializer_list<const char*> Symbols) {
  const NAMED_CONST* const pConst = FindNamedConst(sText);
  const auto IsIt = [pConst](const char* sSymbol) { return qstrcmp(pConst->sSymbol, sSymbol) == 0; };
  return pConst && std::any_of(Symbols.begin(), Symbols.end(), IsIt) ? pConst : nullptr;
}

// The choice becomes a command of its own, so that the console shows it.
void SelectDevice(CMainWindow& Window) {
  CDeviceSelectionDialog Dialog(&Window, Device().Context().Config.ToXML(), ReadDeviceRecords(Device().Context().Api));
  if (Dialog.exec() != QDialog::Accepted) return;
  const CDeviceConfig& Config = Dialog.Config();
  for (const DEV_CONFIG_PARAMS Param : {DCP_CORE_INDEX, DCP_ENDIAN}) {
    if (Config.Value(Param) != Device().Context().Config.Value(Param))
      Device().ScheduleSetConfigParam(Param, Config.Value(Param));
  }
  PerformAction(ACTION_SET_DEVICE, QString::fromUtf8(Config.Text(DCP_DEVICE_NAME)));
}

void SetDevice(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_SET_DEVICE)) return;
  const QString sName = Arg(ACTION_SET_DEVICE, 0);
  if (sName.isEmpty()) return SelectDevice(Context.Window);
  CProject::Get().ExpectDevice(sName);
  Device().ScheduleSetConfigParam(DCP_DEVICE_NAME, sName.toUtf8().constData());
}

void SetVNodeScript(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_SET_VNODE_SCRIPT;
  if (!CheckActionArgs(ID)) return;
  const QString sPath = CFileFinder::Get()->ResolvePath(Arg(ID, 0));
  if (!QFileInfo(sPath).isFile()) return SetPathError(ID, ActionError::FILE_NOT_FOUND, Arg(ID, 0));
  Device().ScheduleSetConfigParam(DCP_SCRIPT_FILE, sPath.toUtf8().constData());
}

void SetVNodeLogFile(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_SET_VNODE_LOG_FILE;
  if (!CheckActionArgs(ID)) return;
  const QString sPath = OutputPath(Arg(ID, 0));
  if (!QFileInfo(sPath).isFile() && !CanWriteFile(sPath)) {
    return SetPathError(ID, ActionError::INVALID_FILENAME, Arg(ID, 0));
  }
  Device().ScheduleSetConfigParam(DCP_LOG_FILE, sPath.toUtf8().constData());
}

void AddSvdFile(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_ADD_SVD_FILE;
  if (!CheckActionArgs(ID)) return;
  if (!IsSvdFile(Arg(ID, 0))) return Fail(ID, ActionError::INVALID_PARAMETER);
  const QString sPath = CFileFinder::Get()->ResolvePath(Arg(ID, 0));
  if (!QFileInfo(sPath).isFile()) return Fail(ID, ActionError::INVALID_FILENAME);
  CProject::Get().AddSvdFile(Arg(ID, 0));
}

void SetHostIF(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_SET_HOST_INTERFACE;
  if (!CheckActionArgs(ID, 1)) return;
  const NAMED_CONST* const pHostIF = FindOneOf(Arg(ID, 0), {"USB", "IP"});
  if (!pHostIF) return Fail(ID, ActionError::UNKNOWN_HOST_INTERFACE);
  Device().ScheduleSetConfigParam(DCP_CONNECT_MODE, static_cast<int>(pHostIF->Value));
  const QString sIdent = Arg(ID, 1);
  if (pHostIF->Value == HOST_IF_IP) {
    Device().ScheduleSetConfigParam(DCP_HOST_NAME, sIdent.toUtf8().constData());
    return;
  }
  bool bNumber = false;
  const U32 SerialNo = sIdent.toUInt(&bNumber, 0);
  Device().ScheduleSetConfigParam(DCP_USB_SERIAL_NO, static_cast<int>(bNumber ? SerialNo : 0));
  Device().ScheduleSetConfigParam(DCP_USE_SERIAL_NO, bNumber ? 1 : 0);
  if (!bNumber && !sIdent.isEmpty()) Fail(ID, ActionError::INVALID_PARAMETER);
}

void SetTargetIF(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_SET_TARGET_INTERFACE;
  if (!CheckActionArgs(ID)) return;
  const NAMED_CONST* const pTargetIF = FindOneOf(Arg(ID, 0), {"JTAG", "SWD"});
  if (!pTargetIF) return Fail(ID, ActionError::UNKNOWN_TARGET_INTERFACE);
  Device().ScheduleSetConfigParam(DCP_TARGET_IF, static_cast<int>(pTargetIF->Value));
}

void SetTIFSpeed(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_SET_TIF_SPEED;
  if (!CheckActionArgs(ID)) return;
  bool bOk = false;
  const U32 Speed = ParseInterfaceSpeed(Arg(ID, 0), &bOk);
  if (!bOk) return Fail(ID, ActionError::INVALID_NUMBER);
  SetVarValue(GetVarInfo(VAR_TIF_SPEED), Speed, 0);
  Device().ScheduleSetConfigParam(DCP_SPEED, static_cast<int>(Speed));
}

void SetJTAGConfig(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_SET_JTAG_CONFIG;
  if (!CheckActionArgs(ID)) return;
  const SYS_VAR* const VARS[] = {GetVarInfo(VAR_TIF_SCAN_CHAIN_POS), GetVarInfo(VAR_TIF_SCAN_CHAIN_LEN)};
  for (int i = 0; i < 2; ++i) {
    bool bOk = false;
    ParseVarValue(VARS[i], Arg(ID, i), &bOk);
    if (!bOk) return Fail(ID, ActionError::INVALID_PARAMETER, Arg(ID, i));
  }
  for (int i = 0; i < 2; ++i) SetVarFromText(VARS[i], Arg(ID, i), 0);
  Device().ScheduleSetConfigParam(DCP_DR_PRE, static_cast<int>(GetVarValue(VAR_TIF_SCAN_CHAIN_POS)));
  Device().ScheduleSetConfigParam(DCP_IR_PRE, static_cast<int>(GetVarValue(VAR_TIF_SCAN_CHAIN_LEN)));
  Device().ScheduleSetConfigParam(DCP_MULTIPLE_TARGETS, GetVarValue(VAR_TIF_SCAN_CHAIN_LEN) != 0);
}

// A rule for finding files: what is shown may be found elsewhere, or at all, from now on.
template <U32 ID, auto Add>
void AddFindRule(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ID)) return;
  if constexpr (std::is_invocable_v<decltype(Add), CFileFinder*, QString, QString>) {
    (CFileFinder::Get()->*Add)(Arg(ID, 0), Arg(ID, 1));
  } else {
    (CFileFinder::Get()->*Add)(Arg(ID, 0));
  }
  Context.Window.Source().ResolveDocuments();
  if (auto* const pFiles = Context.Window.findChild<CSourceFilesWindow*>()) pFiles->InvalidateFilePaths();
}

void SetBPType(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_SET_BP_TYPE;
  if (!CheckActionArgs(ID)) return;
  const SYS_VAR* const pVar = GetVarInfo(VAR_BREAKPOINT_TYPE);
  bool bOk = false;
  const U32 Value = ParseVarValue(pVar, Arg(ID, 0), &bOk);
  if (!bOk) return Fail(ID, ActionError::INVALID_PARAMETER);
  SetVarValue(pVar, Value, 0);
}

template <U32 ID, U32 VAR>
void SetTraceVar(COMMAND_CONTEXT&) {
  SetActionResult(ID, RESULT_FAILED);
  if (!CheckActionArgs(ID)) return;
  const VAR_EDIT Edit = EditSysVar(GetVarName(VAR), Arg(ID, 0));
  if (!Edit.sError.isEmpty()) return SetActionError(ID, Edit.sError, Edit.sDetail);
  SetActionResult(ID, 0);
}

void SetTraceTiming(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_SET_TRACE_TIMING;
  constexpr U32 VARS[] = {VAR_TRACE_PORT_DELAY_0, VAR_TRACE_PORT_DELAY_1, VAR_TRACE_PORT_DELAY_2,
                          VAR_TRACE_PORT_DELAY_3};
  if (!CheckActionArgs(ID)) return;
  std::array<int, std::size(VARS)> Delays;
  for (size_t i = 0; i < Delays.size(); ++i) {
    bool bOk = false;
    const int Delay = Arg(ID, static_cast<int>(i)).toInt(&bOk);
    if (!bOk) return Fail(ID, ActionError::INVALID_PARAMETER);
    Delays[i] = static_cast<int>(std::floor(static_cast<double>(Delay) / TIMING_STEP_PS)) * TIMING_STEP_PS;
  }
  for (size_t i = 0; i < Delays.size(); ++i) SetVarValue(GetVarInfo(VARS[i]), static_cast<U32>(Delays[i]), 0);
}

void RelocateSymbols(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_PROJ_RELOCATE_SYMBOLS;
  if (!CheckActionArgs(ID)) return;
  bool bOk = false;
  const qint64 Offset = Arg(ID, 1).toLongLong(&bOk, 0);
  if (!bOk || Offset < INT32_MIN || Offset > UINT32_MAX) return Fail(ID, ActionError::INVALID_PARAMETER, Arg(ID, 1));
  if (ELFAPI_AddRelocation(Arg(ID, 0), static_cast<I32>(Offset)) < 0)
    return Fail(ID, ActionError::INVALID_PARAMETER, Arg(ID, 0));
  if (ELFAPI_IsLoaded()) {
    // The lines that have breakpoints are elsewhere now.
    CBreakpointManager::Get().BackupState();
    CBreakpointManager::Get().RestoreState();
  }
  Context.Session.EvalBreakSymbol();
  Context.Window.RefreshWindows();
}

void SetConsoleLogFile(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_PROJ_SET_CONSOLE_LOG_FILE;
  if (!CheckActionArgs(ID)) return;
  const QString sPath = OutputPath(Arg(ID, 0));
  // What was printed until now belongs to the file of until now.
  Context.Window.Console().DrainAll();
  if (OpenLogFile(LOG_FILE_CONSOLE, sPath.toUtf8().constData()) < 0)
    SetPathError(ID, ActionError::INVALID_FILENAME, Arg(ID, 0));
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_SET_DEVICE, SetDevice},
    {ACTION_SET_VNODE_SCRIPT, SetVNodeScript},
    {ACTION_SET_VNODE_LOG_FILE, SetVNodeLogFile},
    {ACTION_PROJ_ADD_SVD_FILE, AddSvdFile},
    {ACTION_SET_HOST_INTERFACE, SetHostIF},
    {ACTION_SET_TARGET_INTERFACE, SetTargetIF},
    {ACTION_SET_TIF_SPEED, SetTIFSpeed},
    {ACTION_SET_JTAG_CONFIG, SetJTAGConfig},
    {ACTION_PROJ_ADD_ROOT_PATH, AddFindRule<ACTION_PROJ_ADD_ROOT_PATH, &CFileFinder::AddRootPath>},
    {ACTION_PROJ_ADD_SEARCH_PATH, AddFindRule<ACTION_PROJ_ADD_SEARCH_PATH, &CFileFinder::AddSearchPath>},
    {ACTION_PROJ_ADD_FILE_ALIAS, AddFindRule<ACTION_PROJ_ADD_FILE_ALIAS, &CFileFinder::AddFileAlias>},
    {ACTION_PROJ_ADD_PATH_SUBSTITUTE, AddFindRule<ACTION_PROJ_ADD_PATH_SUBSTITUTE, &CFileFinder::AddPathSubstitute>},
    {ACTION_PROJ_SET_BP_TYPE, SetBPType},
    {ACTION_PROJ_SET_TRACE_SOURCE, SetTraceVar<ACTION_PROJ_SET_TRACE_SOURCE, VAR_TRACE_SOURCE>},
    {ACTION_PROJ_SET_TRACE_PORT_WIDTH, SetTraceVar<ACTION_PROJ_SET_TRACE_PORT_WIDTH, VAR_TRACE_PORT_WIDTH>},
    {ACTION_PROJ_SET_TRACE_TIMING, SetTraceTiming},
    {ACTION_PROJ_RELOCATE_SYMBOLS, RelocateSymbols},
    {ACTION_PROJ_SET_CONSOLE_LOG_FILE, SetConsoleLogFile},
};

}  // namespace

void RegisterProjectCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
