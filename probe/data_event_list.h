#pragma once

#include <vector>

#include "device/probe_api/records.h"
#include "probe/board.h"

// The data events of a connection: each holds one comparator of the core's data watchpoint unit.
class CDataEventList {
public:
  // 0 and the handle, or one of VNODE_DATA_EVENT_ERRORS.
  int Set(CBoard& Board, const VNODEARM_DATA_EVENT& Event, U32* pHandle);
  bool Clear(CBoard& Board, U32 Handle);
  void ClearAll(CBoard& Board);

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

// What the access fields of a data event ask for.
sim::DATA_WATCH WatchOf(const VNODEARM_DATA_EVENT& Event);
