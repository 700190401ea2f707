#pragma once

#include "device/device_event_listener.h"

// Tells the user of what a command has left to the device thread and what has failed there. Main thread.
class CTargetFailures : public CDeviceEventListener {
public:
  void OnDeviceWriteMemFailed(U32 Addr, U32 NumBytes, U8* paData) override;
  void OnDeviceWriteMemMultipleFailed(U32 NumRanges, U32* paRanges, U8* paData) override;
  void OnDeviceWriteRegFailed(U32 VNodeRegIdx) override;
  void OnDeviceExecCmdFailed(const char* sCommand, const char* sReply) override;
};
