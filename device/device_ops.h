#pragma once
// All operations on the target, wired together. CDevice owns one and calls the pieces from its job dispatch.

#include "device/device_channels.h"
#include "device/device_configurator.h"
#include "device/execution_control.h"
#include "device/halt_sequence.h"
#include "device/inst_stepper.h"
#include "device/location_access.h"
#include "device/probe_connection.h"

class CDeviceOps {
public:
  explicit CDeviceOps(CDeviceContext& Ctx);

  CDeviceContext& Ctx;
  CProbeInfo Info;
  CDeviceCapabilities Capabilities;
  CDeviceConfigurator Configurator;
  CProbeCommands Commands;
  CTargetState Target;
  CBreakpointOps Breakpoints;
  CRegisterAccess Registers;
  CDownloader Download;
  CMemoryAccess Memory;
  CLocationAccess Locations;
  CExecutionControl Control;
  CHaltSequence Halts;
  CInstStepper Stepper;
  CProbeConnection Connection;
  CDeviceChannels Channels;

  // At the head of each job round: completes a connect, reset or download that a script function has replaced.
  void CheckHandleNotifications();
};
