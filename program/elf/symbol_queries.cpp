// Queries about ELF symbols, and those that both kinds of handle answer.
#include <algorithm>

#include "program/elf/base_type_name.h"
#include "program/elf/die_lookup.h"
#include "program/elf/die_ranges.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_file.h"
#include "program/elf/handle.h"
#include "program/elf/reader_state.h"

namespace {

constexpr U32 MAX_CODE_SIZE = 10000001;  // bytes: an entry that spans as much has no size

U32 HandleKind(ELF_SYM_HANDLE hSym) {
  const U32 Low = static_cast<U32>(hSym);
  const bool bValid = hSym >> 32 == ELF_HANDLE_MAGIC && (Low >> HANDLE_NUMBER_BITS & 7) == 0;
  return bValid ? Low >> 29 : static_cast<U32>(ELF_HANDLE_NONE);
}

const ELF_SYMBOL* SymbolOf(ELF_SYM_HANDLE hSym) {
  U32 Index;
  const ELF_FILE* pFile = FileOfSymbol(hSym, Index);
  return pFile ? pFile->Symbols.Get(Index) : nullptr;
}

U32 CodeSize(const DWARF_INFO& Info, U32 Entry) {
  U32 Lowest = INVALID_ADDR, Highest = 0;
  for (const ADDR_RANGE& Range : RangesOf(Info, Entry)) {
    if (Range.Low == Range.High) continue;
    Lowest = std::min(Lowest, Range.Low);
    Highest = std::max(Highest, Range.High);
  }
  return Highest > Lowest && Highest - Lowest < MAX_CODE_SIZE ? Highest - Lowest : 0;
}

// End of a range, which has the Thumb bit where its start has it. An empty range stays empty at the edge of what moves.
U32 RangeEndToTarget(U32 Low, U32 High, U32 ThumbBit) {
  return Low == High ? AddrToTarget(Low) : EndToTarget(High - ThumbBit) + ThumbBit;
}

U32 SymbolEndToTarget(const ELF_SYMBOL& Symbol) {
  const U32 ThumbBit = Symbol.IsFunction() ? Symbol.Value & 1u : 0;
  return RangeEndToTarget(Symbol.Value, Symbol.Value + Symbol.Size, ThumbBit);
}

// The ranges of the entry asked last: a caller takes number, lows and highs one after the other.
const std::vector<ADDR_RANGE>& RangesOfHandle(ELF_SYM_HANDLE hSym) {
  static const std::vector<ADDR_RANGE> aNone;
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return aNone;
  if (pFile->hLastRanges != hSym) pFile->aLastRanges = RangesOf(*pFile->pDwarf, Entry);
  pFile->hLastRanges = hSym;
  return pFile->aLastRanges;
}

}  // namespace

const ELF_FILE* FileOfDie(ELF_SYM_HANDLE hSym, U32& Entry) {
  if (HandleKind(hSym) != ELF_HANDLE_DWARF) return nullptr;
  const ELF_FILE* pFile = LoadedFile(ReaderState().pFile.get());
  Entry = static_cast<U32>(hSym) & MAX_HANDLE_NUMBER;
  return pFile && pFile->pDwarf && Entry != 0 && Entry <= pFile->pDwarf->Index.Count() ? pFile : nullptr;
}

const ELF_FILE* FileOfSymbol(ELF_SYM_HANDLE hSym, U32& Index) {
  if (HandleKind(hSym) != ELF_HANDLE_SYMBOL) return nullptr;
  const ELF_FILE* pFile = LoadedFile(ReaderState().pFile.get());
  Index = static_cast<U32>(hSym) & MAX_HANDLE_NUMBER;
  return pFile && Index < pFile->Symbols.Count() ? pFile : nullptr;
}

U32 ELF_GetNumSymbols(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Symbols.Count() : 0;
}

ELF_SYM_HANDLE ELF_GetSymbolHandle(const ELF_FILE* pFile, U32 Index) {
  return Index < ELF_GetNumSymbols(pFile) && Index <= MAX_HANDLE_NUMBER ? MakeHandle(ELF_HANDLE_SYMBOL, Index) : 0;
}

I32 ELF_FindFuncSymbol(const ELF_FILE* pFile, U32 Addr, bool bExact) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Symbols.FindFunction(AddrToFile(Addr), bExact) : -1;
}

I32 ELF_FindSymbolAt(const ELF_FILE* pFile, U32 Addr, I32 Type) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Symbols.FindAt(AddrToFile(Addr), Type) : -1;
}

U32 ELF_GetNumFuncSymbols(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? static_cast<U32>(pLoaded->Symbols.Functions().size()) : 0;
}

ELF_SYM_HANDLE ELF_GetFuncSymbol(const ELF_FILE* pFile, U32 Index) {
  return Index < ELF_GetNumFuncSymbols(pFile) ? ELF_GetSymbolHandle(pFile, pFile->Symbols.Functions()[Index]) : 0;
}

ELF_SYMBOL_EXTENT ELF_GetSymbolExtent(const ELF_FILE* pFile) {
  ELF_SYMBOL_EXTENT Extent;
  Extent.NumSymbols = ELF_GetNumSymbols(pFile);
  Extent.Lowest = INVALID_ADDR;
  for (U32 i = 0; i < Extent.NumSymbols; ++i) {
    const ELF_SYMBOL& Symbol = *pFile->Symbols.Get(i);
    if (!pFile->Symbols.HasAddress(Symbol)) continue;
    const bool bBeyond = Symbol.Size > INVALID_ADDR - Symbol.Value;
    Extent.Lowest = std::min(Extent.Lowest, AddrToTarget(Symbol.Value));
    Extent.Highest = std::max(Extent.Highest, bBeyond ? INVALID_ADDR : SymbolEndToTarget(Symbol));
  }
  if (Extent.Lowest > Extent.Highest) Extent.Lowest = 0;
  return Extent;
}

ELF_HANDLE_KIND ELF_GetHandleKind(ELF_SYM_HANDLE hSym) {
  U32 Number;
  if (FileOfDie(hSym, Number)) return ELF_HANDLE_DWARF;
  return FileOfSymbol(hSym, Number) ? ELF_HANDLE_SYMBOL : ELF_HANDLE_NONE;
}

U32 ELF_GetTag(ELF_SYM_HANDLE hSym) {
  U32 Entry;
  if (const ELF_FILE* pFile = FileOfDie(hSym, Entry)) return pFile->pDwarf->Index.Get(Entry).Tag;
  const ELF_SYMBOL* pSymbol = SymbolOf(hSym);
  return pSymbol ? pSymbol->Type() : ELF_TAG_INVALID;
}

U32 ELF_GetBinding(ELF_SYM_HANDLE hSym) {
  const ELF_SYMBOL* pSymbol = SymbolOf(hSym);
  return pSymbol ? pSymbol->Binding() : ELF_BINDING_NONE;
}

U32 ELF_GetValue(ELF_SYM_HANDLE hSym) {
  const ELF_SYMBOL* pSymbol = SymbolOf(hSym);
  return pSymbol ? AddrToTarget(pSymbol->Value) : 0;
}

const char* ELF_GetName(ELF_SYM_HANDLE hSym) {
  thread_local std::string sShortName;
  U32 Number;
  if (const ELF_FILE* pFile = FileOfSymbol(hSym, Number)) {
    const char* sSymbol = pFile->Symbols.Name(Number);
    return *sSymbol ? sSymbol : nullptr;
  }
  const ELF_FILE* pFile = FileOfDie(hSym, Number);
  const char* sName = pFile ? CDieLookup(*pFile->pDwarf).Name(Number) : nullptr;
  if (!sName || pFile->pDwarf->Index.Get(Number).Tag != ELF_TAG_BASE_TYPE) return sName;
  sShortName = ShortBaseTypeName(sName);
  return sShortName.c_str();
}

U32 ELF_GetSize(ELF_SYM_HANDLE hSym) {
  if (const ELF_SYMBOL* pSymbol = SymbolOf(hSym)) return pSymbol->Size;
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return 0;
  const U32 Size = CDieLookup(*pFile->pDwarf).TypeSize(Entry);
  return Size ? Size : CodeSize(*pFile->pDwarf, Entry);
}

bool ELF_IsSizeDerived(ELF_SYM_HANDLE hSym) {
  const ELF_SYMBOL* pSymbol = SymbolOf(hSym);
  return pSymbol && pSymbol->bDerivedSize;
}

I32 ELF_GetSectionIndex(ELF_SYM_HANDLE hSym) {
  if (const ELF_SYMBOL* pSymbol = SymbolOf(hSym)) return pSymbol->Section;
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return -1;
  const bool bTypes = pFile->pDwarf->Index.UnitOf(Entry).bTypes;
  return pFile->pDwarf->Sections.IndexOf(bTypes ? DEBUG_SECTION::Types : DEBUG_SECTION::Info);
}

U32 ELF_GetNumRanges(ELF_SYM_HANDLE hSym) {
  return SymbolOf(hSym) ? 1 : static_cast<U32>(RangesOfHandle(hSym).size());
}

U32 ELF_GetRangeLow(ELF_SYM_HANDLE hSym, U32 Index) {
  if (const ELF_SYMBOL* pSymbol = SymbolOf(hSym)) return Index == 0 ? AddrToTarget(pSymbol->Value) : INVALID_ADDR;
  const std::vector<ADDR_RANGE>& aRanges = RangesOfHandle(hSym);
  return Index < aRanges.size() ? AddrToTarget(aRanges[Index].Low) : INVALID_ADDR;
}

bool ELF_IsDropped(const ELF_FILE* pFile, U32 Low, U32 High) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  const U32 FileLow = AddrToFile(Low);
  return pLoaded && pLoaded->Symbols.IsDropped(FileLow, FileLow + (High - Low));
}

U32 ELF_GetRangeHigh(ELF_SYM_HANDLE hSym, U32 Index) {
  if (const ELF_SYMBOL* pSymbol = SymbolOf(hSym)) return Index == 0 ? SymbolEndToTarget(*pSymbol) : 0;
  const std::vector<ADDR_RANGE>& aRanges = RangesOfHandle(hSym);
  if (Index >= aRanges.size()) return 0;
  return RangeEndToTarget(aRanges[Index].Low, aRanges[Index].High, aRanges[Index].Low & 1u);
}
