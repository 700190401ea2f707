#pragma once

#include <vector>

#include "base/addr_range.h"

struct ELF_FILE;

// The code ranges for which the program has call frame information.
class CCfiBlocks {
public:
  void Clear() { m_Blocks.clear(); }
  void Build(const ELF_FILE* pElf);
  U32 Count() const { return static_cast<U32>(m_Blocks.size()); }
  // None if no block covers the address.
  CAddrRange Find(U32 Addr) const;

private:
  std::vector<CAddrRange> m_Blocks;  // sorted, one for each start
};
