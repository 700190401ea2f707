// Random straight-line code on our core and on an emulation library: registers, flags and memory have to agree.

#include <gtest/gtest.h>

#include "tests/sim/peer_comparison.h"

namespace sim_test {

namespace {

class CCompare : public testing::TestWithParam<CORE> {};

TEST_P(CCompare, RandomSequencesAgree) {
  constexpr U32 NUM_SEQUENCES = 6000;
  constexpr U32 SEED = 20260101;
  CPeerComparison Comparison(GetParam(), SEED);
  int NumFailures = 0;
  for (U32 i = 0; i < NUM_SEQUENCES && NumFailures < 10; i++) {
    const std::string sDifference = Comparison.Next();
    NumFailures += !sDifference.empty();
    EXPECT_EQ(sDifference, "") << "sequence " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Cores, CCompare, testing::ValuesIn(CORES),
                         [](const auto& Info) { return std::string(Info.param.sName); });

}  // namespace

}  // namespace sim_test
