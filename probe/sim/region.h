#pragma once
// One executable memory of the part: its bytes and its predecoded instructions.

#include <cstdlib>
#include <memory>

#include "probe/sim/inst.h"
#include "probe/sim/machine.h"

namespace sim {

inline constexpr U32 MAX_REGION_SIZE = 0x04000000;  // bytes; larger ranges are cut
inline constexpr U32 CODE_PAGE_SHIFT = 8;           // bytes of memory that share one "has code" mark, as a power of two

class REGION {
public:
  void Create(const MEM_RANGE& Range, U8 Fill);

  bool Contains(U32 Addr) const { return Addr - Start < Size; }
  // True when NumBytes from Addr lie inside.
  bool Covers(U32 Addr, U32 NumBytes) const { return Addr - Start < Size && NumBytes <= Size - (Addr - Start); }
  bool HoldsInst(const INST* pI) const { return pI >= paCode && pI <= paCode + Size / 2; }
  U32 AddrOf(const INST* pI) const { return Start + static_cast<U32>(pI - paCode) * 2; }
  INST* At(U32 Addr) const { return paCode + (Addr - Start) / 2; }

  // Has the instructions that overlap these bytes decoded again.
  void Invalidate(U32 Offset, U32 NumBytes);
  void MarkCode(U32 Offset, U32 NumBytes);

  U32 Start = 0;
  U32 Size = 0;
  U8* pData = nullptr;
  INST* paCode = nullptr;  // one for each halfword, and one behind the end
  U8* paHasCode = nullptr;

private:
  struct FREE {
    void operator()(void* p) const { std::free(p); }
  };
  // Large and mostly untouched: zero pages that the host provides on first use.
  std::unique_ptr<void, FREE> m_pDataOwner;
  std::unique_ptr<void, FREE> m_pCodeOwner;
  std::unique_ptr<void, FREE> m_pMarksOwner;
};

}  // namespace sim
