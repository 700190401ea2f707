// Random straight-line code on our core, on an emulation library and on QEMU: registers, flags and memory have to
// agree. bench/long/sim_random compares at length.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <filesystem>
#include <random>
#include <sstream>

#include "tests/sim/batch.h"
#include "tests/sim/board.h"
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

// Sums of two products, worked out by hand, because the library sets Q for a sum that overflows on the way only.
TEST(CCompareByHand, DualProductsSetQForTheResultAlone) {
  constexpr U32 SMLAD = 0xFB202301, SMUAD = 0xFB20F301, SMLSD = 0xFB402301, SMUSD = 0xFB40F301;  // R3, R0, R1, R2
  constexpr U32 X = 0x10, Q = 1u << 27;
  const std::tuple<U32, U32, U32, U32, U32, U32> ROWS[] = {
      // instruction, Rn, Rm, Ra, result, Q; products of the low and of the high halves
      {SMUAD, 0x80008000, 0x80008000, 0, 0x80000000, Q},               // 2^30 + 2^30
      {SMLAD, 0x80008000, 0x80008000, 0xFFFFFFFF, 0x7FFFFFFF, 0},      // 2^31 - 1
      {SMLAD, 0x80008000, 0x80008000, 0x80000000, 0, 0},               // 2^31 - 2^31
      {SMLAD, 0x7FFF8000, 0x80007FFF, 0xFFFF0000, 0x80000000, 0},      // twice -0x3FFF8000, -0x10000
      {SMLAD, 0x7FFF8000, 0x80007FFF, 0x80000000, 0x00010000, Q},      // twice -0x3FFF8000, -2^31
      {SMLAD | X, 0x80008000, 0x80008000, 0xFFFFFFFF, 0x7FFFFFFF, 0},  // 2^31 - 1
      {SMLAD | X, 0x7FFF8000, 0x80007FFF, 0x0000FFFF, 0x80000000, Q},
      {SMLSD, 0x7FFF8000, 0x80008000, 0x00008000, 0x80000000, Q},
      {SMLSD, 0x80008000, 0x80007FFF, 0xFFFF7FFF, 0x7FFFFFFF, Q},
      {SMLSD | X, 0x80008000, 0x80007FFF, 0x00008000, 0x80000000, Q},  // 2^30 + 0x3FFF8000 + 0x8000
      {SMUSD | X, 0x80008000, 0x80007FFF, 0, 0x7FFF8000, 0},
  };
  for (const auto& [Inst, Rn, Rm, Ra, Result, QFlag] : ROWS) {
    SCOPED_TRACE(testing::Message() << std::hex << Inst << " " << Rn << " " << Rm << " " << Ra);
    for (const U32 Before : {0u, Q}) {
      CBoard Board;
      Board.Load({static_cast<U16>(Inst >> 16), static_cast<U16>(Inst), 0xBE00});
      for (const auto& [Reg, Value] : {std::pair(0u, Rn), {1u, Rm}, {2u, Ra}}) Board.WriteReg(Reg, Value);
      Board.WriteReg(VNODE_REG_APSR, Before);
      EXPECT_EQ(Board.Step(), sim::STOP::SLICE_END);
      EXPECT_EQ(Board.Reg(3), Result);
      EXPECT_EQ(Board.Reg(VNODE_REG_APSR), QFlag | Before) << "nothing clears it";
    }
  }
}

class CCompareQemu : public testing::TestWithParam<CORE> {
protected:
  void SetUp() override {
    if (!CBatch::HasQemu(GetParam())) GTEST_SKIP() << "QEMU is not installed";
    std::filesystem::create_directories(m_sDir);
  }
  const std::string m_sDir = testing::TempDir() + "sim_qemu_" + GetParam().sName;
};

TEST_P(CCompareQemu, RandomSequencesAgree) {
  constexpr U32 NUM_SEQUENCES = 400;
  constexpr U32 SEED = 20260202;
  const CBatch Batch(GetParam(), SEED, NUM_SEQUENCES);
  for (const std::string& sText : Batch.Compare(Batch.RunOurs(), Batch.RunQemu(m_sDir), 5)) ADD_FAILURE() << sText;
}

namespace protection {

#include "tests/sim/firmware/protection.inc"

constexpr U32 TABLE = 0x5000;
constexpr U32 RESULTS = 0x20010000;
constexpr U32 WINDOW = 0x20100000, CALL_WINDOW = 0x20200000, WINDOW_SIZE = 0x10000;
constexpr U32 INSTRUCTION_CYCLE = 6;  // bytes after which the window's instructions repeat
constexpr U32 FETCH = 5, CALL = 6, NUM_KINDS = 7;
constexpr U32 USER = 1, MASKED = 2, FAULT_DISABLED = 4, FP = 8;
constexpr U32 CTRL_HFNMIENA = 2;

struct RECORD {
  U32 Kind = ~0u;
  U32 Addr = 0;
  U32 Control = 0;
  U32 Flags = 0;
  U32 HandlerRasr = 0;
  U32 aRegion[4][2] = {};  // RBAR and RASR of regions 2 to 5
};

struct RESULT {
  U32 MMFAR, Entered, CFSR, HFSR, Loaded, RBAR, RASR;
  bool operator==(const RESULT&) const = default;
};

RECORD Draw(std::mt19937& Random, bool bFpu) {
  const auto Below = [&](U32 Limit) { return static_cast<U32>(Random() % Limit); };
  RECORD Record;
  Record.Kind = Below(NUM_KINDS);
  Record.Control = 1 | Below(4) << 1;
  Record.Flags = Below(4) == 0 ? FAULT_DISABLED : 0;
  const bool bMasked = Record.Kind != CALL && !(Record.Control & CTRL_HFNMIENA) && Below(8) == 0;
  Record.Flags |= bMasked ? MASKED : Below(2) ? USER : 0;
  if (bFpu && Record.Kind == CALL) Record.Flags |= Below(2) ? FP : 0;
  const U32 Window = Record.Kind == CALL ? CALL_WINDOW : WINDOW;
  Record.Addr = Window + Below(WINDOW_SIZE);
  for (U32 i = 0; i < 4; i++) {
    const bool bStack = i == 3 && Record.Kind == CALL;  // most calls find their stack, which is taken from them then
    const U32 SizeBits = bStack ? 9 + Below(8) : 5 + Below(12);
    const U32 Base = Window + (Below(WINDOW_SIZE) & ~((1u << SizeBits) - 1));
    const U32 Parts = Below(2) * Below(256) << 8;
    const U32 RASR = (Random() & 0x173F0000) | Parts | (SizeBits - 1) << 1 | (Below(5) != 0);
    Record.aRegion[i][0] = Base | 1u << 4 | (2 + i);
    Record.aRegion[i][1] = Below(3) ? RASR & ~(1u << 28) : RASR;
    if (bStack) Record.aRegion[i][1] = 3u << 24 | (RASR & 0x3F) | 1;
    if (i == 3) Record.HandlerRasr = Below(2) * (RASR ^ Below(8) << 24);
    const U32 Boundary = Base + ((1u << SizeBits) >> 3) * Below(9);
    if (bStack) Record.Addr = Boundary + ((1u << SizeBits) >> 1);
    if (!bStack && Below(3)) Record.Addr = Boundary + Below(9) * 4 - 16;
  }
  Record.Addr = std::clamp(Record.Addr & ~3u, Window + 16, Window + WINDOW_SIZE - 16);
  if (Record.Kind == FETCH) Record.Addr -= (Record.Addr - Window) % INSTRUCTION_CYCLE;
  // QEMU fetches ahead over the end of a region.
  if (Record.Kind == FETCH && Record.Addr % 32 > 32 - INSTRUCTION_CYCLE) Record.Addr += INSTRUCTION_CYCLE;
  if (Record.Kind == CALL) Record.Addr &= ~7u;
  return Record;
}

// The words of a record or a result, in the order of their fields.
template <class FIELDS>
std::string Text(const FIELDS& Fields) {
  std::ostringstream s;
  for (const U32 Word : std::bit_cast<std::array<U32, sizeof(Fields) / 4>>(Fields)) s << " " << std::hex << Word;
  return s.str() + "\n";
}

}  // namespace protection

// Accesses of every kind near the bounds of random regions: what faults, how, and what the registers say of it.
TEST_P(CCompareQemu, ProtectionAgrees) {
  using namespace protection;
  constexpr U32 NUM_RECORDS = 2000;
  constexpr U64 MAX_INSTS = 2'000'000;
  constexpr size_t WORDS = sizeof(RESULT) / 4;
  std::mt19937 Random(20260303);
  const bool bFpu = GetParam().Fpu != sim::FPU::NONE;
  std::vector<RECORD> Records(NUM_RECORDS);
  for (RECORD& Record : Records) Record = Draw(Random, bFpu);
  Records.emplace_back();
  std::vector<U8> aImage(IMAGE, IMAGE + sizeof(IMAGE));
  aImage.resize(TABLE + 4 + Records.size() * sizeof(RECORD));
  aImage[TABLE] = bFpu;
  std::memcpy(&aImage[TABLE + 4], Records.data(), Records.size() * sizeof(RECORD));
  const std::vector<U32> aOurs = RunOnOurs(GetParam(), aImage, MAX_INSTS, RESULTS, NUM_RECORDS * WORDS);
  const std::vector<U32> aTheirs = RunOnQemu(aImage, CBatch::MachineOf(GetParam()), m_sDir);
  ASSERT_EQ(aOurs.size(), NUM_RECORDS * WORDS);
  ASSERT_EQ(aTheirs.size(), aOurs.size());
  U32 NumDifferent = 0;
  for (U32 i = 0; i < NUM_RECORDS && NumDifferent < 5; i++) {
    RESULT Ours, Theirs;
    std::memcpy(&Ours, &aOurs[i * WORDS], sizeof(Ours));
    std::memcpy(&Theirs, &aTheirs[i * WORDS], sizeof(Theirs));
    NumDifferent += Ours != Theirs;
    EXPECT_TRUE(Ours == Theirs) << i << ":" << Text(Records[i]) << "ours" << Text(Ours) << "QEMU" << Text(Theirs);
  }
}

const auto NameOf = [](const testing::TestParamInfo<CORE>& Info) { return std::string(Info.param.sName); };

std::vector<CORE> CoresOfQemu() {
  std::vector<CORE> aCores;
  std::copy_if(std::begin(CORES), std::end(CORES), std::back_inserter(aCores), CBatch::MachineOf);
  return aCores;
}

INSTANTIATE_TEST_SUITE_P(Cores, CCompare, testing::ValuesIn(CORES), NameOf);
INSTANTIATE_TEST_SUITE_P(Cores, CCompareQemu, testing::ValuesIn(CoresOfQemu()), NameOf);

}  // namespace

}  // namespace sim_test
