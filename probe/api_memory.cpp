// Target memory, while the target is halted and while it runs.

#include <algorithm>
#include <chrono>
#include <cstring>

#include "probe/api_call.h"

namespace {

// So long items are asked for one by one where they do not answer; each may be a request to a server.
constexpr std::chrono::seconds MISSING_ITEMS_LIMIT{3};

// Width of the accesses to items of a size.
constexpr U32 ItemWidth(size_t Size) {
  return Size < sizeof(U32) ? static_cast<U32>(Size) : sizeof(U32);
}

int ReadTarget(CTargetCall& Call, U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  const U32 NumAnswering = Call->Faults.NumAnswering(Addr, NumBytes);
  return NumAnswering ? Call.Target().ReadMem(Addr, NumAnswering, pData, AccessWidth) : 0;
}

// Number of bytes read, negative when the target cannot be reached.
int Read(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  CTargetCall Call(FAULT_POINT::ReadMem);
  if (!Call) return Call.FailureCode();
  return ReadTarget(Call, Addr, NumBytes, pData, AccessWidth);
}

int Write(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  CTargetCall Call(FAULT_POINT::WriteMem);
  if (!Call) return Call.FailureCode();
  const U32 NumAnswering = Call->Faults.NumAnswering(Addr, NumBytes);
  return NumAnswering ? Call.Target().WriteMem(Addr, NumAnswering, pData, AccessWidth) : 0;
}

// Items behind one that does not answer are read too.
template <typename T>
int ReadItems(U32 Addr, U32 NumItems, T* paData, U8* paStatus) {
  if (paStatus) std::memset(paStatus, 1, NumItems);
  CTargetCall Call(FAULT_POINT::ReadMem);
  if (!Call) return Call.FailureCode();
  const auto GiveUp = std::chrono::steady_clock::now() + MISSING_ITEMS_LIMIT;
  int NumRead = 0;
  U32 Item = 0;
  while (Item < NumItems) {
    const U64 Offset = static_cast<U64>(Item) * sizeof(T);
    if (Addr + Offset > 0xFFFFFFFFull) break;
    const U32 Rest = static_cast<U32>(std::min<U64>((NumItems - Item) * sizeof(T), 0x80000000ull));
    const int Moved = ReadTarget(Call, Addr + static_cast<U32>(Offset), Rest, paData + Item, ItemWidth(sizeof(T)));
    if (Moved < 0) return NumRead ? NumRead : -1;
    const U32 NumWhole = static_cast<U32>(Moved) / sizeof(T);
    if (paStatus) std::memset(paStatus + Item, 0, NumWhole);
    NumRead += static_cast<int>(NumWhole);
    Item += NumWhole;
    if (Item == NumItems) break;
    const bool bGiveUp = std::chrono::steady_clock::now() > GiveUp;
    const U32 NumMissing = bGiveUp ? NumItems - Item : 1;
    std::memset(&paData[Item], 0, NumMissing * sizeof(T));
    Item += NumMissing;
  }
  return NumRead;
}

template <typename T>
int WriteItem(U32 Addr, T Value) {
  return Write(Addr, sizeof(Value), &Value, ItemWidth(sizeof(Value))) == sizeof(Value) ? 0 : -1;
}

}  // namespace

int VNODEARM_ReadMem(U32 Addr, U32 NumBytes, void* pData) {
  return Read(Addr, NumBytes, pData, 0) == static_cast<int>(NumBytes) ? 0 : -1;
}

int VNODEARM_ReadMemEx(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  return Read(Addr, NumBytes, pData, AccessWidth);
}

int VNODEARM_ReadMemHW(U32 Addr, U32 NumBytes, void* pData) {
  return VNODEARM_ReadMem(Addr, NumBytes, pData);
}

int VNODEARM_ReadMemU8(U32 Addr, U32 NumItems, U8* paData, U8* paStatus) {
  return ReadItems(Addr, NumItems, paData, paStatus);
}

int VNODEARM_ReadMemU16(U32 Addr, U32 NumItems, U16* paData, U8* paStatus) {
  return ReadItems(Addr, NumItems, paData, paStatus);
}

int VNODEARM_ReadMemU32(U32 Addr, U32 NumItems, U32* paData, U8* paStatus) {
  return ReadItems(Addr, NumItems, paData, paStatus);
}

int VNODEARM_ReadMemU64(U32 Addr, U32 NumItems, U64* paData, U8* paStatus) {
  return ReadItems(Addr, NumItems, paData, paStatus);
}

int VNODEARM_WriteMem(U32 Addr, U32 NumBytes, const void* pData) {
  return Write(Addr, NumBytes, pData, 0) == static_cast<int>(NumBytes) ? 0 : -1;
}

int VNODEARM_WriteMemEx(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  return Write(Addr, NumBytes, pData, AccessWidth);
}

int VNODEARM_WriteU8(U32 Addr, U8 Value) {
  return WriteItem(Addr, Value);
}

int VNODEARM_WriteU16(U32 Addr, U16 Value) {
  return WriteItem(Addr, Value);
}

int VNODEARM_WriteU32(U32 Addr, U32 Value) {
  return WriteItem(Addr, Value);
}

int VNODEARM_WriteU64(U32 Addr, U64 Value) {
  return WriteItem(Addr, Value);
}

void VNODEARM_BeginDownload(U32) {
  CTargetCall Call;
  if (Call) Call.Target().BeginDownload();
}

int VNODEARM_EndDownload() {
  CTargetCall Call(FAULT_POINT::EndDownload);
  if (Call) return Call.Target().EndDownload();
  Call->AbandonDownload(Call.FailureCode());
  return Call.FailureCode();
}
