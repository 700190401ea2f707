#pragma once

#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "base/types.h"

// The script's memory: one zeroed block. What lasts grows from the low end and is never freed; what belongs to a
// running call comes from the high end, which goes back to a mark when the call ends.
class CTransHeap {
public:
  explicit CTransHeap(U32 Size)
      : m_paBlock(new U8[Size]()), m_pLow(m_paBlock.get()), m_pHigh(m_pLow + Size), m_pEnd(m_pHigh) {}

  // 8-byte aligned memory; null when the two ends would meet.
  U8* TakeLow(U64 NumBytes) {
    const U64 Size = Aligned(NumBytes);
    if (Size < NumBytes || Size > static_cast<U64>(m_pHigh - m_pLow)) return nullptr;
    U8* const pResult = m_pLow;
    m_pLow += Size;
    return pResult;
  }
  U8* TakeHigh(U64 NumBytes) {
    const U64 Size = Aligned(NumBytes);
    if (Size < NumBytes || Size > static_cast<U64>(m_pHigh - m_pLow)) return nullptr;
    m_pHigh -= Size;
    return m_pHigh;
  }

  U8* HighMark() const { return m_pHigh; }
  void ReleaseHigh(U8* pMark) { m_pHigh = pMark; }
  bool Contains(U64 Address) const {
    return Address >= reinterpret_cast<U64>(m_paBlock.get()) && Address < reinterpret_cast<U64>(m_pEnd);
  }
  std::string_view TextAt(U64 Address) const {
    if (!Contains(Address)) return {};
    const std::string_view sRest(reinterpret_cast<const char*>(Address), reinterpret_cast<U64>(m_pEnd) - Address);
    return sRest.substr(0, sRest.find('\0'));
  }

private:
  static U64 Aligned(U64 NumBytes) { return (NumBytes + 7) & ~U64{7}; }

  std::unique_ptr<U8[]> m_paBlock;
  U8* m_pLow;
  U8* m_pHigh;
  U8* m_pEnd;
};
