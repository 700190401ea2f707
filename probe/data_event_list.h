#pragma once

#include <vector>

#include "probe/target.h"

// The data events of a connection: each holds one comparator of the core's data watchpoint unit.
class CDataEventList {
public:
  // 0 and the handle, or one of VNODE_DATA_EVENT_ERRORS.
  int Set(CTarget& Target, const VNODEARM_DATA_EVENT& Event, U32* pHandle);
  bool Clear(CTarget& Target, U32 Handle);
  void ClearAll(CTarget& Target);

  int Size() const { return static_cast<int>(m_Items.size()); }
  // False when out of range.
  bool Get(int Index, VNODEARM_WP_INFO* pInfo) const;

private:
  struct ITEM {
    VNODEARM_DATA_EVENT Event;
    U32 Handle;
    int Unit;
  };
  std::vector<ITEM> m_Items;
  U32 m_LastHandle = 0;
};
