#include "device/inst_stepper.h"

int CInstStepper::StepInstBasic() {
  if (!Ctx.IsConnected()) return -1;
  const int Result = Ctx.Api.VNODEARM_Step();
  Ctx.State.Target.ReturnAddr = 0;
  Ctx.State.Target.ReturnAddrStatus = MEM_UNAVAILABLE;
  Ctx.State.Exec.bTargetRan = true;
  if (Result != 0) Ctx.TestConnectionLost();
  return Result;
}

int CInstStepper::StepInst() {
  if (!Control.CanStep() || StepInstBasic() != 0) return -1;
  Halts.OnStepped();
  return 0;
}
