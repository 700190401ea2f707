#include "probe/sim/exceptions.h"

#include "probe/sim/exceptions_fp.h"
#include "probe/sim/protection.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

inline constexpr U32 XPSR_ALIGNED = 1u << 9;  // in a stacked xPSR: a word was left out below the frame
inline constexpr U32 XPSR_EXCEPTION = 0x1FF;

inline constexpr U32 EXC_RETURN_HANDLER = 0xFFFFFFF1;
inline constexpr U32 EXC_RETURN_THREAD_MSP = 0xFFFFFFF9;
inline constexpr U32 EXC_RETURN_THREAD_PSP = 0xFFFFFFFD;
inline constexpr U32 EXC_RETURN_BASIC_FRAME = 1u << 4;  // clear: the frame is an extended one

constexpr U32 FRAME_REGS[] = {0, 1, 2, 3, 12, LR};

// Which exceptions stop the core for which vector catch bit.
struct CATCH_ROW {
  U32 Exc;
  U32 CfsrBits;  // one of them is the cause; 0 for any
  U32 DemcrBit;
};
constexpr CATCH_ROW CATCH_ROWS[] = {
    {EXC_HARDFAULT, 0, DEMCR_VC_HARDERR},
    {EXC_MEMMANAGE, CFSR_MSTKERR | CFSR_MUNSTKERR, DEMCR_VC_INTERR},
    {EXC_MEMMANAGE, 0, DEMCR_VC_MMERR},
    {EXC_BUSFAULT, CFSR_STKERR | CFSR_UNSTKERR, DEMCR_VC_INTERR},
    {EXC_BUSFAULT, 0, DEMCR_VC_BUSERR},
    {EXC_USAGEFAULT, CFSR_NOCP, DEMCR_VC_NOCPERR},
    {EXC_USAGEFAULT, CFSR_UNALIGNED | CFSR_DIVBYZERO, DEMCR_VC_CHKERR},
    {EXC_USAGEFAULT, CFSR_UNDEFINSTR | CFSR_INVSTATE | CFSR_INVPC, DEMCR_VC_STATERR},
};

bool IsCaught(const STATE& S, U32 Exc) {
  if (!S.bHaltingDebug) return false;
  for (const CATCH_ROW& Row : CATCH_ROWS) {
    if (Row.Exc == Exc && (S.Scb.DEMCR & Row.DemcrBit) && (!Row.CfsrBits || (S.FaultCfsr & Row.CfsrBits))) return true;
  }
  return false;
}

// What has gone wrong, for the status register and for the vector catch.
void NoteFault(STATE& S, U32 CfsrBits) {
  if (!S.bV7) return;
  S.Scb.CFSR |= CfsrBits;
  S.FaultCfsr = CfsrBits;
}

const INST* EnterLockup(STATE& S) {
  S.bLockup = true;
  S.IT = 0;
  S.StopWith(STOP::LOCKUP);
  return LockupInst(S);
}

int GroupPriority(const STATE& S, U32 Exc) {
  return S.Nvic.GroupPriority(Exc, S.Scb.PriGroup);
}

// What a synchronous exception becomes at the present priority; EXC_NONE is lockup.
U32 Escalate(STATE& S, U32 Exc) {
  const int Running = ExecutionPriority(S);
  if (Exc != EXC_HARDFAULT) {
    if (S.Nvic.IsEnabled(Exc) && GroupPriority(S, Exc) < Running) return Exc;
    S.Scb.HFSR |= HFSR_FORCED;
  }
  return Running > -1 ? EXC_HARDFAULT : EXC_NONE;
}

bool ReadVector(const STATE& S, U32 Exc, U32* pVector) {
  const U8* p = FindMem(S, S.Scb.VTOR + 4 * Exc, 4);
  if (p) std::memcpy(pVector, p, 4);
  return p != nullptr;
}

// Enters a handler; what was running is on a stack already.
const INST* EnterHandler(STATE& S, U32 Exc, U32 ExcReturn) {
  U32 Vector = 0;
  if (!ReadVector(S, Exc, &Vector)) {
    S.Scb.HFSR |= HFSR_VECTTBL;
    S.FaultCfsr = 0;
    if (S.bHaltingDebug && (S.Scb.DEMCR & DEMCR_VC_INTERR)) S.StopWith(STOP::VECTOR_CATCH);
    if (Exc == EXC_HARDFAULT || Exc == EXC_NMI || !ReadVector(S, EXC_HARDFAULT, &Vector)) return EnterLockup(S);
    Exc = EXC_HARDFAULT;
  }
  S.SetMode(Exc, S.Control & ~(CONTROL_SPSEL | CONTROL_FPCA));
  S.R[LR] = ExcReturn;
  S.IT = 0;
  S.bExclusive = false;
  S.bEvent = true;
  S.bSleeping = false;
  S.Nvic.SetPending(Exc, false);
  S.Nvic.SetActive(Exc, true);
  S.Attention();
  if (IsCaught(S, Exc)) S.StopWith(STOP::VECTOR_CATCH);
  if (!(Vector & 1)) return InvalidStateAt(S, Vector);
  S.bThumb = true;
  return At(S, Vector & ~1u);
}

DERIVED_FAULT PushFrame(STATE& S, U32 ReturnAddr, U8 ITState) {
  const bool bFp = S.Control & CONTROL_FPCA;
  const bool bAlign = (bFp || (S.Scb.CCR & CCR_STKALIGN)) && (S.R[SP] & 4);
  const U32 Frame = (S.R[SP] - (bFp ? EXTENDED_FRAME_SIZE : BASIC_FRAME_SIZE)) & ~(bAlign ? 4u : 0u);
  S.R[SP] = Frame;
  U32 Addr = Frame;
  bool bOk = true;
  for (U32 Reg : FRAME_REGS) {
    bOk = bOk && StoreSlow(S, Addr, 4, S.R[Reg]);
    Addr += 4;
  }
  bOk = bOk && StoreSlow(S, Addr, 4, ReturnAddr) &&
        StoreSlow(S, Addr + 4, 4, S.XPSR(ITState) | (bAlign ? XPSR_ALIGNED : 0));
  if (!bOk) return StackFault(S, CFSR_STKERR, CFSR_MSTKERR);
  return bFp ? PushFpContext(S, Frame) : DERIVED_FAULT();
}

const INST* Enter(STATE& S, U32 Exc, U32 ReturnAddr, U8 ITState) {
  const U32 Target = S.IsHandlerMode()             ? EXC_RETURN_HANDLER
                     : (S.Control & CONTROL_SPSEL) ? EXC_RETURN_THREAD_PSP
                                                   : EXC_RETURN_THREAD_MSP;
  const U32 ExcReturn = S.Control & CONTROL_FPCA ? Target & ~EXC_RETURN_BASIC_FRAME : Target;
  const DERIVED_FAULT Fault = PushFrame(S, ReturnAddr, ITState);
  if (Fault.Exc != EXC_NONE) {
    NoteFault(S, Fault.CfsrBit);
    const U32 Derived = Escalate(S, S.bV7 ? Fault.Exc : static_cast<U32>(EXC_HARDFAULT));
    if (Derived != EXC_NONE && GroupPriority(S, Derived) < GroupPriority(S, Exc)) {
      S.Nvic.SetPending(Exc, true);
      Exc = Derived;
    } else if (Derived != EXC_NONE && Derived != Exc) {
      S.Nvic.SetPending(Derived, true);
    }
  }
  return EnterHandler(S, Exc, ExcReturn);
}

const INST* RaiseSynchronous(STATE& S, U32 Exc, U32 ReturnAddr, U8 ITState) {
  Exc = S.bV7 || Exc == EXC_SVCALL ? Escalate(S, Exc) : Escalate(S, EXC_HARDFAULT);
  if (Exc == EXC_NONE) return EnterLockup(S);
  return Enter(S, Exc, ReturnAddr, ITState);
}

// A fault that is found while returning: entered without stacking, as if tail-chained.
const INST* RaiseOnReturn(STATE& S, U32 Exc, U32 CfsrBit, U32 ExcReturn) {
  NoteFault(S, CfsrBit);
  Exc = Escalate(S, S.bV7 ? Exc : static_cast<U32>(EXC_HARDFAULT));
  if (Exc == EXC_NONE) return EnterLockup(S);
  return EnterHandler(S, Exc, ExcReturn);
}

bool IsReturnLegal(const STATE& S, U32 ExcReturn) {
  const bool bNested = S.Nvic.IsAnotherActive(S.IPSR);
  if (S.HasFpu()) ExcReturn |= EXC_RETURN_BASIC_FRAME;
  switch (ExcReturn) {
    case EXC_RETURN_HANDLER:
      return bNested;
    case EXC_RETURN_THREAD_MSP:
    case EXC_RETURN_THREAD_PSP:
      return !bNested || (S.Scb.CCR & CCR_NONBASETHRDENA);
    default:
      return false;
  }
}

void Deactivate(STATE& S) {
  S.Nvic.SetActive(S.IPSR, false);
  if (S.IPSR != EXC_NMI) S.Faultmask = 0;
}

// Takes the frame off the stack that ExcReturn names and goes on where it says.
const INST* PopFrame(STATE& S, U32 ExcReturn) {
  const bool bFp = !(ExcReturn & EXC_RETURN_BASIC_FRAME);
  const U32 Target = ExcReturn | EXC_RETURN_BASIC_FRAME;
  const bool bToHandler = Target == EXC_RETURN_HANDLER;
  const bool bPsp = Target == EXC_RETURN_THREAD_PSP;
  const U32 Frame = bPsp ? S.PSP() : S.MSP();
  const CAccessAs Returned(S, {bToHandler || !(S.Control & CONTROL_NPRIV), ExecutionPriority(S) < 0});
  U32 aWords[BASIC_FRAME_SIZE / 4];
  for (U32 i = 0; i < std::size(aWords); i++) {
    if (LoadSlow(S, Frame + 4 * i, 4, &aWords[i])) continue;
    const DERIVED_FAULT Fault = StackFault(S, CFSR_UNSTKERR, CFSR_MUNSTKERR);
    return RaiseOnReturn(S, Fault.Exc, Fault.CfsrBit, ExcReturn);
  }
  const U32 Address = aWords[6];
  const U32 XPSR = aWords[7];
  const U32 NewIPSR = XPSR & XPSR_EXCEPTION;
  if (bToHandler != (NewIPSR != 0)) return RaiseOnReturn(S, EXC_USAGEFAULT, CFSR_INVPC, ExcReturn);
  if (bFp) {
    const DERIVED_FAULT Fault = PopFpContext(S, Frame);
    if (Fault.Exc != EXC_NONE) return RaiseOnReturn(S, Fault.Exc, Fault.CfsrBit, ExcReturn);
  }
  const U32 OtherBits = S.Control & ~(CONTROL_SPSEL | CONTROL_FPCA);
  S.SetMode(NewIPSR, OtherBits | (bPsp ? CONTROL_SPSEL : 0) | (bFp ? CONTROL_FPCA : 0));
  for (U32 i = 0; i < std::size(FRAME_REGS); i++) S.R[FRAME_REGS[i]] = aWords[i];
  const bool bAligned = (XPSR & XPSR_ALIGNED) && (bFp || (S.Scb.CCR & CCR_STKALIGN));
  S.R[SP] = (Frame + (bFp ? EXTENDED_FRAME_SIZE : BASIC_FRAME_SIZE)) | (bAligned ? 4u : 0u);
  S.SetXPSR(XPSR);
  S.bExclusive = false;
  S.bEvent = true;
  S.Attention();
  if (!bToHandler && (S.Scb.SCR & SCR_SLEEPONEXIT)) {
    S.bSleeping = true;
    S.bSleepsForEvent = false;
  }
  return S.bThumb ? At(S, Address & ~1u) : InvalidStateAt(S, Address);
}

// An exception that may be entered now, EXC_NONE if there is none.
U32 FindDeliverable(const STATE& S) {
  const U32 Exc = S.Nvic.HighestPending(S.bMaskInterrupts);
  return Exc != EXC_NONE && GroupPriority(S, Exc) < ExecutionPriority(S) ? Exc : static_cast<U32>(EXC_NONE);
}

// WFI ends for what PRIMASK alone holds back.
bool HasWakeup(const STATE& S) {
  const U32 Exc = S.Nvic.HighestPending(false);
  if (Exc == EXC_NONE) return false;
  int Running = S.Nvic.ActivePriority(S.Scb.PriGroup);
  if (S.Basepri) Running = std::min(Running, S.Nvic.ApplyGroup(S.Basepri, S.Scb.PriGroup));
  return GroupPriority(S, Exc) < Running;
}

bool CanMonitorTake(const STATE& S) {
  return S.Nvic.IsEnabled(EXC_DEBUGMON) && GroupPriority(S, EXC_DEBUGMON) < ExecutionPriority(S);
}

}  // namespace

const INST* RaiseUsageFault(STATE& S, const INST* pI, U32 CfsrBit) {
  NoteFault(S, CfsrBit);
  return RaiseSynchronous(S, EXC_USAGEFAULT, pI->Addr, S.ITOfCurrent);
}

const INST* RaiseAccessFault(STATE& S, const INST* pI) {
  if (S.FaultCause == FAULT_CAUSE::UNALIGNED) return RaiseUsageFault(S, pI, CFSR_UNALIGNED);
  if (S.FaultCause == FAULT_CAUSE::PROTECTION) {
    NoteFault(S, CFSR_DACCVIOL | CFSR_MMARVALID);
    if (S.bV7) S.Scb.MMFAR = S.FaultAddr;
    return RaiseSynchronous(S, EXC_MEMMANAGE, pI->Addr, S.ITOfCurrent);
  }
  NoteFault(S, CFSR_PRECISERR | CFSR_BFARVALID);
  if (S.bV7) S.Scb.BFAR = S.FaultAddr;
  return RaiseSynchronous(S, EXC_BUSFAULT, pI->Addr, S.ITOfCurrent);
}

const INST* RaiseUnaligned(STATE& S, const INST* pI, U32 Addr) {
  S.FaultCause = FAULT_CAUSE::UNALIGNED;
  S.FaultAddr = Addr;
  return RaiseAccessFault(S, pI);
}

const INST* RaiseStoreFault(STATE& S, const INST* pI) {
  const bool bBuffered =
      S.bV7 && S.FaultCause == FAULT_CAUSE::BUS && !IsScs(S.FaultAddr) && !(S.Scb.ACTLR & ACTLR_DISDEFWBUF);
  if (!bBuffered) return RaiseAccessFault(S, pI);
  NoteFault(S, CFSR_IMPRECISERR);
  if (S.Nvic.IsEnabled(EXC_BUSFAULT)) {
    S.Nvic.SetPending(EXC_BUSFAULT, true);
  } else {
    S.Scb.HFSR |= HFSR_FORCED;
    S.Nvic.SetPending(EXC_HARDFAULT, true);
  }
  S.Attention();
  return nullptr;
}

const INST* RaiseLazySaveFault(STATE& S, const INST* pI) {
  const DERIVED_FAULT Fault = StackFault(S, CFSR_LSPERR, CFSR_MLSPERR);
  NoteFault(S, Fault.CfsrBit);
  const U32 Ready = Fault.Exc == EXC_BUSFAULT ? FPCCR_BFRDY : FPCCR_MMRDY;
  if (S.Fp.FPCCR & Ready) return RaiseSynchronous(S, Fault.Exc, pI->Addr, S.ITOfCurrent);
  S.Scb.HFSR |= HFSR_FORCED;
  return RaiseSynchronous(S, EXC_HARDFAULT, pI->Addr, S.ITOfCurrent);
}

const INST* RaiseFetchFault(STATE& S, U32 Addr, bool bViolation) {
  NoteFault(S, bViolation ? CFSR_IACCVIOL : CFSR_IBUSERR);
  return RaiseSynchronous(S, bViolation ? EXC_MEMMANAGE : EXC_BUSFAULT, Addr, S.IT);
}

const INST* RaiseBreakEvent(STATE& S, const INST* pI, STOP Reason) {
  if (S.bHaltingDebug) {
    S.Left++;  // has not run
    S.StopWith(Reason);
    return pI;
  }
  S.Scb.DFSR |= DFSR_BKPT;
  if (CanMonitorTake(S)) return Enter(S, EXC_DEBUGMON, pI->Addr, S.IT);
  if (S.bV7) S.Scb.HFSR |= HFSR_DEBUGEVT;
  return RaiseSynchronous(S, EXC_HARDFAULT, pI->Addr, S.IT);
}

void RaiseWatchEvent(STATE& S) {
  if (S.bHaltingDebug) return S.StopWith(STOP::DATA_WATCH);
  if (!CanMonitorTake(S)) return;
  S.Scb.DFSR |= DFSR_DWTTRAP;
  S.Nvic.SetPending(EXC_DEBUGMON, true);
  S.Attention();
}

const INST* RaiseSvc(STATE& S, const INST* pI) {
  return RaiseSynchronous(S, EXC_SVCALL, pI->Addr + 2, S.IT);
}

const INST* ExceptionReturn(STATE& S, U32 ExcReturn) {
  ExcReturn |= 0x0FFFFFE0;  // bits that the architecture does not look at
  const bool bActive = S.Nvic.IsActive(S.IPSR);
  const bool bLegal = bActive && IsReturnLegal(S, ExcReturn);
  Deactivate(S);
  if (!bLegal) return RaiseOnReturn(S, EXC_USAGEFAULT, CFSR_INVPC, ExcReturn);
  S.SysTick.Advance(S.Now());
  if (S.SysTick.TakeInterrupt()) S.Nvic.SetPending(EXC_SYSTICK, true);
  if (const U32 Exc = FindDeliverable(S); Exc != EXC_NONE) return EnterHandler(S, Exc, ExcReturn);
  return PopFrame(S, ExcReturn);
}

const INST* ServiceExceptions(STATE& S, const INST* pI) {
  S.SysTick.Advance(S.Now());
  if (S.SysTick.TakeInterrupt()) S.Nvic.SetPending(EXC_SYSTICK, true);
  if (S.bLockup) {
    if (!CanLeaveLockup(S)) return pI;
    S.bLockup = false;
    return Enter(S, EXC_NMI, LOCKUP_PC, 0);
  }
  if (const U32 Exc = FindDeliverable(S); Exc != EXC_NONE) return Enter(S, Exc, AddrOf(S, pI), S.IT);
  if (S.bSleeping && S.bSleepsForEvent && S.bEvent) S.bSleeping = S.bEvent = false;
  if (S.bSleeping && HasWakeup(S)) S.bSleeping = false;
  return pI;
}

bool CanLeaveLockup(const STATE& S) {
  return S.Nvic.IsPending(EXC_NMI) && GroupPriority(S, EXC_NMI) < ExecutionPriority(S);
}

const INST* ResetCore(STATE& S) {
  ResetScs(S);
  for (U32 Reg = 0; Reg < PC; Reg++) S.R[Reg] = 0;
  S.R[LR] = 0xFFFFFFFF;
  S.IPSR = S.Control = S.OtherSP = 0;
  UpdateFpAccess(S);
  S.Primask = S.Faultmask = S.Basepri = 0;
  S.SetXPSR(0);
  S.bExclusive = S.bSleeping = S.bEvent = S.bLockup = S.bResetRequested = false;
  S.ITOfCurrent = 0;
  U32 InitialSP = 0;
  U32 Vector = 0;
  if (!ReadVector(S, 0, &InitialSP) || !ReadVector(S, EXC_RESET, &Vector)) return EnterLockup(S);
  S.R[SP] = InitialSP & ~3u;
  S.bThumb = Vector & 1;
  S.Attention();
  if (S.bHaltingDebug && (S.Scb.DEMCR & DEMCR_VC_CORERESET)) S.StopWith(STOP::VECTOR_CATCH);
  return S.bThumb ? At(S, Vector & ~1u) : InvalidStateAt(S, Vector);
}

}  // namespace sim
