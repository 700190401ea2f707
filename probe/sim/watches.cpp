#include "probe/sim/watches.h"

namespace sim {

int CWatches::Add(const DATA_WATCH& Watch) {
  for (size_t i = 0; i < m_Items.size(); i++) {
    if (m_Items[i].bUsed) continue;
    m_Items[i] = {Watch, true};
    m_bAnySet = true;
    return static_cast<int>(i);
  }
  return -1;
}

void CWatches::Remove(int Index) {
  if (Index < 0 || static_cast<size_t>(Index) >= m_Items.size()) return;
  m_Items[Index].bUsed = false;
  m_bAnySet = false;
  for (const ITEM& Item : m_Items) m_bAnySet |= Item.bUsed;
}

int CWatches::Match(U32 Addr, U32 NumBytes, U32 Value, bool bWrite) const {
  for (size_t i = 0; i < m_Items.size(); i++) {
    const DATA_WATCH& Watch = m_Items[i].Watch;
    if (!m_Items[i].bUsed || !(bWrite ? Watch.bOnWrite : Watch.bOnRead)) continue;
    if (Watch.NumBytes && Watch.NumBytes != NumBytes) continue;
    bool bTouched = false;
    for (U32 Byte = 0; Byte < NumBytes; Byte++)
      bTouched |= ((Addr + Byte) & ~Watch.AddrMask) == (Watch.Addr & ~Watch.AddrMask);
    if (bTouched && (Value & ~Watch.DataMask) == (Watch.Data & ~Watch.DataMask)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace sim
