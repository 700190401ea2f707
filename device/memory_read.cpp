#include "device/chunk_progress.h"
#include "device/memory_access.h"
#include "device/target_pause.h"

namespace {

constexpr U32 ADDR_LIMIT = 0xFFFFFFFFu;
constexpr U32 PROGRESS_MIN_BYTES = 4000;

// Marks what a read of nBytes that delivered Count bytes has left unavailable.
void FillStatus(U32 Count, U32 nBytes, U8* paStatus) {
  std::memset(paStatus, MEM_VALID, Count);
  std::memset(paStatus + Count, MEM_UNAVAILABLE, nBytes - Count);
}

// An item that lies at a multiple of its size; only those are transferred as one.
template <typename T>
bool IsItem(U32 Addr, U32 nBytes) {
  return nBytes == sizeof(T) && Addr % sizeof(T) == 0;
}

template <typename T>
U32 ReadItem(int (*pfRead)(U32, U32, T*, U8*), U32 Addr, U8* paData) {
  T Value = 0;
  U8 aStatus[sizeof(T)] = {};
  if (pfRead(Addr, 1, &Value, aStatus) != 1 || aStatus[0] != MEM_VALID) return 0;
  std::memcpy(paData, &Value, sizeof(T));
  return sizeof(T);
}

}  // namespace

bool CMemoryAccess::ValidateMemoryAccessParams(bool bRead, U32 Addr, U32 nBytes, const U8* paData, const U8* paStatus) {
  const char* sError = nullptr;
  if (!Ctx.IsConnected())
    sError = "not connected to target";
  else if (paData == nullptr)
    sError = "invalid data buffer";
  else if (bRead && paStatus == nullptr)
    sError = "invalid status buffer";
  else if (nBytes == 0)
    sError = "byte count is 0";
  else if (static_cast<U64>(Addr) + nBytes >= ADDR_LIMIT)
    sError = "outside address range";
  if (sError == nullptr) return true;
  Ctx.LogWarnMsg(QString::asprintf("%s: %s", bRead ? "ReadMem" : "WriteMem", sError));
  return false;
}

bool CMemoryAccess::GiveUp() const {
  return Ctx.IsConnectionLost() || Ctx.State.bTerminate;
}

U32 CMemoryAccess::ReadMemSimple(U32 Addr, U32 nBytes, I8 AW, U32 Flags, U8* paData, U8* paStatus) {
  if (!ValidateMemoryAccessParams(true, Addr, nBytes, paData, paStatus)) return 0;
  std::memset(paData, 0, nBytes);
  const VNODE_API& Api = Ctx.Api;
  U32 Count = 0;
  if (IsItem<U8>(Addr, nBytes))
    Count = ReadItem(Api.VNODEARM_ReadMemU8, Addr, paData);
  else if (IsItem<U16>(Addr, nBytes))
    Count = ReadItem(Api.VNODEARM_ReadMemU16, Addr, paData);
  else if (IsItem<U32>(Addr, nBytes))
    Count = ReadItem(Api.VNODEARM_ReadMemU32, Addr, paData);
  else if (IsItem<U64>(Addr, nBytes))
    Count = ReadItem(Api.VNODEARM_ReadMemU64, Addr, paData);
  else if (Flags & MEM_FLAG_HW)
    Count = Api.VNODEARM_ReadMemHW(Addr, nBytes, paData) == 0 ? nBytes : 0;
  else
    Count = static_cast<U32>(std::max(0, Api.VNODEARM_ReadMemEx(Addr, nBytes, paData, static_cast<U32>(AW))));
  Count = std::min(Count, nBytes);
  FillStatus(Count, nBytes, paStatus);
  return Count;
}

U32 CMemoryAccess::ReadMemItemWise(U32 Addr, U32 nBytes, I8 AW, U32 Flags, U8* paData, U8* paStatus) {
  const U32 ItemSize = AW > 0 ? static_cast<U32>(AW) : 1;
  U32 Total = 0;
  for (U32 Offset = 0; Offset < nBytes; Offset += ItemSize) {
    const U32 Size = std::min(ItemSize, nBytes - Offset);
    if (GiveUp()) {
      FillStatus(0, nBytes - Offset, paStatus + Offset);
      break;
    }
    Total += ReadMemSimple(Addr + Offset, Size, AW, Flags, paData + Offset, paStatus + Offset);
  }
  return Total;
}

U32 CMemoryAccess::ReadMemChunkWise(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, U8* paData, U8* paStatus) {
  const U32 Chunk = ChunkSize == 0 || ChunkSize > nBytes ? nBytes : ChunkSize;
  const U32 NumChunks = nBytes / Chunk + (nBytes % Chunk != 0);
  CChunkProgress Progress(Ctx.Sink, QStringLiteral("Reading Memory..."), nBytes > PROGRESS_MIN_BYTES, NumChunks);
  U32 Total = 0;
  for (U32 i = 0; i < NumChunks; ++i) {
    const U32 Offset = i * Chunk;
    const U32 Size = std::min(Chunk, nBytes - Offset);
    if (GiveUp()) {
      FillStatus(0, nBytes - Offset, paStatus + Offset);
      break;
    }
    // A single chunk is what the caller has just tried.
    U32 Count = 0;
    if (NumChunks > 1) Count = ReadMemSimple(Addr + Offset, Size, AW, Flags, paData + Offset, paStatus + Offset);
    if (Count < Size && (Flags & MEM_FLAG_ITEM_WISE)) {
      const U32 Done = Offset + Count;
      Count += ReadMemItemWise(Addr + Done, Size - Count, AW, Flags, paData + Done, paStatus + Done);
    }
    Total += Count;
    Progress.SetValue(i);
  }
  return Total;
}

U32 CMemoryAccess::ReadMem(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, U8* paData, U8* paStatus) {
  if (!ValidateMemoryAccessParams(true, Addr, nBytes, paData, paStatus)) return 0;
  const CTargetPause Pause(Ctx, Flags & MEM_FLAG_HALT);
  Flags &= ~MEM_FLAG_HALT;
  U32 Count = ReadMemSimple(Addr, nBytes, AW, Flags, paData, paStatus);
  if (Count < nBytes && ChunkSize != 0) {
    Count += ReadMemChunkWise(Addr + Count, nBytes - Count, ChunkSize, AW, Flags, paData + Count, paStatus + Count);
  }
  return Count;
}

int CMemoryAccess::ReadWord(U32 Addr, U32* pOut) {
  *pOut = 0xEEEEEEEEu;
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("ReadWord: Not connected"));
  if (static_cast<U64>(Addr) + sizeof(U32) >= ADDR_LIMIT)
    return Fail(QStringLiteral("ReadWord: Outside address range"));
  if (Addr % sizeof(U32) != 0) return Fail(QString::asprintf("Attempting to read word unaligned at %x", Addr));
  if (ReadItem(Ctx.Api.VNODEARM_ReadMemU32, Addr, reinterpret_cast<U8*>(pOut)) == 0) {
    return Fail(QStringLiteral("ReadWord: V-Node API call failed"));
  }
  return 0;
}

int CMemoryAccess::ReadHalfWord(U32 Addr, U16* pOut) {
  *pOut = 0xEEEEu;
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("ReadHalfWord: not connected"));
  if (static_cast<U64>(Addr) + sizeof(U16) >= ADDR_LIMIT)
    return Fail(QStringLiteral("ReadHalfWord: Outside address range"));
  if (Addr % sizeof(U16) != 0) return Fail(QString::asprintf("Attempting to read half word unaligned at %x", Addr));
  if (ReadItem(Ctx.Api.VNODEARM_ReadMemU16, Addr, reinterpret_cast<U8*>(pOut)) == 0) {
    return Fail(QStringLiteral("ReadHalfWord: V-Node API call failed"));
  }
  return 0;
}

int CMemoryAccess::ReadByte(U32 Addr, U8* pOut) {
  *pOut = 0xEEu;
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("ReadHalfWord: not connected"));
  if (Addr >= ADDR_LIMIT) return Fail(QString::asprintf("Attempting to read byte at invalid address %x", Addr));
  if (ReadItem(Ctx.Api.VNODEARM_ReadMemU8, Addr, pOut) == 0)
    return Fail(QStringLiteral("ReadByte: V-Node API call failed"));
  return 0;
}

int CMemoryAccess::ReadInt(U32 Addr, U8 Size, U32* pOutData) {
  U16 HalfWord = 0;
  U8 Byte = 0;
  int Result = -1;
  switch (Size) {
    case sizeof(U32):
      return ReadWord(Addr, pOutData);
    case sizeof(U16):
      Result = ReadHalfWord(Addr, &HalfWord);
      *pOutData = HalfWord;
      return Result;
    case sizeof(U8):
      Result = ReadByte(Addr, &Byte);
      *pOutData = Byte;
      return Result;
    default:
      return -1;
  }
}

int CMemoryAccess::Fail(const QString& sText) {
  Ctx.LogWarnMsg(sText);
  return -1;
}

int CMemoryAccess::MeasureCoreSpeed() {
  const U32 RAMAddr = Ctx.Facts.Get().RAMAddr;
  if (RAMAddr == INVALID_ADDR) return Fail(QStringLiteral("MeasureCoreSpeed: invalid RAM address"));
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("MeasureCoreSpeed: not connected"));
  if (!Ctx.State.Exec.bHalted) return Fail(QStringLiteral("MeasureCoreSpeed: not halted"));
  const int Hz = Ctx.Api.VNODEARM_MeasureCPUSpeedEx(RAMAddr, 1, 1);
  if (Hz <= 0) return Fail(QStringLiteral("could not determine core frequency"));
  Ctx.LogInfoMsg(QString::asprintf("Core speed measured at %d Hz", Hz));
  return Hz;
}
