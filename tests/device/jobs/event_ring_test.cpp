#include "device/event_ring.h"

#include <gtest/gtest.h>

TEST(EventRing, KeepsOrderAndRefusesWhenFull) {
  CEventRing Ring;
  EXPECT_FALSE(Ring.Take().has_value());
  U64 Next = 0, Expected = 0;
  for (int Round = 0; Round < 3; ++Round) {
    while (Ring.Put({DE_PROGRESS_VALUE, Next, 0})) ++Next;
    EXPECT_EQ(Next - Expected, CEventRing::RING_SIZE);
    for (int i = 0; i < 7000; ++i) ASSERT_EQ(Ring.Take()->Param1, Expected++);
  }
  EXPECT_FALSE(Ring.IsEmpty());
}

TEST(TextRing, CutsLongTextsBetweenCharacters) {
  CTextRing Texts;
  const std::tuple<size_t, std::string, size_t> aCase[] = {
      {1000, "", 1000}, {1001, "", 1000}, {998, "€", 998}, {997, "€b", 1000}, {0, "", 0}};
  for (const auto& [NumFirst, sRest, Length] : aCase) {
    const std::string sText = std::string(NumFirst, 'a') + sRest;
    EXPECT_EQ(Texts.Get(Texts.Add(sText)), sText.substr(0, Length));
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
