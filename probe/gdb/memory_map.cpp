#include "probe/gdb/memory_map.h"

#include <algorithm>

#include "probe/gdb/xml_document.h"
#include "probe/text.h"

namespace {

constexpr U64 ADDRESS_SPACE = 0x1'0000'0000ull;
constexpr U64 MAX_BLOCK_SIZE = 4 * 1024 * 1024;  // bytes
constexpr size_t MAX_REGIONS = 4096;

U64 BlockSizeOf(const XML_NODE* pMemory) {
  for (const XML_NODE* pNode = pMemory->first_node("property"); pNode; pNode = pNode->next_sibling("property")) {
    U64 Size = 0;
    if (AttributeOf(pNode, "name") != "blocksize") continue;
    return NumberOf(Trimmed(std::string_view(pNode->value(), pNode->value_size())), MAX_BLOCK_SIZE, &Size) ? Size : 0;
  }
  return 0;
}

bool ReadRegion(const XML_NODE* pNode, GDB_MEMORY_REGION* pRegion) {
  U64 Start = 0;
  const std::string_view sType = AttributeOf(pNode, "type");
  if (!NumberOf(AttributeOf(pNode, "start"), ADDRESS_SPACE - 1, &Start)) return false;
  if (!NumberOf(AttributeOf(pNode, "length"), ADDRESS_SPACE - Start, &pRegion->Size) || pRegion->Size == 0)
    return false;
  pRegion->Start = static_cast<U32>(Start);
  if (sType == "ram") return true;
  pRegion->Kind = sType == "flash" ? GDB_MEMORY_REGION::KIND::FLASH : GDB_MEMORY_REGION::KIND::ROM;
  if (sType != "flash") return sType == "rom";
  pRegion->BlockSize = static_cast<U32>(BlockSizeOf(pNode));
  return pRegion->BlockSize != 0;
}

}  // namespace

const GDB_MEMORY_REGION* GDB_MEMORY_MAP::Find(U32 Addr) const {
  for (const GDB_MEMORY_REGION& Region : Regions) {
    if (Region.Contains(Addr)) return &Region;
  }
  return nullptr;
}

const GDB_MEMORY_REGION* GDB_MEMORY_MAP::FindFlash(U32 Addr) const {
  const GDB_MEMORY_REGION* pRegion = Find(Addr);
  return pRegion && pRegion->Kind == GDB_MEMORY_REGION::KIND::FLASH ? pRegion : nullptr;
}

U64 GDB_MEMORY_MAP::NextFlash(U32 Addr) const {
  for (const GDB_MEMORY_REGION& Region : Regions) {
    if (Region.Kind == GDB_MEMORY_REGION::KIND::FLASH && Region.Start + Region.Size > Addr) {
      return std::max(Region.Start, Addr);
    }
  }
  return ADDRESS_SPACE;
}

bool ParseMemoryMap(std::string sText, GDB_MEMORY_MAP* pMap, std::string* psError) {
  CXmlDocument Document;
  pMap->Regions.clear();
  if (!Document.Parse(std::move(sText), psError)) return false;
  std::vector<GDB_MEMORY_REGION> Regions;
  for (const XML_NODE* pNode = Document.Root()->first_node(); pNode; pNode = pNode->next_sibling()) {
    GDB_MEMORY_REGION Region;
    if (!IsElement(pNode, "memory")) continue;
    if (Regions.size() >= MAX_REGIONS || !ReadRegion(pNode, &Region)) {
      *psError = FormatText("memory region %zu is invalid", Regions.size() + 1);
      return false;
    }
    Regions.push_back(Region);
  }
  std::sort(Regions.begin(), Regions.end(),
            [](const GDB_MEMORY_REGION& A, const GDB_MEMORY_REGION& B) { return A.Start < B.Start; });
  for (size_t i = 1; i < Regions.size(); ++i) {
    if (Regions[i - 1].Start + Regions[i - 1].Size <= Regions[i].Start) continue;
    *psError = FormatText("memory regions overlap at 0x%08X", Regions[i].Start);
    return false;
  }
  pMap->Regions = std::move(Regions);
  return true;
}
