#pragma once

#include <ctime>
#include <vector>

#include "program/elf/dwarf_info.h"
#include "program/elf/line_reader.h"

// Processor time spent, in clock ticks.
struct WALK_TIMES {
  std::clock_t TypeUnits = 0;
  std::clock_t Entries = 0;
  std::clock_t Files = 0;
  std::clock_t Lines = 0;
};

// Walks all units of a file once and fills the index, the lists and the source table.
class CUnitWalker {
public:
  explicit CUnitWalker(DWARF_INFO& Info) : Info(Info), Lines(Info.Reader, Info.Sources) {}

  void Walk();
  const WALK_TIMES& Times() const { return Spent; }

private:
  struct LEVEL {
    CDie Die;
    U32 Entry;
    U32 Func;  // nearest function around what the level holds, 0 for none
  };

  DWARF_INFO& Info;
  CLineReader Lines;
  WALK_TIMES Spent;
  std::vector<LEVEL> aStack;
  std::vector<U32> aTypeUnits;  // top entries, whose file tables wait for the compilation units

  void WalkSection(bool bTypes);
  void WalkUnit(const DWARF_UNIT& Header);
  bool WalkEntries(CDie Top);
  U32 Visit(const CDie& Die, U32 Parent, U32 Func);
  void ReadSources(const CDie& Top);
  void ReadTypeUnitFiles();
  void NoteLanguage(const CDie& Top);
};
