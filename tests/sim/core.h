#pragma once
// The cores that are compared with peers, and what is compared.

#include <array>

#include "probe/sim/machine.h"

namespace sim_test {

struct CORE {
  const char* sName;
  sim::ARCH Arch;
  sim::FPU Fpu;
};

inline constexpr CORE CORES[] = {
    {"v6m", sim::ARCH::ARMV6M, sim::FPU::NONE},           {"v7m", sim::ARCH::ARMV7M, sim::FPU::NONE},
    {"v7em_sp", sim::ARCH::ARMV7EM, sim::FPU::V4_SINGLE}, {"v7em_sp5", sim::ARCH::ARMV7EM, sim::FPU::V5_SINGLE},
    {"v7em_dp", sim::ARCH::ARMV7EM, sim::FPU::V5_DOUBLE},
};

inline constexpr U32 APSR_MASK = 0xF80F0000;
inline constexpr U32 NUM_S_REGS = 32;

struct REGS {
  std::array<U32, 15> R = {};
  U32 APSR = 0;
  std::array<U32, NUM_S_REGS> S = {};
  U32 FPSCR = 0;
  bool operator==(const REGS&) const = default;
};

}  // namespace sim_test
