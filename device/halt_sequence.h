#pragma once

#include "device/breakpoint_ops.h"
#include "device/target_state.h"

class CExecutionControl;

// From a halt that the probe reports to the halt that the user sees. Device thread; OnHalted and FinishHaltSeq also on
// the main thread while it owns the sequence.
class CHaltSequence {
public:
  CHaltSequence(CDeviceContext& Ctx, CBreakpointOps& Breakpoints, CTargetState& Target, CExecutionControl& Control)
      : Ctx(Ctx), Breakpoints(Breakpoints), Target(Target), Control(Control) {}

  // Between jobs: polls a running target and begins the halt sequence when it has halted.
  void CheckHandleHalt();
  // Between jobs: notices a target that runs although the device believes it halted.
  void CheckHandleResume();
  // The end of every halt sequence: removes the hidden breakpoint, reports the halt.
  void OnHalted();
  // After an instruction step that stands alone: refreshes the state, serves a semihosting request.
  void OnStepped();
  // UpdateTargetExecState and OnHalted.
  void HandleUnconditionalHalt();
  // The verdict on the condition at PC, from the listener that evaluated it: a standing halt ends the sequence or the
  // source step, otherwise the target is resumed. No-op when the sequence ended meanwhile. Main thread.
  void FinishHaltSeq(U32 PC, bool bHaltStands);
  // Halts are reported from now on, and the present one is when the target is accessible. Main thread.
  void SetSessionReady();

private:
  bool PollHalted();
  bool ResumeWhenSHIRQIsDiscarded(U32 PC);
  bool CheckHandleSemihostingIRQ(U32 PC);
  bool HandleSemihostingIRQ(U32 PC);
  void EvalBPCondAndContinueHaltSeq(U32 PC);
  void CompleteSrcStepAndContHaltSeq(U32 PC);
  int CompleteStepOnHiddenBP(U32 PC);
  bool IsSemihostingRequest(U32 PC);
  bool CanServe(U32 PC);
  bool IsAtBreakpoint(U32 PC) const;
  void ReportHalt(U32 PC, BP_STATES State, bool bAtHidden);

  CDeviceContext& Ctx;
  CBreakpointOps& Breakpoints;
  CTargetState& Target;
  CExecutionControl& Control;
};
