// High-speed sampling of variables that the firmware changes with its own time.

#include "channels_fixture.h"

namespace {

using namespace v7em;

struct SAMPLE {
  U32 TimeUs;
  U32 Ticks;
  U16 Ramp;
} __attribute__((packed));

const VNODE_HSS_BLOCK BLOCKS[] = {{A_Ticks, 4, 0, 0}, {A_Ramp, 2, 0, 0}};

class HssTest : public ChannelsTest {
protected:
  std::vector<SAMPLE> ReadSamples(U32 Num) {
    std::vector<SAMPLE> Samples(Num);
    const int NumBytes = API.VNODE_HSS_Read(Samples.data(), Num * sizeof(SAMPLE));
    EXPECT_GE(NumBytes, 0);
    EXPECT_EQ(NumBytes % sizeof(SAMPLE), 0u);
    Samples.resize(static_cast<size_t>(NumBytes) / sizeof(SAMPLE));
    return Samples;
  }
};

TEST_F(HssTest, SamplesAtAFixedPeriodOfTheTargetsTime) {
  LoadV7();
  RunTicks(A_Ticks, 2);
  for (const U32 PeriodUs : {1000, 250, 100}) {
    SCOPED_TRACE(PeriodUs);
    ASSERT_EQ(API.VNODE_HSS_Start(BLOCKS, 2, static_cast<int>(PeriodUs), 1), 0);
    RunTicks(A_Ticks, 30);
    const std::vector<SAMPLE> Samples = ReadSamples(100'000);
    ASSERT_GE(Samples.size(), 29'000 / PeriodUs);
    for (size_t i = 0; i < Samples.size(); i++) {
      ASSERT_EQ(Samples[i].TimeUs, i * PeriodUs);
      // A sample may lie between the two writes of the handler.
      const U32 Ticks = Samples[i].Ticks - Samples[0].Ticks;
      ASSERT_NEAR(Ticks, Samples[i].TimeUs / 1000.0, 1.0);
      ASSERT_TRUE(Samples[i].Ramp == 3 * Samples[i].Ticks || Samples[i].Ramp == 3 * (Samples[i].Ticks - 1));
    }
    EXPECT_EQ(ReadSamples(1000).size(), 0u) << "a halted core gives none";
    EXPECT_EQ(API.VNODE_HSS_Stop(), 0);
    EXPECT_LT(API.VNODE_HSS_Stop(), 0);
  }
}

TEST_F(HssTest, GivesWholeSamplesWhileTheCoreRuns) {
  LoadV7();
  ASSERT_EQ(API.VNODE_HSS_Start(BLOCKS, 2, 100, 1), 0);
  Run();
  SAMPLE aSample[4];
  U32 Next = 0;
  EXPECT_TRUE(WaitFor([&] {
    const int Num = API.VNODE_HSS_Read(aSample, sizeof(SAMPLE) * 3 + 5);
    EXPECT_EQ(Num % sizeof(SAMPLE), 0u);
    for (size_t i = 0; i < Num / sizeof(SAMPLE); i++, Next += 100) EXPECT_EQ(aSample[i].TimeUs, Next);
    return Next >= 20'000;
  }));
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  EXPECT_EQ(API.VNODE_HSS_Read(aSample, sizeof(SAMPLE) - 1), 0);
}

TEST_F(HssTest, DropsWholeSamplesWhenItsBufferIsFull) {
  LoadV7();
  const VNODE_HSS_BLOCK Block = {0x20000000, 0x8000, 0, 0};
  ASSERT_EQ(API.VNODE_HSS_Start(&Block, 1, 100, 1), 0);
  RunTicks(A_Ticks, 40);
  constexpr U32 SAMPLE_WORDS = 0x2001;
  std::vector<U32> Words(400 * SAMPLE_WORDS);
  const int NumBytes = API.VNODE_HSS_Read(Words.data(), static_cast<U32>(4 * Words.size()));
  ASSERT_GT(NumBytes, 0);
  EXPECT_EQ(NumBytes % (4 * SAMPLE_WORDS), 0u);
  EXPECT_LT(NumBytes, static_cast<int>(4 * Words.size()));
  const U32 NumSamples = static_cast<U32>(NumBytes) / (4 * SAMPLE_WORDS);
  for (U32 i = 0; i < NumSamples; i++) ASSERT_EQ(Words[i * SAMPLE_WORDS], i * 100) << "the oldest are kept";
  std::lock_guard Lock(Messages.Mutex);
  EXPECT_THAT(Messages.Warnings, testing::Contains(testing::HasSubstr("samples are lost")));
}

TEST_F(HssTest, RefusesWhatCannotBeSampled) {
  const VNODE_HSS_BLOCK Good = {A_Ticks, 4, 0, 0};
  EXPECT_EQ(API.VNODE_HSS_Start(&Good, 1, 1000, 1), VNODE_HSS_UNSPECIFIED) << "not connected";
  LoadV7();
  U8 Byte;
  EXPECT_LT(API.VNODE_HSS_Read(&Byte, 1), 0) << "not started";
  std::vector<VNODE_HSS_BLOCK> Blocks(VNODE_HSS_MAX_BLOCKS + 1, Good);
  const std::tuple<const char*, VNODE_HSS_BLOCK, int, int> ROWS[] = {
      {"good", Good, 1, 0},
      {"as many as there may be", Good, VNODE_HSS_MAX_BLOCKS, 0},
      {"too many", Good, VNODE_HSS_MAX_BLOCKS + 1, VNODE_HSS_TOO_MANY_BLOCKS},
      {"none", Good, 0, VNODE_HSS_UNSPECIFIED},
      {"no memory", {0x60000000, 4, 0, 0}, 1, VNODE_HSS_UNSPECIFIED},
      {"over the end", {0x2003FFFE, 4, 0, 0}, 1, VNODE_HSS_UNSPECIFIED},
      {"empty", {A_Ticks, 0, 0, 0}, 1, VNODE_HSS_UNSPECIFIED},
      {"too large", {0x20000000, 0x20000, 0, 0}, 1, VNODE_HSS_NO_MEMORY},
      {"huge", {0x20000000, 0xFFFFFFFF, 0, 0}, 1, VNODE_HSS_NO_MEMORY},
  };
  for (const auto& [sWhat, Block, Num, Result] : ROWS) {
    Blocks[0] = Block;
    EXPECT_EQ(API.VNODE_HSS_Start(Blocks.data(), Num, 1000, 1), Result) << sWhat;
  }
}

}  // namespace
