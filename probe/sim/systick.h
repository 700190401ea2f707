#pragma once
// The system timer. It counts core cycles and is only looked at when somebody reads it or its next zero is due.

#include "base/types.h"

namespace sim {

class CSysTick {
public:
  static constexpr U64 NEVER = ~0ull;

  void Reset() { *this = CSysTick(); }

  // Registers, at the time Now in cycles.
  U32 ReadControl(U64 Now, bool bKeepFlag);  // reading clears COUNTFLAG, unless a debugger does it
  U32 ReadReload() const { return m_Reload; }
  U32 ReadCurrent(U64 Now) const;
  void WriteControl(U64 Now, U32 Value);
  void WriteReload(U32 Value) { m_Reload = Value & MAX_COUNT; }
  void WriteCurrent(U64 Now);

  // When Advance has to be called next.
  U64 Deadline() const { return m_NextZero; }
  void Advance(U64 Now);
  // True once after a zero that has to make the interrupt pending.
  bool TakeInterrupt();

private:
  static constexpr U32 MAX_COUNT = 0x00FFFFFF;

  U32 m_Control = 0;
  U32 m_Reload = 0;
  U32 m_Held = 0;          // the count while stopped
  U64 m_NextZero = NEVER;  // cycle at which the count becomes 0
  bool m_bCountFlag = false;
  bool m_bInterrupt = false;
};

}  // namespace sim
