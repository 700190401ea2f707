#pragma once

#include <QList>
#include <QMetaType>

#include "base/types.h"

// Start and size of a piece of the 32-bit address space.
struct CAddrRange {
  U32 Start = 0;
  U32 Size = 0;

  // First address behind the range, saturated at 0xFFFFFFFF.
  U32 End() const { return Size > 0xFFFFFFFFu - Start ? 0xFFFFFFFFu : Start + Size; }
  // A range with start 0 or size 0 stands for no range.
  bool IsNone() const { return Start == 0 || Size == 0; }
  bool Contains(U32 Addr) const { return Addr >= Start && Addr < End(); }
  bool operator==(const CAddrRange&) const = default;
};

using QAddrRanges = QList<CAddrRange>;
using QAddrList = QList<U32>;

Q_DECLARE_METATYPE(CAddrRange)
