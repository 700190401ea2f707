#pragma once

#include "base/types.h"
#include "device/probe_api/register_index.h"

// The device's state as event delivery and the data provider read it; CDevice is the real one. Any thread.
class CDeviceView {
public:
  virtual ~CDeviceView() = default;
  virtual bool IsConnected() const = 0;
  // The halt sequence is finished; registers and memory may be read through the cache.
  virtual bool IsAccessible() const = 0;
  virtual bool IsSessionReady() const = 0;
  // A source step is in progress.
  virtual bool IsStepping() const = 0;
  virtual U64 GetPC() const = 0;
  // The probe's number of the program counter on the present core.
  virtual U32 PCIndex() const { return VNODE_REG_PC; }
};
