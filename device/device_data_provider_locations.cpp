// The data provider's view of symbol locations: a location is looked up where it lies, in memory or in a register.

#include <cstring>

#include "device/device_data_provider.h"
#include "device/device_log.h"

namespace {

// A register is fetched whole, whatever part of it the variable occupies.
constexpr U32 REG_BYTES = 4;

bool IsOfRegister(const ELF_SYM_LOC& Loc) {
  return Loc.Type == ELF_LOC_REG || Loc.Type == ELF_LOC_REG_OFFSET;
}

QString LocText(const ELF_SYM_LOC& Loc) {
  if (IsOfRegister(Loc)) return QStringLiteral("R%1").arg(Loc.Reg);
  return QStringLiteral("%1").arg(Loc.Addr, 8, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

CDeviceDataProvider::LOC_PLACE CDeviceDataProvider::PlaceOf(const ELF_SYM_LOC& Loc) {
  switch (Loc.Type) {
    case ELF_LOC_CONST:
      return {LOC_CONST, 0, 0};
    case ELF_LOC_MEM:
    case ELF_LOC_MEM_OFFSET:
      return {LOC_MEM, Loc.Addr, 0};
    case ELF_LOC_REG:
    case ELF_LOC_REG_OFFSET:
      if (Loc.Reg == ELF_REG_UNSPECIFIED || Loc.Reg == ELF_REG_SAME_AS_CALLER) return {};
      return {LOC_REG, 0, Access.MapRegIndex(Loc.Reg)};
    default:
      return {};
  }
}

U8 CDeviceDataProvider::ReadLocCache(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) {
  const LOC_PLACE Place = PlaceOf(Loc);
  if (Place.Kind == LOC_NOWHERE) return MEM_UNAVAILABLE;
  if (Place.Kind == LOC_MEM) {
    if (!IsReadableRange(Place.Addr, NumBytes)) return MEM_UNAVAILABLE;
    return Memory.Read(Place.Addr, NumBytes, paData, nullptr);
  }
  U64 Value = Loc.Value;
  U8 Status = MEM_VALID;
  if (Place.Kind == LOC_REG) Status = Regs.Get(Place.Index, Value);
  std::memcpy(paData, &Value, NumBytes);
  return Status;
}

void CDeviceDataProvider::StoreLoc(const ELF_SYM_LOC& Loc, U32 NumBytes, const U8* paData, U8 Status) {
  const LOC_PLACE Place = PlaceOf(Loc);
  if (Place.Kind == LOC_MEM) {
    if (Status == MEM_VALID) Memory.Write(Place.Addr, NumBytes, paData, nullptr);
    if (Status != MEM_VALID) Memory.SetStatus(Place.Addr, NumBytes, Status);
    return;
  }
  if (Place.Kind != LOC_REG) return;
  SyncRegSize();
  if (Status != MEM_VALID) {
    Regs.SetStatus(Place.Index, Status);
  } else if (NumBytes >= REG_BYTES) {
    U64 Value = 0;
    std::memcpy(&Value, paData, NumBytes);
    Regs.Set(Place.Index, Value, MEM_VALID);
  }
}

// What was fetched for a location may be what another request waits for as memory or as a register.
void CDeviceDataProvider::ServeAll() {
  Serve(DR_MEM);
  Serve(DR_REGS);
  Serve(DR_LOC);
}

int CDeviceDataProvider::RequestLoc(CDeviceEventListener* pListener, const ELF_SYM_LOC& Loc, U32 NumBytes) {
  if (pListener == nullptr || NumBytes == 0 || NumBytes > MAX_LOC_BYTES) return DATA_UNAVAILABLE;
  SyncRegSize();
  const DATA_REQUEST Request = DATA_REQUEST::Loc(pListener, Loc, NumBytes);
  const LOC_PLACE Place = PlaceOf(Loc);
  if (!Access.IsAccessible() && IsOfRegister(Loc)) return DATA_DELIVERED;
  if (!Access.IsAccessible() && Place.Kind == LOC_MEM) MarkMemStale(Place.Addr, NumBytes);
  const U8 Status = DeliverLoc(Request);
  if (IsFinal(Status)) return DATA_DELIVERED;
  Requests.Add(Request);
  if (Status == MEM_PENDING) return DATA_PENDING;
  StoreLoc(Loc, NumBytes, nullptr, MEM_PENDING);
  const U32 NumFetched = Place.Kind == LOC_REG ? std::max(NumBytes, REG_BYTES) : NumBytes;
  if (Access.ScheduleReadLoc(Loc, NumFetched) == 0) return DATA_PENDING;
  Requests.Remove(Request);
  StoreLoc(Loc, NumBytes, nullptr, MEM_STALE);
  return DATA_UNAVAILABLE;
}

// Locations whose bytes were to come with a memory read that was taken back.
void CDeviceDataProvider::RefetchLocs() {
  for (const DATA_REQUEST& Request : Requests.All()) {
    if (Request.Kind != DR_LOC) continue;
    const auto [Loc, NumBytes] = Request.ToLoc();
    const LOC_PLACE Place = PlaceOf(Loc);
    if (Place.Kind != LOC_MEM || Memory.Status(Place.Addr, NumBytes) != MEM_STALE) continue;
    if (Access.ScheduleReadLoc(Loc, NumBytes) == 0) StoreLoc(Loc, NumBytes, nullptr, MEM_PENDING);
  }
}

U8 CDeviceDataProvider::DeliverLoc(const DATA_REQUEST& Request) {
  const auto [Loc, NumBytes] = Request.ToLoc();
  U8 aData[MAX_LOC_BYTES] = {};
  const U8 Status = ReadLocCache(Loc, NumBytes, aData);
  if (Status == MEM_VALID) {
    Request.pListener->OnDeviceReadLocDone(Loc, NumBytes, aData);
  } else if (Status == MEM_UNAVAILABLE) {
    Request.pListener->OnDeviceReadLocFailed(Loc, NumBytes);
  }
  return Status;
}

int CDeviceDataProvider::GetLoc(CDeviceEventListener* pListener, const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) {
  if (NumBytes > MAX_LOC_BYTES) return -1;
  if (pListener == nullptr || paData == nullptr || NumBytes == 0) return 1;
  SyncRegSize();
  const LOC_PLACE Place = PlaceOf(Loc);
  if (Access.IsAccessible() || Place.Kind == LOC_CONST || Place.Kind == LOC_NOWHERE) {
    const U8 Status = ReadLocCache(Loc, NumBytes, paData);
    if (IsFinal(Status)) return Status;
  }
  U8 aData[MAX_LOC_BYTES] = {};
  const U32 NumFetched = Place.Kind == LOC_REG ? std::max(NumBytes, REG_BYTES) : NumBytes;
  const int Result = Access.ReadLocNow(Loc, NumFetched, aData);
  if (Result == CDeviceAccess::BUSY) {
    Log(QStringLiteral("Timeout while waiting for data of location %1").arg(LocText(Loc)), DEVICE_LOG_WARN);
    return 1;
  }
  if (Result != 0) {
    OnDeviceReadLocFailed(Loc, NumFetched);
    return 1;
  }
  std::memcpy(paData, aData, NumBytes);
  OnDeviceReadLocDone(Loc, NumFetched, aData);
  return 0;
}

void CDeviceDataProvider::OnDeviceReadLocDone(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) {
  if (!Access.IsConnected()) return;
  StoreLoc(Loc, NumBytes, paData, MEM_VALID);
  ServeAll();
}

void CDeviceDataProvider::OnDeviceReadLocFailed(const ELF_SYM_LOC& Loc, U32 NumBytes) {
  if (!Access.IsConnected()) return;
  Log(QStringLiteral("Target data readout of %1 bytes @ from location %2 failed.").arg(NumBytes).arg(LocText(Loc)),
      DEVICE_LOG_WARN);
  StoreLoc(Loc, NumBytes, nullptr, MEM_UNAVAILABLE);
  ServeAll();
}

void CDeviceDataProvider::OnDeviceWriteLocDone(const ELF_SYM_LOC& Loc, U32 NumBytes) {
  StoreLoc(Loc, NumBytes, nullptr, MEM_STALE);
}
