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
