#pragma once

#include <string>

#include "probe/board.h"
#include "probe/device_list.h"
#include "probe/download.h"
#include "probe/sim_hss.h"
#include "probe/sim_swo.h"
#include "probe/sim_trace.h"
#include "probe/target.h"

// The simulated board as a target. It stays powered as long as this object lives.
class CSimTarget : public CTarget {
public:
  CSimTarget(const DEVICE_ROW& Device, CMessages& Messages);

  // Why the simulator cannot be this device; empty when it can.
  static std::string WhyNot(const DEVICE_ROW& Device, const PROBE_CONFIG& Config);

  TARGET_CAPS Caps() const override;
  bool IsAlive() override { return true; }
  int Endianness() override { return 0; }
  TARGET_STATUS Status() override;
  void Release() override;

  int Halt() override;
  int IsHalted() override { return m_Board.IsHalted(); }
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

  CSwoPort* Swo() override { return CSimSwo::Exists(m_Board) ? &m_Swo : nullptr; }
  CInstTrace* InstTrace() override { return &m_Trace; }
  CHssSampler* HssSampler() override { return &m_Hss; }

private:
  int NoCP15();

  CMessages& m_Messages;
  const CORE_ROW& m_Core;
  CBoard m_Board;
  CDownload m_Download;
  CSimSwo m_Swo;
  CSimTrace m_Trace;
  CSimHss m_Hss;
};
