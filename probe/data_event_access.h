#pragma once

#include "device/probe_api/records.h"

// What the access fields of a data event ask for.
struct DATA_EVENT_ACCESS {
  bool bOnRead = false;
  bool bOnWrite = false;
  U32 NumBytes = 0;  // width of the access, 0 for any
};

// False for an event of another type, or with a width that no access has.
bool IsDataBreakpoint(const VNODEARM_DATA_EVENT& Event);
DATA_EVENT_ACCESS AccessOf(const VNODEARM_DATA_EVENT& Event);
