#include "probe/sim/breakpoints.h"

namespace sim {

bool CBreakpoints::AddUnit(U32 Addr, U32 NumComparators) {
  const auto It = m_Items.find(Addr);
  const bool bHasOne = It != m_Items.end() && It->second.NumUnit;
  if (!bHasOne && m_NumUnitsUsed >= NumComparators) return false;
  m_NumUnitsUsed += !bHasOne;
  m_Items[Addr].NumUnit++;
  return true;
}

void CBreakpoints::RemoveUnit(U32 Addr) {
  const auto It = m_Items.find(Addr);
  if (It == m_Items.end() || !It->second.NumUnit) return;
  if (--It->second.NumUnit == 0) m_NumUnitsUsed--;
  DropIfUnused(Addr);
}

void CBreakpoints::RemoveSoft(U32 Addr) {
  const auto It = m_Items.find(Addr);
  if (It == m_Items.end() || !It->second.NumSoft) return;
  It->second.NumSoft--;
  DropIfUnused(Addr);
}

void CBreakpoints::DropIfUnused(U32 Addr) {
  const ITEM& Item = m_Items[Addr];
  if (!Item.NumUnit && !Item.NumSoft) m_Items.erase(Addr);
}

}  // namespace sim
