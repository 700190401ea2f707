#pragma once

#include <string>
#include <vector>

#include "base/types.h"

struct GDB_MEMORY_REGION {
  enum class KIND { RAM, ROM, FLASH } Kind = KIND::RAM;
  U32 Start = 0;
  U64 Size = 0;       // bytes; ends within the address space
  U32 BlockSize = 0;  // of flash: what is erased at once

  bool Contains(U32 Addr) const { return Addr >= Start && Addr - Start < Size; }
};

// What a server says of its target's memories.
struct GDB_MEMORY_MAP {
  std::vector<GDB_MEMORY_REGION> Regions;  // disjoint, ascending

  // Null when the map does not have the address.
  const GDB_MEMORY_REGION* Find(U32 Addr) const;
  const GDB_MEMORY_REGION* FindFlash(U32 Addr) const;
  // The first byte of flash at Addr or above; 2^32 when there is none.
  U64 NextFlash(U32 Addr) const;
};

// False with the reason in *psError.
bool ParseMemoryMap(std::string sText, GDB_MEMORY_MAP* pMap, std::string* psError);
