// IT, exceptions on purpose, special registers, hints.

#include "probe/sim/execute.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

// SYSm of MRS and MSR.
enum SYSM : U32 {
  SYSM_APSR = 0,
  SYSM_XPSR = 3,
  SYSM_IPSR = 5,
  SYSM_IEPSR = 7,
  SYSM_MSP = 8,
  SYSM_PSP = 9,
  SYSM_PRIMASK = 16,
  SYSM_BASEPRI = 17,
  SYSM_BASEPRI_MAX = 18,
  SYSM_FAULTMASK = 19,
  SYSM_CONTROL = 20,
};

U32 ReadSpecialValue(const STATE& S, U32 Reg) {
  const bool bPrivileged = S.IsPrivileged();
  if (Reg <= SYSM_IEPSR) {
    const U32 Exception = Reg & 1 && bPrivileged ? S.IPSR : 0;
    return Exception | (Reg & 4 ? 0 : S.APSR());
  }
  if (Reg == SYSM_CONTROL) return S.Control;
  if (!bPrivileged) return 0;
  switch (Reg) {
    case SYSM_MSP:
      return S.MSP();
    case SYSM_PSP:
      return S.PSP();
    case SYSM_PRIMASK:
      return S.Primask;
    case SYSM_BASEPRI:
    case SYSM_BASEPRI_MAX:
      return S.Basepri;
    case SYSM_FAULTMASK:
      return S.Faultmask;
    default:
      return 0;
  }
}

void WriteBasepri(STATE& S, U32 Value, bool bOnlyRaise) {
  Value &= S.Nvic.PriorityMask();
  if (!S.bV7 || (bOnlyRaise && (!Value || (S.Basepri && Value >= S.Basepri)))) return;
  S.Basepri = Value;
}

void WriteControl(STATE& S, U32 Value) {
  // The stack selection cannot be changed in handler mode.
  const U32 Selection = S.IsHandlerMode() ? S.Control & CONTROL_SPSEL : Value & CONTROL_SPSEL;
  S.SetMode(S.IPSR, (Value & S.ControlMask() & ~CONTROL_SPSEL) | Selection);
}

void WritePrivileged(STATE& S, U32 Reg, U32 Value) {
  switch (Reg) {
    case SYSM_MSP:
      S.SetMSP(Value);
      break;
    case SYSM_PSP:
      S.SetPSP(Value);
      break;
    case SYSM_PRIMASK:
      S.Primask = Value & 1;
      break;
    case SYSM_BASEPRI:
      WriteBasepri(S, Value, false);
      break;
    case SYSM_BASEPRI_MAX:
      WriteBasepri(S, Value, true);
      break;
    case SYSM_FAULTMASK:
      if (S.bV7 && ExecutionPriority(S) > -1) S.Faultmask = Value & 1;
      break;
    case SYSM_CONTROL:
      WriteControl(S, Value);
      break;
    default:
      break;
  }
}

}  // namespace

const INST* RunUndefined(STATE& S, const INST* pI) {
  return RaiseUsageFault(S, pI, CFSR_UNDEFINSTR);
}

const INST* RunNoCoprocessor(STATE& S, const INST* pI) {
  return RaiseUsageFault(S, pI, CFSR_NOCP);
}

const INST* RunNop(STATE&, const INST* pI) {
  return Next(pI);
}

const INST* RunIfThen(STATE& S, const INST* pI) {
  S.IT = static_cast<U8>(pI->Imm);
  return Next(pI);
}

const INST* RunSupervisorCall(STATE& S, const INST* pI) {
  return RaiseSvc(S, pI);
}

const INST* RunBreakpoint(STATE& S, const INST* pI) {
  return RaiseBreakEvent(S, pI, STOP::BKPT);
}

// Imm is SYSm.
const INST* RunReadSpecial(STATE& S, const INST* pI) {
  S.R[pI->Rd] = ReadSpecialValue(S, pI->Imm);
  return Next(pI);
}

// Ra is the mask of the APSR parts: bit 1 flags, bit 0 GE.
const INST* RunWriteSpecial(STATE& S, const INST* pI) {
  const U32 Value = S.R[pI->Rn];
  if (pI->Imm <= SYSM_XPSR) S.SetAPSR(Value, pI->Ra & 2, pI->Ra & 1);
  if (S.IsPrivileged()) WritePrivileged(S, pI->Imm, Value);
  S.Attention();
  return Next(pI);
}

// Imm: bit 4 disable, bit 1 PRIMASK, bit 0 FAULTMASK.
const INST* RunChangeState(STATE& S, const INST* pI) {
  if (!S.IsPrivileged()) return Next(pI);
  const U32 Disable = pI->Imm >> 4 & 1;
  if (pI->Imm & 2) S.Primask = Disable;
  if (pI->Imm & 1 && (!Disable || ExecutionPriority(S) > -1)) S.Faultmask = Disable;
  S.Attention();
  return Next(pI);
}

const INST* RunWaitForInterrupt(STATE& S, const INST* pI) {
  S.bSleeping = true;
  S.bSleepsForEvent = false;
  S.Attention();
  return Next(pI);
}

const INST* RunWaitForEvent(STATE& S, const INST* pI) {
  S.bSleeping = S.bSleepsForEvent = !S.bEvent;
  S.bEvent = false;
  S.Attention();
  return Next(pI);
}

const INST* RunSendEvent(STATE& S, const INST* pI) {
  S.bEvent = true;
  return Next(pI);
}

}  // namespace sim
