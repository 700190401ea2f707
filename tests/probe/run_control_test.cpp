#include <sys/resource.h>

#include <chrono>
#include <thread>

#include "probe_fixture.h"

using namespace std::chrono_literals;

namespace {

constexpr U32 ENTRY = CFirmware::ENTRY;

double ProcessSeconds() {
  rusage Usage = {};
  getrusage(RUSAGE_SELF, &Usage);
  const auto Seconds = [](const timeval& Time) { return static_cast<double>(Time.tv_sec) + Time.tv_usec * 1e-6; };
  return Seconds(Usage.ru_utime) + Seconds(Usage.ru_stime);
}

}  // namespace

class RunControlTest : public CProbeTest {
protected:
  // The host may be busy: waits up to two seconds until the firmware has counted so far.
  bool WaitForCounter(U32 Value) {
    for (int i = 0; i < 2000; ++i) {
      if (ReadWord(CFirmware::COUNTER) >= Value) return true;
      std::this_thread::sleep_for(1ms);
    }
    return false;
  }
};

TEST_F(RunControlTest, ResetHaltsAtTheResetVector) {
  for (const auto& [sDevice, Base] : {std::pair("nRF52840_xxAA", 0u), {"STM32F407IE", 0x08000000u}}) {
    SCOPED_TRACE(sDevice);
    Connect(sDevice);
    Load(CFirmware::Counter(Base));
    API.VNODEARM_GoEx(0, 1);
    std::this_thread::sleep_for(10ms);
    EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
    ASSERT_EQ(API.VNODEARM_Reset(), 0);
    EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
    EXPECT_EQ(PC(), Base + ENTRY);
    EXPECT_EQ(API.VNODEARM_ReadReg(VNODE_REG_SP), 0x20001000u);
    EXPECT_EQ(API.VNODEARM_ReadReg(VNODE_REG_R0), 0u);
    API.VNODEARM_Close();
  }
}

TEST_F(RunControlTest, StepsOneInstruction) {
  Connect("Cortex-M0");
  Load(CFirmware::Counter(0));
  for (U32 Offset : {2u, 4u, 6u, 8u, 4u, 6u}) {
    ASSERT_EQ(API.VNODEARM_Step(), 0);
    EXPECT_EQ(PC(), ENTRY + Offset);
  }
  EXPECT_EQ(API.VNODEARM_ReadReg(VNODE_REG_R0 + 1), 2u);
}

TEST_F(RunControlTest, HaltsWithinAMillisecondOrSo) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  auto Shortest = 1s + 0ns;
  for (int i = 0; i < 20; ++i) {
    API.VNODEARM_GoEx(0, 1);
    std::this_thread::sleep_for(3ms);
    const auto Begin = std::chrono::steady_clock::now();
    ASSERT_EQ(API.VNODEARM_Halt(), 0);
    Shortest = std::min(Shortest, std::chrono::steady_clock::now() - Begin);
    ASSERT_EQ(API.VNODEARM_IsHalted(), 1);
    const U32 Stopped = ReadWord(CFirmware::COUNTER);
    std::this_thread::sleep_for(1ms);
    EXPECT_EQ(ReadWord(CFirmware::COUNTER), Stopped) << "still running";
  }
  // The best of many, so that a busy host does not count.
  EXPECT_LT(Shortest, 5ms);
}

TEST_F(RunControlTest, MemoryIsAccessibleWhileRunning) {
  Connect("Cortex-M3");
  Load(CFirmware::Counter(0));
  API.VNODEARM_GoEx(0, 1);
  U32 Last = 0;
  for (U32 i = 0; i < 10; ++i) {
    ASSERT_TRUE(WaitForCounter(Last + 1));
    Last = ReadWord(CFirmware::COUNTER);
    ASSERT_EQ(API.VNODEARM_WriteU32(0x20000100, i), 0);
    EXPECT_EQ(ReadWord(0x20000100), i);
    EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  }
}

TEST_F(RunControlTest, RegistersNeedAHaltedCore) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  const U32 aIndex[] = {VNODE_REG_PC, VNODE_NUM_REGS + 10, VNODE_REG_MSP, VNODE_REG_XPSR};
  U32 aValue[4];
  U8 aStatus[4];
  ASSERT_EQ(API.VNODEARM_ReadRegs(aIndex, aValue, aStatus, 4), 0);
  EXPECT_THAT(aStatus, testing::ElementsAre(0, 1, 0, 0));
  EXPECT_EQ(aValue[0], ENTRY);
  EXPECT_EQ(aValue[2], 0x20001000u);
  EXPECT_EQ(aValue[3], 0x01000000u);
  EXPECT_EQ(API.VNODEARM_WriteReg(5, 0x12345678), 0);
  EXPECT_EQ(API.VNODEARM_ReadReg(5), 0x12345678u);
  EXPECT_NE(API.VNODEARM_WriteReg(VNODE_NUM_REGS + 10, 0), 0);
  API.VNODEARM_GoEx(0, 1);
  EXPECT_NE(API.VNODEARM_ReadRegs(aIndex, aValue, aStatus, 4), 0);
  EXPECT_NE(API.VNODEARM_WriteReg(5, 0), 0);
  EXPECT_NE(API.VNODEARM_Step(), 0);
  EXPECT_THAT(Messages.Errors, testing::SizeIs(3));
}

TEST_F(RunControlTest, StopsAtABreakpointInstruction) {
  Connect("Cortex-M0");
  CFirmware Firmware(0);
  Firmware.Code(ENTRY, {0x2001, 0xBEAB, 0x2002, 0xBE00});  // MOVS R0, #1; BKPT 0xAB; MOVS R0, #2; BKPT 0
  Load(Firmware);
  API.VNODEARM_GoEx(0, 1);
  ASSERT_TRUE(WaitForHalt());
  EXPECT_EQ(PC(), ENTRY + 2);
  EXPECT_EQ(API.VNODEARM_ReadReg(0), 1u);
  ASSERT_EQ(API.VNODEARM_WriteReg(VNODE_REG_PC, ENTRY + 4), 0);
  API.VNODEARM_GoEx(0, 1);
  ASSERT_TRUE(WaitForHalt());
  EXPECT_EQ(PC(), ENTRY + 6);
  EXPECT_EQ(API.VNODEARM_ReadReg(0), 2u);
}

TEST_F(RunControlTest, SleepingCoreTakesRealTimeAndNoHostTime) {
  Connect("nRF52840_xxAA");
  Load(CFirmware::Ticker(0, 64'000 - 1));  // 1 ms
  ASSERT_EQ(API.VNODEARM_WriteU32(CFirmware::COUNTER, 0), 0);
  const auto Begin = std::chrono::steady_clock::now();
  const double HostBegin = ProcessSeconds();
  API.VNODEARM_GoEx(0, 1);
  std::this_thread::sleep_for(500ms);
  ASSERT_EQ(API.VNODEARM_Halt(), 0);
  const double Elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - Begin).count();
  const double HostTime = ProcessSeconds() - HostBegin;
  const double Ticks = ReadWord(CFirmware::COUNTER);
  RecordProperty("HostShare", std::to_string(HostTime / Elapsed));
  EXPECT_GT(Ticks, Elapsed * 1000 * 0.5);
  EXPECT_LT(Ticks, Elapsed * 1000 * 1.1 + 10);
  EXPECT_LT(HostTime, Elapsed * 0.1);
}

TEST_F(RunControlTest, LockupIsReportedAndCanBeHalted) {
  Connect("Cortex-M3");  // erased flash: no stack, no code
  EXPECT_THAT(Messages.Warnings, testing::IsEmpty()) << "a new board is expected to be empty";
  API.VNODEARM_GoEx(0, 1);
  for (int i = 0; i < 2000 && Messages.Warnings.empty(); ++i) {
    std::this_thread::sleep_for(1ms);
    EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  }
  EXPECT_THAT(Messages.Warnings, testing::Contains(testing::HasSubstr("lockup")));
  EXPECT_EQ(API.VNODEARM_Halt(), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  Load(CFirmware::Counter(0));
  API.VNODEARM_GoEx(0, 1);
  EXPECT_TRUE(WaitForCounter(1));
}

TEST_F(RunControlTest, TargetThatDoesNotHalt) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  EXPECT_EQ(Exec("sim.no-halt"), "");
  EXPECT_EQ(API.VNODEARM_Reset(), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  EXPECT_NE(API.VNODEARM_Halt(), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  EXPECT_EQ(Exec("sim.no-halt 0"), "");
  EXPECT_EQ(API.VNODEARM_Halt(), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
}

TEST_F(RunControlTest, MeasuresTheDevicesClock) {
  Connect("STM32F407IE");
  EXPECT_EQ(API.VNODEARM_MeasureCPUSpeedEx(0x20000000, 1, 1), 168'000'000);
  EXPECT_LE(API.VNODEARM_MeasureCPUSpeedEx(0x60000000, 1, 1), 0);
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
      VNODEARM_DEVICE_INFO Device = {};
      Device.SizeOfStruct = sizeof(Device);
      NumFailed += API.VNODEARM_ReadMem(0x20000000, sizeof(aData), aData) != 0;
      NumFailed += API.VNODEARM_GetBPInfoEx(0, &Info) > 1;
      NumFailed += API.VNODEARM_DEVICE_GetInfo(1, &Device) != 0;
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
