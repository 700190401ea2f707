#pragma once

#include "device/device_capabilities.h"

// Changes the configuration and does what follows from a change; device thread. 0, or -1 with a warning. Who hears of a
// change finds what followed from it.
class CDeviceConfigurator {
public:
  CDeviceConfigurator(CDeviceContext& Ctx, CProbeInfo& Info, CDeviceCapabilities& Capabilities)
      : Ctx(Ctx), Info(Info), Capabilities(Capabilities) {}

  // Takes the XML form; every value read is reported.
  int Configure(const char* sXmlConfigStr);
  int SetConfigParam(DEV_CONFIG_PARAMS Param, int Value);
  int SetConfigParam(DEV_CONFIG_PARAMS Param, const char* sText);

private:
  void Store(DEV_CONFIG_PARAMS Param, int Value);
  int SetEndian(int Value);
  void SetSpeedValue(DEV_CONFIG_PARAMS Param, int Value);
  void ResolveDevice();
  void StoreDevice(int Index);
  void ApplySpeed();

  CDeviceContext& Ctx;
  CProbeInfo& Info;
  CDeviceCapabilities& Capabilities;
};
