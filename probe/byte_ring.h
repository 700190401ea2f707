#pragma once

#include <vector>

#include "base/types.h"

// A bounded queue of bytes. What does not fit is refused as a whole, so that records stay in step.
class CByteRing {
public:
  explicit CByteRing(U32 Capacity) : m_Capacity(Capacity) {}

  // False when there is no room for all of it.
  bool Push(const void* pData, U32 NumBytes);
  // Moves at most NumBytes out; the number of bytes.
  U32 Pop(void* pData, U32 NumBytes);
  U32 Size() const { return m_Size; }
  void Clear() { m_First = m_Size = 0; }

private:
  U32 m_Capacity;
  std::vector<U8> m_Data;  // allocated with the first byte
  U32 m_First = 0;         // offset of the oldest byte
  U32 m_Size = 0;
};
