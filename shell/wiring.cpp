#include "shell/wiring.h"

#include <QCoreApplication>
#include <QPointer>

#include "device/data_files/vfile.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_ops.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/directories.h"
#include "shell/input_gate.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "shell/register_files.h"
#include "shell/session_controller.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/vnode_commands.h"
#include "ui/status_bar.h"

namespace {

constexpr U64 SYS_VAR_REFUSED = static_cast<U64>(-1);
constexpr U32 FIRST_VERSION_WITH_PORT_WIDTH = 61402;

CDevice& Device() {
  return CDevice::Get();
}

void PlugMessages(CSessionController& Session) {
  const MessageSink Log = [](const QString& sText, U32 Flags) { LogMsg(sText, Flags); };
  ELFAPI_SetMessageSink(Log);
  CFileFinder::Get()->SetMessageSink(Log);
  VFile::CFileWorker::Get()->SetMessageSink(Log);
  PROGRESS_SINK Progress;
  Progress.Start = [](const QString& sText, int Min, int Max) {
    CStatusBar::_GetSingleton()->SetProgressMessage(sText);
    CStatusBar::_GetSingleton()->StartProgress(Min, Max);
  };
  Progress.SetValue = [](int Value) { CStatusBar::_GetSingleton()->SetProgressValue(Value); };
  Progress.End = [&Session] { Session.OnDeviceEndProgress(); };
  VFile::CFileWorker::Get()->SetProgressSink(Progress);
}

void PlugProject(CProgramLoader& Loader) {
  PROJECT_HOST Host;
  Host.IsBusy = [pLoader = QPointer(&Loader)] { return pLoader && pLoader->IsReading(); };
  Host.ResolvePath = [](const QString& sPath) { return CFileFinder::Get()->FindFile(sPath); };
  // While the device is being set, which core it has is not known.
  Host.HasCpuRegisters = [] {
    const bool bBeingSet =
        CDevice::Get().Context().Facts.Get().Core == 0 && CDevice::Get().IsJobPending(JT_SET_CONFIG_PARAM);
    return bBeingSet || CRegisterFiles::Get().HasCpuRegisters() || !CRegisterFiles::DefaultFile().isEmpty();
  };
  Host.AddSvdFile = [](const QString& sPath) { CRegisterFiles::Get().Add(CFileFinder::Get()->FindFile(sPath)); };
  Host.ClearSvdFiles = [] { CRegisterFiles::Get().Clear(); };
  Host.ResetFileFinder = [](const QString& sProjectPath) {
    CFileFinder::Get()->Clear();
    CFileFinder::Get()->SetProjectPath(sProjectPath);
  };
  Host.ClearRelocations = ELFAPI_ClearRelocations;
  Host.ClearRTTSearchRanges = [] { Device().Ops().Channels.RTT.ClearSearchRanges(); };
  Host.SetProjectPath = [](const QString& sProjectPath) { CFileFinder::Get()->SetProjectPath(sProjectPath); };
  Host.DeviceCommands = [] { return VNodeCommands(Device().Context().Config); };
  CProject::Get().SetHost(Host);
}

void PlugScript() {
  VSCRIPT_HOST Host;
  Host.FindRegister = [](const QString& sName) { return CRegisterFiles::Get().FindRegister(sName); };
  Host.ProcessEvents = CInputGate::ProcessEvents;
  Host.OnRunning = CInputGate::SetScriptRunning;
  VScript::SetHost(Host);
}

// The values that the device thread reads, kept where it may read them.
void PlugDeviceSettings() {
  static DEVICE_SETTINGS& Settings = Device().Context().Settings;
  RegisterVarAccessor(VAR_BREAKPOINT_TYPE, {[] { return Settings.BreakpointType.load(); },
                                            [](U32 Value) { Settings.BreakpointType = Value; }});
  RegisterVarAccessor(VAR_ACCESS_WIDTH,
                      {[] { return Settings.AccessWidth.load(); }, [](U32 Value) { Settings.AccessWidth = Value; }});
  RegisterVarAccessor(VAR_SEMIHOSTING_ENABLED, {[] { return static_cast<U32>(Settings.bSemihosting.load()); },
                                                [](U32 Value) { Settings.bSemihosting = Value != 0; }});
  RegisterVarAccessor(VAR_RTT_ENABLED, {[] { return static_cast<U32>(Settings.bRTT.load()); },
                                        [](U32 Value) { Settings.bRTT = Value != 0; }});
  RegisterVarAccessor(VAR_TRACE_SOURCE,
                      {[] { return Settings.TraceSource.load(); }, [](U32 Value) { Settings.TraceSource = Value; }});
  RegisterVarAccessor(VAR_TRACE_PORT_WIDTH, {[] { return Settings.TracePortWidth.load(); },
                                             [](U32 Value) { Settings.TracePortWidth = Value; }});
  static CDeviceConfig& Config = Device().Context().Config;
  const auto Register = [](U32 ID, DEV_CONFIG_PARAMS Param) {
    RegisterVarAccessor(ID, {[Param] { return static_cast<U32>(Config.Value(Param)); },
                             [Param](U32 Value) { Config.SetValue(Param, static_cast<I32>(Value)); }});
  };
  Register(VAR_TIF_SPEED, DCP_SPEED);
  Register(VAR_TIF_SCAN_CHAIN_POS, DCP_DR_PRE);
  Register(VAR_TIF_SCAN_CHAIN_LEN, DCP_IR_PRE);
}

void OnTracePortWidthChanged() {
  if (Device().Context().Facts.Get().LibraryVersion >= FIRST_VERSION_WITH_PORT_WIDTH) return;
  PrintConsoleError(
      QStringLiteral("Configuration of the trace port width is not supported by this version of the V-Node library. "
                     "Please update to version 6.14b or later."));
  SetVarValue(GetVarInfo(VAR_TRACE_PORT_WIDTH), GetVarDefault(VAR_TRACE_PORT_WIDTH), 0);
}

void OnSysVarChanged(CSessionController& Session, U32 ID, U32 Value) {
  switch (ID) {
    case VAR_RESET_MODE:
    case VAR_CONNECT_MODE:
      if (CMainWindow::Get()) CMainWindow::Get()->UpdateModeButtons();
      break;
    case VAR_TIF_SPEED:
      Device().ScheduleSetConfigParam(DCP_SPEED, static_cast<int>(Value));
      break;
    case VAR_TRACE_PORT_WIDTH:
      OnTracePortWidthChanged();
      break;
    case VAR_BREAK_AT_THIS_SYMBOL:
      if (!Session.EvalBreakSymbol() && ELFAPI_IsLoaded()) {
        SetActionError(ACTION_EDIT_SYS_VAR, QLatin1String(ActionError::UNKNOWN_SYMBOL));
        SetActionResult(ACTION_EDIT_SYS_VAR, SYS_VAR_REFUSED);
      }
      break;
    default:
      break;
  }
}

}  // namespace

void PlugLayersTogether(CSessionController& Session, CProgramLoader& Loader) {
  PlugMessages(Session);
  PlugProject(Loader);
  PlugScript();
  PlugDeviceSettings();
  AddSysVarListener([&Session](U32 ID, U32 Value) { OnSysVarChanged(Session, ID, Value); });
  AddPreferenceListener([](U32 ID, U32 Value) {
    if (CMainWindow::Get() == nullptr) return;
    for (CWindow* const pWindow : CMainWindow::Get()->GetWindowList()) {
      pWindow->SetPreference(static_cast<int>(ID), static_cast<int>(Value));
      pWindow->Repaint();
    }
  });
  SetColorListener([](U32 ID, U32) {
    if (CMainWindow::Get()) CMainWindow::Get()->ApplyColor(ID);
  });
  QObject::connect(&Session, &CSessionController::DeviceChanged, &Session, [] {
    const QString sFile = CRegisterFiles::DefaultFile();
    if (sFile.isEmpty()) return;
    CProject::Get().SetSvdFileOfDevice(sFile, CDevice::Get().IsJobPending(JT_SET_CONFIG_PARAM));
  });
}

void ApplyFontsTo(CWindow& Window) {
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) Window.SetFont(static_cast<int>(ID), GetFont(ID));
}

void ApplyPreferencesTo(CWindow& Window) {
  for (U32 ID = FIRST_PREFERENCE; ID < NUM_VARS; ++ID)
    Window.SetPreference(static_cast<int>(ID), static_cast<int>(GetVarValue(ID)));
}
