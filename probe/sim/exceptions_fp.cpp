#include "probe/sim/exceptions_fp.h"

#include "probe/sim/execute_fp.h"
#include "probe/sim/fp.h"
#include "probe/sim/protection.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

inline constexpr U32 STATUS_OFFSET = 4 * NUM_STACKED_FP_REGS;  // of FPSCR from S0

bool StoreContext(STATE& S, U32 Addr) {
  for (U32 i = 0; i < NUM_STACKED_FP_REGS; i++) {
    if (!StoreSlow(S, Addr + 4 * i, 4, S.Fp.S[i])) return false;
  }
  return StoreSlow(S, Addr + STATUS_OFFSET, 4, S.Fp.FPSCR);
}

bool CouldPreempt(const STATE& S, U32 Exc) {
  return S.Nvic.IsEnabled(Exc) && S.Nvic.GroupPriority(Exc, S.Scb.PriGroup) < ExecutionPriority(S);
}

// Notes where to save the context later, and which exceptions a failure may then raise.
void DeferSave(STATE& S, U32 Addr) {
  U32 Value = (S.Fp.FPCCR & (FPCCR_ASPEN | FPCCR_LSPEN)) | FPCCR_LSPACT;
  if (!S.IsPrivileged()) Value |= FPCCR_USER;
  if (!S.IsHandlerMode()) Value |= FPCCR_THREAD;
  if (ExecutionPriority(S) > -1) Value |= FPCCR_HFRDY;
  if (CouldPreempt(S, EXC_MEMMANAGE)) Value |= FPCCR_MMRDY;
  if (CouldPreempt(S, EXC_BUSFAULT)) Value |= FPCCR_BFRDY;
  if ((S.Scb.DEMCR & DEMCR_MON_EN) && CouldPreempt(S, EXC_DEBUGMON)) Value |= FPCCR_MONRDY;
  S.Fp.FPCCR = Value;
  S.Fp.FPCAR = Addr & ~7u;
}

// With the rights of the context that was interrupted.
bool SaveDeferred(STATE& S) {
  const CAccessAs Interrupted(S, {!(S.Fp.FPCCR & FPCCR_USER), !(S.Fp.FPCCR & FPCCR_HFRDY)});
  return StoreContext(S, S.Fp.FPCAR);
}

}  // namespace

DERIVED_FAULT StackFault(const STATE& S, U32 BusBit, U32 ProtectionBit) {
  if (S.FaultCause == FAULT_CAUSE::PROTECTION) return {EXC_MEMMANAGE, ProtectionBit};
  return {EXC_BUSFAULT, BusBit};
}

DERIVED_FAULT PushFpContext(STATE& S, U32 Frame) {
  const U32 Addr = Frame + BASIC_FRAME_SIZE;
  if (S.Fp.FPCCR & FPCCR_LSPEN) {
    DeferSave(S, Addr);
    return {};
  }
  if (!IsFpAllowed(S)) return {EXC_USAGEFAULT, CFSR_NOCP};
  if (!StoreContext(S, Addr)) return StackFault(S, CFSR_STKERR, CFSR_MSTKERR);
  return {};
}

DERIVED_FAULT PopFpContext(STATE& S, U32 Frame) {
  if (S.Fp.FPCCR & FPCCR_LSPACT) {  // never saved: the registers still hold it
    S.Fp.FPCCR &= ~FPCCR_LSPACT;
    return {};
  }
  if (!IsFpAllowed(S)) return {EXC_USAGEFAULT, CFSR_NOCP};
  const U32 Addr = Frame + BASIC_FRAME_SIZE;
  U32 aValues[NUM_STACKED_FP_REGS + 1];
  for (U32 i = 0; i < std::size(aValues); i++) {
    if (!LoadSlow(S, Addr + 4 * i, 4, &aValues[i])) return StackFault(S, CFSR_UNSTKERR, CFSR_MUNSTKERR);
  }
  std::memcpy(S.Fp.S, aValues, 4 * NUM_STACKED_FP_REGS);
  S.Fp.FPSCR = aValues[NUM_STACKED_FP_REGS] & FPSCR_MASK;
  return {};
}

const INST* BeginFp(STATE& S, const INST* pI) {
  if (!IsFpAllowed(S)) return RaiseUsageFault(S, pI, CFSR_NOCP);
  if (S.Fp.FPCCR & FPCCR_LSPACT) {
    if (!SaveDeferred(S)) return RaiseLazySaveFault(S, pI);
    S.Fp.FPCCR &= ~FPCCR_LSPACT;
  }
  if ((S.Fp.FPCCR & FPCCR_ASPEN) && !(S.Control & CONTROL_FPCA)) {
    S.Fp.FPSCR = (S.Fp.FPSCR & ~FPDSCR_MASK) | S.Fp.FPDSCR;
    S.Control |= CONTROL_FPCA;
  }
  UpdateFpAccess(S);
  return nullptr;
}

}  // namespace sim
