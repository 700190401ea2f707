#pragma once

#include <mutex>

#include <QList>
#include <QString>

#include "base/types.h"

// What the device layer learned from the probe library and of the selected device.
struct PROBE_FACTS {
  QString sLibraryPath;       // with forward slashes
  U32 LibraryVersion = 0;     // major * 10000 + minor * 100 + revision
  QString sFirmware;          // without the compilation date
  U32 SerialNo = 0;           // of the probe
  U32 NumDevices = 0;         // that the library knows
  QList<U32> SupportedCores;  // core identifiers, each once
  QString sWebURL;            // the probe's local web control; empty when there is none

  QString sDeviceName;
  U32 Core = 0;               // core identifier
  U32 CoreFamily = 0;         // its top byte
  QString sCoreName;          // the library's name of the core
  QString sCoreVariant;       // the core model's
  U32 RAMAddr = 0xFFFFFFFFu;  // work RAM of the device; 0xFFFFFFFF none
  U32 RAMSize = 0;            // in bytes
};

// "6.10b" and the like: major, minor with two digits, revision as a letter.
QString LibraryVersionText(U32 Version);

// Guarded PROBE_FACTS; written on the device thread, read on any.
class CProbeFacts {
public:
  PROBE_FACTS Get() const {
    std::lock_guard Lock(Mutex);
    return Facts;
  }
  template <typename FUNC>
  void Change(FUNC Func) {
    std::lock_guard Lock(Mutex);
    Func(Facts);
  }

private:
  mutable std::mutex Mutex;
  PROBE_FACTS Facts;
};
