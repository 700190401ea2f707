#pragma once

#include "device/breakpoint_ops.h"
#include "device/device_capabilities.h"
#include "device/target_state.h"

// Halt, resume, reset and run-to. Device thread; Continue also on the main thread while it owns the halt sequence.
// Results are 0 or -1 unless said otherwise.
class CExecutionControl {
public:
  CExecutionControl(CDeviceContext& Ctx, CDeviceCapabilities& Capabilities, CBreakpointOps& Breakpoints,
                    CTargetState& Target)
      : Ctx(Ctx), Capabilities(Capabilities), Breakpoints(Breakpoints), Target(Target) {}

  // Stops the running target; the halt sequence reports it.
  int Halt();
  // Resumes the halted target, past a BKPT instruction at the PC.
  int Continue();
  int Reset(RESET_MODES Mode);
  // The second half of a reset: waits for the halt and refreshes the state.
  int FinishReset(RESET_MODES Mode);
  int ResetHardware();
  // Lets the halted target run to an address. 1 when it will run (the outcome comes through the halt sequence), -1 when
  // it could not begin. ForJob (JOB_TYPES) is what is reported on arrival.
  int RunTo(U64 Addr, U32 ForJob);
  int RunTo(U64 Addr);
  // Connected, halted, and no hidden breakpoint set; logs what is missing.
  bool CanStep();

  // Whether a JT_HALT job has something to do: the target runs, or its halt waits for the verdict on a condition.
  bool IsHaltNeeded() const;
  // Whether the target is halted, as far as known; asks the library at most every 50 ms.
  bool IsTargetHalted();
  // 1 halted, 0 running or not connected, -1 connection failure, -2 no news: asked less than MinQueryIntervalMS ago.
  int PollTargetHaltStatus(U32 MinQueryIntervalMS);
  // 0 as soon as the target is halted or not connected, -1 after Timeout ms.
  int WaitForHaltedOrTimeout(U64 Timeout);
  // Sets PC and SP as after a reset.
  int InitRegsAfterDownload();

private:
  CDeviceContext& Ctx;
  CDeviceCapabilities& Capabilities;
  CBreakpointOps& Breakpoints;
  CTargetState& Target;
};
