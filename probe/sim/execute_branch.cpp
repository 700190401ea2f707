// Branches. A target in the memory of the branch itself is a distance between predecoded instructions.

#include "probe/sim/execute.h"

namespace sim {

namespace {

const INST* Near(const INST* pI) {
  return pI + static_cast<I32>(pI->Imm);
}

template <U32 COND>
const INST* RunBranchIf(STATE& S, const INST* pI) {
  return IsTrue(S, COND) ? Near(pI) : Next(pI);
}

}  // namespace

HANDLER BranchIfHandler(U32 Cond) {
  static constexpr HANDLER TABLE[] = {
      RunBranchIf<COND_EQ>, RunBranchIf<COND_NE>, RunBranchIf<COND_CS>, RunBranchIf<COND_CC>, RunBranchIf<COND_MI>,
      RunBranchIf<COND_PL>, RunBranchIf<COND_VS>, RunBranchIf<COND_VC>, RunBranchIf<COND_HI>, RunBranchIf<COND_LS>,
      RunBranchIf<COND_GE>, RunBranchIf<COND_LT>, RunBranchIf<COND_GT>, RunBranchIf<COND_LE>,
  };
  return TABLE[Cond];
}

const INST* RunBranchNear(STATE&, const INST* pI) {
  return Near(pI);
}

// Imm is the address; Rd is the condition.
const INST* RunBranchFar(STATE& S, const INST* pI) {
  return IsTrue(S, pI->Rd) ? At(S, pI->Imm) : Next(pI);
}

const INST* RunBranchLink(STATE& S, const INST* pI) {
  S.R[LR] = (pI->Addr + 4) | 1;
  return Near(pI);
}

const INST* RunBranchLinkFar(STATE& S, const INST* pI) {
  S.R[LR] = (pI->Addr + 4) | 1;
  return At(S, pI->Imm);
}

const INST* RunBranchExchangeReg(STATE& S, const INST* pI) {
  S.R[PC] = pI->Addr + 4;
  return BranchExchange(S, S.R[pI->Rm]);
}

const INST* RunBranchLinkExchange(STATE& S, const INST* pI) {
  const U32 Target = S.R[pI->Rm];
  S.R[LR] = (pI->Addr + 2) | 1;
  return Target & 1 ? At(S, Target & ~1u) : InvalidStateAt(S, Target);
}

const INST* RunBranchIfZero(STATE& S, const INST* pI) {
  return S.R[pI->Rn] ? Next(pI) : At(S, pI->Imm);
}

const INST* RunBranchIfNotZero(STATE& S, const INST* pI) {
  return S.R[pI->Rn] ? At(S, pI->Imm) : Next(pI);
}

const INST* RunTableBranchByte(STATE& S, const INST* pI) {
  S.R[PC] = pI->Addr + 4;
  U32 Distance;
  if (!Load<U8>(S, S.R[pI->Rn] + S.R[pI->Rm], &Distance)) return RaiseAccessFault(S, pI);
  return At(S, pI->Addr + 4 + 2 * Distance);
}

const INST* RunTableBranchHalf(STATE& S, const INST* pI) {
  S.R[PC] = pI->Addr + 4;
  U32 Distance;
  if (!Load<U16>(S, S.R[pI->Rn] + 2 * S.R[pI->Rm], &Distance)) return RaiseAccessFault(S, pI);
  return At(S, pI->Addr + 4 + 2 * Distance);
}

}  // namespace sim
