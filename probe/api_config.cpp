// The device list, and what is configured ahead of a connection.

#include <algorithm>
#include <cstring>

#include "probe/api_call.h"
#include "probe/core_table.h"
#include "probe/text.h"

namespace {

constexpr U32 MAX_SPEED_KHZ = 50'000;
constexpr int MAX_RESET_DELAY_MS = 10'000;

}  // namespace

int VNODEARM_DEVICE_GetIndex(const char* sName) {
  return sName ? CSession::Get().Devices.Find(sName) : -1;
}

int VNODEARM_DEVICE_GetInfo(int Index, VNODEARM_DEVICE_INFO* pInfo) {
  const CDeviceList& Devices = CSession::Get().Devices;
  if (Index == -1) return Devices.Size();
  DEVICE_ROW Row;
  if (!pInfo || !Devices.Get(Index, &Row)) return -1;
  VNODEARM_DEVICE_INFO Info = {};
  Info.SizeOfStruct = pInfo->SizeOfStruct;
  Info.sName = Row.sName;
  Info.sManufacturer = Row.sMaker;
  Info.FlashAddr = Row.Flash.Start;
  Info.FlashSize = Row.Flash.Size;
  Info.RAMAddr = Row.RAM[0].Start;
  Info.RAMSize = Row.RAM[0].Size;
  Info.NumCores = 1;
  Info.Core = Row.pCore ? Row.pCore->Id : 0;
  std::memcpy(pInfo, &Info, std::min<size_t>(pInfo->SizeOfStruct, sizeof(Info)));
  return 0;
}

void VNODEARM_Core2CoreName(U32 Core, char* acBuffer, U16 Size) {
  const CORE_ROW* pRow = FindCore(Core);
  CopyText(pRow ? pRow->sName : "", acBuffer, Size);
}

int VNODEARM_TIF_Select(int Interface) {
  CApiCall Call;
  if (Interface != VNODE_TIF_JTAG && Interface != VNODE_TIF_SWD) return -1;
  Call->Config.TargetIF = Interface;
  return 0;
}

void VNODEARM_ConfigJTAG(int IRPre, int DRPre) {
  CApiCall Call;
  Call->Config.IRPre = IRPre;
  Call->Config.DRPre = DRPre;
}

void VNODEARM_SetSpeed(U32 SpeedKHz) {
  CApiCall Call;
  Call->Config.SpeedKHz = SpeedKHz == VNODE_SPEED_ADAPTIVE ? SpeedKHz : std::min(SpeedKHz, MAX_SPEED_KHZ);
}

U32 VNODEARM_GetSpeed() {
  CApiCall Call;
  return Call->Config.SpeedKHz;
}

int VNODEARM_SetEndian(int Endian) {
  CApiCall Call;
  if (Endian == 0 || Call->Config.Server) {
    Call->Config.bBigEndian = Endian != 0;
    return 0;
  }
  Call->Messages.Add(MSG_KIND::ERROR, "The simulated core is little endian");
  return -1;
}

int VNODEARM_SetCoreIndex(U32 Index) {
  CApiCall Call;
  Call->Config.CoreIndex = Index;
  return 0;
}

void VNODEARM_SetResetType(int Type) {
  CApiCall Call;
  Call->Config.ResetType = Type;
}

void VNODEARM_SetResetDelay(int Milliseconds) {
  CApiCall Call;
  Call->Config.ResetDelayMs = std::clamp(Milliseconds, 0, MAX_RESET_DELAY_MS);
}

void VNODEARM_SetInitRegsOnReset(int Value) {
  CApiCall Call;
  Call->Config.bInitRegsOnReset = Value != 0;
}

void VNODEARM_EnableSoftBPs(int Enable) {
  CApiCall Call;
  Call->bSoftBPsEnabled = Enable != 0;
}
