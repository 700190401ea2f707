#pragma once

#include "base/types.h"

// The speeds of a serial output that a probe can receive and that are whole fractions of the core's clock, fastest
// first. At most NumItems; the number of them.
U32 FindSwoSpeeds(U32 CPUHz, U32* paSpeedHz, U32 NumItems);
