#pragma once

#include <array>
#include <functional>

#include "device/device_job.h"
#include "device/device_ops.h"
#include "device/job_loop.h"

// From a job to the operation that does it. Device thread.
class CJobDispatch : public CJobRunner {
public:
  // Handler of one job type; negative: failed, see CJobRunner.
  using HANDLER = std::function<int(DEVICE_JOB& Job)>;

  CJobDispatch(CDeviceOps& Ops, std::function<bool(DEVICE_JOB&)> RaiseFinished);

  // Adds or replaces the handler of a type; before the device thread runs, or with the device mutex held. A type
  // without a handler always fails.
  void SetHandler(U32 Type, HANDLER Handler);

  void PollTarget() override;
  int Dispatch(DEVICE_JOB& Job) override;
  bool IsHalted() const override { return !Ops.Control.IsHaltNeeded(); }
  U64 GetPC() const override { return Ops.Ctx.State.Target.PC; }
  void OnRegistersWritten() override { Ops.Target.UpdateTargetExecState(); }
  bool RaiseJobFinished(DEVICE_JOB& Job) override { return RaiseFinished(Job); }

private:
  void AddProbeHandlers();
  void AddRunHandlers();
  void AddBreakpointHandlers();
  void AddRegisterHandlers();
  void AddMemoryHandlers();
  void AddLocationHandlers();
  void AddTerminalHandlers();
  void AddSamplingHandlers();
  void AddTraceHandlers();

  CDeviceOps& Ops;
  std::function<bool(DEVICE_JOB&)> RaiseFinished;
  std::array<HANDLER, JT_LAST> aHandler;
};
