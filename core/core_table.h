#pragma once
// What a core identifier says of the core. Any thread.

#include <QString>

#include "base/types.h"

// Families by the high byte of the core identifier.
enum CORE_FAMILY : U8 {
  CORE_FAMILY_M1 = 1,
  CORE_FAMILY_M3 = 3,
  CORE_FAMILY_M0 = 6,
  CORE_FAMILY_ARM7 = 7,
  CORE_FAMILY_A8 = 8,
  CORE_FAMILY_ARM9 = 9,
  CORE_FAMILY_ARM10 = 10,
  CORE_FAMILY_ARM11 = 11,
  CORE_FAMILY_R = 12,
  CORE_FAMILY_M4 = 14,
  CORE_FAMILY_A5 = 15,
};

// The one core without a vector table offset register.
inline constexpr U32 CORE_ID_CORTEX_M0 = 0x060000FF;

namespace VCore {

inline U8 GetFamily(U32 CoreId) {
  return static_cast<U8>(CoreId >> 24);
}
inline U8 GetSubFamily(U32 CoreId) {
  return static_cast<U8>(CoreId >> 16);
}
// Families 3, 6 and 14: one set of registers with xPSR, exceptions on the vector table.
bool IsCortexM(U32 CoreId);
// Cores with banked registers and mode bits in CPSR.
bool HasBankedRegs(U32 CoreId);
// "Cortex-M4"; 0, or -1 for a family out of 1 to 15. An unknown subfamily is told to the core model's error sink and
// gives the family's first name; a family without cores gives an empty name.
int GetCoreName(U32 Family, U32 SubFamily, QString& sName);
// "ARMv7M"; empty for an unknown identifier.
QString GetArchName(U32 CoreId);
// Architecture version and the profile letter (0 where the version has none); -1 for an unknown identifier.
int GetArchVersion(U32 CoreId, char* pProfile = nullptr);
// 0 no Thumb, 1 Thumb, 2 Thumb-2.
U32 GetThumbLevel(U32 CoreId);
// Every core of the table, one identifier each, in table order.
QList<U32> GetKnownCores();

}  // namespace VCore
