#pragma once

#include <string>
#include <vector>

#include "probe/target.h"

// The breakpoints of a connection and how each is implemented: by a comparator of the core, in RAM or in flash.
class CBreakpointList {
public:
  // Handle, or 0 with the reason in *psError. An address that has a breakpoint already gets the same handle and one
  // more use, if its implementation is permitted. Where the comparators are used up, one of another breakpoint is freed
  // that can do without. Software breakpoints are allowed by bSoftEnabled on top of TypeFlags.
  int Set(CTarget& Target, U32 Addr, U32 TypeFlags, bool bSoftEnabled, std::string* psError);
  // Gives one use back; false when there is no such handle.
  bool Clear(CTarget& Target, int Handle);
  void ClearAll(CTarget& Target);

  int Size() const { return static_cast<int>(m_Items.size()); }
  // Null when out of range.
  const VNODEARM_BP_INFO* At(int Index) const;
  const VNODEARM_BP_INFO* FindHandle(U32 Handle) const;

private:
  // Installs one in the comparator of another that may be in memory, too; 0 when no such is there, or of no use.
  U32 InstallInsteadOfAnother(CTarget& Target, U32 Addr, U32 TypeFlags, std::string* psError);

  std::vector<VNODEARM_BP_INFO> m_Items;
  U32 m_LastHandle = 0;
};
