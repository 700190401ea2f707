#include "base/endian.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "script/api_stubs.h"
#include "script/script_host.h"
#include "shell/log/log.h"

U32 ReadTargetInt(U32 Addr, U32 NumBytes, bool* pOk) {
  *pOk = false;
  if (!CDevice::Exists() || !CDevice::Get().isRunning()) {
    LogMsg("VAPI::ReadMem: target not ready for memory access", MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
    return 0;
  }
  constexpr U8 WIDTH_FROM_SETTING = 255;
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  U8 aData[4] = {};
  if (Provider.GetMem(&Provider, Addr, NumBytes, WIDTH_FROM_SETTING, aData) != MEM_VALID) return 0;
  *pOk = true;
  const bool bBigEndian = CDevice::Get().Context().State.DataEndian == ENDIAN_BIG;
  if (NumBytes == 1) return aData[0];
  return NumBytes == 2 ? LoadInt<U16>(aData, bBigEndian) : LoadInt<U32>(aData, bBigEndian);
}

U64 ReadTargetReg(const QString& sName) {
  constexpr U64 NONE = ~U64{0};
  const int Index = FindHostRegister(sName);
  if (Index < 0 || !CDevice::Exists() || !CDevice::Get().isRunning()) return NONE;
  U64 Value = 0;
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  return Provider.GetReg(&Provider, static_cast<U32>(Index), &Value) == MEM_VALID ? Value : NONE;
}
