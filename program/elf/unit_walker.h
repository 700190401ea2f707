#pragma once

#include <ctime>
#include <vector>

#include "program/elf/die_walk.h"
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
  explicit CUnitWalker(DWARF_INFO& Info) : Info(Info), Entries(Info), Lines(Info.Reader, Info.Sources) {}

  // False if the file has more entries than the index has numbers for.
  bool Walk();
  const WALK_TIMES& Times() const { return Spent; }

private:
  DWARF_INFO& Info;
  CDieWalk Entries;
  CLineReader Lines;
  WALK_TIMES Spent;

  void ReadHeaders(bool bTypes, std::vector<DWARF_UNIT>& aUnits);
  void WalkUnit(DWARF_UNIT& Unit);
  void NoteTopEntry(DWARF_UNIT& Unit, const CDie& Top);
  void ReadSources(DWARF_UNIT& Unit, const CDie& Top);
  void ReadTypeUnitFiles();
  void NoteLanguage(const CDie& Top);
};
