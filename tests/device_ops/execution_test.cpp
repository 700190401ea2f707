#include "device_fixture.h"

namespace {

constexpr U32 MAIN = 0x8000100;
constexpr U32 NEXT = 0x8000120;

class CExecutionTest : public CDeviceOpsTest {
protected:
  // The device thread's look at the target some time later.
  void Poll(U32 Ms = 100) {
    Now += Ms;
    Ops.Halts.CheckHandleHalt();
  }
  // Halted at NEXT, where a condition awaits its verdict.
  std::string HaltAtCondition() {
    Connect();
    Ops.Breakpoints.SetBreakpoint(NEXT, BP_STATE_ENABLED, BP_TYPE_ANY);
    Ctx.Breakpoints.SetConditional(NEXT, true);
    HaltAt(NEXT);
    Probe.Calls.clear();
    return Sink.TakeEvents();
  }
  std::string FinishHaltSeq(bool bStands) {
    Ops.Halts.FinishHaltSeq(NEXT, bStands);
    return Sink.TakeEvents();
  }
};

struct CFakeSemihost : ISemihostHandler {
  bool bAutoResume = false;
  U8 Result = 0;
  int NumRequests = 0;
  void SetAutoResume(bool bResume) override { bAutoResume = bResume; }
  bool IsAutoResuming() const override { return bAutoResume; }
  U8 HandleInterrupt(U32) override {
    ++NumRequests;
    return Result;
  }
};

TEST_F(CExecutionTest, PollingKeepsItsIntervals) {
  Connect();
  for (int i = 0; i < 100; ++i, Now += 10) Ops.Halts.CheckHandleHalt();
  EXPECT_EQ(Probe.Count("IsHalted"), 17) << "once in more than 50 ms";
  HaltAt(MAIN);
  Forget();
  for (int i = 0; i < 100; ++i, Now += 100) {
    Ops.Halts.CheckHandleHalt();
    Ops.Halts.CheckHandleResume();
  }
  EXPECT_EQ(Probe.Count("IsHalted"), 1) << "once in more than 5 s";
  Probe.Halted = 0;
  Now += 6000;
  Ops.Halts.CheckHandleResume();
  EXPECT_EQ(Sink.TakeEvents(), "JT_CONTINUE 0 0 0");
  EXPECT_FALSE(Ctx.State.Exec.bAccessible);
  HaltAt(NEXT);
  EXPECT_EQ(Sink.TakeEvents(), "JT_HALT 0 0 8000120");
}

TEST_F(CExecutionTest, ResetModes) {
  const std::string sHardware =
      "SetResetType 0, SetResetDelay 0, SetInitRegsOnReset 1, Halt, SetEndian 0, Reset, Halt, SetEndian 0";
  // mode, whether the start-up is done, also after a resume
  const std::tuple<RESET_MODES, bool, bool> aCase[] = {{RM_RESET_HALT, true, true},
                                                       {RM_BREAK_AT_SYMBOL, false, false},
                                                       {RM_RESET_AND_RUN, false, true},
                                                       {RM_BEFORE_DOWNLOAD, false, false},
                                                       {RM_HARDWARE_ONLY, true, true}};
  for (const auto& [Mode, bDone, bDoneOnResume] : aCase) {
    SCOPED_TRACE(Mode);
    ConnectHalted();
    Ops.Control.RunTo(NEXT);
    const bool bWhole = Mode != RM_HARDWARE_ONLY;
    Ctx.State.Exec.bStartupDone = true;
    Forget();
    EXPECT_EQ(Ops.Control.Reset(Mode), 0);
    EXPECT_EQ(Probe.CallText({"SetResetType", "SetResetDelay", "SetInitRegsOnReset", "Halt", "SetEndian", "Reset",
                              "ClrBPEx", "IsHalted"}),
              sHardware + (bWhole ? ", ClrBPEx 8000120, IsHalted" : ""));
    EXPECT_EQ(Sink.TakeLogs(), bWhole ? "Resetting target..." : "");
    EXPECT_EQ(Ctx.State.Exec.bStartupDone, bDone);
    EXPECT_EQ(Ctx.State.HiddenBP.Addr, bWhole ? NO_REQUEST : NEXT);
    EXPECT_EQ(Ctx.State.ResetMode, bWhole ? Mode : RM_BEFORE_DOWNLOAD);
    Ops.Control.Continue();
    EXPECT_EQ(Ctx.State.Exec.bStartupDone, bDoneOnResume);
  }
}

TEST_F(CExecutionTest, ARunToTheStartSymbolMakesTheSessionReady) {
  for (const U32 Symbol : {NEXT, MAIN}) {
    Connect(CM_DOWNLOAD_RESET);
    Ops.Configurator.SetConfigParam(DCP_BREAK_SYMBOL_ADDR, static_cast<int>(Symbol));
    ASSERT_EQ(Ops.Control.Reset(RM_BREAK_AT_SYMBOL), 0);
    ASSERT_EQ(Ops.Control.RunTo(NEXT), 1);
    Ops.Control.Continue();
    Forget();
    HaltAt(NEXT);
    const bool bAtSymbol = Symbol == NEXT;
    EXPECT_EQ(Sink.TakeEvents(),
              bAtSymbol ? "JT_RUN_TO 0 8000120 8000120; JT_HALT 0 3 8000120" : "JT_HALT 0 3 8000120");
    EXPECT_EQ(Ctx.State.Exec.bSessionReady, bAtSymbol);
    EXPECT_EQ(Ctx.State.Exec.bStartupDone, bAtSymbol);
  }
}

TEST_F(CExecutionTest, RunToArrivesAndLeavesTheUsersBreakpoints) {
  // state of the user's breakpoint, place of the halt, events, breakpoints that the run-to sets
  const std::tuple<BP_STATES, U32, const char*, const char*> aCase[] = {
      {BP_STATE_CLEARED, NEXT, "JT_HALT 0 3 8000120", "SetBPEx 8000120 fffffff2"},
      {BP_STATE_ENABLED, NEXT, "JT_HALT 0 2 8000120", ""},
      {BP_STATE_DISABLED, NEXT, "JT_HALT 0 3 8000120", "SetBPEx 8000120 fffffff2"},
      {BP_STATE_DISABLED, MAIN + 2, "JT_HALT 0 0 8000102", "SetBPEx 8000120 fffffff2"},
  };
  for (const auto& [State, HaltAddr, sEvents, sSet] : aCase) {
    Ops.Breakpoints.ClearAllBreakpoints();
    ConnectHalted();
    Ops.Breakpoints.SetBreakpoint(NEXT, State, BP_TYPE_ANY);
    Ctx.Breakpoints.SetConditional(NEXT, State == BP_STATE_DISABLED);
    Forget();
    EXPECT_EQ(Ops.Control.RunTo(NEXT), 1);
    EXPECT_EQ(Probe.CallText({"SetBPEx"}), sSet);
    Poll();  // what is hidden survives the look before the resume
    Ops.Control.Continue();
    Sink.Events.clear();
    HaltAt(HaltAddr);
    EXPECT_EQ(Sink.TakeEvents(), sEvents);
    EXPECT_EQ(Ops.Breakpoints.StateAt(NEXT), State) << "the user's entry is there again";
    EXPECT_EQ(Ctx.State.HiddenBP.PendingJob, 0u) << "no later halt is taken for this one's arrival";
    EXPECT_EQ(Probe.BPs.size(), State == BP_STATE_ENABLED ? 1u : 0u);
    Ops.Connection.Disconnect();
  }
}

TEST_F(CExecutionTest, RunToThatCannotBreak) {
  ConnectHalted();
  Probe.Failing["SetBPEx"] = 0;
  EXPECT_EQ(Ops.Control.RunTo(NEXT), -1);
  EXPECT_EQ(Sink.TakeEvents(), "");
  EXPECT_EQ(Ctx.State.HiddenBP.Addr, NO_REQUEST);
  // A breakpoint of another type gives way, and is lost when no new one can be set.
  Probe.BPs.push_back({900, NEXT, VNODE_BP_IMP_SW | VNODE_BP_THUMB});
  EXPECT_EQ(Ops.Control.RunTo(NEXT), 1);
  EXPECT_EQ(Sink.TakeEvents(), "continue 1");
  EXPECT_EQ(Ops.Breakpoints.StateAt(NEXT), BP_STATE_DISABLED);
  EXPECT_TRUE(Probe.BPs.empty());
}

TEST_F(CExecutionTest, ConditionsWaitForTheVerdict) {
  EXPECT_EQ(HaltAtCondition(), "eval 8000120");
  EXPECT_FALSE(Ctx.State.Exec.bAccessible);
  Poll(10000);
  Ops.Halts.CheckHandleResume();
  EXPECT_EQ(Sink.TakeEvents(), "") << "the device thread stays out meanwhile";
  EXPECT_EQ(Ops.Stepper.StepInst(), -1);
  EXPECT_EQ(Ops.Control.RunTo(NEXT + 8), -1);
  EXPECT_EQ(Probe.CallText(), "") << "neither steps nor runs away from the verdict";
  EXPECT_EQ(FinishHaltSeq(false), "") << "nobody sees a halt that does not stand";
  EXPECT_EQ(Probe.CallText({"GoEx"}), "GoEx 0 1");
  HaltAt(NEXT);
  Sink.Events.clear();
  EXPECT_EQ(FinishHaltSeq(true), "JT_HALT 0 2 8000120");
  BP Entry;
  ASSERT_TRUE(Ctx.Breakpoints.GetAt(NEXT, Entry));
  EXPECT_EQ(Entry.HitCount, 2u);
}

TEST_F(CExecutionTest, TheUserOverrulesACondition) {
  HaltAtCondition();
  EXPECT_TRUE(Ops.Control.IsHaltNeeded());
  Ops.Control.Halt();
  Ops.Halts.CheckHandleHalt();
  EXPECT_EQ(Sink.TakeEvents(), "JT_HALT 0 2 8000120");
  Forget();
  EXPECT_EQ(FinishHaltSeq(false), "");
  EXPECT_EQ(Probe.CallText(), "") << "a late verdict is void";
  EXPECT_FALSE(Ops.Control.IsHaltNeeded());
}

TEST_F(CExecutionTest, ContinueAndResetEndAnEvaluation) {
  HaltAtCondition();
  EXPECT_EQ(Ops.Control.Continue(), 0);
  EXPECT_FALSE(Ctx.State.Exec.bHaltPending);
  Probe.Halted = 0;
  EXPECT_EQ(FinishHaltSeq(true), "") << "the target runs";
  HaltAt(NEXT + 4);
  EXPECT_EQ(Sink.TakeEvents(), "JT_HALT 0 0 8000124") << "and is watched";

  HaltAtCondition();
  Probe.bStaysRunning = true;
  Probe.Halted = 0;
  EXPECT_EQ(Ops.Control.Reset(RM_RESET_HALT), -1);
  EXPECT_EQ(FinishHaltSeq(true), "") << "halted or not";
  HaltAt(NEXT + 4);
  EXPECT_EQ(Sink.TakeEvents(), "JT_HALT 0 0 8000124");
}

TEST_F(CExecutionTest, SemihostingRequests) {
  // a handler, enabled, its result, a breakpoint of the user, events, calls, requests
  const std::tuple<bool, bool, U8, bool, const char*, const char*, int> aCase[] = {
      {true, true, 0, false, "continue 0", "", 1},                     // served, runs on
      {true, true, 1, false, "JT_HALT 0 0 8000120", "", 1},            // has to stay halted
      {true, true, 0, true, "JT_HALT 0 2 8000120", "", 1},             // the user wants to stop there
      {true, false, 0, false, "", "WriteReg f 8000122, GoEx 0 1", 0},  // discarded
      {true, false, 0, true, "JT_HALT 0 2 8000120", "", 0},
      {false, false, 0, false, "", "WriteReg f 8000122, GoEx 0 1", 0},
      {false, true, 0, false, "JT_HALT 0 0 8000120", "", 0},  // nobody there to serve it
  };
  Program.Insts[NEXT] = {2, true, true};
  CFakeSemihost Semihost;
  for (const auto& [bHandler, bEnabled, Result, bUserBP, sEvents, sCalls, NumRequests] : aCase) {
    Ctx.Settings.bSemihosting = bEnabled;
    Semihost.Result = Result;
    Semihost.NumRequests = 0;
    Ctx.pSemihost = bHandler ? &Semihost : nullptr;
    Ops.Breakpoints.ClearAllBreakpoints();
    Connect();
    if (bUserBP) Ops.Breakpoints.SetBreakpoint(NEXT, BP_STATE_ENABLED, BP_TYPE_ANY);
    HaltAt(NEXT);
    EXPECT_EQ(Sink.TakeEvents(), sEvents);
    EXPECT_EQ(Probe.CallText({"WriteReg", "GoEx"}), sCalls);
    EXPECT_EQ(Semihost.NumRequests, NumRequests);
    EXPECT_FALSE(Ctx.State.Exec.bHaltPending);
    Ops.Connection.Disconnect();
  }
  Ctx.pSemihost = nullptr;
}

}  // namespace
