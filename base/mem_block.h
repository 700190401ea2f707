#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>

#include "base/types.h"

// One contiguous piece of target memory, as a data file or a program image gives it. The bytes are shared by reference
// count, so a block is passed by value.
struct CMemBlock {
  U32 Addr = 0;       // load address
  U32 NumBytes = 0;   // size in bytes, equal to Data.size() in every block a reader makes
  U32 VirtAddr = 0;   // run-time address; equal to Addr except in ELF segments
  QByteArray Data;
  QByteArray Status;  // status bytes, one per byte of Data; empty where nothing was read from a target
};

using QMemBlocks = QList<CMemBlock>;

Q_DECLARE_METATYPE(CMemBlock)
