#include "program/elf/die_walk.h"

#include "program/elf/collectors.h"
#include "program/elf/reader_state.h"

namespace {

constexpr size_t MAX_DEPTH = 1000;        // levels of entries; no compiler nests so deep
constexpr U32 ENTRIES_OF_TURN = 1 << 14;  // between two questions whether to go on; some milliseconds

}  // namespace

bool GoOnWalking(const DWARF_INFO& Info, U64 Position) {
  const U64 NumOfTypes = Info.Sections.Bytes(DEBUG_SECTION::Types).Left();
  const U64 NumBefore = Info.Index.CurrentUnit().bTypes ? 0 : NumOfTypes;
  return GoOnOpening(NumBefore + Position, NumOfTypes + Info.Sections.Bytes(DEBUG_SECTION::Info).Left());
}

DWARF_DAMAGE CDieWalk::WalkUnit() {
  const DWARF_UNIT& Unit = Info.Index.CurrentUnit();
  CByteCursor Bytes = Info.Sections.Bytes(Unit.bTypes ? DEBUG_SECTION::Types : DEBUG_SECTION::Info);
  Bytes.Skip(Unit.FirstEntry);
  Bytes.Limit(Unit.End - Unit.FirstEntry);
  aLevels.clear();
  // Levels that are open at the end of the unit close there.
  for (bool bEnd = false; !bEnd && Bytes.More();) {
    const DWARF_DAMAGE Damage = WalkEntry(Bytes, bEnd);
    if (Damage.sWhat) return Damage;
    if (Info.Index.Count() % ENTRIES_OF_TURN == 0 && !GoOnWalking(Info, Bytes.Position())) break;
  }
  return {};
}

// One entry, or the end of a level. bEnd becomes true at the end of the unit's top entry.
DWARF_DAMAGE CDieWalk::WalkEntry(CByteCursor& Bytes, bool& bEnd) {
  const DWARF_UNIT& Unit = Info.Index.CurrentUnit();
  const U64 Offset = Bytes.Position();
  const U64 Code = Bytes.Leb();
  if (Code == 0) {
    if (!aLevels.empty()) aLevels.pop_back();
    bEnd = aLevels.empty();
    return Bytes.Ok() ? DWARF_DAMAGE() : DWARF_DAMAGE{"entry is cut off", "offset", Offset};
  }
  const ABBREV* pAbbrev = Unit.pAbbrevs->Find(Code);
  if (!pAbbrev) return {"abbreviation is missing", "offset", Offset};
  const CDie Die(Unit, *pAbbrev, static_cast<U32>(Bytes.Position()));
  Unit.pAbbrevs->Skip(*pAbbrev, Bytes);
  if (!pAbbrev->bKnown) return {"abbreviation has an unknown form", "offset", Offset};
  if (!Bytes.Ok()) return {"entry is cut off", "offset", Offset};

  const LEVEL Around = aLevels.empty() ? LEVEL{0, 0} : aLevels.back();
  const U16 Depth = static_cast<U16>(aLevels.size());
  const U32 Entry = Info.Index.Add({static_cast<U32>(Offset), Around.Entry, pAbbrev->Tag, Depth});
  if (Entry == 0) return {"too many entries", "offset", Offset};
  Info.NumWanted += Collect(Info, Die, Entry, Around.Func) || Around.Entry == 0;
  if (pAbbrev->bChildren) {
    if (aLevels.size() >= MAX_DEPTH) return {"entries are nested too deep", "offset", Offset};
    aLevels.push_back({Entry, IsFunctionTag(pAbbrev->Tag) ? Entry : Around.Func});
  }
  bEnd = aLevels.empty();
  return {};
}
