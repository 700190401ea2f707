#include <chrono>
#include <ctime>
#include <thread>

#include "probe_fixture.h"

using namespace std::chrono_literals;

namespace {

constexpr U32 ENTRY = CFirmware::ENTRY;

}  // namespace

using RunControlTest = CProbeTest;

TEST_F(RunControlTest, RegistersNeedAHaltedCore) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  const U32 aIndex[] = {VNODE_REG_PC, VNODE_NUM_REGS + 10, VNODE_REG_MSP, VNODE_REG_XPSR};
  U32 aValue[4];
  U8 aStatus[4];
  ASSERT_EQ(API.VNODEARM_ReadRegs(aIndex, aValue, aStatus, 4), 0);
  EXPECT_THAT(aStatus, testing::ElementsAre(0, 1, 0, 0));
  EXPECT_THAT(aValue, testing::ElementsAre(ENTRY, testing::_, 0x20001000u, 0x01000000u));
  EXPECT_NE(API.VNODEARM_WriteReg(VNODE_NUM_REGS + 10, 0), 0);
  API.VNODEARM_GoEx(0, 1);
  EXPECT_TRUE(API.VNODEARM_ReadRegs(aIndex, aValue, aStatus, 4) && API.VNODEARM_WriteReg(5, 0) && API.VNODEARM_Step());
  EXPECT_THAT(Messages.Errors, testing::SizeIs(3));
}

TEST_F(RunControlTest, SleepingCoreTakesRealTimeAndNoHostTime) {
  Connect("nRF52840_xxAA");
  Load(CFirmware::Ticker(0, 64'000 - 1));  // 1 ms
  ASSERT_EQ(API.VNODEARM_WriteU32(CFirmware::COUNTER, 0), 0);
  const auto Begin = std::chrono::steady_clock::now();
  const std::clock_t HostBegin = std::clock();  // of all threads
  API.VNODEARM_GoEx(0, 1);
  std::this_thread::sleep_for(500ms);
  ASSERT_EQ(API.VNODEARM_Halt(), 0);
  const double Elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - Begin).count();
  EXPECT_LT(std::clock() - HostBegin, Elapsed * 0.1 * CLOCKS_PER_SEC);
  const double Ticks = ReadWord(CFirmware::COUNTER);
  EXPECT_GT(Ticks, Elapsed * 1000 * 0.5);
  EXPECT_LT(Ticks, Elapsed * 1000 * 1.1 + 10);
}

TEST_F(RunControlTest, LockupIsReportedAndCanBeHalted) {
  Connect("Cortex-M3");  // erased flash: no stack, no code
  EXPECT_THAT(Messages.Warnings, testing::IsEmpty()) << "a new board is expected to be empty";
  API.VNODEARM_GoEx(0, 1);
  WaitFor([] { return API.VNODEARM_IsHalted() != 0 || !Messages.Warnings.empty(); });
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  EXPECT_THAT(Messages.Warnings, testing::Contains(testing::HasSubstr("lockup")));
  EXPECT_EQ(API.VNODEARM_Halt(), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  Load(CFirmware::Counter(0));
  ASSERT_NE(API.VNODEARM_SetBPEx(ENTRY + 8, VNODE_BP_IMP_ANY | VNODE_BP_THUMB), 0);
  API.VNODEARM_GoEx(0, 1);
  EXPECT_TRUE(WaitForHalt()) << "a reset ends it";
}

TEST_F(RunControlTest, SurvivesCallsFromTwoThreads) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  std::atomic<bool> bDone{false};
  std::atomic<int> NumFailed{0};
  std::thread Windows([&] {
    while (!bDone) {
      U8 aData[64];
      VNODEARM_BP_INFO Info = {sizeof(Info)};
      VNODEARM_DEVICE_INFO Device = {sizeof(Device)};
      NumFailed += API.VNODEARM_ReadMem(0x20000000, sizeof(aData), aData) != 0 ||
                   API.VNODEARM_GetBPInfoEx(0, &Info) > 1 || API.VNODEARM_DEVICE_GetInfo(1, &Device) != 0;
    }
  });
  for (int i = 0; i < 200; ++i) {
    const int Handle = API.VNODEARM_SetBPEx(ENTRY + 6, VNODE_BP_IMP_ANY | VNODE_BP_THUMB);
    ASSERT_NE(Handle, 0);
    API.VNODEARM_GoEx(0, 1);
    ASSERT_TRUE(WaitForHalt());
    ASSERT_EQ(PC(), ENTRY + 6);
    ASSERT_EQ(API.VNODEARM_ClrBPEx(Handle), 0);
    API.VNODEARM_GoEx(0, 1);
    ASSERT_EQ(API.VNODEARM_Halt(), 0);
  }
  bDone = true;
  Windows.join();
  EXPECT_EQ(NumFailed, 0);
}
