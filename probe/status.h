#pragma once

#include <string>
#include <vector>

#include "probe/device_list.h"
#include "probe/target.h"

class CSession;

// A moment of the library's state, as the control page shows it.
struct PROBE_STATUS {
  struct BREAKPOINT {
    U32 Addr = 0;
    const char* sImplementation = "";
    U32 NumUses = 0;
  };
  struct DATA_EVENT {
    VNODEARM_WP_INFO Info = {};
    const char* sAccess = "";
    U32 NumBytes = 0;  // width of the access, 0 for any
  };

  bool bOpen = false;
  bool bBusy = false;  // the library did not answer in time: this is an older state
  U32 SerialNo = 0;
  const char* sInterface = "";
  U32 SpeedKHz = 0;
  U32 RTTAddr = INVALID_ADDR;
  std::string sRTTSearchRanges;
  DEVICE_ROW Device;  // without core when none is selected
  std::string sRunState;
  TARGET_STATUS Target;
  std::vector<BREAKPOINT> Breakpoints;
  std::vector<DATA_EVENT> DataEvents;
  std::vector<std::string> Faults;
};

// The session is locked.
PROBE_STATUS CollectStatus(CSession& Session);
// One object, numbers as numbers; ends in a line feed.
std::string StatusJson(const PROBE_STATUS& Status);
// The whole page. It refers to page.css and refresh.js.
std::string StatusPage(const PROBE_STATUS& Status);
