#include "probe/sim/itm.h"

namespace sim {

namespace {

enum ITM_REG : U32 { TER = 0xE00, TPR = 0xE40, TCR = 0xE80, LAR = 0xFB0, LSR = 0xFB4 };

inline constexpr U32 TPR_MASK = 0xF;
inline constexpr U32 PORTS_PER_TPR_BIT = 8;
inline constexpr U32 TCR_ITMENA = 1u << 0;
inline constexpr U32 TCR_MASK = 0x007F0F1F;
inline constexpr U32 LAR_KEY = 0xC5ACCE55;
inline constexpr U32 LSR_HAS_LOCK = 1u << 0;
inline constexpr U32 LSR_IS_LOCKED = 1u << 1;
inline constexpr U32 PORT_READY = 1;

}  // namespace

bool CItm::IsPortEnabled(U32 Port) const {
  return (m_Control & TCR_ITMENA) && (m_Enabled >> Port & 1);
}

U32 CItm::Read(U32 Offset, bool bDebugger) const {
  if (Offset < STIMULUS_END) return IsPortEnabled(Offset / 4) ? PORT_READY : 0;
  switch (Offset) {
    case TER:
      return m_Enabled;
    case TPR:
      return m_Privileged;
    case TCR:
      return m_Control;
    case LSR:
      return bDebugger ? 0 : LSR_HAS_LOCK | (m_bLocked ? LSR_IS_LOCKED : 0);
    default:
      return 0;
  }
}

void CItm::Write(U32 Offset, U32 Value, bool bDebugger) {
  if (Offset == LAR) m_bLocked = Value != LAR_KEY;
  if (!IsWritable(bDebugger)) return;
  if (Offset == TER) m_Enabled = Value;
  if (Offset == TPR) m_Privileged = Value & TPR_MASK;
  if (Offset == TCR) m_Control = Value & TCR_MASK;
}

void CItm::Send(U32 Port, U32 Value, U32 NumBytes, bool bPrivileged, bool bEnabled) {
  if (!bEnabled || !IsPortEnabled(Port) || !Sink) return;
  if (!bPrivileged && (m_Privileged >> (Port / PORTS_PER_TPR_BIT) & 1)) return;
  Sink(Port, Value, NumBytes);
}

}  // namespace sim
