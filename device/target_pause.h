#pragma once

#include "device/device_context.h"

// Halts a running target for as long as the object lives and lets it run on afterwards, unless the connection is lost
// by then. A target that is halted already stays halted.
class CTargetPause {
public:
  CTargetPause(CDeviceContext& Ctx, bool bWanted);
  ~CTargetPause();
  CTargetPause(const CTargetPause&) = delete;
  CTargetPause& operator=(const CTargetPause&) = delete;

private:
  CDeviceContext& Ctx;
  bool bResume = false;
};
