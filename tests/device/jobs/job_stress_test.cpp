// Everything at once, for the thread sanitizer and for lost or doubled jobs.

#include <gtest/gtest.h>

#include <thread>

#include "device/job_loop.h"
#include "device/job_wait.h"

namespace {

constexpr U32 NUM_JOBS_PER_THREAD = 30000;
constexpr U32 NUM_SCHEDULERS = 2;

struct COUNTING_RUNNER : CJobRunner {
  CEventRing Events;
  std::atomic<U64> NumExecuted{0};

  void PollTarget() override {}
  int Dispatch(DEVICE_JOB& Job) override {
    ++NumExecuted;
    Job.Result = Job.Param[0] * 3;
    if (Job.pDyn[0]) Job.Dyn<U8>(0)[0] = static_cast<U8>(Job.Param[0]);
    return Job.Type == JT_READ_RTT ? -2 : 0;
  }
  bool IsHalted() const override { return false; }
  U64 GetPC() const override { return 0; }
  void OnRegistersWritten() override {}
  bool RaiseJobFinished(DEVICE_JOB& Job) override { return Events.Put(JobFinishedEvent(&Job), &Job); }
};

}  // namespace

TEST(JobStress, NoJobIsLostOrDoubled) {
  CJobRings Rings;
  COUNTING_RUNNER Runner;
  CJobLoop Loop(Rings, Runner);
  std::atomic<U64> NumScheduled{0};
  std::atomic<U32> NumScheduling{NUM_SCHEDULERS};
  std::thread Device([&] { Loop.Run(); });

  std::vector<std::thread> aScheduler;
  for (U32 Thread = 0; Thread < NUM_SCHEDULERS; ++Thread) {
    aScheduler.emplace_back([&, Thread] {
      const U32 aType[] = {JT_READ_REG, JT_SET_BP, JT_READ_CP_REG, JT_MEASURE_CORE_SPEED, JT_READ_RTT};
      for (U32 i = 0; i < NUM_JOBS_PER_THREAD; ++i) {
        DEVICE_JOB Job;
        Job.Type = aType[(i + Thread) % std::size(aType)];
        Job.Param[0] = i;
        if (JobTypeInfo(Job.Type).bNeedsDyn) AllocDynParam(Job, 0, 16);
        if (Rings.Schedule(Job) == CJobRings::SCHEDULED) ++NumScheduled;
        if (i % 1000 == 0) Rings.Cancel(JT_READ_REG, JQ_ALL);
      }
      --NumScheduling;
    });
  }

  U64 NumDelivered = 0;
  U64 NumWrong = 0;
  const JOB_WAIT_HOOKS Hooks = {[] { return true; }, [] { return false; }, {}};
  for (U32 Round = 0; NumScheduling > 0 || Rings.FindPending(JT_ANY).pJob || !Runner.Events.IsEmpty(); ++Round) {
    while (const auto Event = Runner.Events.Take()) {
      DEVICE_JOB* pJob = Event->Job();
      if (!Rings.IsValid(pJob) || CJobRings::IsPending(*pJob) || pJob->Result != pJob->Param[0] * 3) ++NumWrong;
      Rings.Release(pJob);
      ++NumDelivered;
    }
    if (Round % 16 == 0) WaitForPendingJob(Rings, JT_SET_BP, 1, Hooks);
  }
  for (auto& Thread : aScheduler) Thread.join();
  Loop.RequestEnd();
  Device.join();

  EXPECT_EQ(NumWrong, 0u);
  EXPECT_GT(NumDelivered, 0u);
  EXPECT_EQ(Rings.Counters.NumExecuted, Runner.NumExecuted);
  EXPECT_EQ(Rings.Counters.NumReleased, NumScheduled) << "every slot is released once";
}
