#pragma once
// The memory protection unit: its registers and what its regions permit.

#include <array>

#include "base/types.h"

namespace sim {

// What may be done at every address from First to Last.
struct PERMISSION {
  U32 First = 0;
  U32 Last = 0xFFFFFFFF;
  bool bRead = true;
  bool bWrite = true;
  bool bExecute = true;
};

// What the architecture's memory map permits where no region says anything else.
PERMISSION DefaultPermission(U32 Addr);

class CMpu {
public:
  static constexpr U32 MAX_REGIONS = 16;

  // A core without regions has no such unit. bV7: the version of ARMv7-M, otherwise that of ARMv6-M.
  void Reset(U32 NumRegions, bool bV7);
  bool IsOn() const { return m_Control & CTRL_ENABLE; }
  // Checks code that runs at a negative priority, too.
  bool IsOnInFaults() const { return m_Control & CTRL_HFNMIENA; }
  // Only while the unit is on. The private peripheral bus is not its business.
  PERMISSION Find(U32 Addr, bool bPrivileged) const;

  static bool IsRegister(U32 Addr);
  // Addr is a multiple of 4. Lanes are the bits of the word that are written.
  U32 Read(U32 Addr) const;
  void Write(U32 Addr, U32 Value, U32 Lanes);

private:
  static constexpr U32 CTRL_ENABLE = 1u << 0;
  static constexpr U32 CTRL_HFNMIENA = 1u << 1;
  static constexpr U32 CTRL_PRIVDEFENA = 1u << 2;

  struct REGION_REGS {
    U32 RBAR = 0;
    U32 RASR = 0;
  };
  void WriteBase(U32 Value);

  std::array<REGION_REGS, MAX_REGIONS> m_aRegions;
  U32 m_NumRegions = 0;
  U32 m_Control = 0;
  U32 m_Number = 0;  // of the region whose registers can be seen
  bool m_bV7 = true;
};

}  // namespace sim
