#pragma once

#include "program/elf/dwarf_info.h"

// Compilers describe a class whole in some units and only declare it in others. Leads each declaration to a definition
// with the same qualified name, one of its own unit if there is one. Call once when specifications are resolved.
void JoinDeclarations(DWARF_INFO& Info);

// The entries, in whatever unit, that define static members and member functions: one table of a whole file.
class CMemberDefinitions {
public:
  struct KEYED_ENTRY {
    U64 Key;
    U32 Entry;
  };

  // The declarations of Info have to be joined. It takes about a second per 100 MB of debug information of C++, so that
  // it is made when the first one is asked.
  explicit CMemberDefinitions(const DWARF_INFO& Info);
  // Of a member that is only declared where its class is described; 0 if nothing defines it.
  U32 Find(const DIE_OWNED& Member) const;

private:
  const DWARF_INFO& Info;
  std::vector<KEYED_ENTRY> aDefined;  // sorted
};
