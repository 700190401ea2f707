#include "probe/swo_speeds.h"

#include <algorithm>

namespace {

constexpr U32 MAX_PROBE_SPEED_HZ = 6'000'000;
constexpr U32 MAX_DIVISOR = 8192;  // of the trace port's prescaler

}  // namespace

U32 FindSwoSpeeds(U32 CPUHz, U32* paSpeedHz, U32 NumItems) {
  if (!CPUHz) return 0;
  U32 Num = 0;
  U32 Divisor = std::max(1u, CPUHz / MAX_PROBE_SPEED_HZ + (CPUHz % MAX_PROBE_SPEED_HZ != 0));
  for (; Divisor <= std::min(MAX_DIVISOR, CPUHz) && Num < NumItems; Divisor++) {
    if (CPUHz % Divisor == 0) paSpeedHz[Num++] = CPUHz / Divisor;
  }
  return Num;
}
