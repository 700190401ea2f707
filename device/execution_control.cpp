#include "device/execution_control.h"

#include "device/device_job.h"

namespace {

constexpr U32 HALT_QUERY_INTERVAL_MS = 50;
constexpr U32 RESET_HALT_TIMEOUT_MS = 2000;
constexpr int RESET_TYPE_NORMAL = 0;

}  // namespace

int CExecutionControl::PollTargetHaltStatus(U32 MinQueryIntervalMS) {
  if (!Ctx.IsConnected()) return 0;
  const U64 Now = Ctx.Clock.NowMs();
  if (Now - Ctx.State.LastHaltPoll <= MinQueryIntervalMS) return -2;
  Ctx.State.LastHaltPoll = Now;
  return std::clamp(Ctx.Api.VNODEARM_IsHalted(), -1, 1);
}

bool CExecutionControl::IsTargetHalted() {
  if (!Ctx.IsConnected()) return false;
  return Ctx.State.Exec.bHalted || PollTargetHaltStatus(HALT_QUERY_INTERVAL_MS) == 1;
}

bool CExecutionControl::IsHaltNeeded() const {
  return Ctx.State.Exec.bVerdictPending || !Ctx.State.Exec.bHalted;
}

int CExecutionControl::WaitForHaltedOrTimeout(U64 Timeout) {
  const U64 Start = Ctx.Clock.NowMs();
  do {
    if (!Ctx.IsConnected() || Ctx.State.Exec.bHalted) return 0;
    const int Status = PollTargetHaltStatus(HALT_QUERY_INTERVAL_MS);
    if (Status == 1) {
      Ctx.State.Exec.bHalted = true;
      return 0;
    }
    if (Status == -1) Ctx.OnInvalidHaltStatus();
    if (Ctx.IsConnectionLost()) return -1;
    Ctx.Clock.SleepMs(1);
  } while (Ctx.Clock.NowMs() - Start <= Timeout);
  return -1;
}

int CExecutionControl::Halt() {
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("Halt: not connected"));
    return -1;
  }
  if (Ctx.Api.VNODEARM_Halt() != 0) {
    Ctx.LogWarnMsg(QStringLiteral("Halt: VNODE API call failed"));
    Ctx.TestConnectionLost();
    return -1;
  }
  Ctx.State.Exec.bUserHalt = true;
  return 0;
}

int CExecutionControl::Continue() {
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("Continue: not connected"));
    return -1;
  }
  if (Ctx.IsConnectionLost()) {
    Ctx.LogDebugMsg(QStringLiteral("Continue: connection lost"));
    return -1;
  }
  if (!Ctx.State.Exec.bHalted) {
    Ctx.LogDebugMsg(QStringLiteral("Continue: not halted"));
    return 0;
  }
  Ctx.LogDebugMsg(QStringLiteral("Resuming target..."));
  // The probe steps over breakpoints of its own; a BKPT in the program would stop the target again at once.
  const U32 PC = Ctx.State.Target.PCStatus == MEM_VALID ? static_cast<U32>(Ctx.State.Target.PC) : Target.FetchPC();
  INST_INFO Inst;
  if (Ctx.Program.GetInst(PC, Inst) && Inst.bBreakpoint) Ctx.Api.VNODEARM_WriteReg(Ctx.PCIndex(), PC + Inst.Size);

  DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
  Exec.bHalted = false;
  Exec.bAccessible = false;
  Ctx.Api.VNODEARM_GoEx(0, 1);
  Exec.bUserHalt = false;
  Exec.bRunning = true;
  if (Ctx.State.ResetMode == RM_RESET_AND_RUN) Exec.bStartupDone = true;
  // A condition that is still being evaluated has nothing to decide any more.
  if (Exec.bVerdictPending.exchange(false)) Exec.bHaltPending = false;
  return 0;
}

int CExecutionControl::ResetHardware() {
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("Reset: not connected"));
    return -1;
  }
  const int Endian = Ctx.Config.Value(DCP_ENDIAN);
  Ctx.Api.VNODEARM_SetResetType(RESET_TYPE_NORMAL);
  Ctx.Api.VNODEARM_SetResetDelay(0);
  Ctx.Api.VNODEARM_SetInitRegsOnReset(1);
  Ctx.Api.VNODEARM_Halt();
  Ctx.Api.VNODEARM_SetEndian(Endian);
  const int Result = Ctx.Api.VNODEARM_Reset();
  if (Result != 0) {
    Ctx.LogWarnMsg(QStringLiteral("Reset: VNODE API call failed"));
    Ctx.TestConnectionLost();
    return -1;
  }
  Ctx.Api.VNODEARM_Halt();
  Capabilities.ApplyDataEndianess(static_cast<ENDIAN>(Endian));
  return 0;
}

int CExecutionControl::Reset(RESET_MODES Mode) {
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("Reset: not connected"));
    return -1;
  }
  if (Mode == RM_HARDWARE_ONLY) return ResetHardware();
  Ctx.State.ResetMode = Mode;
  Ctx.State.Exec.bStartupDone = false;
  Ctx.LogDebugMsg(QStringLiteral("Resetting target..."));
  if (ResetHardware() < 0) return -1;
  Breakpoints.ClearAllBreakpoints(BP_STATE_HIDDEN);
  // Whether it halted is asked anew, and watched for when it does not. A halt sequence from before is over.
  Ctx.State.Exec.bVerdictPending = false;
  Ctx.State.Exec.bHaltPending = false;
  Ctx.State.Exec.bHalted = false;
  Ctx.State.Exec.bAccessible = false;
  Ctx.State.Exec.bRunning = true;
  Ctx.State.LastHaltPoll = 0;
  return FinishReset(Mode);
}

int CExecutionControl::FinishReset(RESET_MODES Mode) {
  DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
  Exec.bStartupDone = Mode == RM_RESET_HALT;
  if (WaitForHaltedOrTimeout(RESET_HALT_TIMEOUT_MS) < 0) {
    Ctx.LogErrorMsg(QStringLiteral("Target did not halt following reset"));
    return -1;
  }
  if (Target.UpdateTargetExecState() < 0) return -1;
  // The reset is a halt of its own, which its done event reports: there is no other to look for, and a run-to that
  // follows at once must not have its hidden breakpoint taken for one that was missed.
  Exec.bRunning = false;
  Exec.bUserHalt = false;
  Exec.bVerdictPending = false;
  Exec.bHaltPending = false;
  Exec.bStepping = false;
  Exec.bAccessible = true;
  Ctx.State.HiddenBP.PendingJob = 0;
  return 0;
}

bool CExecutionControl::CanStep() {
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("cannot step. target not connected"));
    return false;
  }
  // A halt that may not stand does not count: the verdict would meet a target that is elsewhere.
  if (!Ctx.State.Exec.bHalted || Ctx.State.Exec.bVerdictPending) {
    Ctx.LogDebugMsg(QStringLiteral("cannot step. target not halted"));
    return false;
  }
  if (Ctx.State.HiddenBP.Addr != NO_REQUEST) {
    Ctx.LogWarnMsg(QStringLiteral("cannot step. hidden breakpoint is set"));
    return false;
  }
  return true;
}

int CExecutionControl::RunTo(U64 Addr) {
  return RunTo(Addr, JT_RUN_TO);
}

int CExecutionControl::RunTo(U64 Addr, U32 ForJob) {
  if (!CanStep()) {
    Ctx.LogWarnMsg(QStringLiteral("run to: target not ready"));
    return -1;
  }
  const U32 Target = static_cast<U32>(Addr);
  const BP_STATES AtTarget = Breakpoints.StateAt(Target);
  if (AtTarget != BP_STATE_ENABLED && AtTarget != BP_STATE_HIDDEN) {
    if (Breakpoints.SetHiddenBreakpoint(Target, ForJob) < 0) return -1;
  }
  Ctx.Sink.ScheduleContinue(GO_RUN_TO);
  return 1;
}

int CExecutionControl::InitRegsAfterDownload() {
  if (!Ctx.IsConnected()) return -1;
  const int Result = Ctx.Program.SetResetState();
  return Target.UpdateTargetExecState() < 0 ? -1 : Result;
}
