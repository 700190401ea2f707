#pragma once
// What the library knows of each core: its identifier, its name and what the simulator makes of it.

#include <optional>

#include "base/types.h"
#include "probe/sim/machine.h"

struct CORE_ROW {
  const char* sName;
  U32 Id;
  std::optional<sim::ARCH> SimArch;  // none: the simulator does not run this core
  U32 NumCodeBreakpoints;
  U32 NumDataWatches;
  bool bCodeRegionOnly;  // comparators match below CODE_REGION_END only
  U32 SimCpuId = 0;      // value of the register CPUID
  sim::FPU SimFpu = sim::FPU::NONE;
  U32 NumMpuRegions = 8;
};

// End of the address range in which the older breakpoint units compare.
inline constexpr U32 CODE_REGION_END = 0x20000000;

// Null when there is no such core. The name is compared without regard to case.
const CORE_ROW* FindCore(const char* sName);
const CORE_ROW* FindCore(U32 Id);
// The whole table; the last row's name is null.
const CORE_ROW* CoreTable();
