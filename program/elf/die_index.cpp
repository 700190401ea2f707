#include "program/elf/die_index.h"

#include <algorithm>

#include "program/elf/handle.h"

void CDieIndex::BeginUnit(const DWARF_UNIT& Unit) {
  aUnits.push_back(Unit);
  aUnits.back().TopEntry = Count() + 1;
  if (Unit.bTypeUnit) TypeUnits.emplace(Unit.Signature, static_cast<U32>(aUnits.size() - 1));
}

U32 CDieIndex::Add(const DIE_ENTRY& Entry) {
  const bool bFirst = Count() + 1 == aUnits.back().TopEntry;
  const U32 Before = bFirst ? aUnits.back().Offset : aEntries.back().Offset;
  if (Entry.Offset <= Before || Count() >= MAX_HANDLE_NUMBER) return 0;
  aEntries.push_back(Entry);
  return Count();
}

void CDieIndex::SetSpecification(U32 Entry, DIE_REF Target) {
  aPending.push_back({Entry, Target});
}

void CDieIndex::ResolveSpecifications() {
  for (const PENDING& Pending : aPending) {
    const U32 Target = Find(Pending.Target);
    if (Target == 0 || Target == Pending.Entry) continue;
    Specifications[Pending.Entry] = Target;
    Definitions[Target] = Pending.Entry;
  }
  aPending.clear();
}

const DWARF_UNIT& CDieIndex::UnitOf(U32 Entry) const {
  auto Above = std::upper_bound(aUnits.begin(), aUnits.end(), Entry,
                                [](U32 Number, const DWARF_UNIT& Unit) { return Number < Unit.TopEntry; });
  return *std::prev(Above);
}

U32 CDieIndex::Find(DIE_REF Ref) const {
  // The units of .debug_types were walked first, each section in file order.
  auto Above = std::upper_bound(aUnits.begin(), aUnits.end(), Ref, [](const DIE_REF& Wanted, const DWARF_UNIT& Unit) {
    return Wanted.bTypes != Unit.bTypes ? Wanted.bTypes : Wanted.Offset < Unit.Offset;
  });
  if (Above == aUnits.begin() || std::prev(Above)->bTypes != Ref.bTypes) return 0;
  const auto First = aEntries.begin() + (std::prev(Above)->TopEntry - 1);
  const auto Last = Above == aUnits.end() ? aEntries.end() : aEntries.begin() + (Above->TopEntry - 1);
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
  const auto At = Specifications.find(Entry);
  return At == Specifications.end() ? 0 : At->second;
}

U32 CDieIndex::Definition(U32 Entry) const {
  const auto At = Definitions.find(Entry);
  return At == Definitions.end() ? 0 : At->second;
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
