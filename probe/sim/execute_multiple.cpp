// Load and store multiple, PUSH and POP among them.

#include "probe/sim/execute.h"

namespace sim {

namespace {

template <bool DECREMENT>
U32 FirstAddr(const STATE& S, const INST* pI) {
  const U32 Base = S.R[pI->Rn];
  return DECREMENT ? Base - 4 * static_cast<U32>(std::popcount(pI->Imm)) : Base;
}

template <bool DECREMENT>
void WriteBack(STATE& S, const INST* pI, U32 First) {
  if (pI->Ra) S.R[pI->Rn] = DECREMENT ? First : First + 4 * static_cast<U32>(std::popcount(pI->Imm));
}

template <bool DECREMENT>
const INST* RunLoadMultiple(STATE& S, const INST* pI) {
  const U32 First = FirstAddr<DECREMENT>(S, pI);
  if (First & 3) return RaiseUnaligned(S, pI, First);
  U32 aValues[16];
  U32 Num = 0;
  for (U32 List = pI->Imm; List; List &= List - 1, Num++) {
    if (!Load<U32>(S, First + 4 * Num, &aValues[Num])) return RaiseAccessFault(S, pI);
  }
  WriteBack<DECREMENT>(S, pI, First);
  Num = 0;
  for (U32 List = pI->Imm & 0x7FFF; List; List &= List - 1) S.R[std::countr_zero(List)] = aValues[Num++];
  return pI->Imm >> PC & 1 ? BranchExchange(S, aValues[Num]) : Next(pI);
}

template <bool DECREMENT>
const INST* RunStoreMultiple(STATE& S, const INST* pI) {
  const U32 First = FirstAddr<DECREMENT>(S, pI);
  if (First & 3) return RaiseUnaligned(S, pI, First);
  U32 Addr = First;
  for (U32 List = pI->Imm; List; List &= List - 1, Addr += 4) {
    if (Store<U32>(S, Addr, S.R[std::countr_zero(List)])) continue;
    if (const INST* pFault = RaiseStoreFault(S, pI)) return pFault;
  }
  WriteBack<DECREMENT>(S, pI, First);
  return Next(pI);
}

}  // namespace

HANDLER MultipleHandler(bool bLoad, bool bDecrementBefore) {
  if (bLoad) return bDecrementBefore ? RunLoadMultiple<true> : RunLoadMultiple<false>;
  return bDecrementBefore ? RunStoreMultiple<true> : RunStoreMultiple<false>;
}

}  // namespace sim
