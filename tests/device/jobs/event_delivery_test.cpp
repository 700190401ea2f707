#include "device/event_delivery.h"

#include <gtest/gtest.h>

#include <QStringList>

#include "device/probe_api/register_index.h"

namespace {

struct FAKE_VIEW : CDeviceView {
  bool bAccessible = true, bReady = true, bStepping = false;
  U32 IndexOfPC = VNODE_REG_PC;
  bool IsConnected() const override { return true; }
  bool IsAccessible() const override { return bAccessible; }
  bool IsSessionReady() const override { return bReady; }
  bool IsStepping() const override { return bStepping; }
  U64 GetPC() const override { return 0x100; }
  U32 PCIndex() const override { return IndexOfPC; }
};

// Writes down some of what it hears.
struct CRecorder : CDeviceEventListener {
  QStringList sCalls;
  template <typename... ARGS>
  void Note(const char* sFormat, ARGS... Args) {
    sCalls << QString::asprintf(sFormat, Args...);
  }
  std::string Take() { return std::exchange(sCalls, {}).join("; ").toStdString(); }

  void OnDeviceConnectDone(CONNECT_MODES Mode) override { Note("connected %d", Mode); }
  void OnDeviceConnectFailed(CONNECT_MODES Mode) override { Note("not connected %d", Mode); }
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override { Note("halt %x %x", PC, Reason); }
  void OnDeviceResetDone(U32 PC, RESET_MODES Mode) override { Note("reset %x %x", PC, Mode); }
  void OnDeviceResetFailed(U32, RESET_MODES) override { Note("no reset"); }
  void OnDeviceStepOverDone(U32 PC) override { Note("step over %x", PC); }
  void OnDeviceStepOverFailed(U32) override { Note("no step over"); }
  void OnDeviceStepped(U32 PC) override { Note("stepped %x", PC); }
  void OnDeviceSetBPDone(U32 Addr) override { Note("bp %x", Addr); }
  void OnDeviceBPStateChanged() override { Note("bps changed"); }
  void OnDeviceWriteRegDone(U32 Index, U64 Value) override { Note("reg %x=%llx", Index, Value); }
  void OnDeviceWriteMemFailed(U32 Addr, U32, U8*) override { Note("no write %x", Addr); }
  void OnDeviceWriteAccess() override { Note("write access"); }
  void OnDeviceSetTargetExecStateDone(U64 PC, U64 SP) override { Note("state %llx %llx", PC, SP); }
  void OnDeviceEndDownloadFailed(const char* sFile, int Error) override { Note("no download %s %d", sFile, Error); }
  void OnDeviceSetConfigTextDone(DEV_CONFIG_PARAMS Param, const char* sText) override {
    Note("config %d %s", Param, sText);
  }
  void OnDeviceSetConfigValueDone(DEV_CONFIG_PARAMS Param, int Value) override { Note("config %d %d", Param, Value); }
  void OnDeviceCPUModeChanged(U32 Mode) override { Note("cpu mode %u", Mode); }
  void OnDeviceExecModeChanged(U32 Mode) override { Note("exec mode %u", Mode); }
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

  std::string Deliver(DEVICE_JOB Job) {
    EXPECT_TRUE(Events.Put(JobFinishedEvent(Rings.AddNotification(Job))));
    Delivery.ProcessEvents(10);
    return Recorder.Take();
  }
  static DEVICE_JOB Job(U32 Type, U32 Status = JS_DONE, U64 P0 = 0, U64 P1 = 0, U64 Result = 0) {
    DEVICE_JOB New;
    std::tie(New.Type, New.Status, New.Param[0], New.Param[1], New.Result) = std::tie(Type, Status, P0, P1, Result);
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
  const char acName[] = "a.elf";
  const std::pair<DEVICE_JOB, std::string> aCase[] = {
      {Job(JT_CONNECT, JS_DONE, CM_ATTACH), "connected 1"},
      {Job(JT_CONNECT, JS_FAILED, CM_ATTACH_HALT), "not connected 2"},
      {Job(JT_HALT, JS_DONE, HR_BREAKPOINT, 0, 0x100), "halt 100 2"},
      {Job(JT_RESET, JS_DONE, RM_BREAK_AT_SYMBOL, 0, 0x100), "cpu mode 0; exec mode 0; reset 100 1; halt 100 0"},
      {Job(JT_RESET, JS_FAILED, 0, 0, 0x100), "cpu mode 0; exec mode 0; no reset"},
      {Job(JT_STEP_OVER, JS_DONE, 0, 0, 0x100), "step over 100; stepped 100"},
      {Job(JT_STEP_OVER, JS_FAILED, 0, 0, 0x100), "no step over; stepped 100"},
      {Job(JT_SET_BP, JS_DONE, 0x200), "bp 200; bps changed"},
      {Job(JT_WRITE_REG, JS_DONE, 3, 7), "write access; reg 3=7"},
      {Job(JT_WRITE_REG, JS_DONE, VNODE_REG_PC, 0x300), "write access; reg f=300; halt 300 1"},
      {With(Job(JT_WRITE_MEM, JS_FAILED, 0x400, 4), 1), "write access; no write 400"},
      {Job(JT_SET_TARGET_EXEC_STATE, JS_DONE, 1, 2), "state 1 2; reset 100 5"},
      {With(Job(JT_END_DOWNLOAD, JS_FAILED, 0, 0, static_cast<U64>(-5)), acName), "no download a.elf -5"},
      {Job(JT_SET_CONFIG_PARAM, JS_DONE, DCP_SPEED, 4000), "config 6 4000"},
      {With(Job(JT_SET_CONFIG_PARAM, JS_DONE, DCP_HOST_NAME), acName), "config 17 a.elf"},
  };
  for (const auto& [Done, sCalls] : aCase) EXPECT_EQ(Deliver(Done), sCalls) << JobTypeName(Done.Type);
  EXPECT_EQ(Rings.Counters.NumReleased, std::size(aCase));
}

TEST_F(EventDelivery, WritesDependOnTheCoreAndTheSession) {
  View.IndexOfPC = 9;
  EXPECT_EQ(Deliver(Job(JT_WRITE_REG, JS_DONE, 9, 0x300)), "write access; reg 9=300; halt 300 1");
  EXPECT_EQ(Deliver(Job(JT_WRITE_REG, JS_DONE, VNODE_REG_PC, 0x300)), "write access; reg f=300");
  View.bReady = false;
  EXPECT_EQ(Deliver(Job(JT_WRITE_REG, JS_DONE, 3, 7)), "reg 3=7");
}

TEST_F(EventDelivery, StaleEventsAreDropped) {
  // job, accessible, stepping, delivered
  const std::tuple<DEVICE_JOB, bool, bool, bool> aCase[] = {
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
  for (const auto& [Done, bAccessible, bStepping, bDelivered] : aCase) {
    View.bAccessible = bAccessible;
    View.bStepping = bStepping;
    EXPECT_EQ(Deliver(Done) != "", bDelivered) << JobTypeName(Done.Type) << " " << Done.Result << bStepping;
  }
}

TEST_F(EventDelivery, ListenersInOrderOfTheirConstruction) {
  static std::string sOrder;
  struct CNamed : CDeviceEventListener {
    char Name;
    CNamed* pVictim = nullptr;
    explicit CNamed(char c) : Name(c) {}
    void OnDeviceConnectDone(CONNECT_MODES) override {
      sOrder += Name;
      delete std::exchange(pVictim, nullptr);
    }
  };
  CNamed A('a');
  auto* pB = new CNamed('b');
  CNamed C('c');
  Deliver(Job(JT_CONNECT));
  delete pB;
  CNamed D('d');
  D.pVictim = new CNamed('x');
  CNamed E('e');
  Deliver(Job(JT_CONNECT));
  EXPECT_EQ(sOrder, "abcacde") << "a listener that goes meanwhile does not disturb the others";
}
