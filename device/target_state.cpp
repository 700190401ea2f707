#include "device/target_state.h"

int CTargetState::SetTargetExecState(U64 PC, U64 SP) {
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("SetTargetExecState: not connected"));
    return -1;
  }
  if (PC == 0 && SP == 0) {
    PC = Ctx.AlignInst(Ctx.Api.VNODEARM_ReadReg(Ctx.PCIndex()));
    SP = Ctx.Api.VNODEARM_ReadReg(Ctx.SPIndex());
  }
  TARGET_EXEC_STATE& Target = Ctx.State.Target;
  Target.PC = PC;
  Target.SP = SP;
  Target.PCStatus = MEM_VALID;
  Target.SPStatus = MEM_VALID;

  const U32 Addr = static_cast<U32>(PC);
  const CSrcLoc Loc = Ctx.Program.SrcLocAt(Addr);
  Target.SrcFile = Loc.IsValid() ? Loc.File : UNKNOWN_LOC;
  Target.SrcLine = Loc.IsValid() ? Loc.Line : UNKNOWN_LOC;
  CAddrRange Range;
  Target.Func = Ctx.Program.FuncAt(Addr, Range);
  Target.FuncStart = Range.Size != 0 ? Range.Start : UNKNOWN_LOC;
  Target.FuncEnd = Range.Size != 0 ? Range.End() : UNKNOWN_LOC;
  return 0;
}

int CTargetState::ResetTargetExecState() {
  TARGET_EXEC_STATE& Target = Ctx.State.Target;
  Target.PCStatus = MEM_STALE;
  Target.SPStatus = MEM_STALE;
  Target.ReturnAddrStatus = MEM_STALE;
  Target.PC = 0;
  Target.SP = 0;
  Target.ReturnAddr = 0;
  Target.SrcFile = UNKNOWN_LOC;
  Target.SrcLine = UNKNOWN_LOC;
  Target.FuncStart = UNKNOWN_LOC;
  Target.FuncEnd = UNKNOWN_LOC;
  Target.Func = 0;
  return 0;
}

U32 CTargetState::FetchPC() {
  const U32 PC = Ctx.AlignInst(Ctx.Api.VNODEARM_ReadReg(Ctx.PCIndex()));
  Ctx.State.Target.PC = PC;
  Ctx.State.Target.PCStatus = MEM_VALID;
  return PC;
}

void CTargetState::ResetState() {
  Ctx.State.Connection.bConnected = false;
  Ctx.State.Connection.bConnectionLost = false;
  DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
  for (auto* pFlag : {&Exec.bHalted, &Exec.bAccessible, &Exec.bHaltPending, &Exec.bVerdictPending, &Exec.bUserHalt,
                      &Exec.bSessionReady, &Exec.bStartupDone, &Exec.bStepping, &Exec.bTargetRan}) {
    *pFlag = false;
  }
  Exec.bRunning = true;
  Ctx.State.CoreSpeed = 0;
  Ctx.State.Requests.bInitRegsPending = false;
  Ctx.State.HiddenBP.PendingJob = 0;
}
