#include "core/core_table.h"

#include "core/core_state.h"

namespace {

struct CORE_NAME {
  U8 Family;
  U8 SubFamily;
  const char* sName;
};

// The first row of a family is its name for an unknown subfamily.
constexpr CORE_NAME aName[] = {
    {1, 0, "Cortex-M1"},   {3, 0, "Cortex-M3"},  {6, 0, "Cortex-M0"},  {6, 1, "Cortex-M23"},  {7, 0, "ARM7"},
    {8, 0, "Cortex-A8"},   {8, 8, "Cortex-A7"},  {8, 9, "Cortex-A9"},  {8, 10, "Cortex-A12"}, {8, 11, "Cortex-A15"},
    {8, 12, "Cortex-A17"}, {9, 0, "ARM9"},       {10, 0, "ARM10"},     {11, 0, "ARM11"},      {12, 0, "Cortex-R4"},
    {12, 1, "Cortex-R5"},  {12, 2, "Cortex-R8"}, {14, 0, "Cortex-M4"}, {14, 1, "Cortex-M7"},  {14, 2, "Cortex-M33"},
    {15, 0, "Cortex-A5"},
};

// Families whose subfamily byte is a variant number that names no core of its own.
constexpr U8 aFamilyWithoutSubFamilies[] = {CORE_FAMILY_ARM7, CORE_FAMILY_ARM9, CORE_FAMILY_ARM10, CORE_FAMILY_ARM11};

struct CORE_ARCH {
  U32 First;
  U32 Last;
  I32 Version;
  char Profile;
  U8 ThumbLevel;
};

constexpr CORE_ARCH aArch[] = {
    {0x010000FF, 0x010000FF, 6, 0, 2},   {0x03000010, 0x03000011, 7, 'M', 2}, {0x03000020, 0x03000021, 7, 'M', 2},
    {0x030000FF, 0x030000FF, 7, 'M', 2}, {0x060000FF, 0x060000FF, 6, 0, 2},   {0x060100FF, 0x060100FF, 8, 0, 2},
    {0x0700003F, 0x0700003F, 4, 0, 1},   {0x0700004F, 0x0700004F, 4, 0, 1},   {0x070000FF, 0x070000FF, 4, 0, 1},
    {0x0700013F, 0x0700013F, 4, 0, 1},   {0x0700014F, 0x0700014F, 4, 0, 1},   {0x070001FF, 0x070001FF, 4, 0, 1},
    {0x07FFFFFF, 0x07FFFFFF, 3, 0, 0},   {0x080000FF, 0x080000FF, 7, 'A', 2}, {0x080800FF, 0x080800FF, 7, 'A', 2},
    {0x080900FF, 0x080900FF, 7, 'A', 2}, {0x080A00FF, 0x080A00FF, 7, 'A', 2}, {0x080B00FF, 0x080B00FF, 7, 'A', 2},
    {0x080C00FF, 0x080C00FF, 7, 'A', 2}, {0x0F0000FF, 0x0F0000FF, 7, 'A', 2}, {0x090001FF, 0x090001FF, 4, 0, 1},
    {0x092000FF, 0x092000FF, 4, 0, 1},   {0x092200FF, 0x092200FF, 4, 0, 1},   {0x09FFFFFF, 0x09FFFFFF, 4, 0, 1},
    {0x092601FF, 0x092601FF, 5, 0, 1},   {0x094601FF, 0x094601FF, 5, 0, 1},   {0x096601FF, 0x096601FF, 5, 0, 1},
    {0x096801FF, 0x096801FF, 5, 0, 1},   {0x0B3602FF, 0x0B36FFFF, 6, 0, 1},   {0x0B7602FF, 0x0B76FFFF, 6, 0, 2},
    {0x0BFFFFFF, 0x0BFFFFFF, 6, 0, 1},   {0x0C0000FF, 0x0C0000FF, 7, 'R', 2}, {0x0C0100FF, 0x0C0100FF, 7, 'R', 2},
    {0x0E0000FF, 0x0E0000FF, 7, 'M', 2}, {0x0E0100FF, 0x0E0100FF, 7, 'M', 2}, {0x0E0200FF, 0x0E0200FF, 8, 0, 2},
};

constexpr U32 MAX_FAMILY = 15;

const CORE_ARCH* FindArch(U32 CoreId) {
  for (const CORE_ARCH& Arch : aArch) {
    if (CoreId >= Arch.First && CoreId <= Arch.Last) return &Arch;
  }
  return nullptr;
}

bool HasSubFamilies(U32 Family) {
  for (const U8 Other : aFamilyWithoutSubFamilies) {
    if (Other == Family) return false;
  }
  return true;
}

}  // namespace

namespace VCore {

bool IsCortexM(U32 CoreId) {
  const U8 Family = GetFamily(CoreId);
  return Family == CORE_FAMILY_M3 || Family == CORE_FAMILY_M0 || Family == CORE_FAMILY_M4;
}

bool HasBankedRegs(U32 CoreId) {
  const U8 Family = GetFamily(CoreId);
  return (Family >= CORE_FAMILY_ARM7 && Family <= CORE_FAMILY_R) || Family == CORE_FAMILY_A5;
}

int GetCoreName(U32 Family, U32 SubFamily, QString& sName) {
  sName.clear();
  if (Family == 0 || Family > MAX_FAMILY) return -1;
  for (const CORE_NAME& Row : aName) {
    if (Row.Family != Family) continue;
    if (sName.isEmpty()) sName = QString::fromLatin1(Row.sName);
    if (Row.SubFamily == SubFamily) {
      sName = QString::fromLatin1(Row.sName);
      return 0;
    }
  }
  if (SubFamily != 0 && HasSubFamilies(Family)) {
    LogError(TakeSnapshot(), Family == CORE_FAMILY_M4 ? QStringLiteral("Unknown device subfamily.")
                                                      : QStringLiteral("Unknown device subfamily"));
  }
  return 0;
}

QString GetArchName(U32 CoreId) {
  char Profile = 0;
  const int Version = GetArchVersion(CoreId, &Profile);
  if (Version < 0) return QString();
  QString sName = QStringLiteral("ARMv%1").arg(Version);
  if (Profile != 0) sName += QLatin1Char(Profile);
  return sName;
}

int GetArchVersion(U32 CoreId, char* pProfile) {
  const CORE_ARCH* pArch = FindArch(CoreId);
  if (pProfile != nullptr) *pProfile = pArch != nullptr ? pArch->Profile : 0;
  return pArch != nullptr ? pArch->Version : -1;
}

U32 GetThumbLevel(U32 CoreId) {
  const CORE_ARCH* pArch = FindArch(CoreId);
  return pArch != nullptr ? pArch->ThumbLevel : 2;
}

QList<U32> GetKnownCores() {
  QList<U32> Cores;
  for (const CORE_ARCH& Arch : aArch) Cores.append(Arch.First);
  return Cores;
}

}  // namespace VCore
