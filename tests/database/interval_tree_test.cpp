#include "program/database/interval_tree.h"

#include <gtest/gtest.h>

#include <random>

namespace {

// Outer before inner, of equal ones the first added; intervals that end below their start are never found.
TEST(IntervalTreeTest, FindsWhatACompleteSearchFinds) {
  std::mt19937 Random(1);
  for (const U32 Extent : {200u, 100000u, 0xFFFFFFFFu}) {
    std::vector<std::pair<U32, U32>> Intervals;
    CIntervalTree Tree;
    for (U64 i = 0; i < 500; ++i) {
      const U32 Low = Random() % Extent;
      const U32 High = Low + Random() % std::min<U32>(Extent - Low, i % 10 == 0 ? Extent : Extent / 50 + 1);
      Intervals.push_back({Low, High});
      Tree.Add(Low, High, i);
      Tree.Add(Low + 1, Low, i);
    }
    EXPECT_TRUE(Tree.Find(Intervals[0].first).isEmpty()) << "nothing is found until it is built";
    Tree.Build();
    for (int Try = 0; Try < 2000; ++Try) {
      const auto& [NearLow, NearHigh] = Intervals[Random() % Intervals.size()];
      const U32 Point = Try % 3 == 0 ? NearLow : Try % 3 == 1 ? NearHigh + Random() % 2 : Random() % Extent;
      QList<U64> Expected;
      for (U64 i = 0; i < Intervals.size(); ++i) {
        if (Intervals[i].first <= Point && Point <= Intervals[i].second) Expected.append(i);
      }
      std::stable_sort(Expected.begin(), Expected.end(), [&](U64 a, U64 b) {
        return std::pair(Intervals[a].first, ~Intervals[a].second) <
               std::pair(Intervals[b].first, ~Intervals[b].second);
      });
      ASSERT_EQ(Tree.Find(Point), Expected) << Point;
    }
  }
}

}  // namespace
