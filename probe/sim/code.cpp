#include "probe/sim/code.h"

#include "probe/sim/decode.h"
#include "probe/sim/exceptions.h"
#include "probe/sim/protection.h"

namespace sim {

namespace {

const INST* RunFetchFault(STATE& S, const INST* pI) {
  return RaiseFetchFault(S, pI->Addr, !PermissionAt(S, pI->Addr).bExecute);
}

const INST* RunFetchViolation(STATE& S, const INST* pI) {
  return RaiseFetchFault(S, pI->Addr, true);
}

const INST* RunInvalidState(STATE& S, const INST* pI) {
  S.ITOfCurrent = S.IT;
  const INST* pHandler = RaiseUsageFault(S, pI, CFSR_INVSTATE);
  S.ITOfCurrent = 0;
  return pHandler;
}

const INST* RunLockup(STATE& S, const INST* pI) {
  S.Left++;  // has not run
  S.StopWith(STOP::LOCKUP);
  return pI;
}

const INST* RunUnitBreakpoint(STATE& S, const INST* pI) {
  return RaiseBreakEvent(S, pI, STOP::BREAKPOINT);
}

// Behind the last halfword of a memory: another one may follow.
const INST* RunEndOfMemory(STATE& S, const INST* pI) {
  S.Left++;  // has not run
  return At(S, pI->Addr);
}

void MakeSpecial(INST* pI, HANDLER pfRun, U32 Addr) {
  *pI = {};
  pI->pfRun = pI->pfRunIT = pfRun;
  pI->Addr = Addr;
  pI->Halfwords = 1;
  pI->Flags = INST_DOES_NOT_RUN | INST_IGNORES_IT;  // faults, whatever the condition
}

const INST* Special(STATE& S, HANDLER pfRun, U32 Addr) {
  MakeSpecial(&S.Special, pfRun, Addr);
  return &S.Special;
}

void DecodeIn(STATE& S, REGION& Region, INST* pI) {
  const U32 Addr = Region.AddrOf(pI);
  const U32 Offset = Addr - Region.Start;
  if (Offset >= Region.Size) {
    return MakeSpecial(pI, RunEndOfMemory, Addr);
  }
  U16 First;
  std::memcpy(&First, Region.pData + Offset, sizeof(First));
  *pI = {};
  pI->Addr = Addr;
  if (IsWide(First)) {
    const U8* pSecond = FindMem(S, Addr + sizeof(First), sizeof(First));
    if (!pSecond) return MakeSpecial(pI, RunFetchFault, Addr);
    U16 Second;
    std::memcpy(&Second, pSecond, sizeof(Second));
    Decode32(S, pI, First, Second);
  } else {
    Decode16(S, pI, First);
  }
  Region.MarkCode(Offset, pI->Halfwords * sizeof(U16));
  if (S.Breakpoints.StopsAt(Addr)) {
    pI->pfRun = pI->pfRunIT = RunUnitBreakpoint;
    pI->Flags |= INST_IGNORES_IT | INST_DOES_NOT_RUN;
  }
}

}  // namespace

const INST* AtSlow(STATE& S, U32 Addr) {
  if (REGION* pRegion = FindRegion(S, Addr)) return pRegion->At(Addr);
  return Special(S, RunFetchFault, Addr);
}

U32 AddrOf(const STATE& S, const INST* pI) {
  if (pI->pfRun) return pI->Addr;
  for (const REGION* pRegion : {&S.Flash, &S.aRAM[0], &S.aRAM[1]}) {
    if (pRegion->HoldsInst(pI)) return pRegion->AddrOf(pI);
  }
  return INVALID_ADDR;
}

const INST* InvalidStateAt(STATE& S, U32 Addr) {
  S.bThumb = false;
  return Special(S, RunInvalidState, Addr & ~1u);
}

const INST* FetchViolationAt(STATE& S, U32 Addr) {
  return Special(S, RunFetchViolation, Addr);
}

const INST* LockupInst(STATE& S) {
  return Special(S, RunLockup, LOCKUP_PC);
}

void Decode(STATE& S, const INST* pI) {
  ForEachRegion(S, [&](REGION& Region) {
    if (Region.HoldsInst(pI)) DecodeIn(S, Region, Region.paCode + (pI - Region.paCode));
  });
}

}  // namespace sim
