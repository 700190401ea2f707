// Terminal and sampling channels, from their jobs down to the probe library's calls.

#include "device/job_dispatch.h"
#include "device_fixture.h"

namespace {

class CChannelsTest : public CDeviceOpsTest {
public:
  using CDeviceOpsTest::Ctx;
  using CDeviceOpsTest::Ops;
  using CDeviceOpsTest::Probe;
  void SetUp() override {
    CDeviceOpsTest::SetUp();
    Ctx.Settings.bRTT = true;
    Ctx.Config.SetValue(DCP_TARGET_IF, VNODE_TIF_SWD);
    Probe.SWOSpeeds = {4'000'000, 2'000'000};
  }
  // Result of a job with D0 of a size; Cnt is what it counted.
  int Do(U32 Type, std::initializer_list<U64> Params = {}, U64 DynSize = 0) {
    DEVICE_JOB Job;
    Job.Type = Type;
    std::copy(Params.begin(), Params.end(), Job.Param);
    if (DynSize > 0) AllocDynParam(Job, 0, DynSize);
    const int Result = Dispatch.Dispatch(Job);
    Cnt = Type == JT_WRITE_RTT ? Job.Result2 : Job.Result;
    FreeDynParams(Job);
    return Result;
  }
  int StartHss(std::vector<U32> Ranges) {
    return Ops.Channels.HSS.Start(static_cast<U32>(Ranges.size() / 2), Ranges.data(), -1, 1);
  }

  CJobDispatch Dispatch{Ops, [](DEVICE_JOB&) { return true; }};
  U64 Cnt = 0;
};

}  // namespace

TEST_F(CChannelsTest, StartMoveAndStopWithTheConnection) {
  Connect();
  Ctx.State.CoreSpeed = 64'000'000;
  ASSERT_TRUE(Ops.Channels.RTT.AddSearchRange(0x20000000, 0x1000) && Ops.Channels.RTT.AddSearchRange(0x24000000, 16));
  Ops.Configurator.SetConfigParam(DCP_RTT_ADDR, 0x20000040);
  Forget();
  EXPECT_EQ(Do(JT_START_RTT), 0);
  EXPECT_EQ(Do(JT_READ_RTT, {0, 4000}, 4000), 0);
  EXPECT_EQ(Cnt, 5u);
  EXPECT_EQ(Do(JT_WRITE_RTT, {0, 5}, 5), 0);
  EXPECT_EQ(Do(JT_WRITE_RTT, {0, 7}, 7), -1);  // the target's buffer is full
  EXPECT_EQ(Cnt, 5u);
  EXPECT_EQ(Do(JT_START_SWO_TRACE, {0, 0, 1}), 0);
  EXPECT_EQ(Do(JT_READ_SWO_TRACE, {0, 4000}, 4000), 0);
  EXPECT_EQ(Cnt, 5u);
  EXPECT_EQ(StartHss({0x20000000, 0x20000004, 0x20000010, 0x20000018}), 0);
  EXPECT_EQ(Do(JT_READ_HSS, {250'000}, 250'000), 0);
  EXPECT_EQ(Probe.CallText(),
            "ExecCommand SetRTTSearchRanges 0x20000000 0x1000, 0x24000000 0x10, ExecCommand SetRTTAddr 0x20000040, "
            "RTT_Control 0, RTT_Read 0 fa0, RTT_Write 0 5, RTT_Write 0 7, "
            "SWO_DisableTarget ffffffff, SWO_Control 2, SWO_GetCompatibleSpeeds 3d09000, "
            "SWO_EnableTarget 64000000 4000000 0 1, SWO_ReadStimulus 0 fa0, SWO_Control 2 *, "
            "HSS_Start 2 last 20000010+8 every 0 1, HSS_Read 0 3d090");
  Forget();
  Ops.Connection.Disconnect();
  EXPECT_EQ(Probe.CallText({"RTT_Control", "HSS_Stop", "SWO_DisableTarget"}),
            "RTT_Control 1, HSS_Stop, SWO_DisableTarget ffffffff");
  EXPECT_EQ(Do(JT_READ_HSS, {10}, 10), -1);
  EXPECT_EQ(Do(JT_READ_RTT, {0, 10}, 10), -1);
  Connect();
  Ops.Connection.Disconnect();  // nothing was started on this connection
  EXPECT_EQ(Probe.CallText({"RTT_Control", "HSS_Stop", "SWO_DisableTarget"}), "");
}

// Each with what has to be in the way, and what the log says.
TEST_F(CChannelsTest, RefusedInTheirOrder) {
  enum STATE { OFF, CONNECTED, STARTED };
  using THIS = CChannelsTest;
  const auto Read = [](U32 Type, U64 Bytes) { return [=](THIS& T) { return T.Do(Type, {0, Bytes}, Bytes + 1); }; };
  const auto Start = [](THIS& T) { return T.Do(JT_START_SWO_TRACE, {0, 0, 1}); };
  const auto Nothing = [](THIS&) {};
  const auto Hss = [](const std::vector<U32>& Ranges) { return [=](THIS& T) { return T.StartHss(Ranges); }; };
  const auto Fail = [](const char* sCall) { return [=](THIS& T) { T.Probe.Failing[sCall] = 0; }; };
  const std::tuple<STATE, std::function<void(THIS&)>, std::function<int(THIS&)>, const char*> aCase[] = {
      {OFF, Nothing, [](THIS& T) { return T.Do(JT_START_RTT); }, "StartRTT: Not connected"},
      {OFF, Nothing, [](THIS& T) { return T.Do(JT_STOP_RTT); }, "StopRTT: Not connected"},
      {OFF, Nothing, Read(JT_READ_RTT, 1'000'000), "ReadRTT: invalid transfer size: 1000000"},
      {STARTED, [](THIS& T) { T.Ctx.Settings.bRTT = false; }, Read(JT_READ_RTT, 9), "ReadRTT: not enabled"},
      {CONNECTED, Nothing, Read(JT_READ_RTT, 9), "ReadRTT: not started"},
      {STARTED, Fail("RTT_Read"), Read(JT_READ_RTT, 9), "ReadRTT: VNODE API call failed"},
      {OFF, Nothing, Read(JT_WRITE_RTT, 9), "WriteRTT: Not connected"},
      {CONNECTED, Nothing, Read(JT_WRITE_RTT, 9), "WriteReadRTT: not started"},
      {CONNECTED, Fail("RTT_Control"), [](THIS& T) { return T.Do(JT_START_RTT); },
       "Starting RTT; StartRTT: VNODE API call failed: -1"},
      {CONNECTED,
       [](THIS& T) {
         T.Ops.Channels.RTT.AddSearchRange(1, 2);
         T.Probe.ErrorReply["SetRTTSearchRanges 0x1 0x2"] = "odd";
       },
       [](THIS& T) { return T.Do(JT_START_RTT) - 1; },
       "Error executing V-Node command \"SetRTTSearchRanges 0x1 0x2\": odd; Starting RTT"},
      {OFF, Nothing, Start, "not connected"},
      {CONNECTED, [](THIS& T) { T.Ctx.Config.SetValue(DCP_TARGET_IF, VNODE_TIF_JTAG); }, Start,
       "target interface not set to SWD"},
      {CONNECTED, [](THIS& T) { T.Ctx.State.aCapability[HW_CAP_SWO] = false; }, Start, "SWO trace not supported"},
      {CONNECTED, [](THIS& T) { T.Ctx.State.Exec.bTraceEnabled = true; }, Start,
       "SWO trace cannot be used in conjunction with instruction trace"},
      {CONNECTED, [](THIS& T) { T.Ctx.State.CoreSpeed = 0; }, Start,
       "SWO trace cannot be started: invalid core frequency"},
      {CONNECTED, [](THIS& T) { T.Probe.SWOSpeeds.clear(); }, Start,
       "Could not find compatible SWO frequencies for CPU clock given."},
      {CONNECTED, Nothing, Read(JT_READ_SWO_TRACE, 4001), "ReadSWOTrace: invalid read request size"},
      {CONNECTED, Nothing, Read(JT_READ_SWO_TRACE, 9), "ReadSWOTrace: SWO trace not started"},
      {OFF, Nothing, Hss({}), "StartHSS: invalid address range input"},
      {OFF, Nothing, Hss(std::vector<U32>(1024, 0)), "StartHSS: invalid address range input"},
      {OFF, Nothing, Hss({0, 4}), "StartHSS: not connected"},
      {CONNECTED, Fail("HSS_Start"), Hss({0, 4}),
       "Starting HSS; StartHSS: Target hardware does not support high speed sampling"},
      {CONNECTED, Nothing, [](THIS& T) { return T.Do(JT_STOP_HSS); }, "StopHSS: hss data capture not active"},
      {CONNECTED, Nothing, [](THIS& T) { return T.Do(JT_READ_HSS, {9}, 9); }, "ReadHSS: not started"},
  };
  for (const auto& [State, Prepare, Refused, sLog] : aCase) {
    Ops.Connection.Disconnect();
    SetUp();
    Ctx.State.Exec.bTraceEnabled = false;
    Ops.Channels.RTT.ClearSearchRanges();
    Probe.Failing.clear();
    if (State != OFF) Connect();
    Ctx.State.CoreSpeed = 64'000'000;
    if (State == STARTED) {
      ASSERT_EQ(Do(JT_START_RTT), 0);
    }
    Prepare(*this);
    Forget();
    EXPECT_EQ(Refused(*this), -1) << sLog;
    EXPECT_EQ(Sink.TakeLogs(), sLog);
  }
}

// Each source, whether it is enabled and which call fails, with the calls and the refusal that follow.
TEST_F(CChannelsTest, InstructionTraceStartsWhereItsSourceCanAndSurvivesAsEnabled) {
  CInstTraceChannel& Trace = Ops.Channels.Trace;
  Connect();
  const std::tuple<U32, bool, const char*, const char*, const char*> aCase[] = {
      {TRACE_SOURCE_ETM, false, "", "", "instruction tracing disabled"},
      {TRACE_SOURCE_NONE, true, "", "", "instruction tracing disabled"},
      {TRACE_SOURCE_SWO, true, "", "", "instruction tracing disabled"},
      {TRACE_SOURCE_ETM, true, "", "ExecCommand SelectTraceSource=1, ExecCommand PortWidth=2, STRACE_Start", nullptr},
      {TRACE_SOURCE_ETB, true, "", "ExecCommand SelectTraceSource=2, STRACE_Start", nullptr},
      {TRACE_SOURCE_ETB, true, "STRACE_Start", "ExecCommand SelectTraceSource=2, STRACE_Start, STRACE_Stop",
       "hardware does not support tracing via trace buffer"},
      {TRACE_SOURCE_ETB, true, "", "", "hardware does not support tracing via trace buffer"},
      {TRACE_SOURCE_ETM, true, "", "ExecCommand SelectTraceSource=1, ExecCommand PortWidth=2, STRACE_Start", nullptr},
  };
  Ctx.Settings.TracePortWidth = 2;
  for (const auto& [Source, bEnabled, sFailing, sCalls, sRefusal] : aCase) {
    Trace.Stop();
    Ctx.Settings.TraceSource = Source;
    Do(bEnabled ? JT_ENABLE_SIMPLE_TRACE : JT_DISABLE_SIMPLE_TRACE);
    Probe.Failing = {{sFailing, 0}};
    Forget();
    EXPECT_EQ(Do(JT_START_SIMPLE_TRACE), sRefusal ? -1 : 0);
    EXPECT_EQ(Probe.CallText({"ExecCommand", "STRACE_Start", "STRACE_Stop"}), sCalls);
    if (sRefusal) {
      EXPECT_EQ(Ctx.ErrorMsg(ERR_MSG_TRACE), QLatin1String(sRefusal));
    }
  }
  Forget();
  EXPECT_EQ(Do(JT_START_SIMPLE_TRACE), 0);  // already
  EXPECT_EQ(Do(JT_FLUSH_STRACE_BUFFER), 0);
  Ops.Connection.Disconnect();
  EXPECT_EQ(Probe.CallText({"STRACE_Start", "STRACE_Stop"}), "STRACE_Stop, STRACE_Start, STRACE_Stop");
  EXPECT_TRUE(Ctx.State.Exec.bTraceEnabled);
  Connect();
  EXPECT_FALSE(Trace.IsStarted());
}

TEST_F(CChannelsTest, InstructionTraceIsReadFromAHaltedTargetOnceAnEpoch) {
  ConnectHalted();
  Ctx.Settings.TraceSource = TRACE_SOURCE_ETM;
  Do(JT_ENABLE_SIMPLE_TRACE);
  DEVICE_JOB Job;
  Job.Type = JT_READ_SIMPLE_TRACE;
  Job.Param[0] = 100;
  AllocDynParam(Job, 0, 400);
  const auto Read = [&] {
    Forget();
    return Dispatch.Dispatch(Job) == 0 ? std::to_string(Job.Result) + " short " + std::to_string(Job.Result2) +
                                             " epoch " + std::to_string(Job.Result3)
                                       : Ctx.ErrorMsg(ERR_MSG_TRACE).toStdString();
  };
  EXPECT_EQ(Read(), "ReadSimpleInstTrace: instruction trace not started");
  ASSERT_EQ(Do(JT_START_SIMPLE_TRACE), 0);
  Ctx.State.Exec.bTargetRan = true;
  EXPECT_EQ(Read(), "5 short 1 epoch 1");
  EXPECT_EQ(Read(), "5 short 1 epoch 0");
  Ops.Control.Continue();
  Ctx.State.Exec.bHalted = false;
  EXPECT_EQ(Read(), "ReadSimpleInstTrace :target not halted");
  Job.Param[0] = 101;  // more than the answer has room for
  EXPECT_EQ(Dispatch.Dispatch(Job), -1);
  FreeDynParams(Job);
  EXPECT_EQ(Do(JT_READ_SIMPLE_TRACE, {100'001}, 400'004), -1);
  EXPECT_EQ(Ctx.ErrorMsg(ERR_MSG_TRACE), u"Invalid read size"_s);
}

TEST_F(CChannelsTest, CountersOfRangesComeOneBehindTheOther) {
  Connect();
  Ctx.State.aCapability[HW_CAP_STREAMING_TRACE] = true;
  const U32 aRange[] = {0x100, 0x106, 0xFFFFFFFF, 0x10, 0x200, 0x200, 0x300, 0x304};
  U64 aFetch[5] = {}, aSkip[5] = {}, TotalFetch = 0, TotalSkip = 0;
  const auto Read = [&](const U32* paRange, U32 NumRanges, U32 NumItems) {
    return Ops.Channels.Trace.ReadInstStats(NumRanges, paRange, NumItems, aFetch, aSkip, &TotalFetch, &TotalSkip);
  };
  EXPECT_EQ(Read(aRange, 4, 5), 5);
  EXPECT_EQ(Probe.CallText({"STRACE_GetInstStats"}), "STRACE_GetInstStats 100 8, STRACE_GetInstStats 300 6");
  const std::vector<U64> Wanted = {0x80, 0x81, 0x82, 0x180, 0x181};
  EXPECT_EQ(std::vector<U64>(std::begin(aFetch), std::end(aFetch)), Wanted);
  EXPECT_EQ(aSkip[4], 0x181 | 1ull << 63);
  EXPECT_TRUE(TotalFetch == 1000 && TotalSkip == 2000);
  const U32 aBig[] = {0, 1'000'000};
  const std::tuple<const U32*, U32, const char*> aBad[] = {{aRange, 4, "request exceeds output buffer size"},
                                                           {aBig, 1, "request exceeds block size"}};
  for (const auto& [paRange, NumRanges, sError] : aBad) {
    EXPECT_EQ(Read(paRange, NumRanges, 4), -1);
    EXPECT_EQ(Ctx.ErrorMsg(ERR_MSG_STREAMING_TRACE), QLatin1String(sError));
  }
  Ctx.State.aCapability[HW_CAP_STREAMING_TRACE] = false;
  EXPECT_EQ(Read(aRange, 4, 5), -1);
}
