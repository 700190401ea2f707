#include "shell/dialogs/device_records.h"

#include "device/probe_api/probe_api.h"
#include "device/probe_info.h"

namespace {

constexpr int FIRST_DEVICE = 1;

}  // namespace

QList<DEVICE_RECORD> ReadDeviceRecords(const VNODE_API& Api) {
  QList<DEVICE_RECORD> Devices;
  const int NumDevices = Api.VNODEARM_DEVICE_GetInfo(-1, nullptr);
  for (int Index = FIRST_DEVICE; Index < NumDevices; ++Index) {
    VNODEARM_DEVICE_INFO Info = {};
    Info.SizeOfStruct = sizeof(Info);
    if (Api.VNODEARM_DEVICE_GetInfo(Index, &Info) < 0 || Info.sName == nullptr) continue;
    Devices.append({QString::fromUtf8(Info.sManufacturer), QString::fromUtf8(Info.sName), CoreNameText(Api, Info.Core),
                    Info.NumCores, Info.FlashSize, Info.RAMSize});
  }
  return Devices;
}
