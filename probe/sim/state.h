#pragma once
// Everything the simulated core holds. The pieces with a subject of their own are declared beside it: memory regions,
// interrupt controller, SysTick, system control block, debug units.

#include <atomic>
#include <optional>
#include <vector>

#include "probe/sim/breakpoints.h"
#include "probe/sim/dwt.h"
#include "probe/sim/fp_regs.h"
#include "probe/sim/inst.h"
#include "probe/sim/itm.h"
#include "probe/sim/machine.h"
#include "probe/sim/mpu.h"
#include "probe/sim/nvic.h"
#include "probe/sim/region.h"
#include "probe/sim/sampler.h"
#include "probe/sim/scb.h"
#include "probe/sim/systick.h"
#include "probe/sim/tpiu.h"
#include "probe/sim/trace_memory.h"

namespace sim {

inline constexpr U32 SP = 13;
inline constexpr U32 LR = 14;
inline constexpr U32 PC = 15;

inline constexpr U32 CONTROL_NPRIV = 1;
inline constexpr U32 CONTROL_SPSEL = 2;
inline constexpr U32 CONTROL_FPCA = 4;  // there is floating point context to save

// What a memory access that failed has to raise.
enum class FAULT_CAUSE : U8 { NONE, BUS, UNALIGNED, PROTECTION };

// Who makes an access to memory.
struct ACCESSOR {
  bool bPrivileged = true;
  bool bNegativePriority = false;
};

// RAM that is accessed without further checks.
struct FAST_RAM {
  U32 Start = 0;
  U32 Limit = 0;  // offsets below it hold a whole word; 0 sends every access the long way
  U8* pData = nullptr;
  U8* paHasCode = nullptr;
};

struct STATE {
  explicit STATE(const BOARD_SPEC& BoardSpec);

  // Registers. R[15] is only valid between runs and where a handler has set it; R[13] is the stack pointer in use.
  U32 R[16] = {};
  I64 NZ = 1;  // N: negative, Z: low word is zero
  U32 C = 0;
  U32 V = 0;
  U8 IT = 0;           // ITSTATE of the next instruction
  U8 ITOfCurrent = 0;  // ITSTATE of the instruction that runs, 0 outside blocks
  bool bQ = false;
  bool bThumb = true;
  U8 GE = 0;
  U32 IPSR = 0;
  U32 OtherSP = 0;  // the banked stack pointer that is not in use
  U32 Control = 0;
  U32 Primask = 0;
  U32 Faultmask = 0;
  U32 Basepri = 0;
  FP_REGS Fp;

  // Time in cycles. Left is what the present chunk may still run.
  I64 Left = 0;
  U64 ChunkEnd = 0;
  U64 SleptCycles = 0;

  FAST_RAM Fast;
  U32 AlignMask = 0;  // address bits that have to be 0 in halfword and word accesses
  REGION Flash;
  REGION aRAM[2];
  std::vector<PERIPHERAL> Peripherals;
  FAULT_CAUSE FaultCause = FAULT_CAUSE::NONE;
  U32 FaultAddr = 0;
  std::optional<ACCESSOR> Accessor;  // none: the mode that runs
  U32 FaultCfsr = 0;                 // bits of CFSR that the latest fault has set
  bool bExclusive = false;           // local exclusive monitor
  U32 ExclusiveAddr = 0;

  BOARD_SPEC Spec;
  bool bV7 = true;
  bool bDSP = true;

  CNvic Nvic;
  CSysTick SysTick;
  CMpu Mpu;
  SCB_REGS Scb;
  CBreakpoints Breakpoints;
  CDwt Dwt;
  CItm Itm;
  TPIU_REGS Tpiu;
  CTraceMemory Trace;
  CSampler Sampler;

  // Run control.
  std::optional<STOP> Stop;  // asked for by an instruction
  bool bSleeping = false;
  bool bSleepsForEvent = false;  // WFE: an event ends it
  bool bEvent = false;
  bool bLockup = false;
  bool bResetRequested = false;
  bool bMaskInterrupts = false;
  bool bHaltingDebug = true;  // a debugger is there for breakpoints, watches and vector catches
  INST Special = {};          // stands for an address or a state in which no instruction can be fetched

  bool HasFpu() const { return Spec.Fpu != FPU::NONE; }
  // The bits of CONTROL that the core has.
  U32 ControlMask() const { return CONTROL_NPRIV | CONTROL_SPSEL | (HasFpu() ? CONTROL_FPCA : 0); }
  bool IsHandlerMode() const { return IPSR != 0; }
  bool IsPrivileged() const { return IPSR != 0 || !(Control & CONTROL_NPRIV); }
  U64 Now() const { return ChunkEnd - static_cast<U64>(Left); }

  // Ends the chunk behind the present instruction, so that exceptions and stops are looked at.
  void Attention() {
    if (Left > 0) {
      ChunkEnd -= static_cast<U64>(Left);
      Left = 0;
    }
  }
  void StopWith(STOP Reason) {
    Stop = Reason;
    Attention();
  }

  bool IsPspInUse() const { return (Control & CONTROL_SPSEL) && !IPSR; }
  U32 MSP() const { return IsPspInUse() ? OtherSP : R[SP]; }
  U32 PSP() const { return IsPspInUse() ? R[SP] : OtherSP; }
  void SetMSP(U32 Value) { (IsPspInUse() ? OtherSP : R[SP]) = Value & ~3u; }
  void SetPSP(U32 Value) { (IsPspInUse() ? R[SP] : OtherSP) = Value & ~3u; }
  // Changes mode and stack selection and keeps both stack pointers.
  void SetMode(U32 NewIPSR, U32 NewControl) {
    const U32 Main = MSP();
    const U32 Process = PSP();
    IPSR = NewIPSR;
    Control = NewControl;
    R[SP] = IsPspInUse() ? Process : Main;
    OtherSP = IsPspInUse() ? Main : Process;
    UpdateFpAccess(*this);
  }

  U32 APSR() const;
  void SetAPSR(U32 Value, bool bFlags, bool bGE);
  U32 XPSR(U8 ITState) const;  // all parts, with this ITSTATE
  void SetXPSR(U32 Value);     // all parts but IPSR
};

}  // namespace sim
