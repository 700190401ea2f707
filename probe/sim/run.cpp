#include "probe/sim/run.h"

#include <algorithm>

#include "probe/sim/execute.h"
#include "probe/sim/protection.h"

namespace sim {

namespace {

inline constexpr U64 MAX_CHUNK = 20'000;  // cycles between two looks at the stop request

U8 AdvanceIT(U8 ITState) {
  return ITState & 7 ? static_cast<U8>((ITState & 0xE0) | (ITState << 1 & 0x1F)) : 0;
}

// An instruction inside an IT block.
const INST* RunInBlock(STATE& S, const INST* pI) {
  if (pI->Flags & INST_IGNORES_IT) return pI->pfRunIT(S, pI);
  const U8 ITState = S.IT;
  S.IT = AdvanceIT(ITState);
  if (!IsTrue(S, ITState >> 4)) return Next(pI);
  S.ITOfCurrent = ITState;
  const INST* pNext = pI->pfRunIT(S, pI);
  S.ITOfCurrent = 0;
  return pNext;
}

// The condition of the instruction that comes next does not hold.
bool IsSkipped(const STATE& S, const INST* pI) {
  if (pI->Flags & INST_CONDITIONAL) return !IsTrue(S, pI->Rd);
  return S.IT && !(pI->Flags & INST_IGNORES_IT) && !IsTrue(S, S.IT >> 4);
}

struct NO_CHECK {
  const INST* operator()(const INST* pI) const { return pI; }
};

// RunChunk with a record of each instruction.
template <class CHECK>
const INST* RunChunkTraced(STATE& S, const INST* pI, CHECK Check) {
  CTraceWriter Writer(S.Trace);
  while (S.Left > 0) {
    S.Left--;
    pI = Check(pI);
    if (!pI->pfRun) [[unlikely]]
      Decode(S, pI);
    if (S.IT) [[unlikely]] {
      if (!(pI->Flags & INST_DOES_NOT_RUN)) Writer.Record(pI->Addr, IsSkipped(S, pI));
      pI = RunInBlock(S, pI);
      continue;
    }
    if (!(pI->Flags & (INST_CONDITIONAL | INST_DOES_NOT_RUN))) [[likely]] {
      Writer.Record(pI->Addr, false);
    } else if (pI->Flags & INST_CONDITIONAL && !(pI->Flags & INST_DOES_NOT_RUN)) {
      Writer.Record(pI->Addr, IsSkipped(S, pI));
    }
    pI = pI->pfRun(S, pI);
  }
  return pI;
}

template <class CHECK>
const INST* RunChunkWith(STATE& S, const INST* pI, CHECK Check) {
  if (S.Trace.IsOn()) return RunChunkTraced(S, pI, Check);
  while (S.Left > 0) {
    S.Left--;
    pI = Check(pI);
    if (!pI->pfRun) [[unlikely]]
      Decode(S, pI);
    if (S.IT) [[unlikely]] {
      pI = RunInBlock(S, pI);
    } else {
      pI = pI->pfRun(S, pI);
    }
  }
  return pI;
}

// Runs to the end of the chunk.
const INST* RunChunk(STATE& S, const INST* pI) {
  return S.Mpu.IsOn() ? RunChunkWith(S, pI, CFetchCheck(S)) : RunChunkWith(S, pI, NO_CHECK());
}

const INST* Begin(STATE& S) {
  S.Stop.reset();
  if (S.bLockup) return LockupInst(S);
  return S.bThumb ? At(S, S.R[PC] & ~1u) : InvalidStateAt(S, S.R[PC]);
}

// Sets how many cycles may run before something has to be looked at.
void SetChunk(STATE& S, U64 NumCycles) {
  S.ChunkEnd = S.Now() + NumCycles;
  S.Left = static_cast<I64>(NumCycles);
}

U32 DfsrBit(STOP Reason) {
  switch (Reason) {
    case STOP::BREAKPOINT:
    case STOP::BKPT:
      return DFSR_BKPT;
    case STOP::DATA_WATCH:
      return DFSR_DWTTRAP;
    case STOP::VECTOR_CATCH:
      return DFSR_VCATCH;
    case STOP::REQUESTED:
      return DFSR_HALTED;
    default:
      return 0;
  }
}

STOP End(STATE& S, const INST* pI, STOP Reason) {
  S.Scb.DFSR |= DfsrBit(Reason);
  S.R[PC] = AddrOf(S, pI);
  SetChunk(S, 0);
  S.Stop.reset();
  return Reason;
}

void Sleep(STATE& S, U64 NumCycles) {
  S.SleptCycles += NumCycles;
  S.ChunkEnd += NumCycles;
}

// Runs the instruction at pI although there may be a breakpoint.
const INST* RunPastBreakpoint(STATE& S, const INST* pI) {
  const U32 Addr = AddrOf(S, pI);
  REGION* pRegion = FindRegion(S, Addr);
  if (!pRegion || !S.Breakpoints.StopsAt(Addr)) {
    SetChunk(S, 1);
    return RunChunk(S, pI);
  }
  S.Breakpoints.Hide(Addr);
  pRegion->Invalidate(Addr - pRegion->Start, 2);
  SetChunk(S, 1);
  pI = RunChunk(S, pI);
  S.Breakpoints.Hide(INVALID_ADDR);
  pRegion->Invalidate(Addr - pRegion->Start, 2);
  return pI;
}

// What has to be done between two instructions.
const INST* Between(STATE& S, const INST* pI) {
  if (S.bResetRequested) pI = ResetCore(S);
  return ServiceExceptions(S, pI);
}

}  // namespace

STOP RunCore(STATE& S, U64 NumCycles, const std::atomic<bool>* pStop, bool bSkipFirst) {
  const INST* pI = Begin(S);
  const U64 EndTime = S.Now() + std::min<U64>(NumCycles, 1ull << 62);
  if (bSkipFirst && NumCycles && !S.bSleeping) pI = RunPastBreakpoint(S, pI);
  for (;;) {
    if (S.Now() >= S.Sampler.Deadline()) S.Sampler.Fire(S.Now());
    if (S.Stop) return End(S, pI, *S.Stop);
    if (S.Now() >= EndTime) return End(S, pI, STOP::SLICE_END);
    if (pStop && pStop->load(std::memory_order_relaxed)) {
      S.bSleeping = false;
      return End(S, pI, STOP::REQUESTED);
    }
    pI = Between(S, pI);
    if (S.Stop) continue;
    const U64 Limit = std::min({EndTime, S.SysTick.Deadline(), S.Sampler.Deadline()});
    const U64 Now = S.Now();
    const U64 NumLeft = Limit > Now ? Limit - Now : 1;
    if (S.bSleeping) {
      Sleep(S, NumLeft);
      continue;
    }
    SetChunk(S, std::min(NumLeft, MAX_CHUNK));
    pI = RunChunk(S, pI);
  }
}

STOP StepCore(STATE& S) {
  const INST* pI = Begin(S);
  S.bSleeping = false;
  const INST* pEntered = Between(S, pI);
  if (pEntered == pI && !S.Stop) {
    pI = RunPastBreakpoint(S, pI);
    if (S.bResetRequested) pI = ResetCore(S);
  } else {
    pI = pEntered;
  }
  S.bSleeping = false;
  if (!S.Stop) S.Scb.DFSR |= DFSR_HALTED;
  return End(S, pI, S.Stop.value_or(STOP::SLICE_END));
}

}  // namespace sim
