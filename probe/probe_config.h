#pragma once

#include <string>

#include "device/probe_api/records.h"

// What the caller has configured. Stays over Close.
struct PROBE_CONFIG {
  U32 SerialNo = 0;
  int DeviceIndex = -1;
  int TargetIF = VNODE_TIF_SWD;
  int IRPre = 0;
  int DRPre = 0;
  U32 SpeedKHz = 4000;
  U32 CoreIndex = 0;
  int ResetType = 0;
  int ResetDelayMs = 0;
  bool bInitRegsOnReset = true;
  bool bHideDeviceSelection = false;
  U32 RTTAddr = INVALID_ADDR;
  std::string sRTTSearchRanges;
};
