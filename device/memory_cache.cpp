#include "device/memory_cache.h"

#include <algorithm>

void CMemoryCache::PAGE::Clear() {
  aData.fill(0);
  aStatus.fill(MEM_STALE);
}

void CMemoryCache::Clear() {
  for (auto& pPage : apPage) {
    if (pPage) pPage->Clear();
  }
}

// Calls Call(page number, offset in page, offset in range, bytes) for the part of the range in each page.
template <typename F>
void CMemoryCache::ForEachPiece(U32 Addr, U32 NumBytes, F&& Call) {
  const U64 End = std::min<U64>(static_cast<U64>(Addr) + NumBytes, SPACE_BYTES);
  for (U64 Pos = Addr; Pos < End;) {
    const U32 Offset = static_cast<U32>(Pos % PAGE_BYTES);
    const U32 Bytes = static_cast<U32>(std::min<U64>(PAGE_BYTES - Offset, End - Pos));
    Call(static_cast<U32>(Pos / PAGE_BYTES), Offset, static_cast<U32>(Pos - Addr), Bytes);
    Pos += Bytes;
  }
}

CMemoryCache::PAGE& CMemoryCache::Page(U64 Number) {
  auto& pPage = apPage[Number];
  if (!pPage) pPage = std::make_unique<PAGE>();
  return *pPage;
}

U8 CMemoryCache::Read(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) const {
  U8 Worst = MEM_VALID;
  ForEachPiece(Addr, NumBytes, [&](U32 Number, U32 Offset, U32 RangeOffset, U32 Bytes) {
    const PAGE* pPage = apPage[Number].get();
    if (pPage == nullptr) {
      if (paData) std::fill_n(paData + RangeOffset, Bytes, 0);
      if (paStatus) std::fill_n(paStatus + RangeOffset, Bytes, static_cast<U8>(MEM_STALE));
      Worst = MEM_STALE;
      return;
    }
    const U8* pStatus = pPage->aStatus.data() + Offset;
    if (paData) std::copy_n(pPage->aData.data() + Offset, Bytes, paData + RangeOffset);
    if (paStatus) std::copy_n(pStatus, Bytes, paStatus + RangeOffset);
    Worst = WorseStatus(Worst, *std::max_element(pStatus, pStatus + Bytes));
  });
  return Worst;
}

void CMemoryCache::Write(U32 Addr, U32 NumBytes, const U8* paData, const U8* paStatus) {
  ForEachPiece(Addr, NumBytes, [&](U32 Number, U32 Offset, U32 RangeOffset, U32 Bytes) {
    PAGE& Target = Page(Number);
    std::copy_n(paData + RangeOffset, Bytes, Target.aData.data() + Offset);
    if (paStatus) {
      std::copy_n(paStatus + RangeOffset, Bytes, Target.aStatus.data() + Offset);
    } else {
      std::fill_n(Target.aStatus.data() + Offset, Bytes, static_cast<U8>(MEM_VALID));
    }
  });
}

void CMemoryCache::SetStatus(U32 Addr, U32 NumBytes, U8 Status) {
  ForEachPiece(Addr, NumBytes, [&](U32 Number, U32 Offset, U32, U32 Bytes) {
    if (Status == MEM_STALE && !apPage[Number]) return;
    std::fill_n(Page(Number).aStatus.data() + Offset, Bytes, Status);
  });
}

void CMemoryCache::ReplaceStatus(U8 From, U8 To) {
  for (auto& pPage : apPage) {
    if (pPage) std::replace(pPage->aStatus.begin(), pPage->aStatus.end(), From, To);
  }
}

U64 CMemoryCache::Find(U64 Addr, U64 End, U8 Status) const {
  End = std::min(End, SPACE_BYTES);
  while (Addr < End) {
    const U32 Offset = static_cast<U32>(Addr % PAGE_BYTES);
    const U64 PageEnd = std::min<U64>(End, Addr - Offset + PAGE_BYTES);
    const PAGE* pPage = apPage[Addr / PAGE_BYTES].get();
    if (pPage == nullptr) {
      if (Status == MEM_STALE) return Addr;
    } else {
      const U8* pBegin = pPage->aStatus.data() + Offset;
      const U8* pEnd = pBegin + (PageEnd - Addr);
      const U8* pFound = std::find(pBegin, pEnd, Status);
      if (pFound != pEnd) return Addr + (pFound - pBegin);
    }
    Addr = PageEnd;
  }
  return End;
}
