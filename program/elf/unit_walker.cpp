#include "program/elf/unit_walker.h"

#include <cstring>

#include "program/elf/collectors.h"
#include "program/elf/reader_state.h"

namespace {

constexpr size_t MAX_DEPTH = 1000;  // levels of entries; no compiler nests so deep

// Codes that came after version 5 of the standard.
constexpr I64 LANG_CPP_17 = 0x2a;
constexpr I64 LANG_CPP_20 = 0x2b;

ELF_SRC_LANG LanguageOfNumber(I64 Number) {
  switch (Number) {
    case DW_LANG_C:
      return ELF_SRC_LANG_C;
    case DW_LANG_C_plus_plus:
    case DW_LANG_C_plus_plus_03:
    case DW_LANG_C_plus_plus_11:
    case DW_LANG_C_plus_plus_14:
    case LANG_CPP_17:
    case LANG_CPP_20:
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

void CUnitWalker::Walk() {
  if (!Info.Session.Handle()) return;
  WalkSection(true);
  WalkSection(false);
  ReadTypeUnitFiles();
  Info.Index.ResolveSpecifications();
  SortOwned(Info.Lists);
  Info.EntryFunc = FindEntryFunc(Info);
}

void CUnitWalker::WalkSection(bool bTypes) {
  U32 SectionSize = 0;
  if (!Info.Session.Section(bTypes ? ".debug_types" : ".debug_info", SectionSize)) return;
  U64 Offset = 0;
  while (true) {
    Dwarf_Error Error = nullptr;
    Dwarf_Unsigned Length = 0, TypeOffset = 0, Next = 0;
    Dwarf_Half Version = 0, AddrSize = 0, LengthSize = 0, ExtensionSize = 0, UnitType = 0;
    Dwarf_Off AbbrevOffset = 0;
    Dwarf_Sig8 Signature = {};
    const int Result =
        dwarf_next_cu_header_d(Info.Session.Handle(), !bTypes, &Length, &Version, &AbbrevOffset, &AddrSize, &LengthSize,
                               &ExtensionSize, &Signature, &TypeOffset, &Next, &UnitType, &Error);
    if (Result == DW_DLV_ERROR) Info.Session.Report(Error, "dwarf_next_cu_header_d", "offset", Offset);
    if (Result != DW_DLV_OK) return;
    DWARF_UNIT Unit;
    Unit.Offset = static_cast<U32>(Offset);
    Unit.TypeOffset = static_cast<U32>(TypeOffset);
    Unit.Signature = SignatureValue(Signature);
    Unit.Version = Version;
    Unit.AddrSize = static_cast<U8>(AddrSize);
    Unit.bTypes = bTypes;
    Unit.bTypeUnit = bTypes || UnitType == DW_UT_type;
    WalkUnit(Unit);
    if (Next <= Offset || Next > SectionSize) return;
    Offset = Next;
  }
}

void CUnitWalker::WalkUnit(const DWARF_UNIT& Header) {
  CStopWatch Watch;
  Dwarf_Error Error = nullptr;
  Dwarf_Die pTop = nullptr;
  const int Result = dwarf_siblingof_b(Info.Session.Handle(), nullptr, !Header.bTypes, &pTop, &Error);
  if (Result == DW_DLV_ERROR) Info.Session.Report(Error, "dwarf_siblingof_b", "offset", Header.Offset);
  if (Result != DW_DLV_OK) return;
  CDie Top(pTop);
  const U32 TopOffset = Info.Reader.Offset(Top);
  Info.Index.BeginUnit(Header);
  Info.MaxVersion = std::max<U32>(Info.MaxVersion, Header.Version);
  if (const std::optional<I64> LowPc = Info.Reader.Integer(Top, DW_AT_low_pc)) {
    Info.Index.LastUnit().LowPc = static_cast<U32>(*LowPc);
  }
  if (!Header.bTypeUnit) Info.Lists.aCompUnits.push_back(Info.Index.LastUnit().TopEntry);
  NoteLanguage(Top);
  if (!WalkEntries(std::move(Top))) SendMessage("Could not parse debug info for compilation unit.");
  aStack.clear();
  Info.NumTypeUnits += Header.bTypeUnit;
  Watch.AddTo(Header.bTypeUnit ? Spent.TypeUnits : Spent.Entries);
  if (Header.bTypeUnit) {
    aTypeUnits.push_back(Info.Index.LastUnit().TopEntry);
  } else if (const CDie Again = Info.Reader.Load({TopOffset, Header.bTypes})) {
    ReadSources(Again);
  }
}

bool CUnitWalker::WalkEntries(CDie Top) {
  const CDwarfSession& Session = Info.Session;
  U32 Entry = Visit(Top, 0, 0);
  if (Entry == 0) return false;
  CDie Current = std::move(Top);
  U32 Func = 0;
  while (true) {
    Dwarf_Error Error = nullptr;
    Dwarf_Die pNext = nullptr;
    int Result = dwarf_child(Current.Get(), &pNext, &Error);
    if (Result == DW_DLV_OK) {
      if (aStack.size() >= MAX_DEPTH) {
        dwarf_dealloc_die(pNext);
        return false;
      }
      if (IsFunctionTag(Info.Index.Get(Entry).Tag)) Func = Entry;
      aStack.push_back({std::move(Current), Entry, Func});
    }
    while (Result == DW_DLV_NO_ENTRY && !aStack.empty()) {
      Result = dwarf_siblingof_b(Session.Handle(), Current.Get(), dwarf_get_die_infotypes_flag(Current.Get()), &pNext,
                                 &Error);
      if (Result != DW_DLV_NO_ENTRY) break;
      Current = std::move(aStack.back().Die);
      aStack.pop_back();
      Func = aStack.empty() ? 0 : aStack.back().Func;
    }
    if (Result == DW_DLV_ERROR) {
      Session.Report(Error, "dwarf_siblingof_b", "offset", Info.Index.Get(Entry).Offset);
      return false;
    }
    if (Result != DW_DLV_OK) return true;
    Current = CDie(pNext);
    Entry = Visit(Current, aStack.back().Entry, Func);
    if (Entry == 0) return false;
  }
}

U32 CUnitWalker::Visit(const CDie& Die, U32 Parent, U32 Func) {
  DIE_ENTRY Entry;
  Entry.Offset = Info.Reader.Offset(Die);
  Entry.Parent = Parent;
  Entry.Tag = static_cast<U16>(Info.Reader.Tag(Die));
  Entry.Depth = static_cast<U16>(aStack.size());
  const U32 Number = Info.Index.Add(Entry);
  if (Number == 0) return 0;
  const bool bWanted = Collect(Info, Die, Number, Entry.Tag, Func);
  if (bWanted || Parent == 0) ++Info.NumWanted;
  return Number;
}

void CUnitWalker::ReadSources(const CDie& Top) {
  CStopWatch Watch;
  DWARF_UNIT& Unit = Info.Index.LastUnit();
  Unit.FileTable = Lines.ReadFiles(Top);
  if (Unit.FileTable >= 0) {
    for (const I32 File : Info.Sources.FilesOf(Unit.FileTable)) Info.Sources.AddUnit(File, Unit.TopEntry);
  }
  Watch.AddTo(Spent.Files);
  Lines.ReadLines(Top);
  Watch.AddTo(Spent.Lines);
}

// A type unit shares the file table of a compilation unit, and only that one knows the compilation directory.
void CUnitWalker::ReadTypeUnitFiles() {
  CStopWatch Watch;
  for (const U32 TopEntry : aTypeUnits) {
    const CDie Top = TopEntry <= Info.Index.Count() ? Info.Reader.Load(Info.Index.Ref(TopEntry)) : CDie();
    if (Top) Info.Index.UnitOf(TopEntry).FileTable = Lines.ReadFiles(Top);
  }
  Watch.AddTo(Spent.Files);
}

void CUnitWalker::NoteLanguage(const CDie& Top) {
  const std::optional<I64> Number = Info.Reader.Integer(Top, DW_AT_language);
  const ELF_SRC_LANG Language = Number ? LanguageOfNumber(*Number) : LanguageOfName(Info.Reader.Text(Top, DW_AT_name));
  if (Language == ELF_SRC_LANG_CPP) Info.Language = ELF_SRC_LANG_CPP;
}
