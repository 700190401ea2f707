#pragma once

#include <unordered_map>
#include <utility>
#include <vector>

#include "program/elf/die.h"

// What is known of one existing debug information entry. Entries are numbered from 1; 0 is none.
struct DIE_ENTRY {
  U32 Offset = 0;
  U32 Parent = 0;
  U16 Tag = 0;
  U16 Depth = 0;
};

// An entry leads to another one.
struct DIE_LINK {
  U32 From;
  U32 To;
};

// All units and all entries that exist, in the order of the walk, found by number and by section offset.
class CDieIndex {
public:
  // MaxEntries is the greatest number that a handle can hold, unless a test wants to see it reached.
  explicit CDieIndex(U32 MaxEntries) : MaxEntries(MaxEntries) {}

  // All units, those of .debug_types first, before any entry; they stay where they are from then on.
  void SetUnits(std::vector<DWARF_UNIT> Units);
  const std::vector<DWARF_UNIT>& Units() const { return aUnits; }
  std::vector<DWARF_UNIT>& Units() { return aUnits; }
  // From now on entries are those of this unit. Each unit once, in order.
  void BeginUnit(DWARF_UNIT& Unit);
  const DWARF_UNIT& CurrentUnit() const { return *pCurrent; }
  // Appends an entry of the current unit and gives its number; 0 when the numbers are used up. Offsets ascend.
  U32 Add(const DIE_ENTRY& Entry) {
    if (Count() >= MaxEntries) {
      bFull = true;
      return 0;
    }
    aEntries.push_back(Entry);
    return Count();
  }
  // An entry found no number.
  bool IsFull() const { return bFull; }
  void SetSpecification(U32 Entry, DIE_REF Target) { aPending.push_back({Entry, Target}); }
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
  // The unit among whose entries the offset lies, null if there is none.
  const DWARF_UNIT* UnitAt(DIE_REF Ref) const;

  U32 Specification(U32 Entry) const;
  const std::vector<DIE_LINK>& Specifications() const { return aSpecifications; }
  // From entries without definition to theirs, each once.
  void AddDefinitions(const std::vector<DIE_LINK>& aLinks);
  // The entry that names this one as its specification or was added as its definition, 0 if there is none.
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
  DWARF_UNIT* pCurrent = nullptr;
  U32 MaxEntries;
  bool bFull = false;
  std::vector<PENDING> aPending;
  std::vector<DIE_LINK> aSpecifications;  // sorted by From, like the next
  std::vector<DIE_LINK> aDefinitions;
  std::unordered_map<U64, U32> TypeUnits;  // signature to unit

  static U32 Follow(const std::vector<DIE_LINK>& aLinks, U32 From);
};
