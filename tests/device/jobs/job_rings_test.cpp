#include "device/job_rings.h"

#include <gtest/gtest.h>

#include <set>

namespace {

DEVICE_JOB Job(U32 Type, U64 P0 = 0) {
  DEVICE_JOB New;
  New.Type = Type;
  New.Param[0] = P0;
  if (JobTypeInfo(Type).bNeedsDyn) AllocDynParam(New, 0, 4);
  return New;
}

int Schedule(CJobRings& Rings, U32 Type, U64 P0 = 0) {
  DEVICE_JOB New = Job(Type, P0);
  return Rings.Schedule(New);
}

DEVICE_JOB* TakeOne(CJobRings& Rings) {
  DEVICE_JOB* pJob = Rings.Take();
  Rings.Finished();
  return pJob;
}

}  // namespace

TEST(JobRings, FullRingRefusesUntilASlotIsReleased) {
  CJobRings Rings;
  for (U32 i = 0; i < CJobRings::RING_SIZE; ++i) ASSERT_EQ(Schedule(Rings, JT_HALT, i), CJobRings::SCHEDULED);
  DEVICE_JOB Refused = Job(JT_EXEC_VNODE_CMD);
  EXPECT_EQ(Rings.Schedule(Refused), CJobRings::QUEUE_FULL);
  EXPECT_EQ(Refused.pDyn[0], nullptr);
  EXPECT_EQ(Schedule(Rings, JT_READ_REG), CJobRings::SCHEDULED) << "the other rings have room";
  EXPECT_NE(Rings.FindPending(JT_HALT).pJob, nullptr) << "a full ring is not an empty one";

  DEVICE_JOB* pFirst = TakeOne(Rings);
  ASSERT_NE(pFirst, nullptr);
  EXPECT_EQ(Schedule(Rings, JT_HALT), CJobRings::QUEUE_FULL) << "an executed job keeps its slot";
  Rings.Release(pFirst);
  EXPECT_EQ(Schedule(Rings, JT_HALT, 77777), CJobRings::SCHEDULED);
  EXPECT_EQ(Schedule(Rings, JT_HALT), CJobRings::QUEUE_FULL);

  for (U64 Expected = 1; Expected < CJobRings::RING_SIZE; ++Expected) ASSERT_EQ(TakeOne(Rings)->Param[0], Expected);
  EXPECT_EQ(TakeOne(Rings)->Param[0], 77777u);
  EXPECT_EQ(TakeOne(Rings)->Type, JT_READ_REG);
}

TEST(JobRings, ControlBeforeReadBeforeBackground) {
  CJobRings Rings;
  for (const U32 Type : {JT_MEASURE_CORE_SPEED, JT_READ_REG, JT_CONTINUE, JT_READ_MEM, JT_RESET}) Schedule(Rings, Type);
  std::vector<U32> aType;
  std::set<U64> IDs;
  while (DEVICE_JOB* pJob = TakeOne(Rings)) {
    aType.push_back(pJob->Type);
    IDs.insert(pJob->ID);
  }
  EXPECT_EQ(aType, (std::vector<U32>{JT_CONTINUE, JT_RESET, JT_READ_REG, JT_READ_MEM, JT_MEASURE_CORE_SPEED}));
  EXPECT_EQ(IDs.size(), aType.size());
}

TEST(JobRings, JobWithoutItsParameterDoesNotStallTheRing) {
  CJobRings Rings;
  DEVICE_JOB Broken;
  Broken.Type = JT_CONFIGURE;
  ASSERT_EQ(Rings.Schedule(Broken), CJobRings::SCHEDULED);
  const CJobRings::JOB_REF Ref = Rings.FindPending(JT_CONFIGURE);
  EXPECT_FALSE(Rings.IsValid(Ref.pJob));
  Schedule(Rings, JT_HALT);
  DEVICE_JOB* pJob = TakeOne(Rings);
  ASSERT_NE(pJob, nullptr);
  EXPECT_EQ(pJob->Type, JT_HALT);
  EXPECT_FALSE(Rings.IsPending(Ref)) << "nobody waits for it for ever";
  EXPECT_EQ(Ref.pJob->Type, JT_NONE);
}

TEST(JobRings, CancelSelectsByTypeAndRing) {
  const std::tuple<U32, U32, std::set<U32>> aCase[] = {
      {JT_ANY, JQ_ALL, {JT_STEP_INST, JT_STEP_OUT, JT_READ_REG, JT_READ_MEM, JT_MEASURE_CORE_SPEED}},
      {JT_ANY, JQ_READ, {JT_READ_REG, JT_READ_MEM}},
      {JT_ANY, JQ_BACKGROUND, {JT_MEASURE_CORE_SPEED}},
      {JT_STEP, JQ_OF_TYPE, {JT_STEP_INST, JT_STEP_OUT}},
      {JT_READ_MEM, JQ_OF_TYPE, {JT_READ_MEM}},
      {JT_READ_MEM, JQ_CONTROL, {}},
  };
  for (const auto& [Type, Queue, Cancelled] : aCase) {
    CJobRings Rings;
    for (const U32 Each : std::get<2>(aCase[0])) Schedule(Rings, Each);
    DEVICE_JOB Fixed = Job(JT_RESET);
    Fixed.Flags = JF_NOT_CANCELLABLE;
    Rings.Schedule(Fixed);
    EXPECT_EQ(Rings.Cancel(Type, Queue), Cancelled.size());
    while (DEVICE_JOB* pJob = TakeOne(Rings)) {
      EXPECT_EQ(CJobRings::IsPending(*pJob), Cancelled.count(pJob->Type) == 0) << JobTypeName(pJob->Type);
    }
  }
}

TEST(JobRings, RunningJobIsPendingAndCannotBeCancelled) {
  CJobRings Rings;
  Schedule(Rings, JT_CONNECT);
  DEVICE_JOB* pJob = Rings.Take();
  EXPECT_EQ(Rings.FindPending(JT_CONNECT).pJob, pJob);
  EXPECT_EQ(Rings.FindPending(JT_ANY, JQ_READ).pJob, nullptr);
  EXPECT_EQ(Rings.Cancel(JT_ANY, JQ_ALL), 0u);
  Rings.Finished();
  EXPECT_EQ(Rings.FindPending(JT_CONNECT).pJob, nullptr);
}

TEST(JobRings, NotificationPoolRefusesRatherThanOverwrite) {
  CJobRings Rings;
  DEVICE_JOB New = Job(JT_HALT);
  DEVICE_JOB* pFirst = Rings.AddNotification(New);
  for (U32 i = 1; i < CJobRings::RING_SIZE; ++i) ASSERT_NE(Rings.AddNotification(New), nullptr);
  EXPECT_EQ(Rings.AddNotification(New), nullptr);
  EXPECT_EQ(Rings.Take(), nullptr) << "notifications are not executed";
  Rings.Release(pFirst);
  EXPECT_EQ(Rings.AddNotification(New), pFirst);
}
