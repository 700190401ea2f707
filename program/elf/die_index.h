#pragma once

#include <unordered_map>
#include <vector>

#include "program/elf/die.h"

// What is known of one existing debug information entry. Entries are numbered from 1; 0 is none.
struct DIE_ENTRY {
  U32 Offset = 0;
  U32 Parent = 0;
  U16 Tag = 0;
  U16 Depth = 0;
};

struct DWARF_UNIT {
  U32 Offset = 0;      // of the unit's header
  U32 TypeOffset = 0;  // of the type that a type unit describes, from the header
  U64 Signature = 0;   // of a type unit
  U32 TopEntry = 0;    // number of the unit's top entry
  I32 FileTable = -1;  // its table in CSourceTable
  U32 LowPc = 0;
  U16 Version = 0;
  U8 AddrSize = 0;
  bool bTypes = false;     // stands in .debug_types
  bool bTypeUnit = false;  // describes one type, in either section
};

// All entries that exist, in the order of the walk, found by number and by section offset.
class CDieIndex {
public:
  void BeginUnit(const DWARF_UNIT& Unit);
  DWARF_UNIT& LastUnit() { return aUnits.back(); }
  // Appends an entry of the last unit. 0 if it does not stand behind the entry before it or the numbers are used up.
  U32 Add(const DIE_ENTRY& Entry);
  void SetSpecification(U32 Entry, DIE_REF Target);
  // Call once when all entries are there.
  void ResolveSpecifications();

  U32 Count() const { return static_cast<U32>(aEntries.size()); }
  // Entry must be a number from 1 to Count().
  const DIE_ENTRY& Get(U32 Entry) const { return aEntries[Entry - 1]; }
  DIE_REF Ref(U32 Entry) const { return {Get(Entry).Offset, UnitOf(Entry).bTypes}; }
  U32 Find(DIE_REF Ref) const;
  U32 FindType(U64 Signature) const;
  const DWARF_UNIT& UnitOf(U32 Entry) const;
  DWARF_UNIT& UnitOf(U32 Entry) { return const_cast<DWARF_UNIT&>(std::as_const(*this).UnitOf(Entry)); }
  const std::vector<DWARF_UNIT>& Units() const { return aUnits; }

  U32 Specification(U32 Entry) const;
  // The entry that names this one as its specification, 0 if there is none.
  U32 Definition(U32 Entry) const;

  U32 FirstChild(U32 Entry) const;
  U32 NextSibling(U32 Entry) const;

private:
  struct PENDING {
    U32 Entry;
    DIE_REF Target;
  };

  std::vector<DIE_ENTRY> aEntries;
  std::vector<DWARF_UNIT> aUnits;
  std::vector<PENDING> aPending;
  std::unordered_map<U32, U32> Specifications;
  std::unordered_map<U32, U32> Definitions;
  std::unordered_map<U64, U32> TypeUnits;  // signature to unit
};
