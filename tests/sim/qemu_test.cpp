// A sample of what bench/long/sim_random compares with QEMU at length.

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/sim/batch.h"

namespace sim_test {

namespace {

std::vector<CORE> QemuCores() {
  std::vector<CORE> aCores;
  for (const CORE& Core : CORES) {
    if (CBatch::MachineOf(Core)) aCores.push_back(Core);
  }
  return aCores;
}

class CQemu : public testing::TestWithParam<CORE> {};

TEST_P(CQemu, RandomSequencesAgree) {
  if (!CBatch::HasQemu(GetParam())) GTEST_SKIP() << "QEMU is not installed";
  constexpr U32 NUM_SEQUENCES = 400;
  constexpr U32 SEED = 20260202;
  const std::string sDir = testing::TempDir() + "sim_qemu_" + GetParam().sName;
  std::filesystem::create_directories(sDir);
  const CBatch Batch(GetParam(), SEED, NUM_SEQUENCES);
  for (const std::string& sText : Batch.Compare(Batch.RunOurs(), Batch.RunQemu(sDir), 5)) ADD_FAILURE() << sText;
}

INSTANTIATE_TEST_SUITE_P(Cores, CQemu, testing::ValuesIn(QemuCores()),
                         [](const auto& Info) { return std::string(Info.param.sName); });

}  // namespace

}  // namespace sim_test
