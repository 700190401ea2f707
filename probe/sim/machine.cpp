#include "probe/sim/machine.h"

#include <algorithm>

#include "device/probe_api/register_index.h"
#include "probe/sim/exceptions.h"
#include "probe/sim/fp.h"
#include "probe/sim/run.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

inline constexpr U32 VNODE_REG_S31 = VNODE_REG_S0 + NUM_FP_REGS - 1;

inline constexpr U32 APSR_MASK = 0xF80F0000;
inline constexpr U32 EPSR_MASK = 0x0700FC00;
inline constexpr U32 IPSR_MASK = 0x1FF;

// The masks of interrupts as one register, CONTROL in the high byte.
U32 ReadCfbp(const STATE& S) {
  return S.Control << 24 | S.Faultmask << 16 | S.Basepri << 8 | S.Primask;
}

void WriteCfbp(STATE& S, U32 Value) {
  S.Primask = Value & 1;
  if (S.bV7) {
    S.Basepri = Value >> 8 & S.Nvic.PriorityMask();
    S.Faultmask = Value >> 16 & 1;
  }
  const U32 NewControl = Value >> 24 & S.ControlMask();
  S.SetMode(S.IPSR, NewControl);
}

void WriteXpsr(STATE& S, U32 Value) {
  S.SetXPSR(Value);
  S.SetMode(Value & IPSR_MASK, S.Control);
}

// True for registers that ARMv6-M does not have.
bool IsV7Only(U32 Index) {
  return Index == VNODE_REG_BASEPRI || Index == VNODE_REG_FAULTMASK;
}

bool IsWidth(U32 Width) {
  return Width == 1 || Width == 2 || Width == 4;
}

// Debugger's reading of one item outside flash and RAM.
bool ReadItem(STATE& S, U32 Addr, U32 Width, U32* pValue) {
  for (const PERIPHERAL& p : S.Peripherals) {
    if (Addr - p.Range.Start >= p.Range.Size) continue;
    *pValue = p.Read ? p.Read(Addr - p.Range.Start, Width) : 0;
    return true;
  }
  if (!IsScs(Addr)) return false;
  *pValue = ReadScs(S, Addr, Width, true);
  return true;
}

bool WriteItem(STATE& S, U32 Addr, U32 Width, U32 Value) {
  for (const PERIPHERAL& p : S.Peripherals) {
    if (Addr - p.Range.Start >= p.Range.Size) continue;
    if (p.Write) p.Write(Addr - p.Range.Start, Value, Width);
    return true;
  }
  if (!IsScs(Addr)) return false;
  WriteScs(S, Addr, Width, Value, true);
  return true;
}

// How many of NumBytes from Addr are in the memory that Addr is in.
U32 Within(const REGION& Region, U32 Addr, U32 NumBytes) {
  return std::min(NumBytes, Region.Size - (Addr - Region.Start));
}

void InvalidateAt(STATE& S, U32 Addr) {
  if (REGION* pRegion = FindRegion(S, Addr)) pRegion->Invalidate(Addr - pRegion->Start, 2);
}

}  // namespace

CMachine::CMachine(const BOARD_SPEC& Spec) : m_pState(std::make_unique<STATE>(Spec)) {
  Reset();
}

CMachine::~CMachine() = default;

const BOARD_SPEC& CMachine::Spec() const {
  return m_pState->Spec;
}

void CMachine::Reset() {
  const INST* pI = ResetCore(*m_pState);
  m_pState->R[PC] = AddrOf(*m_pState, pI);
  m_pState->Stop.reset();
}

STOP CMachine::Run(U64 MaxInstructions, const std::atomic<bool>* pStop, bool bSkipFirst) {
  return RunCore(*m_pState, MaxInstructions, pStop, bSkipFirst);
}

STOP CMachine::Step() {
  return StepCore(*m_pState);
}

U64 CMachine::InstructionCount() const {
  return m_pState->Now() - m_pState->SleptCycles;
}

U64 CMachine::CycleCount() const {
  return m_pState->Now();
}

bool CMachine::ReadReg(U32 Index, U32* pValue) const {
  const STATE& S = *m_pState;
  if (!S.bV7 && IsV7Only(Index)) return false;
  switch (Index) {
    case VNODE_REG_R0 ... VNODE_REG_PC:
      *pValue = S.R[Index];
      return true;
    case VNODE_REG_XPSR:
      *pValue = S.XPSR(S.IT);
      return true;
    case VNODE_REG_MSP:
      *pValue = S.MSP();
      return true;
    case VNODE_REG_PSP:
      *pValue = S.PSP();
      return true;
    case VNODE_REG_RAZ:
      *pValue = 0;
      return true;
    case VNODE_REG_CFBP:
      *pValue = ReadCfbp(S);
      return true;
    case VNODE_REG_APSR:
      *pValue = S.XPSR(S.IT) & APSR_MASK;
      return true;
    case VNODE_REG_EPSR:
      *pValue = S.XPSR(S.IT) & EPSR_MASK;
      return true;
    case VNODE_REG_IPSR:
      *pValue = S.IPSR;
      return true;
    case VNODE_REG_PRIMASK:
      *pValue = S.Primask;
      return true;
    case VNODE_REG_BASEPRI:
      *pValue = S.Basepri;
      return true;
    case VNODE_REG_FAULTMASK:
      *pValue = S.Faultmask;
      return true;
    case VNODE_REG_CONTROL:
      *pValue = S.Control;
      return true;
    case VNODE_REG_FPSCR:
      *pValue = S.Fp.FPSCR;
      return S.HasFpu();
    case VNODE_REG_S0 ... VNODE_REG_S31:
      *pValue = S.Fp.S[Index - VNODE_REG_S0];
      return S.HasFpu();
    default:
      return false;
  }
}

bool CMachine::WriteReg(U32 Index, U32 Value) {
  STATE& S = *m_pState;
  if (!S.bV7 && IsV7Only(Index)) return false;
  const U32 XPSR = S.XPSR(S.IT);
  switch (Index) {
    case VNODE_REG_SP:
      S.R[SP] = Value & ~3u;
      return true;
    case VNODE_REG_PC:
      S.R[PC] = Value & ~1u;
      S.bLockup = false;
      return true;
    case VNODE_REG_XPSR:
      WriteXpsr(S, Value);
      return true;
    case VNODE_REG_MSP:
      S.SetMSP(Value);
      return true;
    case VNODE_REG_PSP:
      S.SetPSP(Value);
      return true;
    case VNODE_REG_RAZ:
      return true;
    case VNODE_REG_CFBP:
      WriteCfbp(S, Value);
      return true;
    case VNODE_REG_APSR:
      WriteXpsr(S, (XPSR & ~APSR_MASK) | (Value & APSR_MASK));
      return true;
    case VNODE_REG_EPSR:
      WriteXpsr(S, (XPSR & ~EPSR_MASK) | (Value & EPSR_MASK));
      return true;
    case VNODE_REG_IPSR:
      WriteXpsr(S, (XPSR & ~IPSR_MASK) | (Value & IPSR_MASK));
      return true;
    case VNODE_REG_PRIMASK:
      S.Primask = Value & 1;
      return true;
    case VNODE_REG_BASEPRI:
      S.Basepri = Value & S.Nvic.PriorityMask();
      return true;
    case VNODE_REG_FAULTMASK:
      S.Faultmask = Value & 1;
      return true;
    case VNODE_REG_CONTROL:
      S.SetMode(S.IPSR, Value & S.ControlMask());
      return true;
    case VNODE_REG_FPSCR:
      S.Fp.FPSCR = Value & FPSCR_MASK;
      return S.HasFpu();
    case VNODE_REG_S0 ... VNODE_REG_S31:
      S.Fp.S[Index - VNODE_REG_S0] = Value;
      return S.HasFpu();
    default:
      if (Index > LR) return false;
      S.R[Index] = Value;
      return true;
  }
}

U32 CMachine::ReadMem(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  STATE& S = *m_pState;
  U8* pOut = static_cast<U8*>(pData);
  if (!IsWidth(AccessWidth)) return 0;
  U32 Done = 0;
  while (Done < NumBytes) {
    const U32 At = Addr + Done;
    if (const REGION* pRegion = FindRegion(S, At)) {
      const U32 Num = Within(*pRegion, At, NumBytes - Done);
      std::memcpy(pOut + Done, pRegion->pData + (At - pRegion->Start), Num);
      Done += Num;
      continue;
    }
    const U32 Width = At % AccessWidth || NumBytes - Done < AccessWidth ? 1 : AccessWidth;
    U32 Value;
    if (!ReadItem(S, At, Width, &Value)) break;
    std::memcpy(pOut + Done, &Value, Width);
    Done += Width;
  }
  return Done;
}

U32 CMachine::WriteMem(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  STATE& S = *m_pState;
  const U8* pIn = static_cast<const U8*>(pData);
  if (!IsWidth(AccessWidth)) return 0;
  U32 Done = 0;
  while (Done < NumBytes) {
    const U32 At = Addr + Done;
    if (S.Flash.Contains(At)) break;
    if (REGION* pRegion = FindRegion(S, At)) {
      Done += Program(At, Within(*pRegion, At, NumBytes - Done), pIn + Done);
      continue;
    }
    const U32 Width = At % AccessWidth || NumBytes - Done < AccessWidth ? 1 : AccessWidth;
    U32 Value = 0;
    std::memcpy(&Value, pIn + Done, Width);
    if (!WriteItem(S, At, Width, Value)) break;
    Done += Width;
  }
  return Done;
}

U32 CMachine::Program(U32 Addr, U32 NumBytes, const void* pData) {
  U32 Done = 0;
  while (Done < NumBytes) {
    REGION* pRegion = FindRegion(*m_pState, Addr + Done);
    if (!pRegion) break;
    const U32 Offset = Addr + Done - pRegion->Start;
    const U32 Num = Within(*pRegion, Addr + Done, NumBytes - Done);
    std::memcpy(pRegion->pData + Offset, static_cast<const U8*>(pData) + Done, Num);
    pRegion->Invalidate(Offset, Num);
    Done += Num;
  }
  return Done;
}

void CMachine::EraseFlash() {
  REGION& Flash = m_pState->Flash;
  std::memset(Flash.pData, 0xFF, Flash.Size);
  Flash.Invalidate(0, Flash.Size);
}

bool CMachine::SetCodeBreakpoint(U32 Addr) {
  if (!m_pState->Breakpoints.AddUnit(Addr & ~1u, m_pState->Spec.NumCodeBreakpoints)) return false;
  InvalidateAt(*m_pState, Addr & ~1u);
  return true;
}

void CMachine::ClearCodeBreakpoint(U32 Addr) {
  m_pState->Breakpoints.RemoveUnit(Addr & ~1u);
  InvalidateAt(*m_pState, Addr & ~1u);
}

void CMachine::SetSoftBreakpoint(U32 Addr) {
  m_pState->Breakpoints.AddSoft(Addr & ~1u);
  InvalidateAt(*m_pState, Addr & ~1u);
}

void CMachine::ClearSoftBreakpoint(U32 Addr) {
  m_pState->Breakpoints.RemoveSoft(Addr & ~1u);
  InvalidateAt(*m_pState, Addr & ~1u);
}

void CMachine::AddPeripheral(PERIPHERAL Peripheral) {
  m_pState->Peripherals.push_back(std::move(Peripheral));
}

void CMachine::RaiseIRQ(U32 Index) {
  STATE& S = *m_pState;
  if (Index >= S.Nvic.NumExceptions() - EXC_IRQ0) return;
  S.Nvic.SetPending(EXC_IRQ0 + Index, true);
  if (S.Scb.SCR & SCR_SEVONPEND) S.bEvent = true;
  S.Attention();
}

void CMachine::MaskInterrupts(bool bMask) {
  m_pState->bMaskInterrupts = bMask;
}

void CMachine::SetHaltingDebug(bool bOn) {
  m_pState->bHaltingDebug = bOn;
}

bool CMachine::IsSleeping() const {
  return m_pState->bSleeping;
}

bool CMachine::IsInLockup() const {
  return m_pState->bLockup;
}

bool CMachine::CanLeaveLockup() const {
  return m_pState->bLockup && sim::CanLeaveLockup(*m_pState);
}

}  // namespace sim
