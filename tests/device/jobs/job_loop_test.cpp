#include "device/job_loop.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <thread>

#include "device/job_wait.h"

namespace {

struct FAKE_RUNNER : CJobRunner {
  CEventRing Events;
  std::function<int(DEVICE_JOB&)> Handler = [](DEVICE_JOB&) { return 0; };
  std::vector<U32> aExecuted;
  U32 NumPolls = 0;
  U32 NumRefreshes = 0;
  bool bHalted = false;

  void PollTarget() override { ++NumPolls; }
  int Dispatch(DEVICE_JOB& Job) override {
    aExecuted.push_back(Job.Type);
    return Handler(Job);
  }
  bool IsHalted() const override { return bHalted; }
  U64 GetPC() const override { return 0x08000100; }
  void OnRegistersWritten() override { ++NumRefreshes; }
  bool RaiseJobFinished(DEVICE_JOB& Job) override { return Events.Put(JobFinishedEvent(&Job), &Job); }
};

struct JobLoop : testing::Test {
  CJobRings Rings;
  FAKE_RUNNER Runner;
  CJobLoop Loop{Rings, Runner};

  CJobRings::JOB_REF Schedule(U32 Type) {
    DEVICE_JOB Job;
    Job.Type = Type;
    if (JobTypeInfo(Type).bNeedsDyn) AllocDynParam(Job, 0, 8);
    Rings.Schedule(Job);
    return Rings.FindPending(Type);
  }
};

const JOB_WAIT_HOOKS ALIVE = {[] { return true; }, [] { return false; }, {}};

}  // namespace

TEST_F(JobLoop, OutcomeByTypeAndResult) {
  enum { NOT_REPORTED = -1 };
  const struct {
    U32 Type;
    int Result;
    int Status;  // of the event
  } aCase[] = {
      {JT_CONNECT, 0, JS_DONE},        {JT_READ_MEM, 16, JS_DONE},       {JT_CONNECT, -1, JS_FAILED},
      {JT_READ_MEM, -2, NOT_REPORTED}, {JT_END_DOWNLOAD, -5, JS_FAILED}, {JT_HALT, 0, NOT_REPORTED},
      {JT_HALT, -1, NOT_REPORTED},     {JT_RUN_TO, 1, NOT_REPORTED},     {JT_STEP_OVER, 1, NOT_REPORTED},
      {JT_STEP_INTO, 1, NOT_REPORTED}, {JT_STEP_OUT, 1, NOT_REPORTED},   {JT_STEP_OUT, 0, JS_DONE},
      {JT_STEP_INST, 1, JS_DONE},      {JT_STEP_OVER, -1, JS_FAILED},
  };
  for (const auto& Case : aCase) {
    SCOPED_TRACE(testing::Message() << JobTypeName(Case.Type) << " " << Case.Result);
    Runner.Handler = [&](DEVICE_JOB&) { return Case.Result; };
    const CJobRings::JOB_REF Ref = Schedule(Case.Type);
    EXPECT_EQ(Loop.ProcessJobs(), 1u);
    EXPECT_FALSE(Rings.IsPending(Ref));
    const auto Event = Runner.Events.Take();
    ASSERT_EQ(Event.has_value(), Case.Status != NOT_REPORTED);
    if (!Event) {
      EXPECT_EQ(Ref.pJob->Type, JT_NONE) << "the slot is free again";
      continue;
    }
    EXPECT_EQ(Event->Job()->Status, static_cast<U32>(Case.Status));
    if (IsStepJob(Case.Type)) {
      EXPECT_EQ(Event->Job()->Result, 0x08000100u);
    }
    Rings.Release(Event->Job());
  }
}

TEST_F(JobLoop, HaltOfAHaltedTargetIsNotRun) {
  Runner.bHalted = true;
  Schedule(JT_READ_REG);
  const CJobRings::JOB_REF Ref = Schedule(JT_HALT);
  Loop.ProcessJobs();
  EXPECT_FALSE(Rings.IsPending(Ref));
  EXPECT_EQ(Runner.aExecuted, std::vector<U32>{JT_READ_REG}) << "and takes no read back";
}

TEST_F(JobLoop, ResumeTakesBackReads) {
  for (const U32 Type : {JT_CONTINUE, JT_RESET, JT_HALT, JT_STEP_INST, JT_STEP_OVER}) {
    Runner.aExecuted.clear();
    const CJobRings::JOB_REF Read = Schedule(JT_READ_MEM);
    const CJobRings::JOB_REF Background = Schedule(JT_MEASURE_CORE_SPEED);
    Schedule(JT_SET_BP);
    Schedule(Type);
    EXPECT_EQ(Loop.ProcessJobs(), 4u);
    EXPECT_EQ(Runner.aExecuted, (std::vector<U32>{JT_SET_BP, Type})) << JobTypeName(Type);
    EXPECT_EQ(Read.pJob->Type, JT_NONE);
    EXPECT_EQ(Background.pJob->Type, JT_NONE);
    while (const auto Event = Runner.Events.Take()) Rings.Release(Event->Job());
  }
}

TEST_F(JobLoop, StartOfSamplingTakesBackItsReadsOnly) {
  Schedule(JT_READ_HSS);
  Schedule(JT_READ_RTT);
  Schedule(JT_START_HSS);
  Loop.ProcessJobs();
  EXPECT_EQ(Runner.aExecuted, (std::vector<U32>{JT_START_HSS, JT_READ_RTT}));
}

TEST_F(JobLoop, SuppressedTypesAreNotReported) {
  Loop.SetSuppressed(JT_CONNECT, true);
  const CJobRings::JOB_REF Ref = Schedule(JT_CONNECT);
  Schedule(JT_RESET);
  Loop.ProcessJobs();
  EXPECT_EQ(Ref.pJob->Type, JT_NONE);
  EXPECT_EQ(Runner.Events.Take()->Job()->Type, JT_RESET);
  EXPECT_TRUE(Runner.Events.IsEmpty());
  Loop.SetSuppressed(JT_CONNECT, false);
  Schedule(JT_CONNECT);
  Loop.ProcessJobs();
  EXPECT_FALSE(Runner.Events.IsEmpty());
}

TEST_F(JobLoop, BatchIsLimitedAndPollsBeforeEveryJob) {
  for (int i = 0; i < 250; ++i) Schedule(JT_READ_REG);
  EXPECT_EQ(Loop.ProcessJobs(), 100u);
  EXPECT_EQ(Runner.NumPolls, 100u);
  EXPECT_EQ(Loop.ProcessJobs(), 100u);
  EXPECT_EQ(Loop.ProcessJobs(), 50u);
}

TEST_F(JobLoop, FullEventRingDropsTheJob) {
  while (Runner.Events.Put({DE_PROGRESS_VALUE, 0, 0})) {
  }
  const CJobRings::JOB_REF Ref = Schedule(JT_CONNECT);
  Loop.ProcessJobs();
  EXPECT_EQ(Ref.pJob->Type, JT_NONE);
  EXPECT_FALSE(Rings.IsPending(Ref));
}

TEST_F(JobLoop, WritesOfRegistersRefreshTheState) {
  for (const U32 Type : {JT_WRITE_REG, JT_WRITE_LOCATION, JT_WRITE_MEM}) Schedule(Type);
  Loop.ProcessJobs();
  EXPECT_EQ(Runner.NumRefreshes, 2u);
}

TEST_F(JobLoop, WaitOutcomes) {
  EXPECT_EQ(WaitForPendingJob(Rings, JT_CONNECT, 0, ALIVE), JOB_WAIT_NO_JOB);
  Schedule(JT_CONNECT);
  EXPECT_EQ(WaitForPendingJob(Rings, JT_CONNECT, 20, ALIVE), JOB_WAIT_TIMEOUT);
  const JOB_WAIT_HOOKS Ended = {[] { return false; }, [] { return false; }, {}};
  EXPECT_EQ(WaitForPendingJob(Rings, JT_CONNECT, -1, Ended), JOB_WAIT_TIMEOUT);
  JOB_WAIT_HOOKS Working = ALIVE;
  Working.ProcessEvents = [&] { Loop.ProcessJobs(); };
  EXPECT_EQ(WaitForPendingJob(Rings, JT_CONNECT, -1, Working), JOB_WAIT_FINISHED);
}

TEST_F(JobLoop, WaitForAStepEndsWhenTheDeviceStopsStepping) {
  Schedule(JT_STEP_OVER);
  std::deque<bool> abStepping = {false, true, true, false};
  JOB_WAIT_HOOKS Hooks = ALIVE;
  Hooks.IsStepping = [&] {
    const bool bStepping = abStepping.front();
    if (abStepping.size() > 1) abStepping.pop_front();
    return bStepping;
  };
  EXPECT_EQ(WaitForPendingJob(Rings, JT_STEP, 2000, Hooks), JOB_WAIT_FINISHED);
  EXPECT_EQ(abStepping.size(), 1u) << "not before the step has begun";
}

TEST_F(JobLoop, WaitSeesTheJobThatRuns) {
  Schedule(JT_CONNECT);
  std::atomic<bool> bRunning{false}, bGo{false};
  Runner.Handler = [&](DEVICE_JOB&) {
    bRunning = true;
    while (!bGo) std::this_thread::yield();
    return 0;
  };
  std::thread Device([&] { Loop.Run(); });
  while (!bRunning) std::this_thread::yield();
  JOB_WAIT_HOOKS Hooks = ALIVE;
  Hooks.ProcessEvents = [&] { bGo = true; };
  EXPECT_EQ(WaitForPendingJob(Rings, JT_CONNECT, -1, Hooks), JOB_WAIT_FINISHED);
  EXPECT_FALSE(Runner.Events.IsEmpty()) << "who sees the job finished finds its event";
  Loop.RequestEnd();
  Device.join();
}
