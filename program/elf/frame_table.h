#pragma once

#include <vector>

#include "program/elf/dwarf_session.h"

struct FRAME_ENTRY {
  U32 Low = 0;
  U32 High = 0;
};

// Code ranges of the frame description entries of .debug_frame.
class CFrameTable {
public:
  void Load(const CDwarfSession& Session);
  const std::vector<FRAME_ENTRY>& Entries() const { return aEntries; }
  U32 NumCies() const { return CieCount; }
  U32 ReturnRegister() const { return ReturnReg; }

private:
  std::vector<FRAME_ENTRY> aEntries;
  U32 CieCount = 0;
  U32 ReturnReg = 0;
};
