#include "probe/sim/trace_memory.h"

#include <algorithm>
#include <bit>
#include <new>

namespace sim {

void CTraceMemory::Start(U32 NumEntries, const std::vector<const REGION*>& paRegions) {
  *this = CTraceMemory();
  const U32 Capacity = std::bit_ceil(std::clamp(NumEntries ? NumEntries : DEFAULT_ENTRIES, 1u, MAX_ENTRIES));
  m_Mask = Capacity - 1;
  m_aAddr.resize(Capacity);
  for (const REGION* pRegion : paRegions) {
    if (!pRegion->Size) continue;
    auto* p = static_cast<INST_COUNTS*>(std::calloc(pRegion->Size / 2, sizeof(INST_COUNTS)));
    if (!p) throw std::bad_alloc();
    m_Counts.push_back({pRegion->Start, pRegion->Size, std::unique_ptr<INST_COUNTS, FREE>(p), p});
  }
  m_bOn = true;
}

U32 CTraceMemory::Read(U32* paAddr, U32 NumItems) {
  if (m_ReadFrom != m_NumRecorded) {
    m_ReadFrom = m_NumRecorded;
    m_NumRead = 0;
  }
  const U32 NumHeld = static_cast<U32>(std::min<U64>(m_NumRecorded, m_aAddr.size()));
  const U32 Num = std::min(NumItems, NumHeld - m_NumRead);
  for (U32 i = 0; i < Num; i++) paAddr[i] = m_aAddr[(m_NumRecorded - 1 - m_NumRead - i) & m_Mask];
  m_NumRead += Num;
  return Num;
}

INST_COUNTS CTraceMemory::CountsAt(U32 Addr) const {
  for (const REGION_COUNTS& Counts : m_Counts) {
    if (Addr - Counts.Start < Counts.Size) return Counts.paItems[(Addr - Counts.Start) / 2];
  }
  return {};
}

}  // namespace sim
