#include "device/device_config.h"

#include <string>

#include "base/text.h"
#include "device/probe_api/records.h"

namespace {

constexpr U32 HZ_PER_KHZ = 1000;

// Sizes of the library's text buffers, terminator included, in the order of the text parameters.
constexpr int TEXT_BUFFER_BYTES[] = {256, 256, 2048, 2048};

}  // namespace

CDeviceConfig::CDeviceConfig() {
  for (auto& Value : aValue) Value = 0;
  aValue[DCP_DEVICE_INDEX] = -1;
  aValue[DCP_CONNECT_MODE] = HOST_IF_USB;
  aValue[DCP_TARGET_IF] = VNODE_TIF_SWD;
  aValue[DCP_USE_MAX_SPEED] = 1;
  aValue[DCP_BREAK_SYMBOL_ADDR] = -1;
  aValue[DCP_RTT_ADDR] = -1;
}

int CDeviceConfig::TextSlot(I32 Param) {
  return Param >= DCP_HOST_NAME && Param <= DCP_LAST ? Param - DCP_HOST_NAME : -1;
}

I32 CDeviceConfig::Value(DEV_CONFIG_PARAMS Param) const {
  return Param >= 0 && Param < NUM_CONFIG_VALUES ? aValue[Param].load() : 0;
}

QByteArray CDeviceConfig::Text(DEV_CONFIG_PARAMS Param) const {
  const int Slot = TextSlot(Param);
  if (Slot < 0) return QByteArray();
  std::lock_guard Lock(TextMutex);
  return aText[Slot];
}

bool CDeviceConfig::SetValue(DEV_CONFIG_PARAMS Param, I32 Value) {
  if (Param < 0 || Param >= NUM_CONFIG_VALUES) return false;
  aValue[Param] = Value;
  return true;
}

bool CDeviceConfig::SetText(DEV_CONFIG_PARAMS Param, const QByteArray& sText) {
  const int Slot = TextSlot(Param);
  if (Slot < 0) return false;
  std::lock_guard Lock(TextMutex);
  aText[Slot] = sText.left(TEXT_BUFFER_BYTES[Slot] - 1);
  return true;
}

U32 CDeviceConfig::SpeedForProbe() const {
  const U32 Speed = static_cast<U32>(Value(DCP_SPEED));
  if (Value(DCP_USE_MAX_SPEED) > 0 || Speed == VNODE_SPEED_AUTO) return VNODE_SPEED_AUTO;
  if (Value(DCP_USE_ADAPTIVE) > 0 || Speed == VNODE_SPEED_ADAPTIVE) return VNODE_SPEED_ADAPTIVE;
  return std::max(Speed / HZ_PER_KHZ, 1u);
}
