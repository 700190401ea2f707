#include "core/program_view.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "program/elf/elf.h"

namespace {

constexpr U32 PT_LOADABLE = 1;
constexpr U32 SHF_EXECUTABLE = 4;
constexpr U32 BINDING_LOCAL = 0;
constexpr U32 CHUNK_SIZE = 256;  // bytes of a segment for one entry of the region index

template <typename T>
bool ByAddr(const T& A, const T& B) {
  return A.Addr < B.Addr;
}

U32 TargetAddr(ELF_SYM_HANDLE hSym, U32 InstAlign) {
  return ELF_GetValue(hSym) & ~(InstAlign - 1);
}

bool IsInCode(const ELF_FILE* pFile, ELF_SYM_HANDLE hSym) {
  const I32 Section = ELF_GetSectionIndex(hSym);
  return Section > 0 && static_cast<U32>(Section) < ELF_GetNumSections(pFile) &&
         (ELF_GetSectionFlags(pFile, static_cast<U32>(Section)) & SHF_EXECUTABLE) != 0;
}

bool IsMappingSymbol(const ELF_FILE* pFile, ELF_SYM_HANDLE hSym) {
  if (ELF_GetTag(hSym) != ELF_SYMBOL_NOTYPE || ELF_GetBinding(hSym) != BINDING_LOCAL) return false;
  const I32 Section = ELF_GetSectionIndex(hSym);
  if (Section > 0 && static_cast<U32>(Section) < ELF_GetNumSections(pFile) &&
      (ELF_GetSectionFlags(pFile, static_cast<U32>(Section)) & SHF_EXECUTABLE) == 0) {
    return false;
  }
  const char* sName = ELF_GetName(hSym);
  return sName != nullptr && sName[0] == '$';
}

U8 KindOfMappingSymbol(const QString& sName) {
  if (sName.startsWith(QLatin1String("$t")) || sName.startsWith(QLatin1String("$a"))) return VCORE_REGION_CODE;
  return sName.startsWith(QLatin1String("$d")) ? VCORE_REGION_DATA : VCORE_REGION_OTHER;
}

}  // namespace

void CProgramView::Clear() {
  aSegment.clear();
  aFunc.clear();
  aSymbol.clear();
  aRegion.clear();
  SymbolsEnd = 0;
}

void CProgramView::Load(ELF_FILE* pFile, U32 InstAlign) {
  Clear();
  if (pFile == nullptr) return;
  LoadSegments(pFile);
  LoadSymbols(pFile, InstAlign);
  SymbolsEnd = ELF_GetSymbolExtent(pFile).Highest;
}

void CProgramView::LoadSegments(ELF_FILE* pFile) {
  for (U32 i = 0; i < ELF_GetNumSegments(pFile); ++i) {
    const U8* pData = ELF_GetSegmentData(pFile, i);
    const U32 Size = ELF_GetSegmentFileSize(pFile, i);
    if (ELF_GetSegmentType(pFile, i) != PT_LOADABLE || pData == nullptr || Size == 0) continue;
    AddPieces(ELF_GetSegmentVAddr(pFile, i), QByteArray(reinterpret_cast<const char*>(pData), Size));
  }
  std::sort(aSegment.begin(), aSegment.end(), ByAddr<SEGMENT>);
}

void CProgramView::AddPieces(U32 FileAddr, const QByteArray& Data) {
  const U64 Size = static_cast<U64>(Data.size());
  for (U64 Offset = 0; Offset < Size;) {
    const U32 Start = static_cast<U32>(FileAddr + Offset);
    U32 Edge = ELF_NextRelocEdge(Start);
    const U32 Addr = ELF_RelocToFile(Start, 1, 0);
    // Most edges are no cut: "*" ends at the end of memory, and what is moved alike stays together.
    while (Edge != INVALID_ADDR && ELF_RelocToFile(Edge, 1, 0) - Edge == Addr - Start) Edge = ELF_NextRelocEdge(Edge);
    const U64 Left = std::min<U64>(Size - Offset, Edge != INVALID_ADDR ? Edge - Start : Size);
    const U64 Kept = std::min<U64>(Left, INVALID_ADDR - Addr);
    aSegment.push_back({Addr, Start, Data.mid(static_cast<qsizetype>(Offset), static_cast<qsizetype>(Kept)), {}});
    Offset += Left;
  }
}

void CProgramView::LoadSymbols(ELF_FILE* pFile, U32 InstAlign) {
  for (U32 i = 0; i < ELF_GetNumFuncSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetFuncSymbol(pFile, i);
    const char* sName = ELF_GetName(hSym);
    aFunc.push_back({TargetAddr(hSym, InstAlign), ELF_GetSize(hSym), QString::fromUtf8(sName)});
  }
  std::stable_sort(aFunc.begin(), aFunc.end(), ByAddr<FUNC>);
  for (U32 i = 0; i < ELF_GetNumSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(pFile, i);
    const U32 Type = ELF_GetTag(hSym);
    const char* sName = ELF_GetName(hSym);
    if ((Type != ELF_SYMBOL_OBJECT && Type != ELF_SYMBOL_NOTYPE) || sName == nullptr || sName[0] == 0 ||
        sName[0] == '$') {
      continue;
    }
    // Only labels of code may have the Thumb bit; a constant of the linker script may be odd.
    const U32 Align = Type == ELF_SYMBOL_NOTYPE && IsInCode(pFile, hSym) ? 2 : 1;
    aSymbol.push_back({TargetAddr(hSym, Align), Type == ELF_SYMBOL_OBJECT, QString::fromUtf8(sName)});
  }
  std::stable_sort(aSymbol.begin(), aSymbol.end(), [](const SYMBOL& A, const SYMBOL& B) {
    return A.Addr != B.Addr ? A.Addr < B.Addr : A.bObject && !B.bObject;
  });
}

int CProgramView::LoadRegions(ELF_FILE* pFile, U32 InstAlign) {
  aRegion.clear();
  for (U32 i = 0; pFile != nullptr && i < ELF_GetNumSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(pFile, i);
    if (!IsMappingSymbol(pFile, hSym)) continue;
    VCORE_REGION Region;
    Region.Addr = TargetAddr(hSym, InstAlign);
    Region.SymbolIndex = i;
    Region.sName = QString::fromUtf8(ELF_GetName(hSym));
    Region.Kind = KindOfMappingSymbol(Region.sName);
    aRegion.push_back(Region);
  }
  if (ELF_HasRelocations()) AddRegionsOfPieces();
  std::stable_sort(aRegion.begin(), aRegion.end(), ByAddr<VCORE_REGION>);
  IndexRegions();
  return static_cast<int>(aRegion.size());
}

void CProgramView::AddRegionsOfPieces() {
  std::map<U32, size_t> ByFileAddr;
  for (size_t i = 0; i < aRegion.size(); ++i)
    ByFileAddr[ELF_RelocFromFile(static_cast<U32>(aRegion[i].Addr), 1, 0)] = i;
  for (const SEGMENT& Segment : aSegment) {
    auto it = ByFileAddr.upper_bound(Segment.FileAddr);
    if (it == ByFileAddr.begin() || (--it)->first == Segment.FileAddr) continue;
    VCORE_REGION Region = aRegion[it->second];
    Region.Addr = Segment.Addr;
    aRegion.push_back(Region);
  }
}

void CProgramView::IndexRegions() {
  for (SEGMENT& Segment : aSegment) {
    Segment.aRegionOfChunk.clear();
    I32 Region = -1;
    for (U64 Addr = Segment.Addr; Addr < Segment.Addr + static_cast<U64>(Segment.Data.size()); Addr += CHUNK_SIZE) {
      while (Region + 1 < static_cast<I32>(aRegion.size()) && aRegion[static_cast<size_t>(Region) + 1].Addr <= Addr)
        ++Region;
      Segment.aRegionOfChunk.push_back(Region);
    }
  }
}

const CProgramView::SEGMENT* CProgramView::SegmentAt(U32 Addr) const {
  for (const SEGMENT& Segment : aSegment) {
    if (Addr >= Segment.Addr && Addr - Segment.Addr < static_cast<U64>(Segment.Data.size())) return &Segment;
  }
  return nullptr;
}

const U8* CProgramView::Image(U32 Addr, U32 NumBytes) const {
  const SEGMENT* pSegment = SegmentAt(Addr);
  if (pSegment == nullptr) return nullptr;
  const U64 Offset = Addr - pSegment->Addr;
  if (Offset + NumBytes > static_cast<U64>(pSegment->Data.size())) return nullptr;
  return reinterpret_cast<const U8*>(pSegment->Data.constData()) + Offset;
}

bool CProgramView::Read(U32 Addr, U32 NumBytes, void* pData) const {
  const U8* pBytes = Image(Addr, NumBytes);
  if (pBytes == nullptr) return false;
  std::memcpy(pData, pBytes, NumBytes);
  return true;
}

U32 CProgramView::NextSegmentStart(U32 Addr) const {
  for (const SEGMENT& Segment : aSegment) {
    if (Segment.Addr > Addr) return Segment.Addr;
  }
  return INVALID_ADDR;
}

int CProgramView::RegionAt(U32 Addr) const {
  const SEGMENT* pSegment = SegmentAt(Addr);
  if (pSegment == nullptr || pSegment->aRegionOfChunk.empty()) return -1;
  I32 Region = pSegment->aRegionOfChunk[(Addr - pSegment->Addr) / CHUNK_SIZE];
  while (Region + 1 < static_cast<I32>(aRegion.size()) && aRegion[static_cast<size_t>(Region) + 1].Addr <= Addr)
    ++Region;
  return Region;
}

U32 CProgramView::RegionEnd(int Index) const {
  const size_t Next = static_cast<size_t>(Index) + 1;
  if (Next < aRegion.size()) return static_cast<U32>(aRegion[Next].Addr);
  return std::max(SymbolsEnd, static_cast<U32>(aRegion[static_cast<size_t>(Index)].Addr));
}

bool CProgramView::IsData(U32 Addr) const {
  const int Region = RegionAt(Addr);
  return Region >= 0 && aRegion[static_cast<size_t>(Region)].Kind == VCORE_REGION_DATA;
}

U32 CProgramView::NextRegionStart(U32 Addr) const {
  const auto Next = std::upper_bound(aRegion.begin(), aRegion.end(), Addr,
                                     [](U32 A, const VCORE_REGION& Region) { return A < Region.Addr; });
  return Next != aRegion.end() ? static_cast<U32>(Next->Addr) : INVALID_ADDR;
}

bool CProgramView::FindLabel(U32 Addr, U32 InstAlign, QString& sName, U32& Offset) const {
  const U32 Aligned = Addr & ~(InstAlign - 1);
  const auto Func =
      std::upper_bound(aFunc.begin(), aFunc.end(), Aligned, [](U32 A, const FUNC& F) { return A < F.Addr; });
  const FUNC* pFunc = Func != aFunc.begin() ? &*(Func - 1) : nullptr;
  Offset = 0;
  if (pFunc != nullptr && pFunc->Addr == Aligned) {
    sName = pFunc->sName;
    return true;
  }
  const auto Symbol =
      std::lower_bound(aSymbol.begin(), aSymbol.end(), Addr, [](const SYMBOL& S, U32 A) { return S.Addr < A; });
  if (Symbol != aSymbol.end() && Symbol->Addr == Addr) {
    sName = Symbol->sName;
    return true;
  }
  if (pFunc == nullptr) return false;
  sName = pFunc->sName;
  Offset = Addr - pFunc->Addr;
  return true;
}
