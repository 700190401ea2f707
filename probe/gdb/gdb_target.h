#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "probe/device_list.h"
#include "probe/gdb/flash_download.h"
#include "probe/gdb/memory.h"
#include "probe/gdb/qmp_client.h"
#include "probe/gdb/registers.h"
#include "probe/gdb/server.h"
#include "probe/gdb/stop_reply.h"
#include "probe/target.h"

// The target of a GDB server. While it runs the server takes no requests: breakpoints are changed in a short stop then,
// and memory can only be read, through an emulator's monitor.
class CGdbTarget : public CTarget {
public:
  // Connects to a server, which stops its target. Null with the reason in *psError.
  static std::unique_ptr<CGdbTarget> Connect(const DEVICE_ROW& Device, const PROBE_CONFIG& Config, CMessages& Messages,
                                             std::string* psError);

  TARGET_CAPS Caps() const override;
  bool IsAlive() override { return m_Server.Connection().IsOpen(); }
  int Endianness() override;
  TARGET_STATUS Status() override;
  void Release() override;

  int Halt() override;
  int IsHalted() override;
  int Go(bool bSkipFirst) override;
  int Step() override;
  int Reset(bool bHalt, const PROBE_CONFIG& Config) override;

  int ReadRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) override;
  int WriteReg(U32 Index, U32 Value) override;
  int ReadCP15(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue) override;
  int WriteCP15(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value) override;
  int GetDebugInfo(U32 Index, U32* pValue) override;

  int ReadMem(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) override;
  int WriteMem(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) override;
  void BeginDownload() override { m_Download.Begin(); }
  int EndDownload() override;
  void AbandonDownload(int Result) override { m_Download.Abandon(Result); }
  int MeasureCPUSpeed(U32 RAMAddr) override;

  U32 InstallBreakpoint(U32 Addr, U32 TypeFlags, bool bSoftEnabled, std::string* psError) override;
  void RemoveBreakpoint(U32 Addr, U32 TypeFlags, U32 Implementation) override;
  U32 ReplaceBreakpoint(U32 Addr, U32 TypeFlags, U32 Implementation) override;
  int InstallDataEvent(const VNODEARM_DATA_EVENT& Event) override;
  void RemoveDataEvent(int Unit) override;

private:
  // A breakpoint or data watch as the server knows it.
  struct STOP_POINT {
    char Type = 0;  // '0' to '4', 0: none
    U32 Addr = 0;
    U32 Kind = 0;  // of instruction, or bytes
  };
  // The core, stopped as long as this object lives. It runs on afterwards unless it has stopped by itself meanwhile.
  class CPause;

  CGdbTarget(const DEVICE_ROW& Device, const PROBE_CONFIG& Config, CMessages& Messages);
  bool Start(std::string* psError);

  int Fail(std::string sText);
  bool IsCortexM() const;
  bool HasBigEndianData();
  // False when the packet is no stop.
  bool TakeStop(const std::string& sPacket);
  bool WaitForStop(int LimitMs);
  bool Interrupt();
  std::vector<STOP_POINT> LiftStopPoints();
  bool StepOne();
  bool Resume();
  bool IsAtBreakpoint();
  // The failure of a request that a running core does not allow. Told once a run.
  int FailRunning(const char* sWhat);

  bool Insert(const STOP_POINT& Point, std::string* psReply = nullptr);
  bool Remove(const STOP_POINT& Point);
  bool IsFlash(U32 Addr) const;
  U32 InstructionKind(U32 Addr, U32 TypeFlags);

  CMessages& m_Messages;
  const DEVICE_ROW m_Device;
  const GDB_SERVER_ADDRESS m_Address;
  const U32 m_CoreIndex;
  const bool m_bConfiguredBig;
  CGdbServer m_Server;
  CGdbRegisters m_Registers;
  CGdbMemory m_Memory;
  CFlashDownload m_Download;
  CQmpClient m_Monitor;
  bool m_bRunning = false;
  bool m_bToldRunning = false;
  GDB_STOP m_LastStop;
  std::map<U32, STOP_POINT> m_Breakpoints;  // by address
  std::vector<STOP_POINT> m_Watches;        // by unit
};
