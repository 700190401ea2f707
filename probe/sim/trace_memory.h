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

  // Number of addresses, newest first; where the last read ended, unless something was recorded since.
  U32 Read(U32* paAddr, U32 NumItems);
  // Of the instruction at a halfword.
  INST_COUNTS CountsAt(U32 Addr) const;
  INST_COUNTS Total() const { return {m_NumRecorded, m_NumSkipped}; }

private:
  friend class CTraceWriter;
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

// Records while it lives. Where it writes stands in it by value, so that a loop can keep it in registers.
class CTraceWriter {
public:
  explicit CTraceWriter(CTraceMemory& Trace)
      : m_Trace(Trace), m_paAddr(Trace.m_aAddr.data()), m_Mask(Trace.m_Mask), m_NumRecorded(Trace.m_NumRecorded) {
    SelectRegion(0);
  }
  ~CTraceWriter() { m_Trace.m_NumRecorded = m_NumRecorded; }
  CTraceWriter(const CTraceWriter&) = delete;
  CTraceWriter& operator=(const CTraceWriter&) = delete;

  void Record(U32 Addr, bool bSkipped) {
    m_paAddr[m_NumRecorded++ & m_Mask] = Addr;
    if (bSkipped) m_Trace.m_NumSkipped++;
    if (Addr - m_Start >= m_Size && !FindRegion(Addr)) [[unlikely]]
      return;
    INST_COUNTS& Counts = m_paCounts[(Addr - m_Start) / 2];
    Counts.NumFetched++;
    if (bSkipped) Counts.NumSkipped++;
  }

private:
  void SelectRegion(size_t Index) {
    if (Index >= m_Trace.m_Counts.size()) return;
    m_Start = m_Trace.m_Counts[Index].Start;
    m_Size = m_Trace.m_Counts[Index].Size;
    m_paCounts = m_Trace.m_Counts[Index].paItems;
  }
  bool FindRegion(U32 Addr) {
    for (size_t i = 0; i < m_Trace.m_Counts.size(); i++) {
      if (Addr - m_Trace.m_Counts[i].Start >= m_Trace.m_Counts[i].Size) continue;
      SelectRegion(i);
      return true;
    }
    return false;
  }

  CTraceMemory& m_Trace;
  U32* const m_paAddr;
  const U32 m_Mask;
  U64 m_NumRecorded;
  U32 m_Start = 0;  // the region that ran last
  U32 m_Size = 0;
  INST_COUNTS* m_paCounts = nullptr;
};

}  // namespace sim
