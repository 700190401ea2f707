#include "shell/core_binding.h"

#include <QCoreApplication>

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "program/database/program_build.h"
#include "shell/log/log.h"

namespace {

constexpr U32 MAX_DIRECT_READ = 8;  // bytes
constexpr U8 WIDTH_FROM_SETTING = 255;

bool IsOnDeviceThread() {
  return QThread::currentThread() == &CDevice::Get();
}

// A thread that reads a program file may reach neither the probe nor the caches.
bool MayReachTarget() {
  const bool bMain = QThread::currentThread() == QCoreApplication::instance()->thread();
  return (bMain || IsOnDeviceThread()) && CDevice::Exists() && CDevice::Get().IsConnected();
}

int ReadDirectly(U32 Addr, U32 NumBytes, U8* paData) {
  while (NumBytes > 0) {
    const U32 Piece = std::min(NumBytes, MAX_DIRECT_READ);
    ELF_SYM_LOC Loc;
    Loc.Type = ELF_LOC_MEM;
    Loc.Addr = Addr;
    if (CDevice::Get().ReadLocNow(Loc, Piece, paData) < 0) return -1;
    Addr += Piece;
    paData += Piece;
    NumBytes -= Piece;
  }
  return 0;
}

// The main thread reads through the cache; the device thread, in the middle of a job, reads the target itself.
int ReadTarget(U32 Addr, U32 NumBytes, void* pData) {
  if (!MayReachTarget()) return -1;
  if (IsOnDeviceThread()) return ReadDirectly(Addr, NumBytes, static_cast<U8*>(pData));
  if (!CDevice::Get().IsAccessible()) return -1;
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  return Provider.GetMem(&Provider, Addr, NumBytes, WIDTH_FROM_SETTING, static_cast<U8*>(pData)) == MEM_VALID ? 0 : -1;
}

int ReadCachedRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  for (U32 i = 0; i < Count; ++i) {
    U64 Value = 0;
    paStatus[i] = Provider.GetReg(&Provider, paIndex[i], &Value) == MEM_VALID ? 0 : 1;
    paValue[i] = static_cast<U32>(Value);
  }
  return 0;
}

int ReadProbeRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
  if (!MayReachTarget()) return -1;
  if (!IsOnDeviceThread()) return ReadCachedRegs(paIndex, paValue, paStatus, Count);
  return CDevice::Get().Context().Api.VNODEARM_ReadRegs(paIndex, paValue, paStatus, Count);
}

int WriteProbeReg(U32 Index, U32 Value) {
  if (!CDevice::Exists() || !CDevice::Get().IsConnected() || !IsOnDeviceThread()) return -1;
  return CDevice::Get().Context().Api.VNODEARM_WriteReg(Index, Value);
}

}  // namespace

void BindCoreModel(U32 CoreId) {
  if (static_cast<I32>(CoreId) <= 0) return;
  VCORE_API API;
  API.pfReadTarget = ReadTarget;
  API.pfReadProbeRegs = ReadProbeRegs;
  API.pfWriteReg = WriteProbeReg;
  API.pfLogError = [](const QString& sText) {
    LogMsg(sText, MSG_SRC_CORE | MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
  };
  const DEVICE_STATE& State = CDevice::Get().Context().State;
  const QMemBlocks Image = VCore::GetImage();
  VCore::Init({CoreId, State.DataEndian, State.InstEndian}, API);
  VCore::SetImage(Image);
  GiveProgramToCore();
  CDeviceDataProvider::Get().ClearCaches(false);  // registers have other numbers now
}
