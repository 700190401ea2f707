#include "program/database/interval_tree.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(IntervalTreeTest, OuterStandsBeforeInner) {
  CIntervalTree Tree;
  Tree.Add(110, 120, 3);
  Tree.Add(100, 200, 1);
  Tree.Add(100, 150, 2);
  Tree.Add(110, 120, 4);
  Tree.Add(300, 300, 5);
  Tree.Add(310, 309, 6);
  EXPECT_TRUE(Tree.Find(115).isEmpty());
  Tree.Build();
  EXPECT_EQ(Tree.Find(115), (QList<U64>{1, 2, 3, 4}));
  EXPECT_EQ(Tree.Find(120), (QList<U64>{1, 2, 3, 4}));
  EXPECT_EQ(Tree.Find(121), (QList<U64>{1, 2}));
  EXPECT_EQ(Tree.Find(200), (QList<U64>{1}));
  EXPECT_EQ(Tree.Find(300), (QList<U64>{5}));
  for (const U32 Point : {99u, 201u, 299u, 301u, 309u, 310u}) EXPECT_TRUE(Tree.Find(Point).isEmpty()) << Point;
  Tree.Clear();
  EXPECT_TRUE(Tree.Find(115).isEmpty());
}

TEST(IntervalTreeTest, FindsWhatACompleteSearchFinds) {
  std::mt19937 Random(1);
  struct INTERVAL {
    U32 Low;
    U32 High;
  };
  for (const U32 Extent : {200u, 100000u, 0xFFFFFFFFu}) {
    std::vector<INTERVAL> Intervals;
    CIntervalTree Tree;
    for (U64 i = 0; i < 500; ++i) {
      const U32 Low = Random() % Extent;
      const U32 High = Low + Random() % std::min<U32>(Extent - Low, i % 10 == 0 ? Extent : Extent / 50 + 1);
      Intervals.push_back({Low, High});
      Tree.Add(Low, High, i);
    }
    Tree.Build();
    for (int Try = 0; Try < 2000; ++Try) {
      const INTERVAL& Near = Intervals[Random() % Intervals.size()];
      const U32 Point = Try % 3 == 0 ? Near.Low : Try % 3 == 1 ? Near.High + Random() % 2 : Random() % Extent;
      QList<U64> Expected;
      for (U64 i = 0; i < Intervals.size(); ++i) {
        if (Intervals[i].Low <= Point && Point <= Intervals[i].High) Expected.append(i);
      }
      QList<U64> Found = Tree.Find(Point);
      for (qsizetype i = 1; i < Found.size(); ++i) {
        EXPECT_LE(Intervals[Found[i - 1]].Low, Intervals[Found[i]].Low);
      }
      std::sort(Found.begin(), Found.end());
      ASSERT_EQ(Found, Expected) << Point;
    }
  }
}

}  // namespace
