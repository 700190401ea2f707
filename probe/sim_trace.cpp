#include "probe/sim_trace.h"

#include "probe/sim/trace_memory.h"
#include "probe/text.h"

int CSimTrace::Configure(const std::string& sConfig) {
  U32 NumEntries = m_NumEntries;
  for (std::string_view sItem : SplitTrimmed(sConfig, ',')) {
    if (sItem.empty()) continue;
    const size_t Equals = std::min(sItem.find('='), sItem.size());
    const std::string_view sName = Trimmed(sItem.substr(0, Equals));
    U32 Value = 0;
    bool bGood = Equals < sItem.size() && ParseU32(Trimmed(sItem.substr(Equals + 1)), &Value);
    if (EqualsNoCase(sName, "BufferSize")) {
      bGood = bGood && Value > 0 && Value <= sim::CTraceMemory::MAX_ENTRIES;
      NumEntries = Value;
    } else {
      bGood = bGood && EqualsNoCase(sName, "PortWidth") && (Value == 1 || Value == 2 || Value == 4);
    }
    if (!bGood) {
      m_Messages.Add(MSG_KIND::ERROR, "Invalid trace configuration \"" + std::string(sItem) + "\"");
      return -1;
    }
  }
  m_NumEntries = NumEntries;
  return 0;
}

int CSimTrace::Start() {
  CBoard::CAccess(m_Board)->StartTrace(m_NumEntries);
  return 0;
}

int CSimTrace::Stop() {
  CBoard::CAccess(m_Board)->StopTrace();
  return 0;
}

int CSimTrace::Read(U32* paAddr, U32 NumItems) {
  return static_cast<int>(CBoard::CAccess(m_Board)->ReadTrace(paAddr, NumItems));
}

int CSimTrace::GetInstStats(U64* paItems, U32 Addr, U32 NumItems) {
  if (NumItems < 2) return 0;
  const U32 Num = NumItems / 2 - 1;
  U64* const paSkipped = paItems + Num + 1;
  const sim::TRACE_TOTALS Totals = CBoard::CAccess(m_Board)->ReadTraceCounters(Addr, Num, paItems, paSkipped);
  paItems[Num] = Totals.NumFetched;
  paSkipped[Num] = Totals.NumSkipped;
  return static_cast<int>(2 * Num + 2);
}
