// Queries about debug information entries: tree, attributes and scopes.
#include "program/elf/die_lookup.h"
#include "program/elf/elf_file.h"
#include "program/elf/handle.h"
#include "program/elf/reader_state.h"

namespace {

// Answers with the entry that a lookup finds for the handle's entry.
template <typename LOOKUP>
ELF_SYM_HANDLE Related(ELF_SYM_HANDLE hSym, LOOKUP Lookup) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  return pFile ? DieHandle(Lookup(*pFile->pDwarf, Entry)) : 0;
}

ELF_SYM_HANDLE RelatedBy(ELF_SYM_HANDLE hSym, U32 (CDieLookup::*pLookup)(U32) const) {
  return Related(hSym, [=](const DWARF_INFO& Info, U32 Entry) { return (CDieLookup(Info).*pLookup)(Entry); });
}

}  // namespace

ELF_SYM_HANDLE ELF_GetParent(ELF_SYM_HANDLE hSym) {
  return Related(hSym, [](const DWARF_INFO& Info, U32 Entry) { return Info.Index.Get(Entry).Parent; });
}

ELF_SYM_HANDLE ELF_GetFirstChild(ELF_SYM_HANDLE hSym) {
  return Related(hSym, [](const DWARF_INFO& Info, U32 Entry) { return Info.Index.FirstChild(Entry); });
}

ELF_SYM_HANDLE ELF_GetNextSibling(ELF_SYM_HANDLE hSym) {
  return Related(hSym, [](const DWARF_INFO& Info, U32 Entry) { return Info.Index.NextSibling(Entry); });
}

ELF_SYM_HANDLE ELF_GetDieByOffset(const ELF_FILE* pFile, U32 Offset, bool bTypes) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded && pLoaded->pDwarf ? DieHandle(pLoaded->pDwarf->Index.Find({Offset, bTypes})) : 0;
}

int ELF_GetAttrValue(ELF_SYM_HANDLE hSym, U32 Attr, I64* pOut) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return -1;
  const std::optional<I64> Value = CDieLookup(*pFile->pDwarf).Integer(Entry, Attr);
  if (!Value) return -1;
  *pOut = *Value;
  return 0;
}

ELF_SYM_HANDLE ELF_GetAttrDie(ELF_SYM_HANDLE hSym, U32 Attr) {
  return Related(hSym, [=](const DWARF_INFO& Info, U32 Entry) { return CDieLookup(Info).Reference(Entry, Attr); });
}

ELF_SYM_HANDLE ELF_GetCompUnit(ELF_SYM_HANDLE hSym) {
  return Related(hSym, [](const DWARF_INFO& Info, U32 Entry) { return Info.Index.UnitOf(Entry).TopEntry; });
}

ELF_SYM_HANDLE ELF_GetContainingClass(ELF_SYM_HANDLE hSym) {
  return RelatedBy(hSym, &CDieLookup::ContainingClass);
}
ELF_SYM_HANDLE ELF_GetContainingFunc(ELF_SYM_HANDLE hSym) {
  return RelatedBy(hSym, &CDieLookup::ContainingFunc);
}
ELF_SYM_HANDLE ELF_GetContainingNamespace(ELF_SYM_HANDLE hSym) {
  return RelatedBy(hSym, &CDieLookup::ContainingNamespace);
}
ELF_SYM_HANDLE ELF_GetContainingScope(ELF_SYM_HANDLE hSym) {
  return RelatedBy(hSym, &CDieLookup::ContainingScope);
}
ELF_SYM_HANDLE ELF_GetAbstractOrigin(ELF_SYM_HANDLE hSym) {
  return RelatedBy(hSym, &CDieLookup::AbstractOrigin);
}
ELF_SYM_HANDLE ELF_GetDefinition(ELF_SYM_HANDLE hSym) {
  return RelatedBy(hSym, &CDieLookup::Definition);
}

const char* ELF_GetDeclFile(ELF_SYM_HANDLE hSym) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  return pFile ? CDieLookup(*pFile->pDwarf).DeclFile(Entry) : nullptr;
}

const char* ELF_GetCompDir(ELF_SYM_HANDLE hSym) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return nullptr;
  const DWARF_INFO& Info = *pFile->pDwarf;
  const CDie Unit = Info.Reader.Load(Info.Index.Ref(Info.Index.UnitOf(Entry).TopEntry));
  return Unit ? Info.Reader.Text(Unit, DW_AT_comp_dir) : nullptr;
}
