#include "device/halt_sequence.h"

#include "device/device_job.h"
#include "device/execution_control.h"

namespace {

// Halt queries cost a transfer: often while a halt is awaited, seldom while only a surprise could happen.
constexpr U32 RUNNING_POLL_INTERVAL_MS = 50;
constexpr U32 HALTED_POLL_INTERVAL_MS = 5000;

}  // namespace

void CHaltSequence::CheckHandleResume() {
  DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
  if (!Exec.bHalted || !Ctx.IsConnected() || Exec.bHaltPending || Ctx.IsConnectionLost()) return;
  const int Status = Control.PollTargetHaltStatus(HALTED_POLL_INTERVAL_MS);
  if (Status == -1) Ctx.OnInvalidHaltStatus();
  if (Status != 0) return;
  Exec.bHalted = false;
  Exec.bAccessible = false;
  Exec.bRunning = true;
  Ctx.Sink.PostJobEvent(JT_CONTINUE, JS_DONE, GO_USER, 0);
}

bool CHaltSequence::PollHalted() {
  const int Status = Control.PollTargetHaltStatus(RUNNING_POLL_INTERVAL_MS);
  if (Status == -1) {
    Ctx.OnInvalidHaltStatus();
    Ctx.State.Exec.bVerdictPending = false;
    Ctx.State.Exec.bHaltPending = false;
  }
  return Status == 1;
}

void CHaltSequence::CheckHandleHalt() {
  DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
  if (!Ctx.IsConnected() || Ctx.IsConnectionLost()) return;
  if (Exec.bHaltPending) {
    // A sequence that waits for a verdict is taken back only for the user, and only while nobody else has it.
    if (!Exec.bUserHalt || !Exec.bVerdictPending.exchange(false)) return;
  } else if (!Exec.bRunning || !PollHalted()) {
    return;
  }
  const bool bUserHalt = Exec.bUserHalt;
  Exec.bHaltPending = true;
  Exec.bHalted = true;
  Exec.bUserHalt = false;
  Exec.bRunning = false;
  Ctx.LogDebugMsg(QStringLiteral("Target has halted. Evaluating halt conditions..."));
  if (bUserHalt) {
    HandleUnconditionalHalt();
    return;
  }
  const U32 PC = Target.FetchPC();
  if (ResumeWhenSHIRQIsDiscarded(PC) || CheckHandleSemihostingIRQ(PC)) {
    Exec.bHaltPending = false;
    return;
  }
  Target.UpdateTargetExecState();
  EvalBPCondAndContinueHaltSeq(PC);
}

bool CHaltSequence::IsSemihostingRequest(U32 PC) {
  INST_INFO Inst;
  return Ctx.Program.GetInst(PC, Inst) && Inst.bSemihosting;
}

bool CHaltSequence::IsAtBreakpoint(U32 PC) const {
  const BP_STATES State = Breakpoints.StateAt(PC);
  return State == BP_STATE_ENABLED || State == BP_STATE_HIDDEN;
}

bool CHaltSequence::ResumeWhenSHIRQIsDiscarded(U32 PC) {
  if (Ctx.Settings.bSemihosting || !IsSemihostingRequest(PC) || IsAtBreakpoint(PC)) return false;
  return Control.Continue() == 0;
}

// Whether a request waits at the PC and somebody is there to serve it.
bool CHaltSequence::CanServe(U32 PC) {
  return Ctx.Settings.bSemihosting && Ctx.pSemihost != nullptr && IsSemihostingRequest(PC);
}

bool CHaltSequence::CheckHandleSemihostingIRQ(U32 PC) {
  if (!CanServe(PC)) return false;
  Ctx.pSemihost->SetAutoResume(!IsAtBreakpoint(PC));
  return HandleSemihostingIRQ(PC);
}

bool CHaltSequence::HandleSemihostingIRQ(U32 PC) {
  if (Ctx.pSemihost->HandleInterrupt(PC) != 0 || !Ctx.pSemihost->IsAutoResuming()) return false;
  Ctx.Sink.ScheduleContinue(GO_USER);
  return true;
}

void CHaltSequence::EvalBPCondAndContinueHaltSeq(U32 PC) {
  BP Entry;
  const bool bFound = Breakpoints.GetBreakpoint(PC, Entry);
  if (bFound && Entry.State == BP_STATE_ENABLED) {
    Ctx.Breakpoints.CountHit(PC);
    if (Entry.bConditional) {
      Ctx.State.Exec.bVerdictPending = true;
      Ctx.Sink.RaiseEvalBPCondition(PC);
      return;
    }
  }
  if (bFound && Entry.State == BP_STATE_HIDDEN) {
    Ctx.LogDebugMsg(QStringLiteral("Target has halted on invisible BP"));
    CompleteSrcStepAndContHaltSeq(PC);
    return;
  }
  OnHalted();
}

void CHaltSequence::CompleteSrcStepAndContHaltSeq(U32 PC) {
  if (Ctx.State.HiddenBP.Addr == PC && Ctx.State.Exec.bHaltPending && CompleteStepOnHiddenBP(PC) > 0) {
    Ctx.State.Exec.bHaltPending = false;
    return;
  }
  OnHalted();
}

int CHaltSequence::CompleteStepOnHiddenBP(U32 PC) {
  const U32 Job = Ctx.State.HiddenBP.PendingJob;
  if (Ctx.pSourceStepper != nullptr && (Job == JT_STEP_INTO || Job == JT_STEP_OVER)) {
    return Ctx.pSourceStepper->CompleteSrcStepOnHiddenBP(PC);
  }
  OnStepped();
  Ctx.State.Exec.bStepping = false;
  return 0;
}

void CHaltSequence::FinishHaltSeq(U32 PC, bool bHaltStands) {
  if (!Ctx.State.Exec.bVerdictPending.exchange(false)) return;
  if (bHaltStands) {
    CompleteSrcStepAndContHaltSeq(PC);
    return;
  }
  Control.Continue();
  Ctx.State.Exec.bHaltPending = false;
}

void CHaltSequence::OnHalted() {
  const U32 PC = static_cast<U32>(Ctx.State.Target.PC);
  const BP_STATES State = Breakpoints.StateAt(PC);
  const bool bAtHidden = Ctx.State.HiddenBP.Addr == PC;
  DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
  Exec.bHalted = true;
  Exec.bTargetRan = true;
  Ctx.LogDebugMsg(QStringLiteral("Target has halted and all halt conditions were passed"));
  Breakpoints.RemoveHiddenBreakpoint();
  // Right before the report: who sees a target at rest finds its halt among the events.
  Exec.bAccessible = true;
  ReportHalt(PC, State, bAtHidden);
  Ctx.State.HiddenBP.PendingJob = 0;
  Exec.bStepping = false;
  Exec.bVerdictPending = false;
  Exec.bHaltPending = false;
}

void CHaltSequence::ReportHalt(U32 PC, BP_STATES State, bool bAtHidden) {
  const U32 Job = Ctx.State.HiddenBP.PendingJob;
  if (bAtHidden && IsStepJob(Job)) {
    // Delivery drops the event of a device that is still stepping.
    Ctx.State.Exec.bStepping = false;
    Ctx.Sink.PostJobEvent(Job, JS_DONE, 0, PC);
    return;
  }
  if (bAtHidden && Job == JT_RUN_TO) {
    if (PC == static_cast<U32>(Ctx.Config.Value(DCP_BREAK_SYMBOL_ADDR))) {
      Ctx.State.Exec.bStartupDone = true;
      Ctx.State.Exec.bSessionReady = true;
      Ctx.Sink.PostJobEvent(JT_RUN_TO, JS_DONE, PC, PC);
    }
    Ctx.Sink.PostJobEvent(JT_HALT, JS_DONE, HR_RUN_TO, PC);
    return;
  }
  if (!Ctx.State.Exec.bSessionReady) return;
  Ctx.Sink.PostJobEvent(JT_HALT, JS_DONE, State == BP_STATE_ENABLED ? HR_BREAKPOINT : HR_GENERAL, PC);
}

void CHaltSequence::OnStepped() {
  Target.UpdateTargetExecState();
  const U32 PC = static_cast<U32>(Ctx.State.Target.PC);
  if (!CanServe(PC)) return;
  Ctx.pSemihost->SetAutoResume(false);
  HandleSemihostingIRQ(PC);
}

void CHaltSequence::HandleUnconditionalHalt() {
  Target.UpdateTargetExecState();
  OnHalted();
}

void CHaltSequence::SetSessionReady() {
  Ctx.State.Exec.bSessionReady = true;
  if (Ctx.State.Exec.bAccessible) Ctx.Sink.PostJobEvent(JT_HALT, JS_DONE, HR_GENERAL, Ctx.State.Target.PC);
}
