#include "device/job_dispatch.h"
#include "device_fixture.h"

namespace {

class CDispatchTest : public CDeviceOpsTest {
protected:
  CJobDispatch Dispatch{Ops, [](DEVICE_JOB&) { return true; }};
};

DEVICE_JOB MakeJob(U32 Type, std::initializer_list<U64> Params, std::initializer_list<U64> DynSizes) {
  DEVICE_JOB Job;
  Job.Type = Type;
  std::copy(Params.begin(), Params.end(), Job.Param);
  U32 Index = 0;
  for (const U64 Size : DynSizes) AllocDynParam(Job, Index++, Size);
  return Job;
}

}  // namespace

TEST_F(CDispatchTest, RefusedReadDeliversNothingValid) {
  Connect();
  DEVICE_JOB Job = MakeJob(JT_READ_MEM, {0xFFFFFFF8, 8}, {8, 8});
  EXPECT_EQ(Dispatch.Dispatch(Job), 0);
  EXPECT_EQ(std::count(Job.Dyn<U8>(1), Job.Dyn<U8>(1) + 8, MEM_UNAVAILABLE), 8);
  FreeDynParams(Job);
}

TEST_F(CDispatchTest, CountsBeyondTheirBlocksFail) {
  ConnectHalted();
  const U32 MEM = CFakeProbe::MEM_START;
  const DEVICE_JOB aJob[] = {
      MakeJob(JT_READ_MEM, {MEM, 9}, {8, 9}),
      MakeJob(JT_READ_MEM, {MEM, 9}, {9, 8}),
      MakeJob(JT_READ_MEM, {MEM, ~0ull}, {8, 8}),
      MakeJob(JT_WRITE_MEM, {MEM, 9}, {8}),
      MakeJob(JT_WRITE_MEM_MULTIPLE, {2, 8}, {8, 8}),
      MakeJob(JT_WRITE_MEM_MULTIPLE, {1, 9}, {8, 8}),
      MakeJob(JT_READ_REGS, {3}, {12, 16, 3}),
      MakeJob(JT_READ_LOCATION, {9}, {sizeof(ELF_SYM_LOC)}),
      MakeJob(JT_READ_LOCATION, {4}, {8}),
      MakeJob(JT_READ_LOCS, {2}, {sizeof(ELF_SYM_LOC), 16, 2}),
      MakeJob(JT_WRITE_LOCATION, {4}, {sizeof(ELF_SYM_LOC), 3}),
      MakeJob(JT_SET_BPS, {3, BP_STATE_ENABLED}, {8}),
      MakeJob(JT_CLEAR_BPS, {1ull << 62}, {8}),
  };
  for (DEVICE_JOB Job : aJob) {
    Forget();
    EXPECT_EQ(Dispatch.Dispatch(Job), -1) << JobTypeName(Job.Type);
    EXPECT_EQ(Probe.CallText(), "") << JobTypeName(Job.Type);
    FreeDynParams(Job);
  }
}

TEST_F(CDispatchTest, BreakpointsThatFailFailTheirJob) {
  Connect();
  for (const U32 Type : {JT_SET_BPS, JT_CLEAR_BPS}) {
    DEVICE_JOB Job = MakeJob(Type, {2, BP_STATE_ENABLED}, {8});
    std::copy_n(std::array<U32, 2>{0x8000200, 0x8000202}.data(), 2, Job.Dyn<U32>(0));
    Probe.Failing = {{"SetBPEx", 1}};
    EXPECT_EQ(Dispatch.Dispatch(Job), Type == JT_SET_BPS ? -1 : 0);
    EXPECT_EQ(Job.Result, Type == JT_SET_BPS ? 1u : 2u);
    FreeDynParams(Job);
  }
}
