#pragma once

#include "base/addr_range.h"
#include "base/mem_block.h"

// Pieces of target memory known without asking the target. No lock.
class CImageStore {
public:
  // -1 and an empty store when a block's size and its data disagree or it runs over the address space.
  int Set(const QMemBlocks& NewBlocks);
  void Clear() { Blocks.clear(); }
  const QMemBlocks& GetBlocks() const { return Blocks; }
  CAddrRange GetRange(bool bExecView) const;
  // Bytes that one block holds wholly, by run-time address, else by load address.
  bool Read(U32 Addr, U32 NumBytes, void* pData) const;

private:
  QMemBlocks Blocks;
};
