#pragma once

#include <QList>
#include <QString>

#include "base/types.h"

struct VNODE_API;

// A target device that the probe library knows.
struct DEVICE_RECORD {
  QString sManufacturer;
  QString sName;
  QString sCore;
  U32 NumCores = 0;
  U32 FlashSize = 0;  // in bytes, 0 none
  U32 RAMSize = 0;    // in bytes, 0 none
};

// Every device of the library's list, without the first record, which stands for no device. Needs neither a probe nor a
// connection. The library reads its list for every caller at once, so that the main thread does not wait for a target.
QList<DEVICE_RECORD> ReadDeviceRecords(const VNODE_API& Api);
