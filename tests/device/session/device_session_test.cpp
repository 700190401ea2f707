// Sessions through the device thread and the probe library with its simulated board, and what goes wrong with a target:
// faults are injected into the board.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QRegularExpression>
#include <QTimer>

#include <sys/resource.h>

#include <atomic>
#include <ctime>
#include <functional>
#include <thread>

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "device/device_event_listener.h"
#include "device/device_event_worker.h"
#include "device/device_log.h"
#include "device/probe_api/records.h"
#include "device/probe_api/register_index.h"
#include "tests/common/symbol_place.h"

namespace {

constexpr U32 CODE = 0x20000000;
constexpr int LIMIT_MS = 20000;
// adds r0, #1 / adds r1, #2 / b CODE
constexpr U8 LOOP_CODE[] = {0x01, 0x30, 0x02, 0x31, 0xFC, 0xE7};

struct CWitness : CDeviceEventListener {
  QStringList sHeard, sLog;
  template <typename... ARGS>
  void Note(const char* sFormat, ARGS... Args) {
    sHeard << QString::asprintf(sFormat, Args...);
  }

  void OnDeviceConnectDone(CONNECT_MODES Mode) override { Note("connected %u", Mode); }
  void OnDeviceConnectFailed(CONNECT_MODES Mode) override { Note("not connected %u", Mode); }
  void OnDeviceConnectionLost() override { Note("lost"); }
  void OnDeviceResumeFailed(RESUME_MODES) override { Note("not resumed"); }
  void OnDeviceHaltDone(U32, HALT_REASONS Reason) override { Note("halt %u", Reason); }
  void OnDeviceStepped(U32 PC) override { Note("stepped %x", PC); }
  void OnDeviceResetDone(U32, RESET_MODES Mode) override { Note("reset %u", Mode); }
  void OnDeviceResetFailed(U32, RESET_MODES Mode) override { Note("not reset %u", Mode); }
  void OnDeviceSetBPDone(U32) override { Note("bp"); }
  void OnDeviceSetBPFailed(U32) override { Note("no bp"); }
  void OnDeviceWriteMemMultipleDone(U32 NumRanges, U32*, U8*) override { Note("%u ranges", NumRanges); }
  void OnDeviceReadLocsDone(U32 Cnt, ELF_SYM_LOC*, U64* paValue, U8* paStatus, U32 Tag) override {
    Note("locations %u", Tag);
    for (U32 i = 0; i < Cnt; ++i) sHeard.last() += QString::asprintf(" %llx/%u", paValue[i], paStatus[i]);
  }
  void OnDeviceMeasureCoreSpeedDone(U32 Hz) override { Note("%u Hz", Hz); }
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
    VCore::Init({VNODE_CORE_CORTEX_M4, 0, 0}, VCORE_API{});
  }
  static void TearDownTestSuite() { CDevice::Get().Shutdown(); }

  void TearDown() override {
    Do("sim.clear-faults");
    Device.ScheduleClearAllBreakpoints();
    Device.ScheduleDisconnect();
    Settle();
  }

  // Connected and halted at CODE, all that was heard forgotten.
  void ConnectHalted() {
    Do("sim.clear-faults");
    Device.ScheduleSetConfigParam(DCP_DEVICE_NAME, "STM32F407IE");
    Device.ScheduleSetConfigParam(DCP_CONNECT_MODE, HOST_IF_USB);
    Device.ScheduleSetConfigParam(DCP_TARGET_IF, VNODE_TIF_SWD);
    Settle();
    Device.ScheduleConnect(CM_ATTACH);
    Device.ScheduleHalt();
    Settle();
    ASSERT_TRUE(Device.IsAccessible()) << Witness.sLog.join('\n').toStdString();
    Device.ScheduleWriteMem(CODE, sizeof(LOOP_CODE), 0, 0, 0, LOOP_CODE);
    Device.ScheduleWriteReg(VNODE_REG_PC, CODE);
    Settle();
    Witness.sHeard.clear();
    Witness.sLog.clear();
  }
  void Do(const char* sCommand) {
    Device.ScheduleExecVNodeCmd(sCommand);
    Settle();
  }
  // Until nothing is on its way any more.
  void Settle() {
    QElapsedTimer Clock;
    Clock.start();
    while (Device.IsQueueBusy(JQ_ALL) || Device.IsHaltUnderWay() || Device.HasEvents()) {
      ASSERT_LT(Clock.elapsed(), LIMIT_MS);
      if (Device.ProcessEvents(1000) == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
  }
  std::string TakeHeard() { return std::exchange(Witness.sHeard, {}).join("; ").toStdString(); }

  CDevice& Device = CDevice::Get();
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  CWitness Witness;
};

}  // namespace

TEST_F(DeviceSession, EachFaultHasItsTextAndItsEvent) {
  const auto Connect = [this] { Device.ScheduleConnect(CM_ATTACH); };
  const auto ConnectBy = [this](int HostIF, const char* sDevice) {
    Device.ScheduleSetConfigParam(DCP_CONNECT_MODE, HostIF);
    Device.ScheduleSetConfigParam(DCP_DEVICE_NAME, sDevice);
    Device.ScheduleConnect(CM_ATTACH);
  };
  const auto Run = [this] {
    Device.ScheduleContinue();
    Settle();
  };
  // The probe's command that makes the fault, what is done, the log, and what is heard.
  const std::tuple<const char*, std::function<void()>, const char*, const char*> aCase[] = {
      {"sim.fail SelectUSB 1", Connect, "Connect: serial number not found on usb", "not connected 1"},
      {"sim.fail SelectIP 1", [&] { ConnectBy(HOST_IF_IP, ""); }, "Connect: error during configuration of IP interface",
       "not connected 1"},
      {"", [&] { ConnectBy(7, ""); }, "Connect: unknown host interface", "not connected 1"},
      {"sim.fail Open 1", Connect, "Open: VNODE API call failed with error message: *", "not connected 1"},
      {"", [&] { ConnectBy(HOST_IF_USB, "NoSuchPart"); }, "Connect: could not configure V-Node", "not connected 1"},
      {"sim.refuse-connect 1", [&] { Connect(), Device.ScheduleHalt(); }, "Connecting to target...",
       "connected 1; halt 0"},
      {"sim.fail Halt 1", [&] { Run(), Device.ScheduleHalt(); }, "Halt: VNODE API call failed", ""},
      {"sim.fail Reset 1", [&] { Device.ScheduleReset(RM_RESET_HALT); }, "Reset: VNODE API call failed", "not reset 0"},
      {"sim.no-halt silent", [&] { Run(), Device.ScheduleReset(RM_BREAK_AT_SYMBOL); },
       "Target did not halt following reset", "not reset 1"},
      {"sim.fail SetBPEx 1", [&] { Device.ScheduleSetBreakpoint(CODE, BP_STATE_ENABLED, BP_TYPE_ANY); },
       "SetBreakpoint: VNODE API call failed", "no bp"},
      {"sim.fail SetBPEx 1", [&] { Device.ScheduleRunTo(CODE + 2); },
       "RunTo: could not set breakpoint on address 20000002", ""},
      {"", [&] { Run(), Device.ScheduleRunTo(CODE + 2); }, "run to: target not ready", ""},
      {"", [&] { Run(), Device.ScheduleStepInst(); }, "cannot step. target not halted", ""},
      {"sim.lose-connection 0", [&] { Device.ScheduleStepInst(); }, "Invalid connection status received", "lost"},
      {"sim.lose-connection 0", [&] { Device.ScheduleStepInst(), Settle(), Device.ScheduleContinue(); },
       "Continue: connection lost", "lost; not resumed"},
  };
  for (const auto& [sFault, Act, sLog, sHeard] : aCase) {
    SCOPED_TRACE(testing::Message() << sFault << " " << sLog);
    ConnectHalted();
    if (*sFault) Do(sFault);
    Act();
    Settle();
    const QRegularExpression Text(QRegularExpression::wildcardToRegularExpression(
        QString(sLog).replace("[", "[[]"), QRegularExpression::UnanchoredWildcardConversion));
    EXPECT_FALSE(Witness.sLog.filter(Text).isEmpty()) << Witness.sLog.join('\n').toStdString();
    EXPECT_EQ(TakeHeard(), sHeard);
  }
}

TEST_F(DeviceSession, AFullQueueRefusesAndAWaitEnds) {
  ConnectHalted();
  {
    std::lock_guard Lock(Device.Mutex());
    for (int i = 0; i < 10000; ++i) ASSERT_EQ(Device.ScheduleReadReg(0), 0);
    EXPECT_EQ(Device.ScheduleReadReg(0), -1);
    EXPECT_EQ(Device.WaitForJob(JT_READ_REG, false, 20), -1);
    EXPECT_TRUE(Device.IsJobPending(JT_READ_REG)) << "a wait that ends takes nothing back";
    DEVICE_JOB Job;
    Job.Type = JT_CONFIGURE;
    EXPECT_EQ(Device.RequestDynParam(Job, 0, 1000000001), -1);
    EXPECT_EQ(Device.RequestDynParam(Job, 0, 4), 0);
    EXPECT_EQ(Device.RequestDynParam(Job, 0, 4), -1);
    FreeDynParams(Job);
  }
  Settle();
  EXPECT_EQ(Witness.sLog,
            (QStringList{"Job JT_READ_REG not scheduled. Queue is full.", "Timeout while waiting for Job JT_READ_REG",
                         "Size limit exceeded for dynamic parameter of job JT_CONFIGURE.",
                         "Job JT_CONFIGURE has unallocated parameter."}));
  EXPECT_EQ(Device.ScheduleReadReg(0), 0);
}

TEST_F(DeviceSession, AFullEventRingDropsWhatCannotBeTold) {
  static int s_NumWarnings;
  s_NumWarnings = 0;
  ConnectHalted();
  qInstallMessageHandler([](QtMsgType Type, const QMessageLogContext&, const QString& sText) {
    s_NumWarnings += Type == QtWarningMsg && sText == "Target event queue full. job not inserted";
  });
  for (int i = 0; i < 10001; ++i) Device.LogText("x", DEVICE_LOG_DEBUG);
  EXPECT_EQ(s_NumWarnings, 1);
  Device.ScheduleSetBreakpoint(CODE, BP_STATE_ENABLED, BP_TYPE_ANY);
  EXPECT_NE(Device.WaitForJob(JT_SET_BP, false), -1) << "the device thread is not held up";
  while (Device.IsJobPending(JT_SET_BP)) QThread::msleep(1);
  Settle();
  qInstallMessageHandler(nullptr);
  EXPECT_GT(s_NumWarnings, 1);
  EXPECT_EQ(Witness.sLog.size(), 10000);
  EXPECT_EQ(TakeHeard(), "") << "the job's end was not told";
  EXPECT_EQ(Device.Context().Breakpoints.Count(), 1) << "but it was done";
}

TEST_F(DeviceSession, ABusyDeviceDoesNotHoldUpABlockingRead) {
  ConnectHalted();
  ELF_SYM_LOC Loc;
  Loc.Type = ELF_LOC_MEM;
  Loc.Addr = CODE;
  U8 aData[4] = {};
  const auto Read = [&] { return Device.ReadLocNow(Loc, sizeof(aData), aData); };
  std::atomic<bool> bHeld{false}, bEnd{false};
  std::thread LongJob([&] {
    std::lock_guard Lock(Device.Mutex());
    bHeld = true;
    while (!bEnd) std::this_thread::yield();
  });
  while (!bHeld) std::this_thread::yield();
  QElapsedTimer Clock;
  Clock.start();
  EXPECT_EQ(Read(), CDeviceAccess::BUSY);
  EXPECT_GE(Clock.elapsed(), 150);
  EXPECT_LT(Clock.elapsed(), 5000) << "a busy machine may take its time";
  bEnd = true;
  LongJob.join();
  Do("sim.slow 5");  // a batch of jobs takes longer than the read may wait
  for (int i = 0; i < 200; ++i) Device.ScheduleReadReg(0);
  EXPECT_EQ(Read(), 0) << "between two of many jobs";
  EXPECT_TRUE(Device.IsJobPending(JT_READ_REG));
  EXPECT_EQ(0, std::memcmp(aData, LOOP_CODE, sizeof(aData)));
}

TEST_F(DeviceSession, RangesLocationsAndCoprocessor) {
  ConnectHalted();
  const U8 aBytes[] = {1, 2, 3, 4, 5, 6};
  const U32 aRange[] = {CODE + 0x100, CODE + 0x104, CODE + 0x200, CODE + 0x202};
  EXPECT_EQ(Device.ScheduleWriteMemMultiple(2, aRange, sizeof(aBytes), aBytes, 0, 255, MEM_FLAG_DOWNLOAD), 0);
  EXPECT_EQ(Device.ScheduleWriteLoc(Loc(ELF_LOC_MEM, CODE + 0x202), 2, aBytes), 0);
  EXPECT_EQ(Device.ScheduleWriteLoc(Loc(ELF_LOC_REG, VNODE_REG_R0 + 2), 4, aBytes + 2), 0);
  const ELF_SYM_LOC aLoc[] = {Loc(ELF_LOC_MEM, CODE + 0x100), Loc(ELF_LOC_REG, VNODE_REG_R0 + 2),
                              Loc(ELF_LOC_MEM, 0x60000000), Loc(ELF_LOC_MEM, CODE + 0x200)};
  EXPECT_EQ(Device.ScheduleReadLocs(4, aLoc, 77), 0);
  EXPECT_EQ(Device.ScheduleMeasureCoreSpeed(), 0);
  Settle();
  EXPECT_EQ(TakeHeard(), "2 ranges; locations 77 4030201/0 6050403/0 ffffffffffffffff/1 2010605/0; 168000000 Hz");
  U8 aData[4] = {};
  EXPECT_EQ(Provider.GetLoc(&Witness, aLoc[1], 2, aData), 0);
  EXPECT_EQ(aData[1], 4);
  EXPECT_EQ(Device.ScheduleReadLoc(aLoc[0], 9), -1);
  U64 Value = 0;
  EXPECT_EQ(Provider.GetCPReg("15,0,0,0,0", &Value), 1) << "this core has no such registers";
  EXPECT_EQ(Provider.GetCPReg("14,0,0,0,0", &Value), 1);
  Settle();
  for (const char* sText : {"ReadLoc: cannot read data locations of size > 8 bytes", "ReadCPReg: VNODE API call failed",
                            "ReadCPReg: invalid register identifier", "Core speed measured at 168000000 Hz"}) {
    EXPECT_TRUE(Witness.sLog.contains(sText)) << sText;
  }
}

TEST_F(DeviceSession, BurstOfStepsEndsInOneUpdate) {
  ConnectHalted();
  constexpr int NUM_STEPS = 20;
  for (int i = 0; i < NUM_STEPS; ++i) Device.ScheduleStepInst();
  EXPECT_NE(Device.WaitForJob(JT_STEP_INST, false), -1);
  while (Device.IsJobPending(JT_STEP)) QThread::msleep(1);
  Settle();
  // Three instructions make one round of the loop.
  EXPECT_EQ(TakeHeard(), "stepped 20000004");
  for (const U32 Expected : {CODE + 4, CODE}) {
    U64 PC = 0;
    EXPECT_EQ(Provider.GetReg(&Provider, VNODE_REG_PC, &PC), 0);
    EXPECT_EQ(PC, Expected) << "the cache follows a step";
    Device.ScheduleStepInst();
    Settle();
  }
}

long NumWakeUps() {
  struct rusage Usage;
  getrusage(RUSAGE_SELF, &Usage);  // of all threads
  return Usage.ru_nvcsw;
}

// What a wake-up costs depends on what else the machine does; how often there is one does not.
TEST_F(DeviceSession, IdleSessionCostsNothing) {
  ConnectHalted();
  const long WakeUpsBefore = NumWakeUps();
  const std::clock_t Before = std::clock();
  bool bOver = false;
  QTimer::singleShot(1000, [&] { bOver = true; });
  while (!bOver) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_LT(NumWakeUps() - WakeUpsBefore, 100);
  EXPECT_LT(std::clock() - Before, CLOCKS_PER_SEC / 2) << "no thread goes round without waiting";
}

TEST_F(DeviceSession, WaitingOnTheMainThread) {
  ConnectHalted();
  EXPECT_EQ(Device.WaitForJob(JT_MEASURE_CORE_SPEED, false), 1);
  Device.ScheduleSetBreakpoint(CODE, BP_STATE_ENABLED, BP_TYPE_ANY);
  EXPECT_GE(Device.WaitForJob(JT_SET_BP, false), 0);
  EXPECT_FALSE(Witness.sHeard.contains("bp")) << "no event was delivered meanwhile";
  Device.ProcessEvents(10);
  EXPECT_TRUE(Witness.sHeard.contains("bp"));
}
