#include "probe/sim/protection.h"

#include <algorithm>

#include "probe/sim/code.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

bool IsNegativePriority(const STATE& S) {
  return S.Accessor ? S.Accessor->bNegativePriority : ExecutionPriority(S) < 0;
}

}  // namespace

bool IsAccessPrivileged(const STATE& S) {
  return S.Accessor ? S.Accessor->bPrivileged : S.IsPrivileged();
}

PERMISSION PermissionAt(const STATE& S, U32 Addr) {
  if (!S.Mpu.IsOn() || IsScs(Addr)) return DefaultPermission(Addr);
  if (!S.Mpu.IsOnInFaults() && IsNegativePriority(S)) return DefaultPermission(Addr);
  return S.Mpu.Find(Addr, IsAccessPrivileged(S));
}

// Privilege and priority stay the same for as long as instructions run without a look at the rest.
CFetchCheck::CFetchCheck(STATE& S) : m_S(S) {
  UpdateAccessPaths(S);
}

const INST* CFetchCheck::Look(const INST* pI) {
  ForEachRegion(m_S, [&](REGION& Region) {
    if (!Region.HoldsInst(pI)) return;
    const U32 Addr = Region.AddrOf(pI);
    if (!Region.Contains(Addr)) return;  // leads to the next memory
    const PERMISSION Permission = PermissionAt(m_S, Addr);
    if (!pI->pfRun) Decode(m_S, pI);
    const bool bCrosses = pI->Halfwords > 1 && Addr + sizeof(U16) > Permission.Last;
    if (!Permission.bExecute || (bCrosses && !PermissionAt(m_S, Addr + sizeof(U16)).bExecute)) {
      pI = FetchViolationAt(m_S, Addr);
      return;
    }
    // Without the last halfword, whose instruction may go on behind it.
    const U32 First = std::max(Permission.First, Region.Start);
    const U32 Last = std::min(Permission.Last, Region.Start + (Region.Size - 1));
    m_First = reinterpret_cast<uintptr_t>(Region.At(First));
    m_Size = reinterpret_cast<uintptr_t>(Region.At(Last)) - m_First;
  });
  return pI;
}

}  // namespace sim
