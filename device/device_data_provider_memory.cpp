// The data provider's memory side: requests, fetching what is stale, arrival.

#include "base/text.h"
#include "device/device_data_provider.h"
#include "device/device_log.h"

bool CDeviceDataProvider::IsReadableRange(U32 Addr, U32 NumBytes) {
  return NumBytes > 0 && NumBytes <= MAX_DYN_PARAM_BYTES &&
         static_cast<U64>(Addr) + NumBytes <= CMemoryCache::SPACE_BYTES;
}

int CDeviceDataProvider::RequestMem(CDeviceEventListener* pListener, U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW,
                                    U32 Flags) {
  if (pListener == nullptr || !IsReadableRange(Addr, NumBytes)) return DATA_UNAVAILABLE;
  const DATA_REQUEST Request = DATA_REQUEST::Mem(pListener, Addr, NumBytes);
  if (Access.IsAccessible() && !(Flags & MEM_FLAG_NO_CACHE)) {
    const U8 Status = DeliverMem(Request);
    if (IsFinal(Status)) return DATA_DELIVERED;
    if (Status == MEM_PENDING) {
      Requests.Add(Request);
      return DATA_PENDING;
    }
  } else {
    Memory.SetStatus(Addr, NumBytes, MEM_STALE);
  }
  Requests.Add(Request);
  if (FetchMem(Addr, NumBytes, ChunkSize, AW, Flags) == 0) return DATA_PENDING;
  Requests.Remove(Request);
  Memory.SetStatus(Addr, NumBytes, MEM_STALE);
  return DATA_UNAVAILABLE;
}

// Schedules reads for the stale parts of a range: a few jobs for its holes, or one for all of it when there are many.
int CDeviceDataProvider::FetchMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags) {
  const U64 End = static_cast<U64>(Addr) + NumBytes;
  U64 Pos = Addr;
  for (int Round = 0; Round < MAX_FETCH_ROUNDS; ++Round) {
    Pos = Memory.Find(Pos, End, MEM_STALE);
    if (Pos == End) return 0;
    const U64 RunEnd = EndOfRun(Pos, End);
    if (FetchRun(Pos, RunEnd, ChunkSize, AW, Flags) != 0) return -1;
    Pos = RunEnd;
  }
  if (Memory.Find(Pos, End, MEM_STALE) == End) return 0;
  Memory.SetStatus(Addr, NumBytes, MEM_PENDING);
  return Access.ScheduleReadMem(Addr, NumBytes, ChunkSize, AW, Flags);
}

// A run goes on over bytes that would be read again rather than split the access.
U64 CDeviceDataProvider::EndOfRun(U64 Addr, U64 End) const {
  for (const U8 Status : {MEM_VALID, MEM_PENDING, MEM_UNAVAILABLE}) {
    const U64 Found = Memory.Find(Addr, End, Status);
    if (Found < End) return Found;
  }
  return End;
}

// Runs of an item's size are widened to whole items, so that the probe can use its aligned accesses.
int CDeviceDataProvider::FetchRun(U64 Addr, U64 End, U32 ChunkSize, U8 AW, U32 Flags) {
  const U64 Length = End - Addr;
  if ((Length == 2 || Length == 4 || Length == 8) && Addr % Length != 0) {
    Addr -= Addr % Length;
    if ((End - Addr) % 2 != 0) ++End;
  }
  const U32 Start = static_cast<U32>(Addr);
  const U32 NumBytes = static_cast<U32>(End - Addr);
  Memory.SetStatus(Start, NumBytes, MEM_PENDING);
  return Access.ScheduleReadMem(Start, NumBytes, ChunkSize, AW, Flags);
}

U8 CDeviceDataProvider::DeliverMem(const DATA_REQUEST& Request) {
  const auto [Addr, NumBytes] = Request.ToMem();
  const U8 Worst = Memory.Status(Addr, NumBytes);
  if (!IsFinal(Worst)) return Worst;
  std::vector<U8> aData(NumBytes), aStatus(NumBytes);
  Memory.Read(Addr, NumBytes, aData.data(), aStatus.data());
  // Two, four and eight bytes are one value, which is valid as a whole or not at all.
  if (NumBytes == 2 || NumBytes == 4 || NumBytes == 8) aStatus.assign(NumBytes, Worst);
  Request.pListener->OnDeviceReadMemDone(Addr, NumBytes, aData.data(), aStatus.data());
  return Worst;
}

int CDeviceDataProvider::GetMem(CDeviceEventListener* pListener, U32 Addr, U32 NumBytes, U8 AW, U8* paData) {
  if (pListener == nullptr || paData == nullptr || !IsReadableRange(Addr, NumBytes)) return 1;
  U8 Status = MEM_STALE;
  if (Access.IsAccessible()) {
    Status = Memory.Read(Addr, NumBytes, paData, nullptr);
    if (IsFinal(Status)) {
      Log(QStringLiteral("Memory @ %1 returned from cache").arg(AddrText(Addr)), DEVICE_LOG_DEBUG);
      return Status == MEM_VALID ? 0 : 1;
    }
  } else {
    Memory.SetStatus(Addr, NumBytes, MEM_STALE);
  }
  if (Status == MEM_STALE) {
    const DATA_REQUEST Request = DATA_REQUEST::Mem(pListener, Addr, NumBytes);
    Requests.Add(Request);
    if (FetchMem(Addr, NumBytes, 0, AW, 0) != 0) {
      Requests.Remove(Request);
      Memory.SetStatus(Addr, NumBytes, MEM_STALE);
      return 1;
    }
  }
  if (!IsFinal(WaitFor([&] { return Memory.Status(Addr, NumBytes); }))) {
    Log(QStringLiteral("Timeout while waiting for memory data arrival of %1 bytes @ %2")
            .arg(NumBytes)
            .arg(AddrText(Addr)),
        DEVICE_LOG_WARN);
    return 1;
  }
  return Memory.Read(Addr, NumBytes, paData, nullptr) == MEM_VALID ? 0 : 1;
}

void CDeviceDataProvider::CancelMemRequests() {
  for (const DATA_REQUEST& Request : Requests.TakeKind(DR_MEM)) {
    if (Request.pListener == this) Requests.Add(Request);
  }
  for (DATA_REQUEST* pRequest : apServing) {
    if (pRequest->Kind == DR_MEM) pRequest->pListener = nullptr;
  }
  Access.CancelJobs(JT_READ_MEM, JQ_ALL);
  // Not the requests' ranges alone: reads are wider than what was asked for, and their asker may be gone.
  Memory.ReplaceStatus(MEM_PENDING, MEM_STALE);
  RefetchLocs();
}

void CDeviceDataProvider::MarkMemStale(U32 Addr, U32 NumBytes) {
  Memory.SetStatus(Addr, NumBytes, MEM_STALE);
}

void CDeviceDataProvider::OnDeviceReadMemDone(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) {
  if (!Access.IsConnected()) return;
  std::vector<U8> aStatus(NumBytes);
  for (U32 i = 0; i < NumBytes; ++i) aStatus[i] = paStatus[i] == MEM_VALID ? MEM_VALID : MEM_UNAVAILABLE;
  Memory.Write(Addr, NumBytes, paData, aStatus.data());
  Serve(DR_MEM);
  Serve(DR_LOC);
}

void CDeviceDataProvider::OnDeviceReadMemFailed(U32 Addr, U32 NumBytes) {
  if (!Access.IsConnected()) return;
  Log(QStringLiteral("Target memory readout of %1 bytes @ %2 failed.").arg(NumBytes).arg(AddrText(Addr)),
      DEVICE_LOG_WARN);
  Memory.SetStatus(Addr, NumBytes, MEM_UNAVAILABLE);
  Serve(DR_MEM);
  Serve(DR_LOC);
}

void CDeviceDataProvider::OnDeviceWriteMemDone(U32 Addr, U32 NumBytes, U8*) {
  MarkMemStale(Addr, NumBytes);
}

void CDeviceDataProvider::OnDeviceWriteMemFailed(U32 Addr, U32 NumBytes, U8*) {
  MarkMemStale(Addr, NumBytes);
}

void CDeviceDataProvider::OnDeviceWriteMemMultipleDone(U32 NumRanges, U32* paRanges, U8*) {
  for (U32 i = 0; i < NumRanges; ++i) {
    const U32 Start = paRanges[2 * i];
    const U32 End = paRanges[2 * i + 1];
    if (End > Start) MarkMemStale(Start, End - Start);
  }
}

void CDeviceDataProvider::OnDeviceWriteMemMultipleFailed(U32 NumRanges, U32* paRanges, U8* paData) {
  OnDeviceWriteMemMultipleDone(NumRanges, paRanges, paData);
}
