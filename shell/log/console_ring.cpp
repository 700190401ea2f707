#include "shell/log/console_ring.h"

CConsoleRing::CConsoleRing() : m_Slots(CONSOLE_RING_SLOTS) {}

bool CConsoleRing::Push(const CONSOLE_MSG& Msg) {
  if (m_NumUsed >= CONSOLE_RING_SLOTS) return false;
  const std::scoped_lock Lock(m_Mutex);
  CONSOLE_MSG& Slot = m_Slots[m_WriteIndex];
  if (Slot.IsUsed) return false;
  Slot = Msg;
  Slot.IsUsed = 1;
  ++m_NumUsed;
  m_WriteIndex = (m_WriteIndex + 1) % CONSOLE_RING_SLOTS;
  return true;
}

bool CConsoleRing::Pop(CONSOLE_MSG* pMsg) {
  const std::scoped_lock Lock(m_Mutex);
  CONSOLE_MSG& Slot = m_Slots[m_ReadIndex];
  if (!Slot.IsUsed) return false;
  *pMsg = Slot;
  Slot = CONSOLE_MSG();
  --m_NumUsed;
  m_ReadIndex = (m_ReadIndex + 1) % CONSOLE_RING_SLOTS;
  return true;
}

void CConsoleRing::Clear() {
  const std::scoped_lock Lock(m_Mutex);
  for (CONSOLE_MSG& Slot : m_Slots) Slot.IsUsed = 0;
  m_NumUsed = 0;
  m_WriteIndex = 0;
  m_ReadIndex = 0;
}
