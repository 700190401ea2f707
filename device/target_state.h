#pragma once

#include "device/device_context.h"

// The picture of the halted target: PC, SP and the place in the program. Device thread, or whoever holds bHaltPending.
class CTargetState {
public:
  explicit CTargetState(CDeviceContext& Ctx) : Ctx(Ctx) {}

  // Stores PC and SP, read from the registers when both are 0, and looks up source location and function. 0, or -1
  // when not connected.
  int SetTargetExecState(U64 PC, U64 SP);
  int UpdateTargetExecState() { return SetTargetExecState(0, 0); }
  int ResetTargetExecState();
  // Reads the PC from the target and stores it as valid.
  U32 FetchPC();
  // Every flag but the one of instruction trace as in a device that was never connected; the device watches for a halt.
  void ResetState();

private:
  CDeviceContext& Ctx;
};
