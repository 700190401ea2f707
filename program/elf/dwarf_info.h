#pragma once

#include <string>
#include <vector>

#include "program/elf/die_index.h"
#include "program/elf/elf.h"
#include "program/elf/frame_table.h"
#include "program/elf/source_table.h"

// An entry and the class or function that it belongs to.
struct DIE_OWNED {
  U32 Owner;
  U32 Entry;
};

// Numbers of the entries that the traversal picked out, in file order.
struct DIE_LISTS {
  std::vector<U32> aGlobalVars;
  std::vector<DIE_REF> aOriginsOfVars;  // abstract origins of the globals with a place, during the walk
  std::vector<U32> aFunctions;
  std::vector<U32> aInlinedFuncs;
  std::vector<U32> aTypes;
  std::vector<U32> aDeclaredTypes;  // classes that other units may define, during the walk
  std::vector<U32> aNamespaces;
  std::vector<U32> aCompUnits;
  // Sorted by owner, then in file order.
  std::vector<DIE_OWNED> aMembers;
  std::vector<DIE_OWNED> aLocals;
  std::vector<DIE_OWNED> aBases;
  U32 MarkedEntryFunc = 0;  // first function marked as the main subprogram
  U32 NamedEntryFunc = 0;   // first function named "main"
};

// Everything read from the debug information of one file.
struct DWARF_INFO {
  DWARF_INFO(const CElfImage& Image, U32 MaxEntries)
      : Sections(Image), Abbrevs(Sections), Index(MaxEntries), Reader(Sections, Index) {}
  DWARF_INFO(const DWARF_INFO&) = delete;
  DWARF_INFO& operator=(const DWARF_INFO&) = delete;

  CDebugSections Sections;
  CAbbrevTables Abbrevs;
  CDieIndex Index;
  CDieReader Reader;
  DIE_LISTS Lists;
  CSourceTable Sources;
  CFrameTable Frames;
  U32 MaxVersion = 0;
  U32 NumWanted = 0;          // entries that a list took
  bool bListsFull = false;    // a list left entries out
  U64 MaxRangeBytes = ~0ull;  // of the range list of an entry
  ELF_SRC_LANG Language = ELF_SRC_LANG_C;
  U32 EntryFunc = 0;
};
