#pragma once
// The trace port: how what the core sends leaves the chip.

#include "base/types.h"

namespace sim {

inline constexpr U32 TPIU_MAX_PRESCALER = 0x1FFF;

struct TPIU_REGS {
  U32 PortSize = 1;
  U32 Prescaler = 0;  // cycles per bit, less one
  U32 Protocol = 1;   // 1 Manchester, 2 as serial ports
  U32 Formatter = 0x102;
};

}  // namespace sim
