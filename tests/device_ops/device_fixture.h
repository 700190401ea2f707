#pragma once

#include <gtest/gtest.h>

#include <QStringList>

#include "device/device_job.h"
#include "device/device_ops.h"
#include "fake_probe.h"

using namespace Qt::StringLiterals;

// Job layer that notes down what it is told.
class CRecordingSink : public DEVICE_EVENT_SINK {
public:
  QStringList Events;  // posted jobs and raised events, "JT_HALT 0 2 8000100" with status, P0 and Result
  QStringList Logs;    // texts alone
  U32 LastLogFlags = 0;
  QStringList Progress;
  std::function<void()> OnConfigChanged;  // called at that moment, where a test sets it

  void RaiseEvalBPCondition(U32 Addr) override { Events += QString::asprintf("eval %x", Addr); }
  void RaiseConfigParamChanged(int Param, int Value) override {
    Events += QString::asprintf("config %d %d", Param, Value);
    if (OnConfigChanged) OnConfigChanged();
  }
  void RaiseHWCapabilityChanged(int Capability, int Value) override {
    Events += QString::asprintf("capability %d %d", Capability, Value);
  }
  void RaiseConnectionLost() override { Events += "lost"_L1; }
  void RaiseEndianessChanged(int Inst, int Data) override { Events += QString::asprintf("endian %d %d", Inst, Data); }
  void PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result) override {
    Events += QString::asprintf("%s %u %llx %llx", JobTypeName(Type), Status, P0, Result);
  }
  void ScheduleContinue(RESUME_MODES Mode) override { Events += QString::asprintf("continue %u", Mode); }
  void CancelAllJobs() override { Events += "cancel"_L1; }
  void Log(const QString& sText, U32 Flags) override {
    Logs += sText;
    LastLogFlags = Flags;
  }
  void SetStatusMsg(const QString&) override {}
  void StartProgress(const QString& sText, int Min, int Max) override {
    Progress += sText + QString::asprintf(" %d..%d", Min, Max);
  }
  void SetProgressMsg(const QString& sText) override { Progress += sText; }
  void SetProgressValue(int Value) override { Progress += QString::number(Value); }
  void EndProgress() override { Progress += "end"_L1; }

  // Everything raised, or logged, since the last call, joined by "; ".
  std::string TakeEvents() { return std::exchange(Events, {}).join("; ").toStdString(); }
  std::string TakeLogs() { return std::exchange(Logs, {}).join("; ").toStdString(); }
};

// A program of Thumb code whose special instructions and functions a test names.
class CFakeProgram : public IProgramAccess {
public:
  std::map<U32, INST_INFO> Insts;
  std::map<U32, CSrcLoc> Locs;
  std::map<U32, U64> FrameRegs;
  bool bArm = false;
  CFakeProbe* pProbe = nullptr;

  U32 InstAlign() override { return 2; }
  bool GetInst(U32 Addr, INST_INFO& Info) override {
    Info = Insts.count(Addr) ? Insts[Addr] : INST_INFO{2, false, false};
    return true;
  }
  U32 InstSetAt(U32) override { return bArm ? VNODE_BP_ARM : VNODE_BP_THUMB; }
  U32 MapRegIndex(U32 LogicReg) override { return LogicReg < 17 ? LogicReg : 0xFFFFFFFFu; }
  bool ParseCPReg(const char* sReg, CP15_REG& Reg) override {
    Reg = {1, 2, 3, 4};
    return std::string(sReg) == "15,1,3,2,4";
  }
  int SetResetState() override {
    pProbe->Regs[15] = 0x8000400;
    return 0;
  }
  void SetCpuInfo(U32, U32, U32) override {}
  QString CoreVariant(U32) override { return "Cortex-M4"_L1; }
  CSrcLoc SrcLocAt(U32 Addr) override { return Locs.count(Addr) ? Locs[Addr] : CSrcLoc{0xFFFFFFFFu, 0, 0}; }
  ELF_SYM_HANDLE FuncAt(U32 Addr, CAddrRange& Range) override {
    const CAddrRange Function{0x8000100, 0x100};
    Range = Function.Contains(Addr) ? Function : CAddrRange();
    return Range.IsNone() ? 0 : 7;
  }
  bool FrameReg(U32 LogicReg, U64& Value) override {
    Value = FrameRegs[LogicReg];
    return Value != 0;
  }
};

// Operations over a fake probe, with a clock that only sleeping and the tests move.
class CDeviceOpsTest : public ::testing::Test {
protected:
  CDeviceOpsTest() {
    Program.pProbe = &Probe;
    Ctx.Api = CFakeProbe::Api();
    Ctx.Clock.NowMs = [this] { return Now; };
    Ctx.Clock.SleepMs = [this](U32 Ms) { Now += Ms; };
    Ops.Configurator.SetConfigParam(DCP_DEVICE_NAME, "Test MCU");
    Sink.Events.clear();
  }

  void Connect(CONNECT_MODES Mode = CM_ATTACH) {
    ASSERT_EQ(Ops.Connection.Connect(Mode), 0);
    Forget();
  }
  // Connected and halted at PC, the halt sequence done.
  void ConnectHalted(U32 PC = 0x8000100) {
    Connect();
    HaltAt(PC);
    ASSERT_TRUE(Ctx.State.Exec.bAccessible);
    Forget();
  }
  // The target stops at PC by itself, and the device thread looks.
  void HaltAt(U32 PC) {
    Probe.Regs[15] = PC;
    Probe.Regs[13] = 0x20001000;
    Probe.Halted = 1;
    Now += 100;
    Ops.Halts.CheckHandleHalt();
  }
  void Forget() {
    Probe.Calls.clear();
    Sink.Events.clear();
    Sink.Logs.clear();
    Sink.Progress.clear();
  }

  U64 Now = 100000;
  CFakeProbe Probe;
  CRecordingSink Sink;
  CFakeProgram Program;
  CDeviceContext Ctx{Sink, Program};
  CDeviceOps Ops{Ctx};
};
