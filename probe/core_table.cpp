#include "probe/core_table.h"

#include <strings.h>

#include "device/probe_api/records.h"

namespace {

using sim::ARCH;
using sim::FPU;

// Where two cores share an identifier the first one gives the name.
constexpr CORE_ROW CORES[] = {
    {"Cortex-M0", VNODE_CORE_CORTEX_M0, ARCH::ARMV6M, 4, 2, true, 0x410CC200, FPU::NONE, 0},
    {"Cortex-M0+", VNODE_CORE_CORTEX_M0, ARCH::ARMV6M, 4, 2, true, 0x410CC601},
    {"Cortex-M1", VNODE_CORE_CORTEX_M1, ARCH::ARMV6M, 4, 2, true, 0x410CC210, FPU::NONE, 0},
    {"Cortex-M3", VNODE_CORE_CORTEX_M3, ARCH::ARMV7M, 6, 4, true, 0x412FC231},
    {"Cortex-M4", VNODE_CORE_CORTEX_M4, ARCH::ARMV7EM, 6, 4, true, 0x410FC241, FPU::V4_SINGLE},
    {"Cortex-M7", VNODE_CORE_CORTEX_M7, ARCH::ARMV7EM, 8, 4, false, 0x411FC272, FPU::V5_DOUBLE},
    {"Cortex-M23", VNODE_CORE_CORTEX_M23, {}, 4, 4, false},
    {"Cortex-M33", VNODE_CORE_CORTEX_M33, {}, 8, 4, false},
    {"ARM7", 0x070000FF, {}, 2, 2, false},
    {"ARM9", 0x092601FF, {}, 2, 2, false},
    {"ARM920T", 0x092000FF, {}, 2, 2, false},
    {"ARM966E-S", 0x096601FF, {}, 2, 2, false},
    {"ARM10", 0x0AFFFFFF, {}, 2, 2, false},
    {"ARM11", 0x0B7602FF, {}, 6, 2, false},
    {"ARM1136", 0x0B3602FF, {}, 6, 2, false},
    {"Cortex-A5", 0x0F0000FF, {}, 3, 2, false},
    {"Cortex-A7", 0x080800FF, {}, 6, 4, false},
    {"Cortex-A8", 0x080000FF, {}, 6, 2, false},
    {"Cortex-A9", 0x080900FF, {}, 6, 4, false},
    {"Cortex-A12", 0x080A00FF, {}, 6, 4, false},
    {"Cortex-A15", 0x080B00FF, {}, 6, 4, false},
    {"Cortex-A17", 0x080C00FF, {}, 6, 4, false},
    {"Cortex-R4", 0x0C0000FF, {}, 8, 8, false},
    {"Cortex-R5", 0x0C0100FF, {}, 8, 8, false},
    {"Cortex-R8", 0x0C0200FF, {}, 8, 8, false},
    {nullptr, 0, {}, 0, 0, false},
};

}  // namespace

const CORE_ROW* CoreTable() {
  return CORES;
}

const CORE_ROW* FindCore(const char* sName) {
  for (const CORE_ROW* pRow = CORES; pRow->sName; ++pRow) {
    if (strcasecmp(pRow->sName, sName) == 0) return pRow;
  }
  return nullptr;
}

const CORE_ROW* FindCore(U32 Id) {
  for (const CORE_ROW* pRow = CORES; pRow->sName; ++pRow) {
    if (pRow->Id == Id) return pRow;
  }
  return nullptr;
}
