#include "program/elf/unit_walker.h"

#include <algorithm>
#include <cstring>

#include "program/elf/collectors.h"
#include "program/elf/die_join.h"
#include "program/elf/die_ranges.h"
#include "program/elf/reader_state.h"

namespace {

constexpr U16 FIRST_VERSION_WITH_STR_OFFSETS = 5;
constexpr U32 MAX_UNITS = 1 << 20;  // of a section; a damaged one could be full of headers without entries

ELF_SRC_LANG LanguageOfNumber(I64 Number) {
  switch (Number) {
    case DW_LANG_C:
      return ELF_SRC_LANG_C;
    case DW_LANG_C_plus_plus:
    case DW_LANG_C_plus_plus_03:
    case DW_LANG_C_plus_plus_11:
    case DW_LANG_C_plus_plus_14:
    case DW_LANG_C_plus_plus_17:
    case DW_LANG_C_plus_plus_20:
      return ELF_SRC_LANG_CPP;
    default:
      return ELF_SRC_LANG_UNKNOWN;
  }
}

ELF_SRC_LANG LanguageOfName(const char* sName) {
  if (!sName) return ELF_SRC_LANG_UNKNOWN;
  if (std::strstr(sName, ".cpp")) return ELF_SRC_LANG_CPP;
  return std::strstr(sName, ".c") ? ELF_SRC_LANG_C : ELF_SRC_LANG_UNKNOWN;
}

// Adds the time since the last call, or since it was made, to a sum.
class CStopWatch {
public:
  void AddTo(std::clock_t& Sum) {
    const std::clock_t Now = std::clock();
    Sum += Now - Start;
    Start = Now;
  }

private:
  std::clock_t Start = std::clock();
};

}  // namespace

bool CUnitWalker::Walk() {
  std::vector<DWARF_UNIT> aUnits;
  ReadHeaders(true, aUnits);
  ReadHeaders(false, aUnits);
  Info.Index.SetUnits(std::move(aUnits));
  for (DWARF_UNIT& Unit : Info.Index.Units()) {
    WalkUnit(Unit);
    if (Info.Index.IsFull()) return false;
    if (!GoOnWalking(Info, Unit.End)) return true;
  }
  ReadTypeUnitFiles();
  Info.Index.ResolveSpecifications();
  DropAbstractVars(Info);
  SortOwned(Info.Lists);
  JoinDeclarations(Info);
  LimitRanges(Info);
  if (Info.bListsFull) SendMessage("debug info has more functions, variables or types than can be listed.");
  Info.EntryFunc = FindEntryFunc(Info);
  return true;
}

void CUnitWalker::ReadHeaders(bool bTypes, std::vector<DWARF_UNIT>& aUnits) {
  const CByteCursor Section = Info.Sections.Bytes(bTypes ? DEBUG_SECTION::Types : DEBUG_SECTION::Info);
  U32 Count = 0;
  for (U32 Offset = 0; Offset < Section.Left();) {
    if (++Count > MAX_UNITS) return Info.Sections.Complain("too many units", "ReadUnitHeader", "offset", Offset);
    DWARF_UNIT Unit;
    Unit.Offset = Offset;
    Unit.bTypes = bTypes;
    DWARF_DAMAGE Damage = ReadUnitHeader(Section, Unit);
    if (!Damage.sWhat) {
      Unit.pAbbrevs = Info.Abbrevs.At(Unit.AbbrevOffset, Unit.Sizes);
      if (!Unit.pAbbrevs) Damage = {"unit has no abbreviations", "abbrev_offset", Unit.AbbrevOffset};
    }
    if (!Damage.sWhat) {
      aUnits.push_back(Unit);
    } else {
      Info.Sections.Complain(Damage.sWhat, "ReadUnitHeader", Damage.sItem, Damage.Value);
    }
    if (Unit.End <= Offset) return;
    Offset = Unit.End;
  }
}

void CUnitWalker::WalkUnit(DWARF_UNIT& Unit) {
  CStopWatch Watch;
  Info.Index.BeginUnit(Unit);
  const CDie Top = Info.Reader.LoadIn(Unit, Unit.FirstEntry);
  if (!Top) return SendMessage("Could not parse debug info for compilation unit.");
  NoteTopEntry(Unit, Top);
  const DWARF_DAMAGE Damage = Entries.WalkUnit();
  if (Info.Index.IsFull()) return;
  if (Damage.sWhat) {
    Info.Sections.Complain(Damage.sWhat, "CDieWalk::WalkUnit", Damage.sItem, Damage.Value);
    SendMessage("Could not parse debug info for compilation unit.");
  }
  Watch.AddTo(Unit.bTypeUnit ? Spent.TypeUnits : Spent.Entries);
  if (Unit.bTypeUnit || Info.Index.Count() < Unit.TopEntry) return;
  Info.Lists.aCompUnits.push_back(Unit.TopEntry);
  ReadSources(Unit, Top);
}

void CUnitWalker::NoteTopEntry(DWARF_UNIT& Unit, const CDie& Top) {
  const std::optional<I64> StrOffsetsBase = Info.Reader.Integer(Top, DW_AT_str_offsets_base);
  const U64 HeaderSize = Unit.Version >= FIRST_VERSION_WITH_STR_OFFSETS ? 2 * Unit.Sizes.Offset : 0;
  Unit.StrOffsetsBase = StrOffsetsBase ? static_cast<U64>(*StrOffsetsBase) : HeaderSize;
  std::optional<I64> AddrBase = Info.Reader.Integer(Top, DW_AT_addr_base);
  if (!AddrBase) AddrBase = Info.Reader.Integer(Top, DW_AT_GNU_addr_base);
  Unit.bAddrBase = AddrBase.has_value();
  Unit.AddrBase = static_cast<U64>(AddrBase.value_or(0));
  Unit.LowPc = static_cast<U32>(Info.Reader.Integer(Top, DW_AT_low_pc).value_or(0));
  Info.MaxVersion = std::max<U32>(Info.MaxVersion, Unit.Version);
  NoteLanguage(Top);
}

void CUnitWalker::ReadSources(DWARF_UNIT& Unit, const CDie& Top) {
  CStopWatch Watch;
  Unit.FileTable = Lines.ReadFiles(Top);
  Watch.AddTo(Spent.Files);
  Lines.ReadLines(Top);  // these can name more files
  Watch.AddTo(Spent.Lines);
  Info.Sources.AddUnit(Unit.FileTable, Unit.TopEntry);
}

// A type unit shares the file table of a compilation unit, and only that one knows the compilation directory.
void CUnitWalker::ReadTypeUnitFiles() {
  CStopWatch Watch;
  for (DWARF_UNIT& Unit : Info.Index.Units()) {
    const CDie Top = Unit.bTypeUnit ? Info.Reader.LoadIn(Unit, Unit.FirstEntry) : CDie();
    if (Top) Unit.FileTable = Lines.ReadFiles(Top);
  }
  Watch.AddTo(Spent.Files);
}

void CUnitWalker::NoteLanguage(const CDie& Top) {
  const std::optional<I64> Number = Info.Reader.Integer(Top, DW_AT_language);
  const ELF_SRC_LANG Language = Number ? LanguageOfNumber(*Number) : LanguageOfName(Info.Reader.Text(Top, DW_AT_name));
  if (Language == ELF_SRC_LANG_CPP) Info.Language = ELF_SRC_LANG_CPP;
}
