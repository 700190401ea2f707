#include "device_fixture.h"

namespace {

constexpr U32 ADDR = 0x8000200;

using CBreakpointsTest = CDeviceOpsTest;

TEST_F(CBreakpointsTest, LibraryFollowsTheList) {
  // state and type before, state and type after, calls
  const std::tuple<BP_STATES, BP_TYPES, BP_STATES, BP_TYPES, const char*> aCase[] = {
      {BP_STATE_CLEARED, BP_TYPE_ANY, BP_STATE_ENABLED, BP_TYPE_ANY, "SetBPEx 8000200 fffffff2"},
      {BP_STATE_CLEARED, BP_TYPE_ANY, BP_STATE_ENABLED, BP_TYPE_SOFT, "SetBPEx 8000200 f2"},
      {BP_STATE_CLEARED, BP_TYPE_ANY, BP_STATE_DISABLED, BP_TYPE_ANY, ""},
      {BP_STATE_ENABLED, BP_TYPE_ANY, BP_STATE_ENABLED, BP_TYPE_ANY, ""},
      {BP_STATE_ENABLED, BP_TYPE_ANY, BP_STATE_ENABLED, BP_TYPE_HARD, "ClrBPEx 8000200, SetBPEx 8000200 ffffff02"},
      {BP_STATE_ENABLED, BP_TYPE_HARD, BP_STATE_DISABLED, BP_TYPE_HARD, "ClrBPEx 8000200"},
      {BP_STATE_DISABLED, BP_TYPE_HARD, BP_STATE_ENABLED, BP_TYPE_HARD, "SetBPEx 8000200 ffffff02"},
      {BP_STATE_ENABLED, BP_TYPE_ANY, BP_STATE_CLEARED, BP_TYPE_ANY, "ClrBPEx 8000200"},
  };
  Connect();
  for (const auto& [FromState, FromType, ToState, ToType, sCalls] : aCase) {
    Ops.Breakpoints.ClearAllBreakpoints();
    Ops.Breakpoints.SetBreakpoint(ADDR, FromState, FromType);
    Ctx.Breakpoints.CountHit(ADDR);
    Forget();
    EXPECT_EQ(Ops.Breakpoints.SetBreakpoint(ADDR, ToState, ToType), 0);
    EXPECT_EQ(Probe.CallText(), sCalls);
    BP Entry;
    EXPECT_EQ(Ctx.Breakpoints.GetAt(ADDR, Entry), ToState != BP_STATE_CLEARED);
    EXPECT_EQ(Ops.Breakpoints.StateAt(ADDR), ToState);
    const bool bKept = FromState != BP_STATE_CLEARED && ToState != BP_STATE_CLEARED;
    EXPECT_EQ(Entry.HitCount, bKept ? 1u : 0u) << "a change keeps the counter";
    U32 ImpFlags = 0;
    EXPECT_EQ(Ops.Breakpoints.GetImplementation(ADDR, ImpFlags), ToState == BP_STATE_ENABLED);
  }
  Forget();
  Program.bArm = true;
  Ops.Breakpoints.SetBreakpoint(ADDR, BP_STATE_ENABLED, BP_TYPE_ANY);
  EXPECT_EQ(Probe.CallText(), "SetBPEx 8000200 fffffff1");
  // A hidden one may change what others have.
  U32 ImpFlags = 0;
  Ops.Breakpoints.SetHiddenBreakpoint(ADDR + 8, JT_RUN_TO);
  EXPECT_TRUE(Ops.Breakpoints.GetImplementation(ADDR + 8, ImpFlags));
  Ops.Breakpoints.RemoveHiddenBreakpoint();
  EXPECT_FALSE(Ops.Breakpoints.GetImplementation(ADDR + 8, ImpFlags));
}

TEST_F(CBreakpointsTest, FailuresOfTheLibrary) {
  const auto Set = [this](BP_STATES State, BP_TYPES Type) { return Ops.Breakpoints.SetBreakpoint(ADDR, State, Type); };
  Connect();
  Probe.Failing["SetBPEx"] = 0;
  EXPECT_EQ(Set(BP_STATE_ENABLED, BP_TYPE_ANY), -1);
  EXPECT_EQ(Ctx.Breakpoints.Count(), 0) << "the list is untouched";

  Probe.Failing.clear();
  Set(BP_STATE_ENABLED, BP_TYPE_ANY);
  Probe.Failing["SetBPEx"] = 0;
  EXPECT_EQ(Set(BP_STATE_ENABLED, BP_TYPE_HARD), 0);
  EXPECT_EQ(Ops.Breakpoints.StateAt(ADDR), BP_STATE_DISABLED) << "what was cleared is listed as disabled";

  Probe.Failing.clear();
  Set(BP_STATE_ENABLED, BP_TYPE_ANY);
  Probe.Failing["ClrBPEx"] = 0;
  EXPECT_EQ(Ops.Breakpoints.ClearBreakpoint(ADDR), -1);
  EXPECT_EQ(Ops.Breakpoints.ClearAllBreakpoints(), -1);
  EXPECT_EQ(Set(BP_STATE_DISABLED, BP_TYPE_ANY), -1);
  EXPECT_EQ(Ops.Breakpoints.StateAt(ADDR), BP_STATE_ENABLED);
}

}  // namespace
