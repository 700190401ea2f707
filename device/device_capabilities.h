#pragma once

#include "device/probe_info.h"

// What probe and target can do together; device thread.
class CDeviceCapabilities {
public:
  CDeviceCapabilities(CDeviceContext& Ctx, CProbeInfo& Info) : Ctx(Ctx), Info(Info) {}

  // All capabilities count as present.
  void ResetHWCapabilityFlags();
  // Asks probe and target; no-op when not connected. Every changed flag is reported.
  void UpdateHWCapabilityFlags();
  bool ReadBMACapability();
  // False with the reason in the SWO error text.
  bool ReadSWOTraceCapability();
  bool ReadStreamingTraceCapability();
  // Speeds in Hz that the probe can receive at a core clock of CPUSpeedHz: fills at most NumItems and zeroes the rest.
  // Their number, or -1. JT_SWO_GET_COMPAT_SPEEDS.
  int ReadSWOSpeeds(U32 CPUSpeedHz, U32 NumItems, U32* paSpeedsHz);
  // Byte orders of the connected target, or the configured one; a change is reported with the former values.
  void UpdateEndianess();
  // Tells the probe the byte order when connected, and refreshes what is known.
  int ApplyDataEndianess(ENDIAN Endian);
  // Interface speed in Hz from the probe.
  void UpdateTIFSpeed();
  // A change is reported.
  void SetCapability(HW_CAPABILITIES Capability, bool bPresent);

private:
  CDeviceContext& Ctx;
  CProbeInfo& Info;
};
