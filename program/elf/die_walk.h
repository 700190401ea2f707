#pragma once

#include "program/elf/dwarf_info.h"

// Walks the entries of units from the first to the last, without recursion: each one enters the index and is shown to
// the collectors. No value is decoded that no collector asks for.
class CDieWalk {
public:
  explicit CDieWalk(DWARF_INFO& Info) : Info(Info) {}

  // All entries of the index's current unit; what is wrong with the one where it had to stop.
  DWARF_DAMAGE WalkUnit();

private:
  struct LEVEL {
    U32 Entry;
    U32 Func;  // nearest function around what the level holds, 0 for none
  };

  DWARF_INFO& Info;
  std::vector<LEVEL> aLevels;

  DWARF_DAMAGE WalkEntry(CByteCursor& Bytes, bool& bEnd);
};

// False when the opening of the file shall end. Position is that in the section of the current unit.
bool GoOnWalking(const DWARF_INFO& Info, U64 Position);
