#include "probe/sim/region.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace sim {

namespace {

void* AllocZero(size_t NumItems, size_t Size) {
  void* p = std::calloc(NumItems, Size);
  if (!p) throw std::bad_alloc();
  return p;
}

}  // namespace

void REGION::Create(const MEM_RANGE& Range, U8 Fill) {
  Start = Range.Start & ~3u;
  Size = std::min(Range.Size, MAX_REGION_SIZE) & ~3u;
  m_pDataOwner.reset(AllocZero(Size + 8, 1));
  m_pCodeOwner.reset(AllocZero(Size / 2 + 2, sizeof(INST)));
  m_pMarksOwner.reset(AllocZero((Size >> CODE_PAGE_SHIFT) + 2, 1));
  pData = static_cast<U8*>(m_pDataOwner.get());
  paCode = static_cast<INST*>(m_pCodeOwner.get());
  paHasCode = static_cast<U8*>(m_pMarksOwner.get());
  if (Fill) std::memset(pData, Fill, Size);
}

void REGION::Invalidate(U32 Offset, U32 NumBytes) {
  if (!NumBytes) return;
  const U32 First = Offset >= 2 ? (Offset - 2) / 2 : 0;
  const U32 Last = (Offset + NumBytes - 1) / 2;
  for (U32 Page = First >> (CODE_PAGE_SHIFT - 1); Page <= Last >> (CODE_PAGE_SHIFT - 1); Page++) {
    if (!paHasCode[Page]) continue;
    const U32 PageFirst = Page << (CODE_PAGE_SHIFT - 1);
    const U32 PageLast = PageFirst + (1u << (CODE_PAGE_SHIFT - 1)) - 1;
    for (U32 i = std::max(First, PageFirst); i <= std::min({Last, PageLast, Size / 2}); i++) paCode[i].pfRun = nullptr;
  }
}

void REGION::MarkCode(U32 Offset, U32 NumBytes) {
  for (U32 Page = Offset >> CODE_PAGE_SHIFT; Page <= (Offset + NumBytes - 1) >> CODE_PAGE_SHIFT; Page++)
    paHasCode[Page] = 1;
}

}  // namespace sim
