#include "device/job_loop.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "device/job_wait.h"

namespace {

struct FAKE_RUNNER : CJobRunner {
  CEventRing Events;
  std::function<int(DEVICE_JOB&)> Handler = [](DEVICE_JOB&) { return 0; };
  std::vector<U32> aExecuted;
  U32 NumPolls = 0, NumRefreshes = 0;
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

  static DEVICE_JOB MakeJob(U32 Type) {
    DEVICE_JOB Job;
    Job.Type = Type;
    if (JobTypeInfo(Type).bNeedsDyn) AllocDynParam(Job, 0, 8);
    return Job;
  }
  CJobRings::JOB_REF Schedule(U32 Type) {
    DEVICE_JOB Job = MakeJob(Type);
    Rings.Schedule(Job);
    return Rings.FindPending(Type);
  }
};

const JOB_WAIT_HOOKS ALIVE = {[] { return true; }, [] { return false; }, {}};

}  // namespace

TEST_F(JobLoop, OutcomeByTypeAndResult) {
  enum { NOT_REPORTED = -1 };
  const std::tuple<U32, int, int> aCase[] = {
      // type, result, status of the event
      {JT_CONNECT, 0, JS_DONE},        {JT_READ_MEM, 16, JS_DONE},       {JT_CONNECT, -1, JS_FAILED},
      {JT_READ_MEM, -2, NOT_REPORTED}, {JT_END_DOWNLOAD, -5, JS_FAILED}, {JT_HALT, 0, NOT_REPORTED},
      {JT_HALT, -1, NOT_REPORTED},     {JT_RUN_TO, 1, NOT_REPORTED},     {JT_STEP_OVER, 1, NOT_REPORTED},
      {JT_STEP_INTO, 1, NOT_REPORTED}, {JT_STEP_OUT, 1, NOT_REPORTED},   {JT_STEP_OUT, 0, JS_DONE},
      {JT_STEP_INST, 1, JS_DONE},      {JT_STEP_OVER, -1, JS_FAILED},    {JT_RUN_TO, -1, JS_FAILED},
  };
  for (const auto& [Type, Result, Status] : aCase) {
    SCOPED_TRACE(testing::Message() << JobTypeName(Type) << " " << Result);
    Runner.Handler = [Result](DEVICE_JOB&) { return Result; };
    const CJobRings::JOB_REF Ref = Schedule(Type);
    EXPECT_EQ(Loop.ProcessJobs(), 1u);
    EXPECT_FALSE(Rings.IsPending(Ref));
    const auto Event = Runner.Events.Take();
    ASSERT_EQ(Event.has_value(), Status != NOT_REPORTED);
    if (Event) {
      EXPECT_EQ(Event->Job()->Status, static_cast<U32>(Status));
      EXPECT_TRUE(!IsStepJob(Type) || Event->Job()->Result == 0x08000100);
      Rings.Release(Event->Job());
    }
    EXPECT_EQ(Ref.pJob->Type, JT_NONE) << "the slot is free again";
  }
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

TEST_F(JobLoop, BatchIsLimitedAndPollsBeforeEveryJob) {
  for (int i = 0; i < 250; ++i) Schedule(JT_READ_REG);
  EXPECT_EQ(Loop.ProcessJobs(), 100u);
  EXPECT_EQ(Runner.NumPolls, 100u);
  EXPECT_EQ(Loop.ProcessJobs(), 100u);
  EXPECT_EQ(Loop.ProcessJobs(), 50u);
}

TEST_F(JobLoop, WritesOfRegistersRefreshTheState) {
  for (const U32 Type : {JT_WRITE_REG, JT_WRITE_LOCATION, JT_WRITE_MEM}) Schedule(Type);
  Loop.ProcessJobs();
  EXPECT_EQ(Runner.NumRefreshes, 2u);
}

// Everything at once, for the thread sanitizer too.
TEST_F(JobLoop, NoJobIsLostOrDoubled) {
  Runner.Handler = [](DEVICE_JOB& Job) {
    Job.Result = Job.Param[0] * 3;
    if (Job.pDyn[0]) Job.Dyn<U8>(0)[0] = static_cast<U8>(Job.Param[0]);
    return Job.Type == JT_READ_RTT ? -2 : 0;
  };
  std::atomic<U64> NumScheduled{0};
  std::atomic<U32> NumScheduling{2};
  std::thread Device([&] { Loop.Run(); });
  const auto ScheduleMany = [&](U32 Thread) {
    const U32 aType[] = {JT_READ_REG, JT_SET_BP, JT_READ_CP_REG, JT_MEASURE_CORE_SPEED, JT_READ_RTT};
    for (U32 i = 0; i < 30000; ++i) {
      DEVICE_JOB Job = MakeJob(aType[(i + Thread) % std::size(aType)]);
      Job.Param[0] = i;
      NumScheduled += Rings.Schedule(Job) == CJobRings::SCHEDULED;
      if (i % 1000 == 0) Rings.Cancel(JT_READ_REG, JQ_ALL);
    }
    --NumScheduling;
  };
  std::thread aScheduler[] = {std::thread(ScheduleMany, 0), std::thread(ScheduleMany, 1)};

  U64 NumWrong = 0;
  for (U32 Round = 0; NumScheduling > 0 || Rings.FindPending(JT_ANY).pJob || !Runner.Events.IsEmpty(); ++Round) {
    while (const auto Event = Runner.Events.Take()) {
      DEVICE_JOB* pJob = Event->Job();
      NumWrong += !Rings.IsValid(pJob) || CJobRings::IsPending(*pJob) || pJob->Result != pJob->Param[0] * 3;
      Rings.Release(pJob);
    }
    if (Round % 16 == 0) WaitForPendingJob(Rings, JT_SET_BP, 1, ALIVE);
  }
  for (auto& Thread : aScheduler) Thread.join();
  Loop.RequestEnd();
  Device.join();
  EXPECT_EQ(NumWrong, 0u);
  EXPECT_EQ(Rings.Counters.NumExecuted, Runner.aExecuted.size());
  EXPECT_EQ(Rings.Counters.NumReleased, NumScheduled) << "every slot is released once";
}
