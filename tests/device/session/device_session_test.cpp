// The device thread, the probe library with its simulated board, and the main thread's events, all together.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <ctime>

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_data_provider.h"
#include "device/device_event_worker.h"
#include "device/probe_api/register_index.h"

namespace {

constexpr U32 CODE = 0x20000000;
constexpr U32 CORE_CORTEX_M4 = 0x0E0000FF;
constexpr int LIMIT_MS = 10000;
// adds r0, #1 / adds r1, #2 / b CODE
constexpr U8 LOOP_CODE[] = {0x01, 0x30, 0x02, 0x31, 0xFC, 0xE7};

struct CWitness : CDeviceEventListener {
  QStringList sHeard, sLog;

  void OnDeviceConnectDone(CONNECT_MODES) override { sHeard << "connected"; }
  void OnDeviceDisconnectDone() override { sHeard << "disconnected"; }
  void OnDeviceAboutToDisconnect() override { sHeard << "leaving"; }
  void OnDeviceBeforeResume() override { sHeard << "before resume"; }
  void OnDeviceBeforeStep() override { sHeard << "before step"; }
  void OnDeviceResumeDone(RESUME_MODES) override { sHeard << "resumed"; }
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override {
    sHeard << QString("halt %1 %2").arg(PC, 0, 16).arg(Reason);
  }
  void OnDeviceStepped(U32 PC) override { sHeard << QString("stepped %1").arg(PC, 0, 16); }
  void OnDeviceWriteMemDone(U32, U32, U8*) override { sHeard << "written"; }
  void OnDeviceWriteMemFailed(U32, U32, U8*) override { sHeard << "write failed"; }
  void OnDeviceSetBPDone(U32) override { sHeard << "bp"; }
  void OnDeviceReadMemDone(U32, U32 NumBytes, U8* paData, U8* paStatus) override {
    const auto Hex = [=](U8* pa) { return QByteArray(reinterpret_cast<char*>(pa), NumBytes).toHex(); };
    sHeard << "mem " + Hex(paData) + ' ' + Hex(paStatus);
  }
  void OnDeviceReadRegsDone(U32 Cnt, U32* paIndex, U64* paValue, U8*) override {
    for (U32 i = 0; i < Cnt; ++i) sHeard << QString("reg %1=%2").arg(paIndex[i]).arg(paValue[i], 0, 16);
  }
  void OnDeviceReadLocsDone(U32 Cnt, ELF_SYM_LOC*, U64* paValue, U8* paStatus, U32 Tag) override {
    sHeard << QString("locations %1").arg(Tag);
    for (U32 i = 0; i < Cnt; ++i) sHeard.last() += QString(" %1/%2").arg(paValue[i], 0, 16).arg(paStatus[i]);
  }
  void OnDeviceWriteMemMultipleDone(U32 NumRanges, U32*, U8*) override {
    sHeard << QString("%1 ranges").arg(NumRanges);
  }
  void OnDeviceMeasureCoreSpeedDone(U32 Hz) override { sHeard << QString("%1 Hz").arg(Hz); }
  void OnDeviceLogMsg(const char* sText, MSG_INFO_FLAGS) override { sLog << sText; }
};

class DeviceSession : public testing::Test {
protected:
  static void SetUpTestSuite() {
    static int Argc = 1;
    static char acName[] = "device_session_test";
    static char* pArg = acName;
    new QCoreApplication(Argc, &pArg);
    CDevice::SetLibraryFolder(VEXOR_BIN_DIR);
    CDeviceDataProvider::Get();
    new CDeviceEventWorker(CDevice::Get(), qApp);
    VCore::Init({CORE_CORTEX_M4, 0, 0}, VCORE_API{});
  }
  static void TearDownTestSuite() { CDevice::Get().Shutdown(); }

  void SetUp() override {
    Device.ScheduleSetConfigParam(DCP_DEVICE_NAME, "STM32F407IE");
    Device.ScheduleSetConfigParam(DCP_CONNECT_MODE, HOST_IF_USB);
    Device.ScheduleSetConfigParam(DCP_TARGET_IF, 1);
    Device.ScheduleConnect(CM_ATTACH);
    ASSERT_TRUE(Hears("connected")) << Witness.sLog.join('\n').toStdString();
    Device.ScheduleHalt();
    ASSERT_TRUE(Until([&] { return !Witness.sHeard.filter("halt ").isEmpty(); }));
    Device.ScheduleWriteMem(CODE, sizeof(LOOP_CODE), 0, 0, 0, LOOP_CODE);
    ASSERT_TRUE(Hears("written"));
    Device.ScheduleWriteReg(VNODE_REG_PC, CODE);
    ASSERT_TRUE(Hears("halt 20000000 1"));
    Witness.sHeard.clear();
  }
  void TearDown() override {
    Device.ScheduleClearAllBreakpoints();
    Device.ScheduleDisconnect();
    EXPECT_TRUE(Hears("disconnected"));
    EXPECT_TRUE(Witness.sHeard.contains("leaving"));
  }

  template <typename F>
  static bool Until(F&& Condition) {
    QElapsedTimer Clock;
    Clock.start();
    while (!Condition()) {
      if (Clock.elapsed() > LIMIT_MS) return false;
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    }
    return true;
  }
  bool Hears(const QString& sText) {
    return Until([&] { return Witness.sHeard.contains(sText); });
  }
  void Idle() {
    EXPECT_TRUE(Until([&] { return !Device.IsQueueBusy(JQ_ALL) && !Device.HasEvents(); }));
  }

  CDevice& Device = CDevice::Get();
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  CWitness Witness;
};

}  // namespace

TEST_F(DeviceSession, ReadsMemoryAndRegistersThroughTheCache) {
  EXPECT_EQ(Provider.RequestMem(&Witness, CODE, sizeof(LOOP_CODE), 0, 0, 0), DATA_PENDING);
  const std::vector<U32> aIndex = {VNODE_REG_PC, VNODE_REG_R0};
  EXPECT_EQ(Provider.RequestRegs(&Witness, 2, aIndex.data()), DATA_PENDING);
  ASSERT_TRUE(Hears("mem 01300231fce7 000000000000") && Hears("reg 15=20000000"));
  EXPECT_EQ(Witness.sHeard.filter("mem").size(), 1) << "data goes to who asked for it, once";
  EXPECT_EQ(Provider.RequestMem(&Witness, CODE, 4, 0, 0, 0), DATA_DELIVERED);
  U8 aData[4] = {};
  EXPECT_EQ(Provider.GetMem(&Provider, CODE + 2, 4, 0, aData), 0);
  EXPECT_EQ(aData[0], 0x02);
  EXPECT_EQ(Provider.GetMem(&Provider, 0x60000000, 4, 0, aData), 1) << "nothing there";
}

TEST_F(DeviceSession, RangesLocationsAndCoprocessor) {
  const auto Loc = [](U32 Type, U32 Place) {
    ELF_SYM_LOC Result;
    Result.Type = Type;
    Result.Addr = Result.Reg = Place;
    return Result;
  };
  const U8 aBytes[] = {1, 2, 3, 4, 5, 6};
  const U32 aRange[] = {CODE + 0x100, CODE + 0x104, CODE + 0x200, CODE + 0x202};
  EXPECT_EQ(Device.ScheduleWriteMemMultiple(2, aRange, sizeof(aBytes), aBytes, 0, 255, MEM_FLAG_DOWNLOAD), 0);
  EXPECT_EQ(Device.ScheduleWriteLoc(Loc(ELF_LOC_MEM, CODE + 0x202), 2, aBytes), 0);
  EXPECT_EQ(Device.ScheduleWriteLoc(Loc(ELF_LOC_REG, VNODE_REG_R0 + 2), 4, aBytes + 2), 0);
  const ELF_SYM_LOC aLoc[] = {Loc(ELF_LOC_MEM, CODE + 0x100), Loc(ELF_LOC_REG, VNODE_REG_R0 + 2),
                              Loc(ELF_LOC_MEM, 0x60000000), Loc(ELF_LOC_MEM, CODE + 0x200)};
  EXPECT_EQ(Device.ScheduleReadLocs(4, aLoc, 77), 0);
  ASSERT_TRUE(Hears("locations 77 4030201/0 6050403/0 ffffffffffffffff/1 2010605/0"))
      << Witness.sHeard.join('\n').toStdString();
  EXPECT_TRUE(Witness.sHeard.contains("2 ranges"));
  EXPECT_EQ(Device.ScheduleMeasureCoreSpeed(), 0);
  EXPECT_TRUE(Hears("168000000 Hz"));
  U8 aData[4] = {};
  EXPECT_EQ(Provider.GetLoc(&Witness, aLoc[1], 2, aData), 0);
  EXPECT_EQ(aData[1], 4);
  EXPECT_EQ(Device.ScheduleReadLoc(aLoc[0], 9), -1);
  U64 Value = 0;
  EXPECT_EQ(Provider.GetCPReg("15,0,0,0,0", &Value), 1) << "this core has no such registers";
  EXPECT_EQ(Provider.GetCPReg("14,0,0,0,0", &Value), 1);
  Idle();
  for (const char* sText : {"ReadLoc: cannot read data locations of size > 8 bytes", "ReadCPReg: VNODE API call failed",
                            "ReadCPReg: invalid register identifier", "Core speed measured at 168000000 Hz"}) {
    EXPECT_TRUE(Witness.sLog.contains(sText)) << sText;
  }
}

TEST_F(DeviceSession, BurstOfStepsEndsInOneUpdate) {
  constexpr int NUM_STEPS = 20;
  for (int i = 0; i < NUM_STEPS; ++i) Device.ScheduleStepInst();
  EXPECT_EQ(Witness.sHeard.filter("before step").size(), NUM_STEPS);
  EXPECT_NE(Device.WaitForJob(JT_STEP_INST, false), -1);
  while (Device.IsJobPending(JT_STEP)) QThread::msleep(1);
  Idle();
  // Three instructions make one round of the loop.
  EXPECT_EQ(Witness.sHeard.filter("stepped"), QStringList{"stepped 20000004"});
  for (const U32 Expected : {CODE + 4, CODE}) {
    U64 PC = 0;
    EXPECT_EQ(Provider.GetReg(&Provider, VNODE_REG_PC, &PC), 0);
    EXPECT_EQ(PC, Expected) << "the cache follows a step";
    Device.ScheduleStepInst();
    Idle();
  }
}

TEST_F(DeviceSession, BreakpointHaltsAndIsReported) {
  Device.ScheduleSetBreakpoint(CODE + 2, BP_STATE_ENABLED, BP_TYPE_ANY);
  ASSERT_TRUE(Hears("bp"));
  for (int i = 0; i < 3; ++i) {
    Witness.sHeard.clear();
    Device.ScheduleContinue();
    ASSERT_TRUE(Hears("halt 20000002 2"));
    EXPECT_EQ(Witness.sHeard, (QStringList{"before resume", "resumed", "halt 20000002 2"}));
  }
}

TEST_F(DeviceSession, MemoryIsReadOnTheRun) {
  Device.ScheduleContinue();
  ASSERT_TRUE(Hears("resumed"));
  EXPECT_EQ(Provider.RequestMem(&Witness, CODE, 2, 0, 0, 0), DATA_PENDING);
  ASSERT_TRUE(Hears("mem 0130 0000"));
  const U8 aData[4] = {1, 2, 3, 4};
  Device.ScheduleWriteMem(0x60000000, 4, 0, 0, 0, aData);
  ASSERT_TRUE(Hears("write failed"));
}

TEST_F(DeviceSession, JobsWithNothingToDoEndInSilence) {
  for (const U32 Type : {JT_HALT, JT_READ_BYTE, JT_EDIT_BP, JT_FLUSH_RTT}) {
    DEVICE_JOB Job;
    Job.Type = Type;
    EXPECT_EQ(Device.ScheduleJob(&Job), 0);
    EXPECT_NE(Device.WaitForJob(Type, true), -1);
  }
  Idle();
  EXPECT_EQ(Witness.sHeard, QStringList());
}

TEST_F(DeviceSession, IdleSessionCostsNothing) {
  Idle();
  const std::clock_t Before = std::clock();  // of all threads
  bool bOver = false;
  QTimer::singleShot(2000, [&] { bOver = true; });
  while (!bOver) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_LT(std::clock() - Before, CLOCKS_PER_SEC * 2 / 50);
}

TEST_F(DeviceSession, WaitingOnTheMainThread) {
  EXPECT_EQ(Device.WaitForJob(JT_MEASURE_CORE_SPEED, false), 1);
  Device.ScheduleSetBreakpoint(CODE, BP_STATE_ENABLED, BP_TYPE_ANY);
  EXPECT_GE(Device.WaitForJob(JT_SET_BP, false), 0);
  EXPECT_FALSE(Witness.sHeard.contains("bp")) << "no event was delivered meanwhile";
  Device.ProcessEvents(10);
  EXPECT_TRUE(Witness.sHeard.contains("bp"));
}
