#pragma once

#include "device/device_context.h"

// The library's name of a core identifier. Any thread.
QString CoreNameText(const VNODE_API& Api, U32 Core);

// Reads what the probe library knows into the facts: its version, path, devices, and the selected device. Works without
// a connection unless said otherwise; device thread.
class CProbeInfo {
public:
  explicit CProbeInfo(CDeviceContext& Ctx) : Ctx(Ctx) {}

  // All that can be read before any connection; at the start of the device thread.
  void UpdateAll();
  void UpdateVNodeLibPath();
  void UpdateVNodeLibVersion();
  void UpdateVNodeFirmwareStr();  // probe open
  void UpdateVNodeSerialNo();     // probe open
  void UpdateVNodeNumDevices();
  void UpdateSupportedCoresList();
  void UpdateVNodeFuncPtrs();
  void UpdateVNodeWebserverURL();
  // Name, core and RAM of the configured device. 0, or -1 when there is none.
  int UpdateDeviceInfo();
  // Core identifier of a device by its name; 0 or -1. Any thread.
  int GetDeviceInfo(const char* sDevice, U32* pCore) const;

  // Optional functions of the library; null where it does not serve them.
  VNODE_GET_INT_FUNC HasBMAFunc() const { return pfHasBMA; }
  VNODE_GET_INT_FUNC EndianFunc() const { return pfGetEndian; }

private:
  CDeviceContext& Ctx;
  VNODE_GET_INT_FUNC pfHasBMA = nullptr;
  VNODE_GET_INT_FUNC pfGetEndian = nullptr;
  VNODE_WEB_INFO_FUNC pfWebInfo = nullptr;
};
