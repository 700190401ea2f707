#pragma once
// Who may do what with memory: privilege, priority and the memory protection unit together.

#include "probe/sim/state.h"

namespace sim {

// What the core may do at an address as it runs now, or as CAccessAs says.
PERMISSION PermissionAt(const STATE& S, U32 Addr);
// By the present access, which is not always the present mode's.
bool IsAccessPrivileged(const STATE& S);

// While it lives, data accesses are checked as if somebody else made them. They have to go the long way.
class CAccessAs {
public:
  CAccessAs(STATE& S, ACCESSOR Accessor) : m_S(S) { m_S.Accessor = Accessor; }
  ~CAccessAs() { m_S.Accessor.reset(); }
  CAccessAs(const CAccessAs&) = delete;
  CAccessAs& operator=(const CAccessAs&) = delete;

private:
  STATE& m_S;
};

// While the protection unit is on: finds out once for many instructions whether they may be fetched.
class CFetchCheck {
public:
  explicit CFetchCheck(STATE& S);
  // The instruction itself, or one that raises the fault.
  const INST* operator()(const INST* pI) { return reinterpret_cast<uintptr_t>(pI) - m_First < m_Size ? pI : Look(pI); }

private:
  const INST* Look(const INST* pI);

  STATE& m_S;
  uintptr_t m_First = 0;  // predecoded instructions that may be fetched
  uintptr_t m_Size = 0;
};

}  // namespace sim
