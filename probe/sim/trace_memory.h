#pragma once
// What the core has executed: the addresses of the last instructions, and for each instruction how often it was fetched
// and how often its condition failed.

#include <memory>
#include <vector>

#include "probe/sim/region.h"

namespace sim {

struct INST_COUNTS {
  U64 NumFetched = 0;
  U64 NumSkipped = 0;
};

class CTraceMemory {
public:
  static constexpr U32 DEFAULT_ENTRIES = 1u << 20;
  static constexpr U32 MAX_ENTRIES = 1u << 26;

  // Starts from nothing. NumEntries is rounded up to a power of two within MAX_ENTRIES; 0: the default. The regions
  // have to outlive the trace.
  void Start(U32 NumEntries, const std::vector<const REGION*>& paRegions);
  // What was recorded stays until the next start.
  void Stop() { m_bOn = false; }
  bool IsOn() const { return m_bOn; }

  void Record(U32 Addr, bool bSkipped) {
    m_aAddr[m_NumRecorded++ & m_Mask] = Addr;
    m_NumSkipped += bSkipped;
    for (REGION_COUNTS& Counts : m_Counts) {
      const U32 Offset = Addr - Counts.Start;
      if (Offset >= Counts.Size) continue;
      INST_COUNTS& Item = Counts.paItems[Offset / 2];
      Item.NumFetched++;
      Item.NumSkipped += bSkipped;
      return;
    }
  }

  // Number of addresses, newest first; where the last read ended, unless something was recorded since.
  U32 Read(U32* paAddr, U32 NumItems);
  // Of the instruction at a halfword.
  INST_COUNTS CountsAt(U32 Addr) const;
  INST_COUNTS Total() const { return {m_NumRecorded, m_NumSkipped}; }

private:
  struct FREE {
    void operator()(INST_COUNTS* p) const { std::free(p); }
  };
  struct REGION_COUNTS {
    U32 Start;
    U32 Size;
    std::unique_ptr<INST_COUNTS, FREE> pOwner;  // zero pages that the host provides on first use
    INST_COUNTS* paItems;
  };

  bool m_bOn = false;
  U32 m_Mask = 0;
  std::vector<U32> m_aAddr;
  std::vector<REGION_COUNTS> m_Counts;
  U64 m_NumRecorded = 0;
  U64 m_NumSkipped = 0;
  U64 m_ReadFrom = 0;  // m_NumRecorded at which the present reading began
  U32 m_NumRead = 0;   // and how far it has come
};

}  // namespace sim
