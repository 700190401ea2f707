#include "probe/sim/systick.h"

namespace sim {

namespace {

inline constexpr U32 CTRL_ENABLE = 1;
inline constexpr U32 CTRL_TICKINT = 2;
inline constexpr U32 CTRL_CLKSOURCE = 4;  // the part has no reference clock: reads as one
inline constexpr U32 CTRL_COUNTFLAG = 1u << 16;

}  // namespace

U32 CSysTick::ReadControl(U64 Now, bool bKeepFlag) {
  Advance(Now);
  const U32 Value = m_Control | CTRL_CLKSOURCE | (m_bCountFlag ? CTRL_COUNTFLAG : 0);
  if (!bKeepFlag) m_bCountFlag = false;
  return Value;
}

U32 CSysTick::ReadCurrent(U64 Now) const {
  if (m_NextZero == NEVER) return m_Held;
  if (Now < m_NextZero) {
    const U64 Left = m_NextZero - Now;
    return Left == static_cast<U64>(m_Reload) + 1
               ? 0
               : static_cast<U32>(Left);  // 0 in the cycle before the count is loaded
  }
  const U64 Period = static_cast<U64>(m_Reload) + 1;
  const U64 Phase = (Now - m_NextZero) % Period;
  return Phase ? static_cast<U32>(Period - Phase) : 0;
}

void CSysTick::WriteControl(U64 Now, U32 Value) {
  Advance(Now);
  const bool bWasOn = m_Control & CTRL_ENABLE;
  const bool bOn = Value & CTRL_ENABLE;
  if (bWasOn && !bOn) {
    m_Held = ReadCurrent(Now);
    m_NextZero = NEVER;
  } else if (!bWasOn && bOn) {
    m_NextZero = m_Held ? Now + m_Held : m_Reload ? Now + 1 + m_Reload : NEVER;
  }
  m_Control = Value & (CTRL_ENABLE | CTRL_TICKINT);
}

void CSysTick::WriteCurrent(U64 Now) {
  Advance(Now);
  m_Held = 0;
  m_bCountFlag = false;
  m_NextZero = (m_Control & CTRL_ENABLE) && m_Reload ? Now + 1 + m_Reload : NEVER;
}

bool CSysTick::TakeInterrupt() {
  const bool bTaken = m_bInterrupt;
  m_bInterrupt = false;
  return bTaken;
}

void CSysTick::Advance(U64 Now) {
  if (Now < m_NextZero) return;
  const U64 Period = static_cast<U64>(m_Reload) + 1;
  m_NextZero += ((Now - m_NextZero) / Period + 1) * Period;
  if (!m_Reload) {
    m_NextZero = NEVER;
    m_Held = 0;
  }
  m_bCountFlag = true;
  if (m_Control & CTRL_TICKINT) m_bInterrupt = true;
}

}  // namespace sim
