#include "device_fixture.h"

namespace {

using CConnectionTest = CDeviceOpsTest;

// Channels that note down in the probe's log when they are told to stop.
struct CFakeChannels : IDeviceChannels {
  CFakeProbe& Probe;
  explicit CFakeChannels(CFakeProbe& Probe) : Probe(Probe) {}
  void ReapplyWatchpoints() override { Probe.Note("data breakpoints"); }
  void StopRTT() override { Probe.Note("stop RTT"); }
  void StopHSS() override { Probe.Note("stop HSS"); }
  void StopSWOTrace(U32 PortMask) override { Probe.Note(QString::asprintf("stop SWO %x", PortMask).toStdString()); }
  void StopSimpleInstTrace() override { Probe.Note("stop trace"); }
};

TEST_F(CConnectionTest, ConfiguresBeforeItConnectsAndBreaksAfterwards) {
  Ops.Breakpoints.SetBreakpoint(0x8000200, BP_STATE_ENABLED, BP_TYPE_HARD);
  Ops.Breakpoints.SetBreakpoint(0x8000300, BP_STATE_DISABLED, BP_TYPE_ANY);
  Ops.Configurator.SetConfigParam(DCP_SPEED, 2000000);
  Ops.Configurator.SetConfigParam(DCP_MULTIPLE_TARGETS, 1);
  Ops.Configurator.SetConfigParam(DCP_IR_PRE, 4);
  Ops.Configurator.SetConfigParam(DCP_DR_PRE, 1);
  Ops.Configurator.SetConfigParam(DCP_SCRIPT_FILE, "init.script");
  EXPECT_TRUE(Probe.Calls.empty()) << "nothing reaches the probe before a connect";
  ASSERT_EQ(Ops.Connection.Connect(CM_ATTACH), 0);
  EXPECT_EQ(Probe.CallText(),
            "SelectUSB, EnableLog, Open, ExecCommand ScriptFile=init.script, ExecCommand device=Test MCU, SetEndian 0, "
            "SetCoreIndex 0, TIF_Select 1, ConfigJTAG 4 1, SetSpeed 7d0, Connect, EnableSoftBPs 1, "
            "SetBPEx 8000200 ffffff02");
  EXPECT_TRUE(Ctx.State.Exec.bRunning);
  EXPECT_EQ(Ctx.State.TIFSpeed, 4000000u);
  EXPECT_EQ(Ctx.Facts.Get().SerialNo, 1234u);
  EXPECT_EQ(Ctx.Facts.Get().sFirmware, "V-Node rev 3");
}

TEST_F(CConnectionTest, ModesDecideWhatIsCompleted) {
  const char sOpen[] =
      "SelectUSB, EnableLog, Open, ExecCommand device=Test MCU, SetEndian 0, SetCoreIndex 0, TIF_Select 1, SetSpeed 0, "
      "Connect";
  const char sFinish[] = ", EnableSoftBPs 1, SetBPEx 8000200 fffffff2, data breakpoints";
  const char sLeave[] =
      "stop RTT, stop HSS, stop SWO ffffffff, stop trace, ClrBPEx ffffffff, ClrDataEvent ffffffff, Close, ";
  const std::tuple<CONNECT_MODES, std::string, bool> aCase[] = {
      // and whether the session is ready
      {CM_DOWNLOAD_RESET, sOpen + std::string(sFinish), false},
      {CM_ATTACH, sLeave + std::string(sOpen) + sFinish, true},  // leaves the former connection
      {CM_ATTACH_HALT, sLeave + std::string(sOpen) + sFinish, true},
      {CM_BARE, sOpen, false},
  };
  CFakeChannels Channels(Probe);
  Ctx.pChannels = &Channels;
  Ops.Breakpoints.SetBreakpoint(0x8000200, BP_STATE_ENABLED, BP_TYPE_ANY);
  for (const auto& [Mode, sCalls, bReady] : aCase) {
    if (Mode == CM_BARE) Ops.Connection.Disconnect();
    Forget();
    EXPECT_EQ(Ops.Connection.Connect(Mode), 0);
    EXPECT_EQ(Probe.CallText(), sCalls) << Mode;
    EXPECT_EQ(Ctx.State.Exec.bSessionReady, bReady) << Mode;
    EXPECT_TRUE(Ctx.IsConnected() && Ctx.State.Exec.bRunning);
  }
  // What completes a bare connection, between two jobs.
  for (const bool bOpen : {true, false}) {
    Probe.bOpen = bOpen;
    Ctx.State.Requests.PendingConnectMode = CM_ATTACH;
    Forget();
    Ops.CheckHandleNotifications();
    EXPECT_EQ(Probe.CallText(), bOpen ? sFinish + 2 : "");
    EXPECT_EQ(Sink.TakeEvents(), bOpen ? "JT_CONNECT 0 1 0" : "JT_CONNECT 1 1 0");
  }
  for (const CONNECT_MODES Mode : {CM_DOWNLOAD_RESET, CM_ATTACH}) {
    ASSERT_EQ(Ops.Connection.Connect(CM_BARE), 0);
    Forget();
    HaltAt(0x8000100);
    EXPECT_EQ(Sink.TakeEvents(), "");
    Ctx.State.Requests.PendingConnectMode = Mode;
    Ops.CheckHandleNotifications();
    EXPECT_EQ(Sink.TakeEvents(),
              Mode == CM_ATTACH ? "JT_CONNECT 0 1 8000100; JT_HALT 0 0 8000100" : "JT_CONNECT 0 0 8000100");
  }
  Ctx.pChannels = nullptr;
}

TEST_F(CConnectionTest, ARefusedDeviceEndsItAndARefusedScriptDoesNot) {
  Probe.ErrorReply = {{"device=Test MCU", "no such part"}, {"ScriptFile=x", "no such file"}};
  Ops.Configurator.SetConfigParam(DCP_SCRIPT_FILE, "x");
  EXPECT_EQ(Ops.Connection.Connect(CM_ATTACH), -1);
  EXPECT_EQ(Sink.TakeLogs(),
            "Opening connection to V-Node...; Executing V-Node Script; V-Node script \"x\" failed: no such file; "
            "Configuring hardware...; no such part; Connect: could not configure V-Node");
  EXPECT_EQ(Probe.Count("Close"), 1);
}

TEST_F(CConnectionTest, LossIsReportedOnceAndLeavesBreakpointsAlone) {
  Connect();
  Probe.Failing["IsHalted"] = 0;
  for (int i = 0; i < 3; ++i, Now += 100) Ops.Halts.CheckHandleHalt();
  EXPECT_EQ(Sink.TakeEvents(), "cancel; lost");
  EXPECT_EQ(Probe.Count("IsHalted"), 1) << "a lost connection is not polled";
  Forget();
  Ops.Connection.Disconnect();
  EXPECT_EQ(Probe.CallText(), "Close");
  EXPECT_FALSE(Ctx.IsConnectionLost());
}

TEST_F(CConnectionTest, LibraryTextsComeThroughTrimmedWithTheirLevel) {
  Connect();
  ASSERT_NE(Probe.pfError, nullptr);
  Probe.pfError("supply voltage too low\r\n");
  EXPECT_EQ(Sink.TakeLogs(), "supply voltage too low");
  EXPECT_EQ(Sink.LastLogFlags, 0x244u);
}

TEST_F(CConnectionTest, OptionalFunctionsDecide) {
  Probe.HasBMA = 0;
  Probe.Version = 60000;
  Probe.Endianness = 3;
  Ops.Info.UpdateAll();
  ASSERT_EQ(Ops.Connection.Connect(CM_ATTACH), 0);
  EXPECT_FALSE(Ctx.State.aCapability[HW_CAP_BMA]);
  EXPECT_FALSE(Ctx.State.aCapability[HW_CAP_STREAMING_TRACE]);
  EXPECT_EQ(Ctx.State.DataEndian, 1u);
  EXPECT_EQ(Ctx.State.InstEndian, 1u);
  EXPECT_EQ(Sink.TakeEvents(), "capability 0 0; capability 2 0; endian 0 0");

  Probe.OptionalFuncs.clear();
  Probe.Version = 62200;
  Ops.Info.UpdateAll();
  ASSERT_EQ(Ops.Connection.Connect(CM_ATTACH), 0);
  EXPECT_TRUE(Ctx.State.aCapability[HW_CAP_BMA]);
  EXPECT_EQ(Ctx.State.DataEndian, 0u) << "as configured";
}

TEST_F(CConnectionTest, SWOCapabilityAndItsReasons) {
  const std::tuple<U32, int, bool, const char*> aCase[] = {
      // core, interface, the probe's capability, reason
      {VNODE_CORE_CORTEX_M3, VNODE_TIF_SWD, true, ""},
      {0x0C0000FF, VNODE_TIF_SWD, true, "SWO trace: not a Cortex-M target device"},
      {VNODE_CORE_CORTEX_M4, VNODE_TIF_JTAG, true, "SWO trace: target interface not set to SWD"},
      {VNODE_CORE_CORTEX_M0, VNODE_TIF_SWD, false, "V-Node emulator does not support SWO."},
  };
  for (const auto& [Core, TargetIF, bProbe, sText] : aCase) {
    Probe.Devices[1].Core = Core;
    Probe.Capabilities = {bProbe ? VNODE_CAP_SWO : 0u};
    Ops.Configurator.SetConfigParam(DCP_DEVICE_NAME, "Test MCU");
    Ops.Configurator.SetConfigParam(DCP_TARGET_IF, TargetIF);
    Ctx.SetErrorMsg(ERR_MSG_SWO, QString());
    Connect();
    EXPECT_EQ(Ctx.State.aCapability[HW_CAP_SWO], sText[0] == 0);
    EXPECT_EQ(Ctx.ErrorMsg(ERR_MSG_SWO).toStdString(), sText);
  }
}

TEST_F(CConnectionTest, SpeedsOfTheSWOPin) {
  std::array<U32, 3> aSpeed = {7, 7, 7};
  const auto Read = [&] { return Ops.Capabilities.ReadSWOSpeeds(48000000, aSpeed.size(), aSpeed.data()); };
  EXPECT_EQ(Read(), -1);
  EXPECT_EQ(Sink.TakeLogs(), "GetSWOSpeeds: not connected");
  Connect();
  Probe.SWOSpeeds = {4000, 2000};
  EXPECT_EQ(Read(), 2);
  EXPECT_EQ(aSpeed, (std::array<U32, 3>{4000, 2000, 0})) << "the unused end is zero";
  Probe.SWOSpeeds = {5000, 4000, 3000, 2000, 1000};
  EXPECT_EQ(Read(), 3);
}

TEST_F(CConnectionTest, FactsOfTheDeviceAndTheLibrary) {
  Probe.Devices.resize(5, Probe.Devices[1]);
  Probe.Devices[2].Core = 0x020000FF;  // no family that is supported
  Probe.Devices[3].Core = VNODE_CORE_CORTEX_M0;
  Ops.Info.UpdateAll();
  const PROBE_FACTS Facts = Ctx.Facts.Get();
  EXPECT_EQ(Facts.SupportedCores, QList<U32>({VNODE_CORE_CORTEX_M4, VNODE_CORE_CORTEX_M0}));
  EXPECT_EQ(Facts.CoreFamily, 14u);
  EXPECT_EQ(Facts.RAMAddr, CFakeProbe::MEM_START);
  Probe.Devices.resize(1030, Probe.Devices[1]);
  for (U32 i = 0; i < 1030; ++i) Probe.Devices[i].Core = VNODE_CORE_CORTEX_M4 + (i << 8);
  Ops.Info.UpdateAll();
  EXPECT_EQ(Ctx.Facts.Get().SupportedCores.size(), 1024);
  EXPECT_EQ(Sink.TakeLogs(), "Internal error. supported cores list has insufficent size.");
  EXPECT_EQ(LibraryVersionText(61002), "6.10b");
  EXPECT_EQ(LibraryVersionText(70401), "7.04a");
}

}  // namespace
