#include "device/chunk_progress.h"
#include "device/memory_access.h"
#include "device/target_pause.h"

namespace {

constexpr U32 PROGRESS_MIN_BYTES = 4000;

// Writes one item when the range is one; false when it is not.
template <typename T>
bool WriteItem(int (*pfWrite)(U32, T), U32 Addr, U32 nBytes, const U8* paData, U32& Count) {
  if (nBytes != sizeof(T) || Addr % sizeof(T) != 0) return false;
  T Value;
  std::memcpy(&Value, paData, sizeof(T));
  Count = pfWrite(Addr, Value) == 0 ? nBytes : 0;
  return true;
}

}  // namespace

U32 CMemoryAccess::WriteMemSimple(U32 Addr, U32 nBytes, I8 AW, const U8* paData) {
  if (!ValidateMemoryAccessParams(false, Addr, nBytes, paData, nullptr)) return 0;
  const VNODE_API& Api = Ctx.Api;
  U32 Count = 0;
  if (WriteItem(Api.VNODEARM_WriteU8, Addr, nBytes, paData, Count)) return Count;
  if (WriteItem(Api.VNODEARM_WriteU16, Addr, nBytes, paData, Count)) return Count;
  if (WriteItem(Api.VNODEARM_WriteU32, Addr, nBytes, paData, Count)) return Count;
  if (WriteItem(Api.VNODEARM_WriteU64, Addr, nBytes, paData, Count)) return Count;
  const int Result = Api.VNODEARM_WriteMemEx(Addr, nBytes, paData, static_cast<U32>(AW));
  return std::min(static_cast<U32>(std::max(0, Result)), nBytes);
}

U32 CMemoryAccess::WriteMemItemWise(U32 Addr, U32 nBytes, I8 AW, const U8* paData) {
  const U32 ItemSize = AW > 0 ? static_cast<U32>(AW) : 1;
  U32 Total = 0;
  for (U32 Offset = 0; Offset < nBytes && !GiveUp(); Offset += ItemSize) {
    Total += WriteMemSimple(Addr + Offset, std::min(ItemSize, nBytes - Offset), AW, paData + Offset);
  }
  return Total;
}

U32 CMemoryAccess::WriteMemChunkWise(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, const U8* paData) {
  const U32 Chunk = ChunkSize == 0 || ChunkSize > nBytes ? nBytes : ChunkSize;
  const U32 NumChunks = nBytes / Chunk + (nBytes % Chunk != 0);
  CChunkProgress Progress(Ctx.Sink, QStringLiteral("Writing Memory..."), nBytes > PROGRESS_MIN_BYTES, NumChunks);
  U32 Total = 0;
  for (U32 i = 0; i < NumChunks && !GiveUp(); ++i) {
    const U32 Offset = i * Chunk;
    const U32 Size = std::min(Chunk, nBytes - Offset);
    // A single chunk is what the caller has just tried.
    U32 Count = NumChunks > 1 ? WriteMemSimple(Addr + Offset, Size, AW, paData + Offset) : 0;
    if (Count < Size && (Flags & MEM_FLAG_ITEM_WISE)) {
      Count += WriteMemItemWise(Addr + Offset + Count, Size - Count, AW, paData + Offset + Count);
    }
    Total += Count;
    Progress.SetValue(i);
  }
  return Total;
}

U32 CMemoryAccess::WriteMem(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, const U8* paData) {
  if (!ValidateMemoryAccessParams(false, Addr, nBytes, paData, nullptr)) return 0;
  const CTargetPause Pause(Ctx, Flags & MEM_FLAG_HALT);
  const bool bDownload = Flags & MEM_FLAG_DOWNLOAD;
  Flags &= ~(MEM_FLAG_HALT | MEM_FLAG_DOWNLOAD);
  if (bDownload) Download.BeginDownload();
  U32 Count = WriteMemSimple(Addr, nBytes, AW, paData);
  if (Count < nBytes && ChunkSize != 0) {
    Count += WriteMemChunkWise(Addr + Count, nBytes - Count, ChunkSize, AW, Flags, paData + Count);
  }
  // Nobody else asks how this download has ended.
  if (bDownload && Download.EndDownload(false) < 0) return 0;
  return Count;
}

U32 CMemoryAccess::WriteMemMultiple(U32 Cnt, const U32* paAddrRanges, U32 NumBytes, const U8* paData, U32 ChunkSize,
                                    I8 AW, U32 Flags) {
  const CTargetPause Pause(Ctx, Flags & MEM_FLAG_HALT);
  const bool bDownload = Flags & MEM_FLAG_DOWNLOAD;
  Flags &= ~(MEM_FLAG_HALT | MEM_FLAG_DOWNLOAD);
  if (bDownload && Download.BeginDownload() < 0) return 0;
  U32 Total = 0;
  U32 Offset = 0;
  for (U32 i = 0; i < Cnt && !GiveUp(); ++i) {
    const U32 Start = paAddrRanges[2 * i];
    const U32 End = paAddrRanges[2 * i + 1];
    if (End < Start || End - Start > NumBytes - Offset) break;
    const U32 Size = End - Start;
    if (Size != 0) Total += WriteMem(Start, Size, ChunkSize, AW, Flags, paData + Offset);
    Offset += Size;
  }
  if (bDownload) Download.EndDownload(false);
  return Total;
}
