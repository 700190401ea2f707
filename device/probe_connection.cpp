#include "device/probe_connection.h"

namespace {

constexpr U32 LOG_PROBE_INFO = MSG_SRC_PROBE | MSG_TO_ALL | MSG_INFO;
constexpr U32 LOG_PROBE_WARN = MSG_SRC_PROBE | MSG_TO_ALL | MSG_WARNING;
constexpr U32 LOG_PROBE_ERROR = MSG_SRC_PROBE | MSG_TO_ALL | MSG_ERROR;
constexpr int SELECT_IP_FAILED = 1;
constexpr int ALL_BREAKPOINTS = -1;
constexpr U32 ALL_DATA_EVENTS = 0xFFFFFFFFu;
constexpr U32 ALL_PORTS = 0xFFFFFFFFu;  // port mask of the stimulus channels

// The library's callbacks carry no context: the one connection's sink, null when there is none. They may come on any
// of the library's threads.
std::atomic<DEVICE_EVENT_SINK*> s_pTextSink{nullptr};

template <U32 FLAGS>
void OnLibraryText(const char* sText) {
  DEVICE_EVENT_SINK* pSink = s_pTextSink;
  if (pSink != nullptr && sText != nullptr) pSink->Log(QString::fromUtf8(sText).trimmed(), FLAGS);
}

}  // namespace

CProbeConnection::~CProbeConnection() {
  DEVICE_EVENT_SINK* pOwn = &Ctx.Sink;
  s_pTextSink.compare_exchange_strong(pOwn, nullptr);
}

void CProbeConnection::InstallTextCallbacks() {
  s_pTextSink = &Ctx.Sink;
  Ctx.Api.VNODEARM_EnableLog(&OnLibraryText<LOG_PROBE_INFO>);
  Ctx.Api.VNODEARM_SetErrorOutHandler(&OnLibraryText<LOG_PROBE_ERROR>);
  Ctx.Api.VNODEARM_SetWarnOutHandler(&OnLibraryText<LOG_PROBE_WARN>);
}

int CProbeConnection::Fail(const QString& sText, bool bClose) {
  Ctx.LogErrorMsg(sText);
  if (bClose) Ctx.Api.VNODEARM_Close();
  return -1;
}

int CProbeConnection::SelectHostIF() {
  switch (Ctx.Config.Value(DCP_CONNECT_MODE)) {
    case HOST_IF_IP:
      if (Ctx.Api.VNODEARM_SelectIP(Ctx.Config.Text(DCP_HOST_NAME).constData(), 0) != SELECT_IP_FAILED) return 0;
      return Fail(QStringLiteral("Connect: error during configuration of IP interface"), false);
    case HOST_IF_USB: {
      const U32 SerialNo = static_cast<U32>(Ctx.Config.Value(DCP_USB_SERIAL_NO));
      const bool bBySerialNo = Ctx.Config.Value(DCP_USE_SERIAL_NO) > 0 && SerialNo > 0;
      const int Result = bBySerialNo ? Ctx.Api.VNODEARM_EMU_SelectByUSBSN(SerialNo) : Ctx.Api.VNODEARM_SelectUSB(0);
      if (Result >= 0) return 0;
      return Fail(QStringLiteral("Connect: serial number not found on usb"), false);
    }
    default:
      return Fail(QStringLiteral("Connect: unknown host interface"), false);
  }
}

int CProbeConnection::ConfigureHardware() {
  Ctx.LogDebugMsg(QStringLiteral("Configuring hardware..."));
  QByteArray sReply;
  if (Commands.SelectDevice(Ctx.Config.Text(DCP_DEVICE_NAME), sReply) < 0) {
    Ctx.LogWarnMsg(QString::fromUtf8(sReply));
    return Fail(QStringLiteral("Connect: could not configure V-Node"), true);
  }
  const CDeviceConfig& Config = Ctx.Config;
  Ctx.Api.VNODEARM_SetEndian(Config.Value(DCP_ENDIAN));
  Ctx.Api.VNODEARM_SetCoreIndex(static_cast<U32>(Config.Value(DCP_CORE_INDEX)));
  Ctx.Api.VNODEARM_TIF_Select(Config.Value(DCP_TARGET_IF));
  if (Config.Value(DCP_MULTIPLE_TARGETS) > 0) {
    Ctx.Api.VNODEARM_ConfigJTAG(Config.Value(DCP_IR_PRE), Config.Value(DCP_DR_PRE));
  }
  Ctx.Api.VNODEARM_SetSpeed(Config.SpeedForProbe());
  return 0;
}

bool CProbeConnection::ConnectTarget() {
  const auto Try = [this] { return Ctx.Api.VNODEARM_Connect() == 0 && Ctx.Api.VNODEARM_IsConnected() != 0; };
  if (Try()) return true;
  Ctx.LogDebugMsg(QStringLiteral("Connecting to target..."));
  return Try();
}

int CProbeConnection::ConnectSimple() {
  Target.ResetState();
  if (SelectHostIF() < 0) return -1;
  InstallTextCallbacks();
  Ctx.LogDebugMsg(QStringLiteral("Opening connection to V-Node..."));
  if (const char* sError = Ctx.Api.VNODEARM_Open()) {
    return Fail(QStringLiteral("Open: VNODE API call failed with error message: %1").arg(QString::fromUtf8(sError)),
                false);
  }
  if (Ctx.Config.Value(DCP_DEVICE_INDEX) < 0) Commands.SetSuppressDeviceSelectionDialog(true);
  Info.UpdateVNodeSerialNo();
  Info.UpdateVNodeFirmwareStr();
  Info.UpdateVNodeNumDevices();
  Info.UpdateVNodeFuncPtrs();
  Info.UpdateVNodeWebserverURL();
  const QByteArray sScript = Ctx.Config.Text(DCP_SCRIPT_FILE);
  if (!sScript.isEmpty()) Commands.ExecVNodeScript(sScript.constData());
  if (ConfigureHardware() < 0) return -1;
  if (!ConnectTarget()) return Fail(QStringLiteral("Connect: VNODE API call failed"), true);
  Ctx.State.Connection.bConnected = true;
  Capabilities.UpdateTIFSpeed();
  Capabilities.UpdateHWCapabilityFlags();
  Capabilities.UpdateEndianess();
  // Whether the target is halted is settled by the first poll.
  Ctx.State.LastHaltPoll = 0;
  Ctx.State.Exec.bRunning = true;
  return 0;
}

void CProbeConnection::FinishConnect(CONNECT_MODES Mode) {
  const bool bOpen = Ctx.Api.VNODEARM_IsOpen() != 0;
  // In one step, so that nobody sees a working connection break off.
  Ctx.State.Connection.bConnected = bOpen && Ctx.Api.VNODEARM_IsConnected() != 0;
  Ctx.State.Connection.bConnectionLost = false;
  Ctx.State.Exec.bStepping = false;
  if (!bOpen) return;
  if (Mode == CM_ATTACH || Mode == CM_ATTACH_HALT) Ctx.State.Exec.bSessionReady = true;
  if (Mode == CM_DOWNLOAD_RESET) Ctx.State.Exec.bSessionReady = false;
  Ctx.Api.VNODEARM_EnableSoftBPs(1);
  Breakpoints.Reapply();
  if (Ctx.pChannels != nullptr) Ctx.pChannels->ReapplyWatchpoints();
}

int CProbeConnection::Connect(CONNECT_MODES Mode) {
  if (Mode == CM_BARE) return ConnectSimple();
  Disconnect();
  if (ConnectSimple() < 0) return -1;
  FinishConnect(Mode);
  return Ctx.IsConnected() ? 0 : -1;
}

void CProbeConnection::StopChannels() {
  if (Ctx.pChannels == nullptr) return;
  Ctx.pChannels->StopRTT();
  Ctx.pChannels->StopHSS();
  Ctx.pChannels->StopSWOTrace(ALL_PORTS);
  Ctx.pChannels->StopSimpleInstTrace();
}

int CProbeConnection::Disconnect() {
  if (!Ctx.IsConnected()) return 0;
  StopChannels();
  if (!Ctx.IsConnectionLost()) {
    Ctx.Api.VNODEARM_ClrBPEx(ALL_BREAKPOINTS);
    Ctx.Api.VNODEARM_ClrDataEvent(ALL_DATA_EVENTS);
  }
  Breakpoints.ForgetHiddenBreakpoint();
  Target.ResetState();
  Ctx.Api.VNODEARM_Close();
  return 0;
}
