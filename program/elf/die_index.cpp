#include "program/elf/die_index.h"

#include <algorithm>

namespace {

// The densest files of compilers have an entry in 9 bytes. More only costs a move of the table.
constexpr U32 BYTES_PER_ENTRY = 9;

void SortByFrom(std::vector<DIE_LINK>& aLinks) {
  std::stable_sort(aLinks.begin(), aLinks.end(), [](const DIE_LINK& A, const DIE_LINK& B) { return A.From < B.From; });
}

}  // namespace

void CDieIndex::SetUnits(std::vector<DWARF_UNIT> Units) {
  aUnits = std::move(Units);
  U64 NumBytes = 0;
  for (const DWARF_UNIT& Unit : aUnits) {
    NumBytes += Unit.End - Unit.Offset;
    if (Unit.bTypeUnit) TypeUnits.emplace(Unit.Signature, static_cast<U32>(&Unit - aUnits.data()));
  }
  aEntries.reserve(std::min<U64>(NumBytes / BYTES_PER_ENTRY, MaxEntries));
}

void CDieIndex::BeginUnit(DWARF_UNIT& Unit) {
  pCurrent = &Unit;
  Unit.TopEntry = Count() + 1;
}

void CDieIndex::ResolveSpecifications() {
  for (const PENDING& Pending : aPending) {
    const U32 Target = Find(Pending.Target);
    if (Target == 0 || Target == Pending.Entry) continue;
    aSpecifications.push_back({Pending.Entry, Target});
    aDefinitions.push_back({Target, Pending.Entry});
  }
  SortByFrom(aSpecifications);
  SortByFrom(aDefinitions);
  aPending = {};
}

void CDieIndex::AddDefinitions(const std::vector<DIE_LINK>& aLinks) {
  if (aLinks.empty()) return;
  aDefinitions.insert(aDefinitions.end(), aLinks.begin(), aLinks.end());
  SortByFrom(aDefinitions);
}

// The last one where an entry has several.
U32 CDieIndex::Follow(const std::vector<DIE_LINK>& aLinks, U32 From) {
  const auto Above = std::upper_bound(aLinks.begin(), aLinks.end(), From,
                                      [](U32 Wanted, const DIE_LINK& Link) { return Wanted < Link.From; });
  return Above != aLinks.begin() && std::prev(Above)->From == From ? std::prev(Above)->To : 0;
}

const DWARF_UNIT& CDieIndex::UnitOf(U32 Entry) const {
  // A unit without entries has the number of the next unit's first one.
  const auto Above = std::upper_bound(aUnits.begin(), aUnits.end(), Entry,
                                      [](U32 Number, const DWARF_UNIT& Unit) { return Number < Unit.TopEntry; });
  return *std::prev(Above);
}

const DWARF_UNIT* CDieIndex::UnitAt(DIE_REF Ref) const {
  const auto Above =
      std::upper_bound(aUnits.begin(), aUnits.end(), Ref, [](const DIE_REF& Wanted, const DWARF_UNIT& Unit) {
        return Wanted.bTypes != Unit.bTypes ? Wanted.bTypes : Wanted.Offset < Unit.Offset;
      });
  if (Above == aUnits.begin()) return nullptr;
  const DWARF_UNIT& Unit = *std::prev(Above);
  return Unit.bTypes == Ref.bTypes && Ref.Offset >= Unit.FirstEntry && Ref.Offset < Unit.End ? &Unit : nullptr;
}

U32 CDieIndex::Find(DIE_REF Ref) const {
  const DWARF_UNIT* pUnit = UnitAt(Ref);
  if (!pUnit) return 0;
  const bool bLast = pUnit == &aUnits.back();
  const U32 End = bLast ? Count() + 1 : std::min((pUnit + 1)->TopEntry, Count() + 1);
  const auto First = aEntries.begin() + (std::min(pUnit->TopEntry, End) - 1);
  const auto Last = aEntries.begin() + (End - 1);
  const auto At = std::lower_bound(First, Last, Ref.Offset,
                                   [](const DIE_ENTRY& Entry, U32 Offset) { return Entry.Offset < Offset; });
  return At != Last && At->Offset == Ref.Offset ? static_cast<U32>(At - aEntries.begin()) + 1 : 0;
}

U32 CDieIndex::FindType(U64 Signature) const {
  const auto At = TypeUnits.find(Signature);
  if (At == TypeUnits.end()) return 0;
  const DWARF_UNIT& Unit = aUnits[At->second];
  return Find({Unit.Offset + Unit.TypeOffset, Unit.bTypes});
}

U32 CDieIndex::Specification(U32 Entry) const {
  return Follow(aSpecifications, Entry);
}

U32 CDieIndex::Definition(U32 Entry) const {
  return Follow(aDefinitions, Entry);
}

U32 CDieIndex::FirstChild(U32 Entry) const {
  return Entry < Count() && Get(Entry + 1).Parent == Entry ? Entry + 1 : 0;
}

U32 CDieIndex::NextSibling(U32 Entry) const {
  const U32 Depth = Get(Entry).Depth;
  for (U32 Next = Entry + 1; Next <= Count() && Get(Next).Depth >= Depth; ++Next) {
    if (Get(Next).Depth == Depth) return Get(Next).Parent == Get(Entry).Parent && Depth != 0 ? Next : 0;
  }
  return 0;
}
