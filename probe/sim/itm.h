#pragma once
// The instrumentation trace unit: 32 stimulus ports through which firmware sends bytes to whoever listens at the pin.

#include <functional>

#include "base/types.h"

namespace sim {

inline constexpr U32 NUM_STIMULUS_PORTS = 32;
inline constexpr U32 STIMULUS_END = NUM_STIMULUS_PORTS * 4;  // offset behind the ports' registers

class CItm {
public:
  // Registers by their offset in the unit. A port reads as 1 when it takes a write, which it does at any time while it
  // is enabled. A debugger's writes need no unlocking.
  U32 Read(U32 Offset, bool bDebugger) const;
  void Write(U32 Offset, U32 Value, bool bDebugger);
  // A write of 1, 2 or 4 bytes to a port. bEnabled: trace is on in the core.
  void Send(U32 Port, U32 Value, U32 NumBytes, bool bPrivileged, bool bEnabled);
  bool IsPortEnabled(U32 Port) const;

  // What is sent through enabled ports; may be null.
  std::function<void(U32 Port, U32 Value, U32 NumBytes)> Sink;

private:
  bool IsWritable(bool bDebugger) const { return bDebugger || !m_bLocked; }

  U32 m_Control = 0;
  U32 m_Enabled = 0;     // a bit for each port
  U32 m_Privileged = 0;  // a bit for each group of eight ports that privileged code has for itself
  bool m_bLocked = true;
};

}  // namespace sim
