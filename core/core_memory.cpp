#include <cstring>

#include "base/endian.h"
#include "core/core_state.h"

namespace VCore {

int GetMemData(U32 Addr, U32 NumBytes, void* pData) {
  const SNAPSHOT Snapshot = TakeSnapshot();
  if (NumBytes == 0) {
    if (Snapshot.pAPI != nullptr && Snapshot.pAPI->pfLogWarning) {
      Snapshot.pAPI->pfLogWarning("VCore::GetMemData: invalid byte size");
    }
    return -1;
  }
  {
    CORE_STATE& Core = State();
    const std::shared_lock Lock(Core.Mutex);
    if (Core.Program.Read(Addr, NumBytes, pData) || Core.Image.Read(Addr, NumBytes, pData)) return 0;
  }
  if (Snapshot.pAPI == nullptr || !Snapshot.pAPI->pfReadTarget) return -1;
  return Snapshot.pAPI->pfReadTarget(Addr, NumBytes, pData) < 0 ? -1 : 0;
}

int ReadData(U32 Addr, U32 NumBytes, void* pData) {
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr || Core.pAPI->pfGetMemData(Addr, NumBytes, pData) != 0) return -1;
  if (Core.Info.DataEndianness == 0) return 0;
  U8* pBytes = static_cast<U8*>(pData);
  if (NumBytes == 2 || NumBytes == 4 || NumBytes == 8) std::reverse(pBytes, pBytes + NumBytes);
  return 0;
}

U32 ReadInstBytes(const SNAPSHOT& Core, U32 Addr, U8 (&aByte)[4]) {
  if (Core.pAPI == nullptr) return 0;
  for (const U32 NumBytes : {4u, 2u}) {
    if (Addr <= INVALID_ADDR - NumBytes + 1 && Core.pAPI->pfGetMemData(Addr, NumBytes, aByte) == 0) return NumBytes;
  }
  return 0;
}

I64 ReadInst(U32 Addr, U32 Size) {
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr) return -1;
  if (Size == 0) Size = InstSizeAt(Core, Addr);
  U8 aByte[4];
  if ((Size != 2 && Size != 4) || Core.pAPI->pfGetMemData(Addr, Size, aByte) != 0) return -1;
  const bool bBigEndian = Core.Info.InstEndianness != 0;
  if (Size == 2) return LoadInt<U16>(aByte, bBigEndian);
  if (ExecModeAt(Core, Addr) == VCORE_MODE_ARM) return LoadInt<U32>(aByte, bBigEndian);
  return LoadInt<U16>(aByte, bBigEndian) | static_cast<I64>(LoadInt<U16>(aByte + 2, bBigEndian)) << 16;
}

}  // namespace VCore
