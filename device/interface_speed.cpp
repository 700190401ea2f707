#include "device/interface_speed.h"

#include "base/text.h"
#include "device/probe_api/records.h"
#include "shell/settings/named_constants.h"

namespace {

constexpr U32 HZ_PER_KHZ = 1000;
constexpr U32 MAX_HZ = 0x7FFFFFFF;  // as a configuration value holds it
constexpr QLatin1String FREQUENCY_NAMES("FREQ_");

bool IsSpecial(U32 Speed) {
  return Speed == VNODE_SPEED_AUTO || Speed == VNODE_SPEED_ADAPTIVE;
}

}  // namespace

U32 ParseInterfaceSpeed(const QString& sText, bool* pOk) {
  const QString sSpeed = Unquoted(sText);
  const U32 Number = sSpeed.toUInt(pOk, 0);
  if (*pOk) {
    if (IsSpecial(Number)) return Number;
    *pOk = Number <= MAX_HZ / HZ_PER_KHZ;
    return *pOk ? Number * HZ_PER_KHZ : 0;
  }
  const NAMED_CONST* const pConst = FindNamedConst(sSpeed);
  const bool bNamed = pConst != nullptr && QLatin1String(pConst->sSymbol).startsWith(FREQUENCY_NAMES);
  *pOk = bNamed;
  const U32 Hz = bNamed ? static_cast<U32>(pConst->Value) : ParseFrequency(sSpeed, pOk);
  *pOk = *pOk && Hz <= MAX_HZ;
  if (!*pOk || IsSpecial(Hz)) return Hz;
  const U32 KHz = Hz / HZ_PER_KHZ + (Hz % HZ_PER_KHZ > HZ_PER_KHZ / 2);
  return std::clamp(KHz, 1u, MAX_HZ / HZ_PER_KHZ) * HZ_PER_KHZ;
}
