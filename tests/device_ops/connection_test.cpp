#include "device_fixture.h"

namespace {

using CConnectionTest = CDeviceOpsTest;

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

TEST_F(CConnectionTest, EachFailureHasItsText) {
  const struct {
    const char* sFailing;  // library function
    int ConnectMode, UseSerialNo;
    const char* sText;
    bool bClosed;
  } aCase[] = {
      {"SelectUSB", HOST_IF_USB, 0, "Connect: serial number not found on usb", false},
      {"EMU_SelectByUSBSN", HOST_IF_USB, 1, "Connect: serial number not found on usb", false},
      {"SelectIP", HOST_IF_IP, 0, "Connect: error during configuration of IP interface", false},
      {"", 3, 0, "Connect: unknown host interface", false},
      {"Open", HOST_IF_USB, 0, "Open: VNODE API call failed with error message: cable unplugged", false},
      {"Connect", HOST_IF_USB, 0, "Connect: VNODE API call failed", true},
  };
  Ops.Configurator.SetConfigParam(DCP_USB_SERIAL_NO, 77);
  for (const auto& Case : aCase) {
    Forget();
    Probe.Failing = {{Case.sFailing, 0}};
    Ops.Configurator.SetConfigParam(DCP_CONNECT_MODE, Case.ConnectMode);
    Ops.Configurator.SetConfigParam(DCP_USE_SERIAL_NO, Case.UseSerialNo);
    EXPECT_EQ(Ops.Connection.Connect(CM_ATTACH), -1) << Case.sText;
    EXPECT_EQ(Sink.Logs.value(Sink.Logs.size() - 1), Case.sText);
    EXPECT_EQ(Probe.Count("Close") > 0, Case.bClosed) << Case.sText;
    EXPECT_FALSE(Ctx.IsConnected());
  }
}

TEST_F(CConnectionTest, SecondTryDecides) {
  static int s_NumTries;
  s_NumTries = 0;
  Ctx.Api.VNODEARM_Connect = [] { return ++s_NumTries == 2 ? 0 : -1; };
  Ctx.Api.VNODEARM_IsConnected = [] { return U8{1}; };
  EXPECT_EQ(Ops.Connection.Connect(CM_ATTACH), 0);
  EXPECT_EQ(s_NumTries, 2);
  EXPECT_TRUE(HasLog("Connecting to target..."));
}

TEST_F(CConnectionTest, NoDeviceHidesTheSelectionDialog) {
  Ops.Configurator.SetConfigParam(DCP_DEVICE_NAME, "");
  Ops.Connection.ConnectSimple();
  EXPECT_EQ(Probe.CallText({"ExecCommand"}), "ExecCommand HideDeviceSelection=1, ExecCommand device=");
}

TEST_F(CConnectionTest, DisconnectClearsTheLibraryAndKeepsTheList) {
  Connect();
  Ops.Breakpoints.SetBreakpoint(0x8000200, BP_STATE_ENABLED, BP_TYPE_ANY);
  Forget();
  EXPECT_EQ(Ops.Connection.Disconnect(), 0);
  EXPECT_EQ(Probe.CallText(), "ClrBPEx ffffffff, ClrDataEvent ffffffff, Close");
  EXPECT_EQ(Ctx.Breakpoints.Count(), 1);
  EXPECT_EQ(Ops.Connection.Disconnect(), 0);
  EXPECT_EQ(Probe.Count("Close"), 1) << "a second disconnect has nothing to do";
  Connect();
  ASSERT_EQ(Probe.BPs.size(), 1u);
  EXPECT_EQ(Probe.BPs[0].Addr, 0x8000200u);
}

TEST_F(CConnectionTest, LossIsReportedOnceAndLeavesBreakpointsAlone) {
  Connect();
  Probe.Failing["IsHalted"] = 0;
  for (int i = 0; i < 3; ++i) {
    Now += 100;
    Ops.Halts.CheckHandleHalt();
  }
  EXPECT_EQ(Sink.TakeEvents(), "cancel; lost");
  EXPECT_EQ(Probe.Count("IsHalted"), 1) << "a lost connection is not polled";
  EXPECT_TRUE(HasLog("Invalid connection status received"));
  EXPECT_EQ(Ops.Control.Continue(), -1);
  EXPECT_TRUE(HasLog("Continue: connection lost"));
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

TEST_F(CConnectionTest, FactsOfTheDeviceAndTheLibrary) {
  Probe.Devices.resize(5, Probe.Devices[1]);
  Probe.Devices[2].Core = 0x020000FF;  // no family that is supported
  Probe.Devices[3].Core = VNODE_CORE_CORTEX_M0;
  Ops.Info.UpdateAll();
  const PROBE_FACTS Facts = Ctx.Facts.Get();
  EXPECT_EQ(Facts.SupportedCores, QList<U32>({VNODE_CORE_CORTEX_M4, VNODE_CORE_CORTEX_M0}));
  EXPECT_EQ(Facts.CoreFamily, 14u);
  EXPECT_EQ(Facts.RAMAddr, CFakeProbe::MEM_START);
  EXPECT_EQ(LibraryVersionText(61002), "6.10b");
  EXPECT_EQ(LibraryVersionText(70401), "7.04a");
}

TEST_F(CConnectionTest, UserCommands) {
  char acReply[16];
  Probe.ErrorReply["Nonsense"] = "unknown command, and a long text";
  EXPECT_EQ(Ops.Commands.ExecVNodeCmd("PowerOn", sizeof(acReply), acReply), 0);
  EXPECT_EQ(Ops.Commands.ExecVNodeCmd("Nonsense", sizeof(acReply), acReply), -1);
  EXPECT_TRUE(HasLog("Executed V-Node command \"PowerOn\""));
  EXPECT_TRUE(HasLog("Error executing V-Node command \"Nonsense\": unknown command"));
  EXPECT_EQ(Ops.Commands.ExecVNodeCmd("PowerOn", 0, acReply), -1);
}

}  // namespace
