#include "probe/sim/breakpoints.h"

#include <algorithm>

namespace sim {

bool CBreakpoints::AddUnit(U32 Addr, U32 NumComparators) {
  m_UnitAddr.resize(NumComparators, INVALID_ADDR);
  if (std::find(m_UnitAddr.begin(), m_UnitAddr.end(), Addr) == m_UnitAddr.end()) {
    const auto Free = std::find(m_UnitAddr.begin(), m_UnitAddr.end(), INVALID_ADDR);
    if (Free == m_UnitAddr.end()) return false;
    *Free = Addr;
  }
  m_Items[Addr].NumUnit++;
  return true;
}

void CBreakpoints::RemoveUnit(U32 Addr) {
  const auto It = m_Items.find(Addr);
  if (It == m_Items.end() || !It->second.NumUnit) return;
  if (--It->second.NumUnit == 0) std::replace(m_UnitAddr.begin(), m_UnitAddr.end(), Addr, INVALID_ADDR);
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
