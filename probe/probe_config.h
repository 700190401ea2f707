#pragma once

#include <optional>
#include <string>
#include <vector>

#include "device/probe_api/records.h"
#include "probe/gdb/server_address.h"

struct RTT_SEARCH_RANGE {
  U32 Addr = 0;
  U32 Size = 0;  // bytes
};

// What the caller has configured. Stays over Close.
struct PROBE_CONFIG {
  U32 SerialNo = 0;
  std::optional<GDB_SERVER_ADDRESS> Server;  // where the target is served; none: it is simulated
  int DeviceIndex = -1;
  int TargetIF = VNODE_TIF_SWD;
  int IRPre = 0;
  int DRPre = 0;
  U32 SpeedKHz = 4000;
  bool bBigEndian = false;
  U32 CoreIndex = 0;
  int ResetType = 0;
  int ResetDelayMs = 0;
  bool bInitRegsOnReset = true;
  bool bHideDeviceSelection = false;
  U32 RTTAddr = INVALID_ADDR;
  std::vector<RTT_SEARCH_RANGE> RTTSearchRanges;  // none: the device's RAM
  int TraceSource = 0;                            // 0 none, 1 trace pins, 2 trace buffer, 3 SWO
};
