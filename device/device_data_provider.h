#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "device/data_requests.h"
#include "device/device_access.h"
#include "device/device_event_listener.h"
#include "device/memory_cache.h"
#include "device/register_cache.h"

// Result of a request.
enum DATA_RESULT : int {
  DATA_DELIVERED = 0,    // the listener was called before the operation returned
  DATA_UNAVAILABLE = 1,  // nothing will come: no access, or bad arguments
  DATA_PENDING = 2,      // the listener will be called, unless the target resumes before
};

// Target memory and registers as the windows read them: caches with a status per byte and register, filled by read jobs
// and dropped when the target resumes, halts, connects or disconnects. Main thread.
//
// Requests call the listener's OnDeviceReadMemDone, ...ReadRegDone (one register), ...ReadRegsDone, ...ReadCPRegDone or
// ...ReadLocDone once the whole answer is valid or unavailable; the status array has one MEM_STATUS per byte or
// register. A single register, coprocessor register or location that is unavailable ends in the Failed operation.
// Nobody else is called. The same request of the same listener waits only once. Bytes come in target order. The Get
// operations wait, for at most WAIT_LIMIT_MS, and deliver device events meanwhile: 0 valid, 1 not.
class CDeviceDataProvider : public CDeviceEventListener {
public:
  static constexpr int WAIT_LIMIT_MS = 150;
  static constexpr int EVENTS_PER_WAIT = 10;
  static constexpr int MAX_FETCH_ROUNDS = 5;
  static constexpr U32 MAX_LOC_BYTES = 8;

  // Access: not owned, must outlive the provider.
  explicit CDeviceDataProvider(CDeviceAccess& Access);
  ~CDeviceDataProvider() override;

  // The provider of CDevice::Get(); created on first use, which must be before any window is.
  static CDeviceDataProvider& Get();

  // AW: 0 auto, 1, 2, 4 bytes, 255 the value of VAR_ACCESS_WIDTH. Flags: MEM_FLAGS. ChunkSize in bytes, 0 for one
  // transfer. On a target that is not accessible the range is always fetched anew.
  int RequestMem(CDeviceEventListener* pListener, U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags);
  // Registers by the probe's numbers; -1 when Cnt is above the core's number of registers.
  int RequestRegs(CDeviceEventListener* pListener, U32 Cnt, const U32* paIndex);
  // The same with the indices in RegIndexArray().
  int RequestRegs(CDeviceEventListener* pListener, U32 Cnt);
  std::vector<U32>& RegIndexArray() { return aRegIndex; }
  int RequestCPReg(CDeviceEventListener* pListener, const char* sReg);
  // NumBytes: at most MAX_LOC_BYTES. Nobody is called for a register of a target that is not accessible.
  int RequestLoc(CDeviceEventListener* pListener, const ELF_SYM_LOC& Loc, U32 NumBytes);

  int GetMem(CDeviceEventListener* pListener, U32 Addr, U32 NumBytes, U8 AW, U8* paData);
  int GetReg(CDeviceEventListener* pListener, U32 Index, U64* pValue);
  int GetCPReg(const char* sReg, U64* pValue);
  // -1 for more than MAX_LOC_BYTES. A cache miss is read on the calling thread.
  int GetLoc(CDeviceEventListener* pListener, const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData);

  // Drops the memory requests of all listeners and takes back what was scheduled for them; before a window asks for
  // another range.
  void CancelMemRequests();
  // The range is fetched anew when it is asked for next; after a change that did not come through a job.
  void MarkMemStale(U32 Addr, U32 NumBytes);
  void MarkRegStale(U32 Index) { Regs.SetStatus(Index, MEM_STALE); }
  // Drops all cached data; bDropRequests: and all requests. Called besides events when a program is opened, for a
  // manual refresh, and when the core model is reset.
  void ClearCaches(bool bDropRequests);

  // A register's cached value; false when it is not valid. Schedules nothing.
  bool CachedReg(U32 Index, U64& Value);

  void OnDeviceConnectDone(CONNECT_MODES) override { ClearCaches(true); }
  void OnDeviceDisconnectDone() override { ClearCaches(true); }
  void OnDeviceHaltDone(U32, HALT_REASONS) override { ClearCaches(true); }
  void OnDeviceStepped(U32) override { ClearCaches(true); }
  void OnDeviceResumeDone(RESUME_MODES) override { ClearCaches(false); }
  // The reads that waited were taken back.
  void OnDeviceResetFailed(U32, RESET_MODES) override { ClearCaches(true); }
  void OnDeviceResumeFailed(RESUME_MODES) override { ClearCaches(true); }
  void OnDeviceConnectionLost() override { ClearCaches(true); }
  void OnDeviceReadMemDone(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) override;
  void OnDeviceReadMemFailed(U32 Addr, U32 NumBytes) override;
  void OnDeviceReadRegDone(U32 Index, U64 Value) override;
  void OnDeviceReadRegFailed(U32 Index) override;
  void OnDeviceReadRegsDone(U32 Cnt, U32* paIndex, U64* paValue, U8* paStatus) override;
  void OnDeviceReadRegsFailed(U32 Cnt, U32* paIndex) override;
  void OnDeviceReadCPRegDone(const char* sReg, U64 Value) override;
  void OnDeviceReadCPRegFailed(const char* sReg) override;
  void OnDeviceReadLocDone(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) override;
  void OnDeviceReadLocFailed(const ELF_SYM_LOC& Loc, U32 NumBytes) override;
  void OnDeviceSetTargetExecStateDone(U64 PC, U64 SP) override;
  // What was written is fetched anew.
  void OnDeviceWriteMemDone(U32 Addr, U32 NumBytes, U8* paData) override;
  void OnDeviceWriteMemFailed(U32 Addr, U32 NumBytes, U8* paData) override;
  void OnDeviceWriteMemMultipleDone(U32 NumRanges, U32* paRanges, U8* paData) override;
  void OnDeviceWriteMemMultipleFailed(U32 NumRanges, U32* paRanges, U8* paData) override;
  void OnDeviceWriteRegDone(U32 Index, U64 Value) override;
  void OnDeviceWriteCPRegDone(const char* sReg, U64 Value) override;
  void OnDeviceWriteLocDone(const ELF_SYM_LOC& Loc, U32 NumBytes) override;

private:
  // Cache access of one location.
  enum LOC_KIND { LOC_CONST, LOC_MEM, LOC_REG, LOC_NOWHERE };
  struct LOC_PLACE {
    LOC_KIND Kind = LOC_NOWHERE;
    U32 Addr = 0;   // LOC_MEM
    U32 Index = 0;  // LOC_REG: the probe's number
  };
  LOC_PLACE PlaceOf(const ELF_SYM_LOC& Loc);
  U8 ReadLocCache(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData);
  void StoreLoc(const ELF_SYM_LOC& Loc, U32 NumBytes, const U8* paData, U8 Status);

  void RefetchLocs();

  // Not empty, within the address space, and what one read job can hold.
  static bool IsReadableRange(U32 Addr, U32 NumBytes);
  int FetchMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags);
  int FetchRun(U64 Addr, U64 End, U32 ChunkSize, U8 AW, U32 Flags);
  U64 EndOfRun(U64 Addr, U64 End) const;
  U8 RegsStatus(U32 Cnt, const U32* paIndex);
  int FetchStaleRegs(U32 Cnt, const U32* paIndex);
  void SyncRegSize() { Regs.SetSize(Access.NumRegs()); }
  static bool IsFinal(U8 Status) { return Status == MEM_VALID || Status == MEM_UNAVAILABLE; }

  // Hands final data to the request's listener; the status of the data.
  U8 Deliver(const DATA_REQUEST& Request);
  U8 DeliverMem(const DATA_REQUEST& Request);
  U8 DeliverRegs(const DATA_REQUEST& Request);
  U8 DeliverCPReg(const DATA_REQUEST& Request);
  U8 DeliverLoc(const DATA_REQUEST& Request);
  void Serve(U8 Kind);
  void ServeAll();
  static void OnListenerDestroyed(CDeviceEventListener* pListener);

  // Delivers events until Status() is final or the limit is over; the last status.
  U8 WaitFor(const std::function<U8()>& Status);
  void Log(const QString& sText, U32 Flags);

  CDeviceAccess& Access;
  CMemoryCache Memory;
  CRegisterCache Regs;
  CCPRegisterCache CPRegs;
  CDataRequests Requests;
  // Requests that are being served right now, by each level of nesting.
  std::deque<DATA_REQUEST*> apServing;
  std::vector<U32> aRegIndex;
};
