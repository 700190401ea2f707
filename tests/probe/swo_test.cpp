// Stimulus ports, from the firmware's writes to what the probe hands out.

#include "channels_fixture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using v7em::A_Flood;
using v7em::A_Ticks;

constexpr U32 CLOCK_HZ = 64'000'000;
constexpr U32 SWO_HZ = 4'000'000;
constexpr U32 SWO_PORTS = 32;

class SwoTest : public ChannelsTest {
protected:
  std::string ReadPort(int Port) {
    std::string sText(1u << 20, 0);
    sText.resize(
        API.VNODEARM_SWO_ReadStimulus(Port, reinterpret_cast<U8*>(sText.data()), static_cast<U32>(sText.size())));
    return sText;
  }
  U32 NumPending() {
    U32 Num = ~0u;
    EXPECT_GE(API.VNODEARM_SWO_Control(VNODE_SWO_PENDING, &Num), 0);
    return Num;
  }
  int Enable(U32 PortMask) { return API.VNODEARM_SWO_EnableTarget(CLOCK_HZ, SWO_HZ, 0, PortMask); }
};

TEST_F(SwoTest, DeliversTheEnabledPorts) {
  LoadV7();
  const std::tuple<U32, bool, bool> ROWS[] = {{0, false, false}, {1, true, false}, {2, false, true}, {3, true, true}};
  for (const auto& [Mask, bText, bBytes] : ROWS) {
    SCOPED_TRACE(Mask);
    ASSERT_GE(API.VNODEARM_SWO_DisableTarget(0xFFFFFFFF), 0);
    ASSERT_GE(API.VNODEARM_SWO_Control(VNODE_SWO_PENDING, nullptr), 0);
    EXPECT_EQ(NumPending(), 0u);
    ASSERT_GE(Enable(Mask), 0);
    RunTicks(A_Ticks, 5);
    const U32 Pending = NumPending();
    const std::string sText = ReadPort(0);
    const std::string sBytes = ReadPort(1);
    EXPECT_EQ(sText.size() + sBytes.size(), Pending);
    EXPECT_EQ(sText.empty(), !bText);
    EXPECT_EQ(sBytes.empty(), !bBytes);
    // The firmware may have been halted within a line when the port was last closed.
    EXPECT_THAT(sText, HasSubstr(bText ? "tick\ntick\ntick\n" : ""));
    EXPECT_THAT(sBytes, HasSubstr(bBytes ? "\x34\x12\xEF\xCD\xAB\x89\x34\x12\xEF\xCD\xAB\x89" : ""));
    EXPECT_EQ(NumPending(), 0u);
  }
  EXPECT_EQ(API.VNODEARM_SWO_ReadStimulus(SWO_PORTS, nullptr, 4), 0u);
  EXPECT_EQ(API.VNODEARM_SWO_ReadStimulus(-1, nullptr, 4), 0u);
  EXPECT_LT(API.VNODEARM_SWO_Control(99, nullptr), 0);
}

TEST_F(SwoTest, SurvivesAResetAndArrivesWhileRunning) {
  LoadV7();
  ASSERT_GE(Enable(1), 0);
  ASSERT_EQ(API.VNODEARM_Reset(), 0);
  Run();
  std::string sText;
  EXPECT_TRUE(WaitFor([&] { return (sText += ReadPort(0)).size() >= 50; }));
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  EXPECT_THAT(sText, StartsWith("tick\ntick\n"));
}

TEST_F(SwoTest, DropsWhatDoesNotFitAndSaysSo) {
  LoadV7();
  ASSERT_GE(Enable(4), 0);
  constexpr U32 NUM_WORDS = 200'000;
  RunTicks(A_Ticks, 1);  // zeroes its variables first
  WriteWord(A_Flood, NUM_WORDS);
  Run();
  EXPECT_TRUE(WaitFor([&] { return ReadWord(A_Flood) == 0; }));
  const U32 Pending = NumPending();
  EXPECT_GE(Pending, 100'000u);
  EXPECT_LT(Pending, 4 * NUM_WORDS);
  const std::string sBytes = ReadPort(2);
  ASSERT_EQ(sBytes.size(), Pending);
  const U32* paWords = reinterpret_cast<const U32*>(sBytes.data());
  for (U32 i = 0; i < Pending / 4; i++) ASSERT_EQ(paWords[i], i) << "the oldest are kept, in order";
  std::lock_guard Lock(Messages.Mutex);
  EXPECT_THAT(Messages.Warnings,
              testing::Contains(HasSubstr(std::to_string(4 * NUM_WORDS - Pending) + " bytes are lost")));
}

TEST_F(SwoTest, SpeedsAreFractionsOfTheClock) {
  LoadV7();
  const std::pair<U32, U32> ROWS[] = {{64'000'000, 4'000'000}, {168'000'000, 6'000'000}, {16'000'000, 4'000'000},
                                      {1'000'000, 1'000'000},  {48'000'000, 6'000'000},  {0, 0},
                                      {2'147'483'647, 0}};  // clock, fastest; 0 for none
  for (const auto& [ClockHz, Fastest] : ROWS) {
    SCOPED_TRACE(ClockHz);
    U32 aSpeed[10] = {};
    const int Num = API.VNODEARM_SWO_GetCompatibleSpeeds(ClockHz, 0, aSpeed, 10);
    EXPECT_EQ(Num > 0, Fastest != 0);
    EXPECT_EQ(aSpeed[0], Fastest);
    for (int i = 0; i < Num; i++) {
      ASSERT_GT(aSpeed[i], 0u);
      EXPECT_EQ(ClockHz % aSpeed[i], 0u);
      EXPECT_GE(API.VNODEARM_SWO_EnableTarget(ClockHz, aSpeed[i], 0, 1), 0);
      EXPECT_EQ(ReadWord(0xE0040010), ClockHz / aSpeed[i] - 1) << "prescaler";
      EXPECT_TRUE(i == 0 || aSpeed[i] < aSpeed[i - 1]);
    }
  }
  EXPECT_LT(API.VNODEARM_SWO_EnableTarget(CLOCK_HZ, 2 * CLOCK_HZ, 0, 1), 0);
  EXPECT_LT(API.VNODEARM_SWO_EnableTarget(CLOCK_HZ, 1000, 0, 1), 0);
}

}  // namespace
