// The real time terminal against firmware that echoes in capitals, and against control blocks that make no sense.

#include <algorithm>

#include "channels_fixture.h"

namespace {

using namespace v7em;

constexpr U32 BLOCK = A__MORVEK_RTT;
constexpr U32 NUM_UP = BLOCK + 16, NUM_DOWN = BLOCK + 20, UP = BLOCK + 24, DOWN = BLOCK + 48;
enum : U32 { BUFFER = 4, SIZE = 8, WR_OFF = 12, RD_OFF = 16 };
constexpr U32 QUEUE_SIZE = 32;

class RttTest : public ChannelsTest {
protected:
  void TearDown() override {
    Exec("SetRTTAddr 0xFFFFFFFF");
    Exec("SetRTTSearchRanges 0x20000000 0x40000");
    ChannelsTest::TearDown();
  }
  int Start() { return API.VNODE_RTTERMINAL_Control(VNODE_RTT_START, nullptr); }
  int Read(U32 Queue, std::string* psText) {
    char ac[100];
    const int Num = API.VNODE_RTTERMINAL_Read(Queue, ac, sizeof(ac));
    if (Num > 0) psText->append(ac, static_cast<size_t>(Num));
    return Num;
  }
  int Write(const std::string& sText) {
    return API.VNODE_RTTERMINAL_Write(0, sText.data(), static_cast<U32>(sText.size()));
  }
  // Sends the text in pieces as they fit, and receives the answer.
  std::string Talk(const std::string& sText) {
    std::string sAnswer;
    size_t Sent = 0;
    WaitFor([&] {
      Sent += static_cast<size_t>(std::max(0, Write(sText.substr(Sent))));
      Read(0, &sAnswer);
      return sAnswer.size() >= sText.size();
    });
    return sAnswer;
  }
};

TEST_F(RttTest, FindsItsBlockWhereItMayBe) {
  LoadV7();
  const std::tuple<const char*, const char*, bool> ROWS[] = {
      {"SetRTTAddr 0x20000000", "SetRTTSearchRanges 0x20001000 0x10", true},
      {"SetRTTAddr 0x20000100", "SetRTTSearchRanges 0x20001000 0x1000", false},
      {"SetRTTAddr 0x20000100", "SetRTTSearchRanges 0x1FFFF000 0x2000", true},  // begins where no memory is
      {"SetRTTAddr 0xFFFFFFF8", "SetRTTSearchRanges 0x20001000 0x1000, 0x20000000 0x1000", true},
      {"SetRTTAddr 0xFFFFFFFF", "SetRTTSearchRanges 0x20000000 0x18", true},
      {"SetRTTAddr 0xFFFFFFFF", "SetRTTSearchRanges 0x20000000 0x17", false},
      {"SetRTTAddr 0xFFFFFFFF", "SetRTTSearchRanges 0x20000004 0xFFFFFFFF", false},
  };
  RunTicks(A_Ticks, 1);
  for (const auto& [sAddr, sRanges, bFound] : ROWS) {
    SCOPED_TRACE(std::string(sAddr) + ", " + sRanges);
    EXPECT_EQ(Exec(sAddr), "");
    EXPECT_EQ(Exec(sRanges), "");
    ASSERT_EQ(Start(), 0);
    EXPECT_EQ(Write("ab"), bFound ? 2 : 0);
    Run();
    std::string sAnswer;
    EXPECT_EQ(WaitFor([&] { return Read(0, &sAnswer) != 0 || !bFound; }), true);
    EXPECT_EQ(sAnswer, bFound ? "AB" : "");
    API.VNODEARM_Halt();
  }
}

TEST_F(RttTest, CarriesLongTextsWhileTheCoreRuns) {
  LoadV7();
  ASSERT_EQ(Start(), 0);
  std::string sText, sExpected;
  EXPECT_EQ(Read(0, &sText), 0) << "the block is not there before the firmware ran";
  Run();
  for (int i = 0; i < 300; i++) sText += static_cast<char>('a' + i % 26);
  std::transform(sText.begin(), sText.end(), std::back_inserter(sExpected), [](char c) { return std::toupper(c); });
  EXPECT_EQ(Talk(sText), sExpected);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  // A reset takes the block's contents away, and the firmware makes them anew.
  ASSERT_EQ(API.VNODEARM_Reset(), 0);
  RunTicks(A_Ticks, 2);
  Run();
  EXPECT_EQ(Talk("again"), "AGAIN");
  EXPECT_EQ(API.VNODE_RTTERMINAL_Control(VNODE_RTT_STOP, nullptr), 0);
  EXPECT_LT(Read(0, &sText), 0);
  EXPECT_LT(Write("x"), 0);
}

TEST_F(RttTest, RefusesBlocksThatMakeNoSense) {
  LoadV7();
  RunTicks(A_Ticks, 1);
  const std::tuple<const char*, U32, U32, int, int> ROWS[] = {
      // what, address, value, results of read and write
      {"nothing wrong", UP, 0, 3, 4},
      {"write offset at the end", UP + WR_OFF, QUEUE_SIZE, 0, 4},
      {"huge write offset", DOWN + WR_OFF, 0xFFFFFFFF, 3, 0},
      {"huge read offset", UP + RD_OFF, 0x80000000, 0, 4},
      {"read offset at the end", DOWN + RD_OFF, QUEUE_SIZE, 3, 0},
      {"no size", UP + SIZE, 0, 0, 4},
      {"size beyond the address space", UP + SIZE, 0xF0000000, 0, 4},
      {"buffer that is no memory", UP + BUFFER, 0x60000000, 0, 4},
      {"buffer at the end of the address space", DOWN + BUFFER, 0xFFFFFFF0, 3, 0},
      {"buffer in flash", DOWN + BUFFER, 0x1000, 3, 0},
      {"no queue up", NUM_UP, 0, -1, 4},
      {"no queue down", NUM_DOWN, 0, 3, -1},
      {"negative number", NUM_UP, 0xFFFFFFFF, 0, 0},
      {"other text", BLOCK, 0x21212121, 0, 0},
  };
  std::vector<U8> Saved(72);
  ASSERT_EQ(API.VNODEARM_ReadMem(BLOCK, 72, Saved.data()), 0);
  for (const auto& [sWhat, Addr, Value, NumRead, NumWritten] : ROWS) {
    SCOPED_TRACE(sWhat);
    ASSERT_EQ(API.VNODEARM_WriteMem(BLOCK, 72, Saved.data()), 0);
    WriteWord(UP + WR_OFF, 3);
    for (const U32 Offset : {UP + RD_OFF, DOWN + WR_OFF, DOWN + RD_OFF}) WriteWord(Offset, 0);
    ASSERT_EQ(Start(), 0);
    WriteWord(Addr, Value);
    std::string sText;
    EXPECT_EQ(Read(0, &sText), NumRead);
    EXPECT_TRUE((Addr == NUM_UP && NumWritten != 0) || Write("test") == NumWritten);
    EXPECT_LE(Read(1, &sText), 0);
    EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  }
}

}  // namespace
