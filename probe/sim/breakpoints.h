#pragma once
// Which addresses stop the core. The instruction at such an address is predecoded to a stop, so that running code pays
// nothing for breakpoints.

#include <map>
#include <vector>

#include "base/types.h"

namespace sim {

class CBreakpoints {
public:
  // False when all comparators of the unit are in use. An address that has one already is counted.
  bool AddUnit(U32 Addr, U32 NumComparators);
  void RemoveUnit(U32 Addr);
  void AddSoft(U32 Addr) { m_Items[Addr].NumSoft++; }
  void RemoveSoft(U32 Addr);

  bool StopsAt(U32 Addr) const { return !m_Items.empty() && Addr != m_Hidden && m_Items.count(Addr); }
  // Address of a comparator, INVALID_ADDR while it is free.
  U32 UnitAddr(U32 Index) const { return Index < m_UnitAddr.size() ? m_UnitAddr[Index] : INVALID_ADDR; }
  // The breakpoint at this address is as if not there, until it is INVALID_ADDR.
  void Hide(U32 Addr) { m_Hidden = Addr; }

private:
  struct ITEM {
    U32 NumUnit = 0;
    U32 NumSoft = 0;
  };
  void DropIfUnused(U32 Addr);

  std::map<U32, ITEM> m_Items;
  std::vector<U32> m_UnitAddr;
  U32 m_Hidden = INVALID_ADDR;
};

}  // namespace sim
