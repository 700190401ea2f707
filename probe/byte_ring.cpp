#include "probe/byte_ring.h"

#include <algorithm>
#include <cstring>

bool CByteRing::Push(const void* pData, U32 NumBytes) {
  if (NumBytes > m_Capacity - m_Size) return false;
  if (!NumBytes) return true;
  if (m_Data.empty()) m_Data.resize(m_Capacity);
  const U32 At = static_cast<U32>((static_cast<U64>(m_First) + m_Size) % m_Capacity);
  const U32 ToEnd = std::min(NumBytes, m_Capacity - At);
  std::memcpy(m_Data.data() + At, pData, ToEnd);
  std::memcpy(m_Data.data(), static_cast<const U8*>(pData) + ToEnd, NumBytes - ToEnd);
  m_Size += NumBytes;
  return true;
}

U32 CByteRing::Pop(void* pData, U32 NumBytes) {
  const U32 Num = std::min(NumBytes, m_Size);
  if (!Num) return 0;
  const U32 ToEnd = std::min(Num, m_Capacity - m_First);
  std::memcpy(pData, m_Data.data() + m_First, ToEnd);
  std::memcpy(static_cast<U8*>(pData) + ToEnd, m_Data.data(), Num - ToEnd);
  m_First = static_cast<U32>((static_cast<U64>(m_First) + Num) % m_Capacity);
  m_Size -= Num;
  return Num;
}
