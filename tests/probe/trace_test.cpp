// Instruction trace, data events and breakpoints through the library, on compiled firmware.

#include <numeric>

#include "channels_fixture.h"

namespace {

using namespace v7em;

class TraceTest : public ChannelsTest {
protected:
  std::vector<U32> ReadTrace(U32 Num) {
    std::vector<U32> Addr(Num);
    const int NumRead = API.VNODE_STRACE_Read(Addr.data(), Num);
    EXPECT_GE(NumRead, 0);
    Addr.resize(static_cast<size_t>(std::max(NumRead, 0)));
    return Addr;
  }
  // A counter for each of NumHalfwords, and the total behind them; fetch first, then skip.
  std::vector<U64> ReadStats(U32 Addr, U32 NumHalfwords) {
    std::vector<U64> Items(2 * NumHalfwords + 2, 99);
    EXPECT_EQ(API.VNODE_STRACE_GetInstStats(Items.data(), Addr, static_cast<U32>(Items.size()),
                                            VNODE_INST_STATS_ITEM_SIZE, VNODE_INST_STATS_FETCH_AND_SKIP),
              static_cast<int>(Items.size()));
    return Items;
  }
};

TEST_F(TraceTest, GivesTheInstructionsBackNewestFirst) {
  LoadV7();
  ASSERT_GE(API.VNODE_STRACE_Start(), 0);
  std::vector<U32> Expected;
  for (int i = 0; i < 200; i++) {
    Expected.insert(Expected.begin(), PC());
    ASSERT_EQ(API.VNODEARM_Step(), 0);
  }
  std::vector<U32> Read = ReadTrace(50), More;
  while (!(More = ReadTrace(64)).empty()) Read.insert(Read.end(), More.begin(), More.end());
  EXPECT_EQ(Read, Expected);
  const U32 Pc = PC();
  ASSERT_EQ(API.VNODEARM_Step(), 0);
  EXPECT_EQ(ReadTrace(2), (std::vector<U32>{Pc, Expected[0]})) << "a step begins anew";
  ASSERT_GE(API.VNODE_STRACE_Stop(), 0);
  ASSERT_EQ(API.VNODEARM_Step(), 0);
  EXPECT_EQ(ReadTrace(1), (std::vector<U32>{Expected[1]})) << "what was recorded stays, and reading goes on";
  ASSERT_GE(API.VNODE_STRACE_Start(), 0);
  EXPECT_TRUE(ReadTrace(2).empty()) << "a start forgets";
}

TEST_F(TraceTest, KeepsAsManyInstructionsAsConfigured) {
  LoadV7();
  for (const char* sConfig : {"BufferSize=1024", "PortWidth=4, BufferSize=2048", ""})
    EXPECT_EQ(API.VNODE_STRACE_Config(sConfig), 0) << sConfig;
  for (const char* sConfig : {"BufferSize=0", "BufferSize=99999999", "PortWidth=3", "Colour=red", "BufferSize"})
    EXPECT_EQ(API.VNODE_STRACE_Config(sConfig), -1) << sConfig;
  for (const char* sRange : {"0x60000000 0x10", "0x0 0xFFFFFFFF"})
    EXPECT_THAT(Exec(std::string("ReadIntoTraceCache ") + sRange), testing::HasSubstr("Cannot read")) << sRange;
  ASSERT_GE(API.VNODE_STRACE_Start(), 0);
  RunTicks(A_Ticks, 50);
  EXPECT_EQ(ReadTrace(5000).size(), 2048u);
}

TEST_F(TraceTest, CountsFetchesAndSkips) {
  LoadV7();
  ASSERT_GE(API.VNODE_STRACE_Start(), 0);
  RunTicks(A_Ticks, 20);
  constexpr U32 NUM_HALFWORDS = sizeof(IMAGE) / 2;
  const std::vector<U64> Items = ReadStats(0, NUM_HALFWORDS);
  const U64* paFetched = Items.data();
  const U64* paSkipped = paFetched + NUM_HALFWORDS + 1;
  EXPECT_EQ(paFetched[A_SysTickHandler / 2], ReadWord(A_Ticks));
  EXPECT_EQ(paFetched[A_Work / 2], ReadWord(A_Passes));
  const U64 NumFetched = paFetched[NUM_HALFWORDS], NumSkipped = paSkipped[NUM_HALFWORDS];
  EXPECT_EQ(NumFetched, std::accumulate(paFetched, paFetched + NUM_HALFWORDS, U64{0})) << "all that ran is there";
  EXPECT_GT(NumSkipped, 0u);
  // A part has the totals of the whole.
  EXPECT_EQ(ReadStats(A_Work, 1),
            (std::vector<U64>{paFetched[A_Work / 2], NumFetched, paSkipped[A_Work / 2], NumSkipped}));
  EXPECT_EQ(ReadStats(0x60000000, 1), (std::vector<U64>{0, NumFetched, 0, NumSkipped}));
  U64 aItems[4];
  EXPECT_LE(API.VNODE_STRACE_GetInstStats(aItems, 0, 4, 4, 9), 0);
  EXPECT_LE(API.VNODE_STRACE_GetInstStats(aItems, 0, 4, 8, 1), 0);
}

TEST_F(TraceTest, FlashBreakpointSurvivesReprogramming) {
  LoadV7();
  ASSERT_NE(API.VNODEARM_SetBPEx(A_Work, VNODE_BP_THUMB | VNODE_BP_IMP_SW), 0);
  std::vector<U8> Read(sizeof(IMAGE));
  for (int Round = 0; Round < 2; Round++) {
    Run();
    ASSERT_TRUE(WaitForHalt());
    EXPECT_EQ(PC(), A_Work);
    ASSERT_EQ(API.VNODEARM_ReadMem(0, sizeof(IMAGE), Read.data()), 0);
    EXPECT_EQ(memcmp(Read.data(), IMAGE, sizeof(IMAGE)), 0) << "reads show what was programmed";
    // The same program with another constant behind it, and the page of the breakpoint anew.
    const U8 Behind = static_cast<U8>(Round);
    API.VNODEARM_BeginDownload(0);
    ASSERT_EQ(API.VNODEARM_WriteMem(0, sizeof(IMAGE), IMAGE), 0);
    ASSERT_EQ(API.VNODEARM_WriteMem(sizeof(IMAGE), 1, &Behind), 0);
    ASSERT_EQ(API.VNODEARM_EndDownload(), 0);
    ASSERT_EQ(API.VNODEARM_Reset(), 0);
  }
}

}  // namespace
