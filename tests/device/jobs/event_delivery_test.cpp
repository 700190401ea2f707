#include "device/event_delivery.h"

#include <gtest/gtest.h>

#include <QStringList>

#include "device/probe_api/register_index.h"

namespace {

struct FAKE_VIEW : CDeviceView {
  bool bAccessible = true;
  bool bReady = true;
  bool bStepping = false;
  U64 PC = 0x100;
  U32 IndexOfPC = VNODE_REG_PC;
  bool IsConnected() const override { return true; }
  bool IsAccessible() const override { return bAccessible; }
  bool IsSessionReady() const override { return bReady; }
  bool IsStepping() const override { return bStepping; }
  U64 GetPC() const override { return PC; }
  U32 PCIndex() const override { return IndexOfPC; }
};

// Writes down some of what it hears.
struct CRecorder : CDeviceEventListener {
  QStringList sCalls;
  QString sPrefix;
  void Note(const QString& sText) { sCalls << sPrefix + sText; }
  static QString Hex(U64 Value) { return QString::number(Value, 16); }

  void OnDeviceConnectDone(CONNECT_MODES Mode) override { Note("connected " + QString::number(Mode)); }
  void OnDeviceConnectFailed(CONNECT_MODES Mode) override { Note("not connected " + QString::number(Mode)); }
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override { Note("halt " + Hex(PC) + " " + Hex(Reason)); }
  void OnDeviceResetDone(U32 PC, RESET_MODES Mode) override { Note("reset " + Hex(PC) + " " + Hex(Mode)); }
  void OnDeviceResetFailed(U32, RESET_MODES) override { Note("no reset"); }
  void OnDeviceStepOverDone(U32 PC) override { Note("step over " + Hex(PC)); }
  void OnDeviceStepOverFailed(U32) override { Note("no step over"); }
  void OnDeviceStepped(U32 PC) override { Note("stepped " + Hex(PC)); }
  void OnDeviceSetBPDone(U32 Addr) override { Note("bp " + Hex(Addr)); }
  void OnDeviceBPStateChanged() override { Note("bps changed"); }
  void OnDeviceSetWPsFailed(U32 Cnt, WP* paWPs) override { Note("no wps " + Hex(Cnt) + " " + Hex(paWPs[0].Addr)); }
  void OnDeviceWPStateChanged() override { Note("wps changed"); }
  void OnDeviceWriteRegDone(U32 Index, U64 Value) override { Note("reg " + Hex(Index) + "=" + Hex(Value)); }
  void OnDeviceWriteMemFailed(U32 Addr, U32, U8*) override { Note("no write " + Hex(Addr)); }
  void OnDeviceWriteAccess() override { Note("write access"); }
  void OnDeviceSetTargetExecStateDone(U64 PC, U64 SP) override { Note("state " + Hex(PC) + " " + Hex(SP)); }
  void OnDeviceEndDownloadFailed(const char* sFile, int Error) override {
    Note(QString("no download %1 %2").arg(sFile).arg(Error));
  }
  void OnDeviceSetConfigTextDone(DEV_CONFIG_PARAMS Param, const char* sText) override {
    Note(QString("config %1 %2").arg(Param).arg(sText));
  }
  void OnDeviceSetConfigValueDone(DEV_CONFIG_PARAMS Param, int Value) override {
    Note(QString("config %1 %2").arg(Param).arg(Value));
  }
  void OnDeviceReadRegDone(U32 Index, U64 Value) override { Note("read " + Hex(Index) + "=" + Hex(Value)); }
  void OnDeviceReadLocDone(const ELF_SYM_LOC& Loc, U32 Bytes, U8* paData) override {
    Note(QString("loc %1 %2 %3").arg(Hex(Loc.Addr)).arg(Bytes).arg(paData[0]));
  }
  void OnDeviceCPUModeChanged(U32 Mode) override { Note("cpu mode " + QString::number(Mode)); }
  void OnDeviceExecModeChanged(U32 Mode) override { Note("exec mode " + QString::number(Mode)); }
  void OnDeviceLogMsg(const char* sText, MSG_INFO_FLAGS Flags) override { Note(QString(sText) + " " + Hex(Flags)); }
  void OnDeviceEndianessChanged(int Inst, int Data) override { Note(QString("endian %1 %2").arg(Inst).arg(Data)); }
};

struct EventDelivery : testing::Test {
  CJobRings Rings;
  CEventRing Events;
  CTextRing Texts;
  FAKE_VIEW View;
  CEventDelivery Delivery{Rings, Events, Texts, View};
  CRecorder Recorder;

  EventDelivery() { CDeviceEventListener::SetView(&View); }
  ~EventDelivery() override { CDeviceEventListener::SetView(nullptr); }

  void Put(DEVICE_JOB Job) {
    DEVICE_JOB* pJob = Rings.AddNotification(Job);
    ASSERT_NE(pJob, nullptr);
    ASSERT_TRUE(Events.Put(JobFinishedEvent(pJob)));
  }
  QStringList Deliver(DEVICE_JOB Job) {
    Recorder.sCalls.clear();
    Put(Job);
    Delivery.ProcessEvents(10);
    return Recorder.sCalls;
  }
  static DEVICE_JOB Job(U32 Type, U32 Status = JS_DONE, U64 P0 = 0, U64 P1 = 0, U64 Result = 0) {
    DEVICE_JOB New;
    New.Type = Type;
    New.Status = Status;
    New.Param[0] = P0;
    New.Param[1] = P1;
    New.Result = Result;
    return New;
  }
  template <typename T>
  static DEVICE_JOB With(DEVICE_JOB Job, const T& Value, U32 Index = 0) {
    AllocDynParam(Job, Index, sizeof(Value));
    std::memcpy(Job.pDyn[Index], &Value, sizeof(Value));
    return Job;
  }
};

}  // namespace

TEST_F(EventDelivery, JobsBecomeOperations) {
  WP Watch;
  Watch.Addr = 0x20000010;
  const char acName[] = "a.elf";
  const struct {
    DEVICE_JOB Job;
    QStringList sCalls;
  } aCase[] = {
      {Job(JT_CONNECT, JS_DONE, CM_ATTACH), {"connected 1"}},
      {Job(JT_CONNECT, JS_FAILED, CM_ATTACH_HALT), {"not connected 2"}},
      {Job(JT_HALT, JS_DONE, HR_BREAKPOINT, 0, 0x100), {"halt 100 2"}},
      {Job(JT_RESET, JS_DONE, RM_BREAK_AT_SYMBOL, 0, 0x100),
       {"cpu mode 0", "exec mode 0", "reset 100 1", "halt 100 0"}},
      {Job(JT_RESET, JS_FAILED, 0, 0, 0x100), {"cpu mode 0", "exec mode 0", "no reset"}},
      {Job(JT_STEP_OVER, JS_DONE, 0, 0, 0x100), {"step over 100", "stepped 100"}},
      {Job(JT_STEP_OVER, JS_FAILED, 0, 0, 0x100), {"no step over", "stepped 100"}},
      {Job(JT_SET_BP, JS_DONE, 0x200), {"bp 200", "bps changed"}},
      {With(Job(JT_SET_WPS, JS_FAILED, 1), Watch), {"no wps 1 20000010", "wps changed"}},
      {Job(JT_WRITE_REG, JS_DONE, 3, 7), {"write access", "reg 3=7"}},
      {Job(JT_WRITE_REG, JS_DONE, VNODE_REG_PC, 0x300), {"write access", "reg f=300", "halt 300 1"}},
      {With(Job(JT_WRITE_MEM, JS_FAILED, 0x400, 4), 1), {"write access", "no write 400"}},
      {Job(JT_SET_TARGET_EXEC_STATE, JS_DONE, 1, 2), {"state 1 2", "reset 100 5"}},
      {With(Job(JT_END_DOWNLOAD, JS_FAILED, 0, 0, static_cast<U64>(-5)), acName), {"no download a.elf -5"}},
      {Job(JT_SET_CONFIG_PARAM, JS_DONE, DCP_SPEED, 4000), {"config 6 4000"}},
      {With(Job(JT_SET_CONFIG_PARAM, JS_DONE, DCP_HOST_NAME), acName), {"config 17 a.elf"}},
      {Job(JT_READ_BYTE, JS_FAILED), {}},
      {Job(JT_EDIT_BP, JS_FAILED), {}},
  };
  for (const auto& Case : aCase) EXPECT_EQ(Deliver(Case.Job), Case.sCalls) << JobTypeName(Case.Job.Type);
  EXPECT_EQ(Rings.Counters.NumReleased, std::size(aCase));
}

TEST_F(EventDelivery, CoresNumberTheirPCDifferently) {
  View.IndexOfPC = 9;
  EXPECT_EQ(Deliver(Job(JT_WRITE_REG, JS_DONE, 9, 0x300)), (QStringList{"write access", "reg 9=300", "halt 300 1"}));
  EXPECT_EQ(Deliver(Job(JT_WRITE_REG, JS_DONE, VNODE_REG_PC, 0x300)), (QStringList{"write access", "reg f=300"}));
}

TEST_F(EventDelivery, WritesAreAnnouncedInAReadySessionOnly) {
  View.bReady = false;
  EXPECT_EQ(Deliver(Job(JT_WRITE_REG, JS_DONE, 3, 7)), QStringList{"reg 3=7"});
}

TEST_F(EventDelivery, StaleEventsAreDropped) {
  const struct {
    DEVICE_JOB Job;
    bool bAccessible;
    bool bStepping;
    bool bDelivered;
  } aCase[] = {
      {Job(JT_CONNECT, JS_DONE, CM_BARE), true, false, false},
      {Job(JT_RESET, JS_DONE, RM_HARDWARE_ONLY), true, false, false},
      {Job(JT_HALT, JS_DONE, 0, 0, 0x102), true, false, false},
      {Job(JT_HALT, JS_DONE, 0, 0, 0x100), false, false, false},
      {Job(JT_HALT, JS_DONE, 0, 0, 0x100), true, true, true},
      {Job(JT_STEP_OVER, JS_DONE, 0, 0, 0x102), true, false, false},
      {Job(JT_STEP_OVER, JS_DONE, 0, 0, 0x100), false, false, false},
      {Job(JT_STEP_OVER, JS_DONE, 0, 0, 0x100), true, true, false},
      {Job(JT_STEP_OVER, JS_DONE, 0, 0, 0x100), true, false, true},
  };
  for (const auto& Case : aCase) {
    View.bAccessible = Case.bAccessible;
    View.bStepping = Case.bStepping;
    EXPECT_EQ(!Deliver(Case.Job).isEmpty(), Case.bDelivered)
        << JobTypeName(Case.Job.Type) << " " << Case.Job.Result << Case.bAccessible << Case.bStepping;
  }
  EXPECT_EQ(Rings.Counters.NumReleased, std::size(aCase));
}

TEST_F(EventDelivery, ABurstOfStepsEndsInOneUpdate) {
  View.PC = 0x128;
  for (U64 i = 1; i <= 20; ++i) Put(Job(JT_STEP_OVER, JS_DONE, 0, 0, i == 7 ? 0x128 : 0x100 + 2 * i));
  while (Delivery.ProcessEvents(10) > 0) {
  }
  EXPECT_EQ(Recorder.sCalls, (QStringList{"step over 128", "stepped 128"}));
}

TEST_F(EventDelivery, DataGoesToTheDataReceiverOnly) {
  CRecorder Receiver;
  ELF_SYM_LOC Loc;
  Loc.Type = ELF_LOC_MEM;
  Loc.Addr = 0x20000000;
  Delivery.SetDataReceiver(&Receiver);
  Deliver(Job(JT_READ_REG, JS_DONE, 3, 0, 0x55));
  Deliver(With(Job(JT_READ_LOCATION, JS_DONE, 2, 0, 0x77), Loc));
  EXPECT_EQ(Receiver.sCalls, (QStringList{"read 3=55", "loc 20000000 2 119"}));
  EXPECT_TRUE(Recorder.sCalls.isEmpty());
}

TEST_F(EventDelivery, ListenersInOrderOfTheirConstruction) {
  struct CLeaver : CRecorder {
    CRecorder* pVictim = nullptr;
    void OnDeviceConnectDone(CONNECT_MODES Mode) override {
      CRecorder::OnDeviceConnectDone(Mode);
      delete pVictim;
      pVictim = nullptr;
    }
  };
  static QStringList sOrder;
  sOrder.clear();
  struct CNamed : CDeviceEventListener {
    QString sName;
    explicit CNamed(QString sText) : sName(std::move(sText)) {}
    void OnDeviceConnectDone(CONNECT_MODES) override { sOrder << sName; }
  };
  CNamed A("a");
  auto* pB = new CNamed("b");
  CNamed C("c");
  Deliver(Job(JT_CONNECT));
  delete pB;
  CNamed D("d");
  Deliver(Job(JT_CONNECT));
  EXPECT_EQ(sOrder, (QStringList{"a", "b", "c", "a", "c", "d"}));

  CLeaver Leaver;
  Leaver.pVictim = new CRecorder;
  CNamed E("e");
  sOrder.clear();
  Deliver(Job(JT_CONNECT));
  EXPECT_EQ(sOrder, (QStringList{"a", "c", "d", "e"})) << "a listener that goes meanwhile does not disturb the others";
}

TEST_F(EventDelivery, ModeChanges) {
  U32 CPUMode = 19;
  U32 ExecMode = 1;
  Delivery.SetModeSources([&] { return CPUMode; }, [&] { return ExecMode; });
  const DEVICE_JOB Halt = Job(JT_HALT, JS_DONE, 0, 0, 0x100);
  EXPECT_EQ(Deliver(Halt), (QStringList{"cpu mode 19", "exec mode 1", "halt 100 0"}));
  EXPECT_EQ(Deliver(Halt), QStringList{"halt 100 0"});
  ExecMode = 2;
  for (const U32 Invalid : {0u, 15u, 20u, 30u, CEventDelivery::NO_MODE}) {
    CPUMode = Invalid;
    Deliver(Halt);
    EXPECT_FALSE(Recorder.sCalls.join(',').contains("cpu mode")) << Invalid;
  }
  CPUMode = 31;
  EXPECT_EQ(Deliver(Halt), (QStringList{"cpu mode 31", "halt 100 0"}));
}

TEST_F(EventDelivery, TextsAndNumbers) {
  Events.Put({DE_LOG_MSG, Texts.Add("hello"), 0x81A});
  Events.Put({DE_ENDIANNESS_CHANGED, 1, static_cast<U64>(-1)});
  Events.Put({10, 0, 0});
  EXPECT_EQ(Delivery.ProcessEvents(10), 3);
  EXPECT_EQ(Recorder.sCalls, (QStringList{"hello 81a", "endian 1 -1"}));
}
