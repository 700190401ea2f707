#include "shell/dialogs/device_records.h"

#include "device/probe_api/probe_api.h"

namespace {

constexpr int FIRST_DEVICE = 1;
constexpr U16 CORE_NAME_BUFFER_BYTES = 33;

QString CoreName(const VNODE_API& Api, U32 Core) {
  char acName[CORE_NAME_BUFFER_BYTES] = {};
  Api.VNODEARM_Core2CoreName(Core, acName, sizeof(acName));
  acName[sizeof(acName) - 1] = '\0';
  return QString::fromUtf8(acName);
}

}  // namespace

QList<DEVICE_RECORD> ReadDeviceRecords(const VNODE_API& Api) {
  QList<DEVICE_RECORD> Devices;
  const int NumDevices = Api.VNODEARM_DEVICE_GetInfo(-1, nullptr);
  for (int Index = FIRST_DEVICE; Index < NumDevices; ++Index) {
    VNODEARM_DEVICE_INFO Info = {};
    Info.SizeOfStruct = sizeof(Info);
    if (Api.VNODEARM_DEVICE_GetInfo(Index, &Info) < 0 || Info.sName == nullptr) continue;
    Devices.append({QString::fromUtf8(Info.sManufacturer), QString::fromUtf8(Info.sName), CoreName(Api, Info.Core),
                    Info.NumCores, Info.FlashSize, Info.RAMSize});
  }
  return Devices;
}
