#pragma once

#include "device/hss_channel.h"
#include "device/inst_trace_channel.h"
#include "device/rtt_channel.h"
#include "device/swo_channel.h"

// The channels of a connection besides run control; device thread. Before a disconnect those that were started stop.
class CDeviceChannels : public IDeviceChannels {
public:
  CDeviceChannels(CDeviceContext& Ctx, CProbeCommands& Commands, CDeviceCapabilities& Capabilities)
      : RTT(Ctx, Commands), SWO(Ctx, Capabilities), HSS(Ctx), Trace(Ctx, Commands, Capabilities) {}

  CRttChannel RTT;
  CSwoChannel SWO;
  CHssChannel HSS;
  CInstTraceChannel Trace;

  void StopRTT() override {
    if (RTT.IsStarted()) RTT.Stop();
  }
  void StopHSS() override {
    if (HSS.IsStarted()) HSS.Stop();
  }
  void StopSWOTrace(U32 PortMask) override {
    if (SWO.IsStarted()) SWO.Stop(PortMask);
  }
  void StopSimpleInstTrace() override {
    if (Trace.IsStarted()) Trace.Stop();
  }
};
