// Lists of entries, source files and lines, and frame description entries.
#include <cstring>

#include "program/elf/elf_file.h"
#include "program/elf/handle.h"
#include "program/elf/reader_state.h"

namespace {

const char RTT_BLOCK_NAME[] = "_MORVEK_RTT";

const DWARF_INFO* DwarfOf(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->pDwarf.get() : nullptr;
}

using LIST = std::vector<U32> DIE_LISTS::*;

U32 ListSize(const ELF_FILE* pFile, LIST pList) {
  const DWARF_INFO* pInfo = DwarfOf(pFile);
  return pInfo ? static_cast<U32>((pInfo->Lists.*pList).size()) : 0;
}

ELF_SYM_HANDLE ListEntry(const ELF_FILE* pFile, LIST pList, U32 Index) {
  return Index < ListSize(pFile, pList) ? DieHandle((pFile->pDwarf->Lists.*pList)[Index]) : 0;
}

const SRC_LINE* LineOf(const ELF_FILE* pFile, U32 Index) {
  const DWARF_INFO* pInfo = DwarfOf(pFile);
  return pInfo && Index < pInfo->Sources.Lines().size() ? &pInfo->Sources.Lines()[Index] : nullptr;
}

}  // namespace

U32 ELF_GetNumGlobalVars(const ELF_FILE* pFile) {
  return ListSize(pFile, &DIE_LISTS::aGlobalVars);
}
ELF_SYM_HANDLE ELF_GetGlobalVar(const ELF_FILE* pFile, U32 Index) {
  return ListEntry(pFile, &DIE_LISTS::aGlobalVars, Index);
}
U32 ELF_GetNumFunctions(const ELF_FILE* pFile) {
  return ListSize(pFile, &DIE_LISTS::aFunctions);
}
ELF_SYM_HANDLE ELF_GetFunction(const ELF_FILE* pFile, U32 Index) {
  return ListEntry(pFile, &DIE_LISTS::aFunctions, Index);
}
U32 ELF_GetNumInlinedFuncs(const ELF_FILE* pFile) {
  return ListSize(pFile, &DIE_LISTS::aInlinedFuncs);
}
ELF_SYM_HANDLE ELF_GetInlinedFunc(const ELF_FILE* pFile, U32 Index) {
  return ListEntry(pFile, &DIE_LISTS::aInlinedFuncs, Index);
}
U32 ELF_GetNumTypes(const ELF_FILE* pFile) {
  return ListSize(pFile, &DIE_LISTS::aTypes);
}
ELF_SYM_HANDLE ELF_GetTypeEntry(const ELF_FILE* pFile, U32 Index) {
  return ListEntry(pFile, &DIE_LISTS::aTypes, Index);
}
U32 ELF_GetNumNamespaces(const ELF_FILE* pFile) {
  return ListSize(pFile, &DIE_LISTS::aNamespaces);
}
ELF_SYM_HANDLE ELF_GetNamespace(const ELF_FILE* pFile, U32 Index) {
  return ListEntry(pFile, &DIE_LISTS::aNamespaces, Index);
}

ELF_SYM_HANDLE ELF_GetEntryFunc(const ELF_FILE* pFile) {
  const DWARF_INFO* pInfo = DwarfOf(pFile);
  return pInfo ? DieHandle(pInfo->EntryFunc) : 0;
}

ELF_SYM_HANDLE ELF_FindRttControlBlock(const ELF_FILE* pFile) {
  for (U32 i = 0; i < ELF_GetNumGlobalVars(pFile); ++i) {
    const ELF_SYM_HANDLE hVar = ELF_GetGlobalVar(pFile, i);
    const char* sName = ELF_GetName(hVar);
    if (sName && std::strcmp(sName, RTT_BLOCK_NAME) == 0) return hVar;
  }
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  const I32 Index = pLoaded ? pLoaded->Symbols.FindName(RTT_BLOCK_NAME) : -1;
  return Index >= 0 ? ELF_GetSymbolHandle(pFile, static_cast<U32>(Index)) : 0;
}

U32 ELF_GetNumSrcFiles(const ELF_FILE* pFile) {
  const DWARF_INFO* pInfo = DwarfOf(pFile);
  return pInfo ? pInfo->Sources.NumFiles() : 0;
}

const char* ELF_GetSrcFile(const ELF_FILE* pFile, U32 Index) {
  const DWARF_INFO* pInfo = DwarfOf(pFile);
  return pInfo ? pInfo->Sources.Path(Index) : nullptr;
}

U32 ELF_GetSrcFileNumUnits(const ELF_FILE* pFile, U32 Index) {
  return Index < ELF_GetNumSrcFiles(pFile) ? static_cast<U32>(pFile->pDwarf->Sources.UnitsOf(Index).size()) : 0;
}

ELF_SYM_HANDLE ELF_GetSrcFileUnit(const ELF_FILE* pFile, U32 Index, U32 Unit) {
  return Unit < ELF_GetSrcFileNumUnits(pFile, Index) ? DieHandle(pFile->pDwarf->Sources.UnitsOf(Index)[Unit]) : 0;
}

U32 ELF_GetNumSrcLines(const ELF_FILE* pFile) {
  const DWARF_INFO* pInfo = DwarfOf(pFile);
  return pInfo ? static_cast<U32>(pInfo->Sources.Lines().size()) : 0;
}

U32 ELF_GetSrcLineAddr(const ELF_FILE* pFile, U32 Index) {
  const SRC_LINE* pLine = LineOf(pFile, Index);
  if (!pLine) return INVALID_ADDR;
  return pLine->Flags & (ELF_LINE_END_SEQUENCE | ELF_LINE_WITHOUT_CODE) ? EndToTarget(pLine->Addr)
                                                                        : AddrToTarget(pLine->Addr);
}

I32 ELF_GetSrcLineNumber(const ELF_FILE* pFile, U32 Index) {
  const SRC_LINE* pLine = LineOf(pFile, Index);
  return pLine ? static_cast<I32>(pLine->Line) : -1;
}

I32 ELF_GetSrcLineColumn(const ELF_FILE* pFile, U32 Index) {
  const SRC_LINE* pLine = LineOf(pFile, Index);
  return pLine ? static_cast<I32>(pLine->Column) : -1;
}

I32 ELF_GetSrcLineFileIndex(const ELF_FILE* pFile, U32 Index) {
  const SRC_LINE* pLine = LineOf(pFile, Index);
  return pLine ? pLine->File : -1;
}

const char* ELF_GetSrcLineFile(const ELF_FILE* pFile, U32 Index) {
  const I32 File = ELF_GetSrcLineFileIndex(pFile, Index);
  return File >= 0 ? ELF_GetSrcFile(pFile, static_cast<U32>(File)) : nullptr;
}

U32 ELF_GetSrcLineFlags(const ELF_FILE* pFile, U32 Index) {
  const SRC_LINE* pLine = LineOf(pFile, Index);
  return pLine ? pLine->Flags : 0;
}
