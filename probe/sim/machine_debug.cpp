// The debug units' side of the machine: data watches, stimulus ports, trace, sampling.

#include "probe/sim/debug_registers.h"
#include "probe/sim/machine.h"
#include "probe/sim/memory.h"

namespace sim {

int CMachine::SetDataWatch(const DATA_WATCH& Watch) {
  STATE& S = *m_pState;
  const int Index = S.Dwt.Add(Watch);
  if (Index >= 0) S.Scb.DEMCR |= DEMCR_TRCENA;
  UpdateDebugUnits(S);
  return Index;
}

void CMachine::ClearDataWatch(int Index) {
  m_pState->Dwt.Remove(Index);
  UpdateDebugUnits(*m_pState);
}

bool CMachine::SetStimulusSink(std::function<void(U32 Port, U32 Value, U32 NumBytes)> Sink) {
  m_pState->Itm.Sink = std::move(Sink);
  return m_pState->bV7;
}

void CMachine::StartTrace(U32 NumEntries) {
  std::vector<const REGION*> paRegions;
  ForEachRegion(*m_pState, [&](const REGION& Region) { paRegions.push_back(&Region); });
  m_pState->Trace.Start(NumEntries, paRegions);
}

void CMachine::StopTrace() {
  m_pState->Trace.Stop();
}

U32 CMachine::ReadTrace(U32* paAddr, U32 NumItems) {
  return m_pState->Trace.Read(paAddr, NumItems);
}

TRACE_TOTALS CMachine::ReadTraceCounters(U32 Addr, U32 NumHalfwords, U64* paFetched, U64* paSkipped) const {
  const CTraceMemory& Trace = m_pState->Trace;
  for (U32 i = 0; i < NumHalfwords; i++) {
    const INST_COUNTS Counts = Trace.CountsAt((Addr & ~1u) + 2 * i);
    paFetched[i] = Counts.NumFetched;
    paSkipped[i] = Counts.NumSkipped;
  }
  return {Trace.Total().NumFetched, Trace.Total().NumSkipped};
}

void CMachine::SetSampler(U64 PeriodCycles, std::function<void(CMachine& Machine, U64 Cycle)> Function) {
  m_pState->Sampler.Start(m_pState->Now(), PeriodCycles,
                          [this, Function = std::move(Function)](U64 Cycle) { Function(*this, Cycle); });
}

}  // namespace sim
