#include "probe/gdb/gdb_target.h"

#include "device/probe_api/register_index.h"
#include "probe/gdb/cp15.h"
#include "probe/gdb/gdb_target_pause.h"
#include "probe/gdb/reset.h"
#include "probe/probe_config.h"
#include "probe/text.h"

namespace {

constexpr U32 FAMILY_ARM7 = 0x07;
constexpr U32 FAMILY_ARM9 = 0x09;
constexpr int DATA_BIG_ENDIAN = 1;
constexpr int INST_BIG_ENDIAN = 2;
constexpr U32 CPSR_BIG_ENDIAN = 1u << 9;
constexpr U32 AIRCR = 0xE000ED0C;
constexpr U32 AIRCR_BIG_ENDIAN = 1u << 15;
constexpr U32 ID_PFR1 = 0xE000ED44;
constexpr U32 ID_PFR1_SECURITY = 0xF0;

}  // namespace

CGdbTarget::CGdbTarget(const DEVICE_ROW& Device, const PROBE_CONFIG& Config, CMessages& Messages)
    : m_Messages(Messages),
      m_Device(Device),
      m_Address(*Config.Server),
      m_CoreIndex(Config.CoreIndex),
      m_bConfiguredBig(Config.bBigEndian),
      m_Server(Messages),
      m_Registers(m_Server, IsCortexM()),
      m_Memory(m_Server),
      m_Download(m_Server, m_Memory) {}

std::unique_ptr<CGdbTarget> CGdbTarget::Connect(const DEVICE_ROW& Device, const PROBE_CONFIG& Config,
                                                CMessages& Messages, std::string* psError) {
  std::unique_ptr<CGdbTarget> pTarget(new CGdbTarget(Device, Config, Messages));
  return pTarget->Start(psError) ? std::move(pTarget) : nullptr;
}

bool CGdbTarget::Start(std::string* psError) {
  std::string sReply;
  if (!m_Server.Open(m_Address, m_CoreIndex, psError)) return false;
  if (!m_Server.Request("?", &sReply) || !TakeStop(sReply) || !IsAlive()) {
    *psError = "The GDB server has no target that could be debugged";
    return false;
  }
  m_Registers.FindByteOrder(m_bConfiguredBig);
  std::string sMonitorError;
  if (m_Address.MonitorPort && !m_Monitor.Open(m_Address.sHost, m_Address.MonitorPort, &sMonitorError)) {
    m_Messages.Add(MSG_KIND::WARNING, "Memory cannot be read while the core runs: " + sMonitorError);
  }
  return true;
}

int CGdbTarget::Fail(std::string sText) {
  m_Messages.Add(MSG_KIND::ERROR, std::move(sText));
  return -1;
}

bool CGdbTarget::IsCortexM() const {
  const U32 Family = m_Device.pCore->Id >> 24;
  return Family == VNODE_CORE_CORTEX_M1 >> 24 || Family == VNODE_CORE_CORTEX_M3 >> 24 ||
         Family == VNODE_CORE_CORTEX_M0 >> 24 || Family == VNODE_CORE_CORTEX_M4 >> 24;
}

TARGET_CAPS CGdbTarget::Caps() const {
  TARGET_CAPS Caps;
  Caps.bBackgroundRead = m_Monitor.IsOpen();
  return Caps;
}

void CGdbTarget::Release() {
  // Without a farewell: to detach would let the core run.
  m_Server.Connection().Close("The connection is closed");
  m_Monitor.Close();
}

bool CGdbTarget::HasBigEndianData() {
  U32 Value = 0;
  if (IsHalted() <= 0) return m_Registers.IsBigEndian();
  if (IsCortexM()) {
    if (m_Memory.Read(AIRCR, sizeof(Value), &Value, sizeof(Value)) != sizeof(Value)) return m_bConfiguredBig;
    return Value & AIRCR_BIG_ENDIAN;
  }
  return m_Registers.ReadStatus(&Value) ? (Value & CPSR_BIG_ENDIAN) != 0 : m_bConfiguredBig;
}

int CGdbTarget::Endianness() {
  const U32 Family = m_Device.pCore->Id >> 24;
  // These have one order for both, which no register of the protocol tells.
  if (Family == FAMILY_ARM7 || Family == FAMILY_ARM9) {
    return m_Registers.IsBigEndian() ? DATA_BIG_ENDIAN | INST_BIG_ENDIAN : 0;
  }
  return HasBigEndianData() ? DATA_BIG_ENDIAN : 0;
}

TARGET_STATUS CGdbTarget::Status() {
  constexpr U32 NUM_NAMED_REGISTERS = 16;
  TARGET_STATUS Status;
  Status.sKind = "GDB server " + m_Address.Text();
  if (IsHalted() <= 0) return Status;
  for (U32 i = 0; i < NUM_NAMED_REGISTERS; ++i) {
    const std::string sNumbered = FormatText("R%u", i);
    const std::string sName = i == 13 ? "SP" : i == 14 ? "LR" : i == 15 ? "PC" : sNumbered;
    U32 Value = 0;
    if (m_Registers.ReadCore(i, &Value)) Status.Registers.push_back({sName, Value});
  }
  return Status;
}

int CGdbTarget::FailRunning(const char* sWhat) {
  if (m_bToldRunning) return -1;
  m_bToldRunning = true;
  return Fail(FormatText("%s: the GDB server does not allow it while the core runs", sWhat));
}

int CGdbTarget::ReadRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
  if (IsHalted() <= 0) return FailRunning("Reading registers");
  for (U32 i = 0; i < Count; ++i) {
    paValue[i] = 0;
    const bool bRead = m_Registers.Read(paIndex[i], &paValue[i]);
    if (paStatus) paStatus[i] = !bRead;
    if (!IsAlive()) return -1;
  }
  return 0;
}

int CGdbTarget::WriteReg(U32 Index, U32 Value) {
  if (IsHalted() <= 0) return FailRunning("Writing a register");
  if (m_Registers.Write(Index, Value)) {
    // Where a core was reset without a program it is in a state in which it executes nothing, not even from there.
    if (IsCortexM() && Index == VNODE_REG_PC) m_Registers.EnterThumbState();
    return 0;
  }
  return Fail(FormatText("The GDB server does not write register %u", Index));
}

int CGdbTarget::ReadCP15(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue) {
  std::string sError;
  if (IsHalted() <= 0) return FailRunning("Reading a coprocessor register");
  return ReadCp15(m_Server, m_Registers, {CRn, CRm, Op1, Op2}, pValue, &sError) ? 0 : Fail(sError);
}

int CGdbTarget::WriteCP15(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value) {
  std::string sError;
  if (IsHalted() <= 0) return FailRunning("Writing a coprocessor register");
  return WriteCp15(m_Server, m_Registers, {CRn, CRm, Op1, Op2}, Value, &sError) ? 0 : Fail(sError);
}

int CGdbTarget::GetDebugInfo(U32 Index, U32* pValue) {
  if (Index != VNODE_DEBUG_INFO_HAS_SECURITY_EXT) return -1;
  *pValue = 0;
  if (m_Device.pCore->Id != VNODE_CORE_CORTEX_M33 && m_Device.pCore->Id != VNODE_CORE_CORTEX_M23) return 0;
  U32 Features = 0;
  if (ReadMem(ID_PFR1, sizeof(Features), &Features, sizeof(Features)) != sizeof(Features)) return -1;
  *pValue = (Features & ID_PFR1_SECURITY) != 0;
  return 0;
}

int CGdbTarget::ReadMem(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  const int Halted = IsHalted();
  if (Halted < 0) return -1;
  if (Halted > 0) return m_Memory.Read(Addr, NumBytes, pData, AccessWidth);
  if (!m_Monitor.IsOpen()) return FailRunning("Reading memory");
  std::string sError;
  const int Count = m_Monitor.ReadMem(Addr, NumBytes, static_cast<U8*>(pData), &sError);
  return Count < 0 ? Fail(sError) : Count;
}

int CGdbTarget::WriteMem(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  const int Halted = IsHalted();
  if (Halted < 0) return -1;
  if (Halted == 0) return FailRunning("Writing memory");
  if (m_Download.IsOpen()) return m_Download.Write(Addr, NumBytes, pData, AccessWidth);
  return m_Memory.Write(Addr, NumBytes, pData, AccessWidth);
}

int CGdbTarget::EndDownload() {
  if (!m_Download.IsOpen()) return m_Download.End();
  if (IsHalted() <= 0) {
    m_Download.Abandon(VNODE_DOWNLOAD_UNSPECIFIED);
    return FailRunning("Programming flash");
  }
  const int Result = m_Download.End();
  if (const U32 NumBytes = m_Download.NumProgrammed()) {
    m_Messages.Add(MSG_KIND::LOG, FormatText("Programmed %u bytes of flash", NumBytes));
  }
  return Result;
}

int CGdbTarget::MeasureCPUSpeed(U32) {
  return Fail("A GDB server does not measure the clock of the core");
}

int CGdbTarget::Reset(bool bHalt, const PROBE_CONFIG&) {
  if (Halt() < 0) return -1;
  std::string sError;
  const bool bReset = ResetByServer(m_Server, &sError);
  m_Registers.Invalidate();
  m_LastStop = {};
  if (!bReset) return Fail(sError);
  m_Server.SelectCore();
  return bHalt || Resume() ? 0 : -1;
}
