// Loads and stores of floating point registers.

#include "probe/sim/execute_fp.h"

namespace sim {

namespace {

void MoveBase(STATE& S, const INST* pI) {
  if (!pI->ShiftN) return;
  const U32 Distance = 4u * pI->Rm;
  S.R[pI->Rn] += pI->ShiftType ? 0u - Distance : Distance;
}

U32 AddressOf(const STATE& S, const INST* pI) {
  return (pI->Rn == PC ? (pI->Addr + 4) & ~3u : S.R[pI->Rn]) + pI->Imm;
}

const INST* RunFpLoad(STATE& S, const INST* pI) {
  if (!S.Fp.bReady) [[unlikely]] {
    if (const INST* pElsewhere = BeginFp(S, pI)) return pElsewhere;
  }
  const U32 Addr = AddressOf(S, pI);
  if (Addr & 3) return RaiseUnaligned(S, pI, Addr);
  U32 aValues[NUM_FP_REGS];
  for (U32 i = 0; i < pI->Ra; i++) {
    if (!Load<U32>(S, Addr + 4 * i, &aValues[i])) return RaiseAccessFault(S, pI);
  }
  MoveBase(S, pI);
  std::memcpy(&S.Fp.S[pI->Rd], aValues, 4u * pI->Ra);
  return Next(pI);
}

const INST* RunFpStore(STATE& S, const INST* pI) {
  if (!S.Fp.bReady) [[unlikely]] {
    if (const INST* pElsewhere = BeginFp(S, pI)) return pElsewhere;
  }
  const U32 Addr = AddressOf(S, pI);
  if (Addr & 3) return RaiseUnaligned(S, pI, Addr);
  for (U32 i = 0; i < pI->Ra; i++) {
    if (Store<U32>(S, Addr + 4 * i, S.Fp.S[pI->Rd + i])) continue;
    if (const INST* pFault = RaiseStoreFault(S, pI)) return pFault;
  }
  MoveBase(S, pI);
  return Next(pI);
}

const INST* RunFpUndefined(STATE& S, const INST* pI) {
  if (!IsFpAllowed(S)) return RaiseUsageFault(S, pI, CFSR_NOCP);
  return RaiseUsageFault(S, pI, CFSR_UNDEFINSTR);
}

}  // namespace

HANDLER FpLoadHandler() {
  return RunFpLoad;
}

HANDLER FpStoreHandler() {
  return RunFpStore;
}

HANDLER FpUndefinedHandler() {
  return RunFpUndefined;
}

}  // namespace sim
