#include "probe/sim_target.h"

#include "device/probe_api/register_index.h"
#include "probe/memory_access.h"
#include "probe/probe_config.h"
#include "probe/text.h"

namespace {

sim::BOARD_SPEC BoardSpecOf(const DEVICE_ROW& Device) {
  sim::BOARD_SPEC Spec;
  Spec.Arch = *Device.pCore->SimArch;
  Spec.Fpu = Device.Fpu;
  Spec.CpuId = Device.pCore->SimCpuId;
  Spec.Flash = Device.Flash;
  Spec.RAM[0] = Device.RAM[0];
  Spec.RAM[1] = Device.RAM[1];
  Spec.NumCodeBreakpoints = Device.pCore->NumCodeBreakpoints;
  Spec.NumDataWatches = Device.pCore->NumDataWatches;
  Spec.bCodeBreakpointsAnywhere = !Device.pCore->bCodeRegionOnly;
  Spec.NumMpuRegions = Device.NumMpuRegions;
  Spec.NumIRQs = Device.NumIRQs;
  Spec.ClockHz = Device.ClockHz;
  return Spec;
}

// R0 to R12 and LR have no reset value of their own.
void InitRegisters(sim::CMachine& Machine) {
  for (U32 Index = 0; Index <= VNODE_REG_LR; ++Index) {
    if (Index != VNODE_REG_SP) Machine.WriteReg(Index, Index == VNODE_REG_LR ? 0xFFFFFFFF : 0);
  }
}

}  // namespace

CSimTarget::CSimTarget(const DEVICE_ROW& Device, CMessages& Messages)
    : m_Messages(Messages),
      m_Core(*Device.pCore),
      m_Board(BoardSpecOf(Device), Messages),
      m_Swo(m_Board, Messages),
      m_Trace(m_Board, Messages),
      m_Hss(m_Board, Messages) {}

std::string CSimTarget::WhyNot(const DEVICE_ROW& Device, const PROBE_CONFIG& Config) {
  if (!Device.pCore->SimArch) {
    return FormatText("%s cannot be simulated: the simulator does not have the core %s", Device.sName,
                      Device.pCore->sName);
  }
  if (Config.CoreIndex != 0) return FormatText("%s has no core with index %u", Device.sName, Config.CoreIndex);
  return {};
}

TARGET_CAPS CSimTarget::Caps() const {
  TARGET_CAPS Caps;
  Caps.bBackgroundAccess = true;  // memory is accessed between two slices of the running firmware
  Caps.bBackgroundRead = true;
  Caps.bSwo = CSimSwo::Exists(m_Board);
  Caps.bInstTrace = true;
  return Caps;
}

void CSimTarget::Release() {
  m_Hss.Stop();
  m_Trace.Stop();
  m_Swo.Release();
}

int CSimTarget::Halt() {
  m_Board.Halt();
  return 0;
}

int CSimTarget::Go(bool bSkipFirst) {
  m_Board.Go(bSkipFirst);
  return 0;
}

int CSimTarget::Step() {
  m_Board.Step();
  return 0;
}

int CSimTarget::Reset(bool bHalt, const PROBE_CONFIG& Config) {
  m_Board.Reset(bHalt);
  if (bHalt && Config.bInitRegsOnReset) InitRegisters(*CBoard::CAccess(m_Board));
  return 0;
}

int CSimTarget::ReadRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
  CBoard::CAccess Machine(m_Board);
  for (U32 i = 0; i < Count; ++i) {
    paValue[i] = 0;
    const bool bRead = Machine->ReadReg(paIndex[i], &paValue[i]);
    if (paStatus) paStatus[i] = !bRead;
  }
  return 0;
}

int CSimTarget::WriteReg(U32 Index, U32 Value) {
  return CBoard::CAccess(m_Board)->WriteReg(Index, Value) ? 0 : -1;
}

int CSimTarget::NoCP15() {
  m_Messages.Add(MSG_KIND::ERROR, FormatText("The core %s has no system control coprocessor", m_Core.sName));
  return -1;
}

int CSimTarget::ReadCP15(U8, U8, U8, U8, U32*) {
  return NoCP15();
}

int CSimTarget::WriteCP15(U8, U8, U8, U8, U32) {
  return NoCP15();
}

int CSimTarget::GetDebugInfo(U32 Index, U32* pValue) {
  if (Index != VNODE_DEBUG_INFO_HAS_SECURITY_EXT) return -1;
  *pValue = 0;
  return 0;
}

int CSimTarget::ReadMem(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  CBoard::CAccess Machine(m_Board);
  return static_cast<int>(ReadMachine(*Machine, Addr, NumBytes, pData, AccessWidth));
}

int CSimTarget::WriteMem(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  CBoard::CAccess Machine(m_Board);
  if (m_Download.IsOpen()) return static_cast<int>(m_Download.Write(*Machine, Addr, NumBytes, pData, AccessWidth));
  return static_cast<int>(WriteMachine(*Machine, Addr, NumBytes, pData, AccessWidth));
}

int CSimTarget::EndDownload() {
  // A caller who closes once more still hears of the failure.
  if (!m_Download.IsOpen()) return m_Download.LastResult();
  CBoard::CAccess Machine(m_Board);
  const int Result = m_Download.End(*Machine);
  if (const U32 NumBytes = m_Download.NumProgrammed()) {
    m_Messages.Add(MSG_KIND::LOG, FormatText("Programmed %u bytes of flash", NumBytes));
  }
  return Result;
}

int CSimTarget::MeasureCPUSpeed(U32 RAMAddr) {
  // A measuring loop would need writable memory there.
  U32 Saved = 0;
  CBoard::CAccess Machine(m_Board);
  const bool bUsable = Machine->ReadMem(RAMAddr, sizeof(Saved), &Saved) == sizeof(Saved) &&
                       Machine->WriteMem(RAMAddr, sizeof(Saved), &Saved) == sizeof(Saved);
  return bUsable ? static_cast<int>(m_Board.Spec().ClockHz) : -1;
}
