// The data provider's register side: core registers, coprocessor registers.

#include "device/device_data_provider.h"
#include "device/device_log.h"
#include "device/probe_api/register_index.h"

int CDeviceDataProvider::RequestRegs(CDeviceEventListener* pListener, U32 Cnt) {
  if (Cnt > aRegIndex.size()) return DATA_UNAVAILABLE;
  const std::vector<U32> aIndex(aRegIndex.begin(), aRegIndex.begin() + Cnt);
  return RequestRegs(pListener, Cnt, aIndex.data());
}

int CDeviceDataProvider::RequestRegs(CDeviceEventListener* pListener, U32 Cnt, const U32* paIndex) {
  if (pListener == nullptr || Cnt == 0 || paIndex == nullptr || !Access.IsAccessible()) return DATA_UNAVAILABLE;
  SyncRegSize();
  if (Regs.Size() > 0 && Cnt > Regs.Size()) return -1;
  const DATA_REQUEST Request = DATA_REQUEST::Regs(pListener, Cnt, paIndex);
  const U8 Status = DeliverRegs(Request);
  if (IsFinal(Status)) return DATA_DELIVERED;
  Requests.Add(Request);
  if (Status == MEM_PENDING || FetchStaleRegs(Cnt, paIndex) == 0) return DATA_PENDING;
  Requests.Remove(Request);
  return DATA_UNAVAILABLE;
}

U8 CDeviceDataProvider::RegsStatus(U32 Cnt, const U32* paIndex) {
  U8 Worst = MEM_VALID;
  U64 Value;
  for (U32 i = 0; i < Cnt; ++i) Worst = WorseStatus(Worst, Regs.Get(paIndex[i], Value));
  return Worst;
}

int CDeviceDataProvider::FetchStaleRegs(U32 Cnt, const U32* paIndex) {
  std::vector<U32> aStale;
  U64 Value;
  for (U32 i = 0; i < Cnt; ++i) {
    if (Regs.Get(paIndex[i], Value) != MEM_STALE) continue;
    Regs.SetStatus(paIndex[i], MEM_PENDING);
    aStale.push_back(paIndex[i]);
  }
  if (Access.ScheduleReadRegs(static_cast<U32>(aStale.size()), aStale.data()) == 0) return 0;
  for (const U32 Index : aStale) Regs.SetStatus(Index, MEM_STALE);
  return -1;
}

U8 CDeviceDataProvider::DeliverRegs(const DATA_REQUEST& Request) {
  std::vector<U32> aIndex = Request.ToRegs();
  const U32 Cnt = static_cast<U32>(aIndex.size());
  const U8 Worst = RegsStatus(Cnt, aIndex.data());
  if (!IsFinal(Worst)) return Worst;
  std::vector<U64> aValue(Cnt);
  std::vector<U8> aStatus(Cnt);
  for (U32 i = 0; i < Cnt; ++i) aStatus[i] = Regs.Get(aIndex[i], aValue[i]);
  if (Cnt > 1) {
    Request.pListener->OnDeviceReadRegsDone(Cnt, aIndex.data(), aValue.data(), aStatus.data());
  } else if (Worst == MEM_VALID) {
    Request.pListener->OnDeviceReadRegDone(aIndex[0], aValue[0]);
  } else {
    Request.pListener->OnDeviceReadRegFailed(aIndex[0]);
  }
  return Worst;
}

bool CDeviceDataProvider::CachedReg(U32 Index, U64& Value) {
  return Regs.Get(Index, Value) == MEM_VALID;
}

int CDeviceDataProvider::GetReg(CDeviceEventListener* pListener, U32 Index, U64* pValue) {
  if (pListener == nullptr || pValue == nullptr || !Access.IsAccessible()) return 1;
  SyncRegSize();
  const U8 Status = Regs.Get(Index, *pValue);
  if (IsFinal(Status)) return Status;
  if (Status == MEM_STALE) {
    const DATA_REQUEST Request = DATA_REQUEST::Regs(pListener, 1, &Index);
    Requests.Add(Request);
    Regs.SetStatus(Index, MEM_PENDING);
    if (Access.ScheduleReadReg(Index) != 0) {
      Requests.Remove(Request);
      Regs.SetStatus(Index, MEM_STALE);
      return 1;
    }
  }
  if (!IsFinal(WaitFor([&] { return Regs.Get(Index, *pValue); }))) {
    Log(QStringLiteral("Timeout while waiting for register data arrival. VNodeRegIdx = %1").arg(Index),
        DEVICE_LOG_WARN);
    return 1;
  }
  return Regs.Get(Index, *pValue) == MEM_VALID ? 0 : 1;
}

void CDeviceDataProvider::OnDeviceReadRegDone(U32 Index, U64 Value) {
  if (!Access.IsConnected() || !Access.IsAccessible()) return;
  SyncRegSize();
  Regs.Set(Index, Value, MEM_VALID);
  Serve(DR_REGS);
  Serve(DR_LOC);
}

void CDeviceDataProvider::OnDeviceReadRegFailed(U32 Index) {
  if (!Access.IsConnected() || !Access.IsAccessible()) return;
  Regs.SetStatus(Index, MEM_UNAVAILABLE);
  Serve(DR_REGS);
  Serve(DR_LOC);
}

void CDeviceDataProvider::OnDeviceReadRegsDone(U32 Cnt, U32* paIndex, U64* paValue, U8* paStatus) {
  if (!Access.IsConnected() || !Access.IsAccessible()) return;
  SyncRegSize();
  for (U32 i = 0; i < Cnt; ++i) {
    Regs.Set(paIndex[i], paValue[i], paStatus[i] == MEM_VALID ? MEM_VALID : MEM_UNAVAILABLE);
  }
  Serve(DR_REGS);
  Serve(DR_LOC);
}

void CDeviceDataProvider::OnDeviceReadRegsFailed(U32 Cnt, U32* paIndex) {
  if (!Access.IsConnected() || !Access.IsAccessible()) return;
  for (U32 i = 0; i < Cnt; ++i) Regs.SetStatus(paIndex[i], MEM_UNAVAILABLE);
  Serve(DR_REGS);
  Serve(DR_LOC);
}

void CDeviceDataProvider::OnDeviceSetTargetExecStateDone(U64 PC, U64 SP) {
  if (!Access.IsConnected()) return;
  SyncRegSize();
  Regs.Set(Access.MapRegIndex(VNODE_REG_PC), PC, MEM_VALID);
  Regs.Set(Access.MapRegIndex(VNODE_REG_SP), SP, MEM_VALID);
}

void CDeviceDataProvider::OnDeviceWriteRegDone(U32 Index, U64) {
  Regs.SetStatus(Index, MEM_STALE);
}

int CDeviceDataProvider::RequestCPReg(CDeviceEventListener* pListener, const char* sReg) {
  if (pListener == nullptr || sReg == nullptr || *sReg == 0 || !Access.IsAccessible()) return DATA_UNAVAILABLE;
  const DATA_REQUEST Request = DATA_REQUEST::CPReg(pListener, sReg);
  const U8 Status = DeliverCPReg(Request);
  if (IsFinal(Status)) return DATA_DELIVERED;
  Requests.Add(Request);
  if (Status == MEM_PENDING) return DATA_PENDING;
  CPRegs.Set(sReg, 0, MEM_PENDING);
  if (Access.ScheduleReadCPReg(sReg) == 0) return DATA_PENDING;
  Requests.Remove(Request);
  CPRegs.Set(sReg, 0, MEM_STALE);
  return DATA_UNAVAILABLE;
}

U8 CDeviceDataProvider::DeliverCPReg(const DATA_REQUEST& Request) {
  U64 Value = 0;
  const char* sReg = Request.Payload.constData();
  const U8 Status = CPRegs.Get(sReg, Value);
  if (Status == MEM_VALID) {
    Request.pListener->OnDeviceReadCPRegDone(sReg, Value);
  } else if (Status == MEM_UNAVAILABLE) {
    Request.pListener->OnDeviceReadCPRegFailed(sReg);
  }
  return Status;
}

int CDeviceDataProvider::GetCPReg(const char* sReg, U64* pValue) {
  if (sReg == nullptr || *sReg == 0 || pValue == nullptr || !Access.IsAccessible()) return 1;
  const U8 Status = CPRegs.Get(sReg, *pValue);
  if (IsFinal(Status)) return Status;
  if (Status == MEM_STALE) {
    CPRegs.Set(sReg, 0, MEM_PENDING);
    if (Access.ScheduleReadCPReg(sReg) != 0) {
      CPRegs.Set(sReg, 0, MEM_STALE);
      return 1;
    }
  }
  if (!IsFinal(WaitFor([&] { return CPRegs.Get(sReg, *pValue); }))) {
    Log(QStringLiteral("Timeout while waiting for coprocessor register data arrival %1").arg(QLatin1String(sReg)),
        DEVICE_LOG_WARN);
    return 1;
  }
  return CPRegs.Get(sReg, *pValue) == MEM_VALID ? 0 : 1;
}

void CDeviceDataProvider::OnDeviceReadCPRegDone(const char* sReg, U64 Value) {
  if (!Access.IsConnected() || !Access.IsAccessible()) return;
  CPRegs.Set(sReg, Value, MEM_VALID);
  Serve(DR_CP_REG);
}

void CDeviceDataProvider::OnDeviceReadCPRegFailed(const char* sReg) {
  if (!Access.IsConnected() || !Access.IsAccessible()) return;
  CPRegs.Set(sReg, 0, MEM_UNAVAILABLE);
  Serve(DR_CP_REG);
}

void CDeviceDataProvider::OnDeviceWriteCPRegDone(const char* sReg, U64) {
  CPRegs.Set(sReg, 0, MEM_STALE);
}
