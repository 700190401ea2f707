#pragma once

#include "device/breakpoint_ops.h"
#include "device/device_capabilities.h"
#include "device/probe_commands.h"
#include "device/target_state.h"

// Connects to the target and leaves it; device thread. Results are 0 or -1.
class CProbeConnection {
public:
  CProbeConnection(CDeviceContext& Ctx, CProbeInfo& Info, CDeviceCapabilities& Capabilities, CProbeCommands& Commands,
                   CBreakpointOps& Breakpoints, CTargetState& Target)
      : Ctx(Ctx),
        Info(Info),
        Capabilities(Capabilities),
        Commands(Commands),
        Breakpoints(Breakpoints),
        Target(Target) {}
  ~CProbeConnection();

  // CM_BARE is ConnectSimple alone; any other mode leaves a former connection, connects and finishes.
  int Connect(CONNECT_MODES Mode);
  int ConnectSimple();
  // Enables breakpoints and sets those of the list again.
  void FinishConnect(CONNECT_MODES Mode);
  // No-op when not connected; the target stays in the state it is in.
  int Disconnect();
  int SelectHostIF();

private:
  int Fail(const QString& sText, bool bClose);
  int ConfigureHardware();
  bool ConnectTarget();
  void StopChannels();
  void InstallTextCallbacks();

  CDeviceContext& Ctx;
  CProbeInfo& Info;
  CDeviceCapabilities& Capabilities;
  CProbeCommands& Commands;
  CBreakpointOps& Breakpoints;
  CTargetState& Target;
};
