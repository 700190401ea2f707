#pragma once

#include <array>
#include <mutex>

#include <QByteArray>
#include <QList>

#include "device/device_types.h"

// The configuration of probe, interface and device. Values only; what a change does is CDeviceConfigurator's. Any
// thread; texts are copied under a lock.
class CDeviceConfig {
public:
  CDeviceConfig();

  // Number of a numeric parameter; 0 for any other.
  I32 Value(DEV_CONFIG_PARAMS Param) const;
  // Text of a text parameter, UTF-8; empty for any other.
  QByteArray Text(DEV_CONFIG_PARAMS Param) const;
  // False when the parameter is not numeric.
  bool SetValue(DEV_CONFIG_PARAMS Param, I32 Value);
  // Cut to the parameter's size. False when the parameter is no text.
  bool SetText(DEV_CONFIG_PARAMS Param, const QByteArray& sText);

  // Interface speed as VNODEARM_SetSpeed takes it: kHz, VNODE_SPEED_AUTO or VNODE_SPEED_ADAPTIVE.
  U32 SpeedForProbe() const;

  // The configuration as the XML document that projects store.
  QByteArray ToXML() const;

private:
  static int TextSlot(I32 Param);

  std::array<std::atomic<I32>, NUM_CONFIG_VALUES> aValue;
  mutable std::mutex TextMutex;
  std::array<QByteArray, 4> aText;
};

// One value that the XML form gave.
struct CONFIG_ENTRY {
  DEV_CONFIG_PARAMS Param;
  I32 Value = 0;     // numeric parameters
  QByteArray sText;  // text parameters
};

// Reads the XML form: every attribute that it can hold, in the order of the document, with the defaults for those that
// are missing or no number. False when the text is no XML document; sError then says where.
bool ParseConfigXML(const QByteArray& sXML, QList<CONFIG_ENTRY>& Entries, QString& sError);
