#include "device/event_ring.h"

#include <gtest/gtest.h>

#include "device/job_rings.h"

TEST(EventRing, KeepsOrderAndRefusesWhenFull) {
  CEventRing Ring;
  EXPECT_FALSE(Ring.Take().has_value());
  U64 Next = 0;
  U64 Expected = 0;
  for (int Round = 0; Round < 3; ++Round) {
    while (Ring.Put({DE_PROGRESS_VALUE, Next, 0})) ++Next;
    EXPECT_EQ(Next - Expected, CEventRing::RING_SIZE);
    for (int i = 0; i < 7000; ++i) ASSERT_EQ(Ring.Take()->Param1, Expected++);
  }
  EXPECT_FALSE(Ring.IsEmpty());
}

TEST(EventRing, RefusedJobStaysPending) {
  CEventRing Ring;
  CJobRings Rings;
  DEVICE_JOB Job;
  Job.Type = JT_CONNECT;
  Rings.Schedule(Job);
  DEVICE_JOB* pJob = Rings.Take();
  while (Ring.Put({DE_PROGRESS_VALUE, 0, 0})) {
  }
  EXPECT_FALSE(Ring.Put(JobFinishedEvent(pJob), pJob));
  EXPECT_TRUE(CJobRings::IsPending(*pJob));
  Ring.Take();
  EXPECT_TRUE(Ring.Put(JobFinishedEvent(pJob), pJob));
  EXPECT_FALSE(CJobRings::IsPending(*pJob));
}

TEST(EventRing, LooksAheadForSteps) {
  CEventRing Ring;
  DEVICE_JOB Step, Halt;
  Step.Type = JT_STEP_OUT;
  Halt.Type = JT_HALT;
  Ring.Put(JobFinishedEvent(&Halt));
  for (int i = 0; i < 8; ++i) Ring.Put({DE_PROGRESS_VALUE, 0, 0});
  EXPECT_FALSE(Ring.HasStepEvent(10));
  Ring.Put(JobFinishedEvent(&Step));
  EXPECT_TRUE(Ring.HasStepEvent(10));
  EXPECT_FALSE(Ring.HasStepEvent(9));
}

TEST(TextRing, CutsLongTextsBetweenCharacters) {
  const std::string sEuro = "\xE2\x82\xAC";
  const struct {
    std::string sText;
    size_t Length;
  } aCase[] = {
      {std::string(1000, 'a'), 1000},
      {std::string(1001, 'a'), 1000},
      {std::string(998, 'a') + sEuro, 998},
      {std::string(997, 'a') + sEuro + "b", 1000},
      {"", 0},
  };
  CTextRing Texts;
  for (const auto& Case : aCase) {
    const U32 Index = Texts.Add(Case.sText);
    EXPECT_EQ(Texts.Get(Index), Case.sText.substr(0, Case.Length));
  }
}

TEST(TextRing, TextsLiveForThousandFurtherOnes) {
  CTextRing Texts;
  const U32 First = Texts.Add("first");
  for (U32 i = 0; i < CTextRing::NUM_TEXTS - 1; ++i) Texts.Add("x");
  EXPECT_EQ(Texts.Get(First), "first");
  EXPECT_EQ(Texts.Add("again"), First);
  EXPECT_EQ(Texts.Get(~0ull), "");
}
