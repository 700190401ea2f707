#pragma once

#include "device/device_capabilities.h"

// Output of the target through the SWO pin; device thread. Why a start, a stop or a read is refused goes to the SWO
// error text, which logs it as a warning.
class CSwoChannel {
public:
  static constexpr U32 MAX_READ_BYTES = 4000;
  static constexpr U32 ALL_PORTS = 0xFFFFFFFFu;

  CSwoChannel(CDeviceContext& Ctx, CDeviceCapabilities& Capabilities) : Ctx(Ctx), Capabilities(Capabilities) {}

  // Frequencies of core and pin in Hz; 0 takes the measured core speed, and the first pin speed that goes with it.
  // PortMask: bit per stimulus port. 0 or -1.
  int Start(U32 CpuHz, U32 SWOHz, U32 PortMask);
  int Stop(U32 PortMask);
  bool IsStarted() const { return bStarted; }
  // Number of bytes read, which may be 0; -1 on failure.
  int Read(U32 Port, U32 NumBytes, U8* paData);

private:
  // Why nothing can be done with the pin now; null when it can.
  const char* Obstacle() const;
  int Refuse(const char* sText);
  int FailCall(const char* sText);
  U32 FirstSpeed(U32 CpuHz);

  CDeviceContext& Ctx;
  CDeviceCapabilities& Capabilities;
  std::atomic<bool> bStarted{false};
};
