#include "program/elf/symbol_table.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr U32 MAX_DERIVED_SIZE = 10000000;  // bytes: a larger gap to the next symbol is no size
constexpr size_t NUM_NEIGHBOURS = 9;        // symbols behind an object that can give its size
constexpr U32 MIN_FUNCTION_VALUE = 2;
constexpr U64 MAX_NAME_TIMES = 16;  // the file's size: many symbols of a damaged file could share one long name

}  // namespace

bool CSymbolTable::Parse(const CElfImage& Image) {
  pImage = &Image;
  std::vector<const U8*> aEntries;
  size_t NumSymbols = 0;
  const std::vector<ELF_SECTION>& aSections = Image.Sections();
  for (U32 i = 0; i < aSections.size(); ++i) {
    const ELF_SECTION& Section = aSections[i];
    if ((Section.Type != SHT_SYMTAB && Section.Type != SHT_DYNSYM) || Section.Size == 0) continue;
    const U8* pData = Image.SectionData(i);
    const bool bOverlap = aEntries.size() + Section.Size / SYMBOL_ENTRY_SIZE > Image.Size() / SYMBOL_ENTRY_SIZE;
    if (!pData || bOverlap) return false;
    aParts.push_back({static_cast<U32>(aEntries.size()), Section.Link});
    for (U32 At = 0; Section.Size - At >= SYMBOL_ENTRY_SIZE; At += SYMBOL_ENTRY_SIZE) aEntries.push_back(pData + At);
    if (Section.EntSize != 0) NumSymbols += Section.Size / Section.EntSize;
  }
  aSymbols.resize(std::min(NumSymbols, aEntries.size()));
  for (size_t i = 0; i < aSymbols.size(); ++i) {
    const U8* pEntry = aEntries[i];
    aSymbols[i] = {
        Image.Load<U32>(pEntry),     Image.Load<U32>(pEntry + 4), Image.Load<U32>(pEntry + 8), pEntry[12], pEntry[13],
        Image.Load<U16>(pEntry + 14)};
  }
  if (!AreNamesSound()) return false;
  aByValue.resize(aSymbols.size());
  for (U32 i = 0; i < aByValue.size(); ++i) aByValue[i] = i;
  std::stable_sort(aByValue.begin(), aByValue.end(),
                   [this](U32 A, U32 B) { return aSymbols[A].Value < aSymbols[B].Value; });
  SizeObjects();
  SizeFunctions();
  ListFunctions();
  ListSizesAtZero();
  return true;
}

bool CSymbolTable::AreNamesSound() const {
  U64 NumBytes = 0;
  for (U32 i = 0; i < Count(); ++i) NumBytes += std::strlen(Name(i));
  return NumBytes <= MAX_NAME_TIMES * pImage->Size();
}

bool CSymbolTable::SectionEnd(const ELF_SYMBOL& Symbol, U64& End) const {
  const ELF_SECTION* pSection = Symbol.Section != 0 ? pImage->Section(Symbol.Section) : nullptr;
  if (!pSection) return false;
  End = static_cast<U64>(pSection->Addr) + pSection->Size;
  return true;
}

U32 CSymbolTable::ObjectSize(size_t Position) const {
  const ELF_SYMBOL& Object = aSymbols[aByValue[Position]];
  U64 End;
  if (!SectionEnd(Object, End)) return 0;
  const size_t Last = std::min(Position + NUM_NEIGHBOURS, aByValue.size() - 1);
  for (size_t i = Position + 1; i <= Last; ++i) {
    const U32 Value = aSymbols[aByValue[i]].Value;
    if (Value > End) return 0;
    if (Value == Object.Value) continue;
    const U32 Distance = Value - Object.Value;
    return Distance <= MAX_DERIVED_SIZE ? Distance : 0;
  }
  return 0;
}

void CSymbolTable::SizeObjects() {
  for (size_t i = 0; i < aByValue.size(); ++i) {
    ELF_SYMBOL& Symbol = aSymbols[aByValue[i]];
    if (Symbol.Type() != ELF_SYMBOL_OBJECT || Symbol.Size != 0) continue;
    Symbol.bDerivedSize = true;
    Symbol.Size = ObjectSize(i);
  }
}

void CSymbolTable::SizeFunctions() {
  U32 Above = INVALID_ADDR;  // nearest function address above Next
  U32 Next = INVALID_ADDR;   // lowest function address met so far
  for (size_t i = aByValue.size(); i-- > 0;) {
    ELF_SYMBOL& Symbol = aSymbols[aByValue[i]];
    if (!Symbol.IsFunction()) continue;
    const U32 Addr = Symbol.Value & ~1u;
    if (Addr != Next) {
      Above = Next;
      Next = Addr;
    }
    U64 End;
    if (Symbol.Size != 0) continue;
    Symbol.bDerivedSize = true;
    if (!SectionEnd(Symbol, End)) continue;
    End = std::min<U64>(End & ~1ull, Above);
    if (End > Addr && End - Addr <= MAX_DERIVED_SIZE) Symbol.Size = static_cast<U32>(End - Addr);
  }
}

void CSymbolTable::ListFunctions() {
  for (const U32 Index : aByValue) {
    const ELF_SYMBOL& Symbol = aSymbols[Index];
    if (!Symbol.IsFunction() || Symbol.Value < MIN_FUNCTION_VALUE) continue;
    const char* sName = Name(Index);
    if (*sName == 0 || *sName == '?' || *sName == '$') continue;
    if (aFunctions.empty() || aSymbols[aFunctions.back()].Value != Symbol.Value) {
      aFunctions.push_back(Index);
    } else if (Symbol.Size > aSymbols[aFunctions.back()].Size) {
      aFunctions.back() = Index;
    }
  }
}

bool CSymbolTable::IsInCode(const ELF_SYMBOL& Symbol) const {
  const ELF_SECTION* pSection = Symbol.Section != 0 ? pImage->Section(Symbol.Section) : nullptr;
  return pSection && (pSection->Flags & SHF_ALLOC) && (pSection->Flags & SHF_EXECINSTR);
}

void CSymbolTable::ListSizesAtZero() {
  for (const U32 Index : aByValue) {
    const ELF_SYMBOL& Symbol = aSymbols[Index];
    if (Symbol.Value > 1) break;  // 1 with the Thumb bit
    if (Symbol.IsFunction() && IsInCode(Symbol)) aSizesAtZero.push_back(Symbol.Size);
  }
  std::sort(aSizesAtZero.begin(), aSizesAtZero.end());
  EndAtZero = aSizesAtZero.empty() ? FindEndAtZero() : 0;
}

// A mapping symbol tells that instructions stand at 0; they end with their section or at the next function.
U32 CSymbolTable::FindEndAtZero() const {
  if (aSymbols.empty()) return INVALID_ADDR;
  U64 End = 0;
  for (const U32 Index : aByValue) {
    const ELF_SYMBOL& Symbol = aSymbols[Index];
    if (Symbol.Value > 1 && (End == 0 || Symbol.IsFunction())) {
      return static_cast<U32>(std::min<U64>(End, Symbol.Value & ~1u));
    }
    const char* sName = Symbol.Value == 0 && IsInCode(Symbol) ? Name(Index) : "";
    if (std::strncmp(sName, "$a", 2) == 0 || std::strncmp(sName, "$t", 2) == 0) SectionEnd(Symbol, End);
  }
  return static_cast<U32>(std::min<U64>(End, INVALID_ADDR));
}

const char* CSymbolTable::Name(U32 Index) const {
  if (Index >= aSymbols.size()) return "";
  auto Part = std::upper_bound(aParts.begin(), aParts.end(), Index,
                               [](U32 Value, const PART& Entry) { return Value < Entry.FirstSymbol; });
  const U32 Linked = std::prev(Part)->StringSection;
  const U32 Strings = Linked == 0 && pImage->StringTable() >= 0 ? static_cast<U32>(pImage->StringTable()) : Linked;
  return pImage->String(Strings, aSymbols[Index].Name);
}

I32 CSymbolTable::FindFunction(U32 Addr, bool bExact) const {
  const U32 Key = Addr | 1u;
  auto Above = std::upper_bound(aFunctions.begin(), aFunctions.end(), Key,
                                [this](U32 Value, U32 Index) { return Value < aSymbols[Index].Value; });
  if (Above == aFunctions.begin()) return -1;
  const U32 Index = *std::prev(Above);
  const bool bCovers = Key - aSymbols[Index].Value < aSymbols[Index].Size;
  return bCovers || !bExact ? static_cast<I32>(Index) : -1;
}

I32 CSymbolTable::FindAt(U32 Addr, I32 Type) const {
  auto At = std::lower_bound(aByValue.begin(), aByValue.end(), Addr,
                             [this](U32 Index, U32 Value) { return aSymbols[Index].Value < Value; });
  for (; At != aByValue.end() && (aSymbols[*At].Value & ~1u) == Addr; ++At) {
    if (Type < 0 || aSymbols[*At].Type() == static_cast<U32>(Type)) return static_cast<I32>(*At);
  }
  return -1;
}

I32 CSymbolTable::FindName(const char* sName) const {
  for (U32 i = 0; i < aSymbols.size(); ++i) {
    if (std::strcmp(Name(i), sName) == 0) return static_cast<I32>(i);
  }
  return -1;
}

bool CSymbolTable::HasAddress(const ELF_SYMBOL& Symbol) const {
  if (Symbol.Section == 0 || Symbol.Type() == ELF_SYMBOL_FILE) return false;
  const ELF_SECTION* pSection = pImage->Section(Symbol.Section);
  return !pSection || (pSection->Flags & SHF_ALLOC) != 0;
}

bool CSymbolTable::IsDropped(U32 Low, U32 High) const {
  if (Low == 0 && aSizesAtZero.empty()) return High == 0 || High > EndAtZero;
  if (Low == 0) return !std::binary_search(aSizesAtZero.begin(), aSizesAtZero.end(), High);
  return Low >= LOWEST_TOMBSTONE || (Low == 1 && High == 1);  // two zeros would end a list of ranges
}
