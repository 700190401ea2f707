// Random straight-line code on our core, on an emulation library and on QEMU: registers, flags and memory have to
// agree. bench/long/sim_random compares at length.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/sim/batch.h"
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

class CCompareQemu : public testing::TestWithParam<CORE> {};

TEST_P(CCompareQemu, RandomSequencesAgree) {
  if (!CBatch::HasQemu(GetParam())) GTEST_SKIP() << "QEMU is not installed";
  constexpr U32 NUM_SEQUENCES = 400;
  constexpr U32 SEED = 20260202;
  const std::string sDir = testing::TempDir() + "sim_qemu_" + GetParam().sName;
  std::filesystem::create_directories(sDir);
  const CBatch Batch(GetParam(), SEED, NUM_SEQUENCES);
  for (const std::string& sText : Batch.Compare(Batch.RunOurs(), Batch.RunQemu(sDir), 5)) ADD_FAILURE() << sText;
}

const auto NameOf = [](const testing::TestParamInfo<CORE>& Info) { return std::string(Info.param.sName); };

std::vector<CORE> CoresOfQemu() {
  std::vector<CORE> aCores;
  std::copy_if(std::begin(CORES), std::end(CORES), std::back_inserter(aCores), CBatch::KnowsMachine);
  return aCores;
}

INSTANTIATE_TEST_SUITE_P(Cores, CCompare, testing::ValuesIn(CORES), NameOf);
INSTANTIATE_TEST_SUITE_P(Cores, CCompareQemu, testing::ValuesIn(CoresOfQemu()), NameOf);

}  // namespace

}  // namespace sim_test
