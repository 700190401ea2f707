#pragma once

#include "device/execution_control.h"
#include "device/halt_sequence.h"

// Steps by single machine instructions; device thread.
class CInstStepper {
public:
  CInstStepper(CDeviceContext& Ctx, CExecutionControl& Control, CHaltSequence& Halts)
      : Ctx(Ctx), Control(Control), Halts(Halts) {}

  // One instruction, nothing else; the library's result, 0 on success. Source steps are made of it.
  int StepInstBasic();
  // JT_STEP_INST: one instruction with all that belongs to a halt. 0 or -1.
  int StepInst();

private:
  CDeviceContext& Ctx;
  CExecutionControl& Control;
  CHaltSequence& Halts;
};
