#include "probe/sim/scs.h"

#include "probe/sim/debug_registers.h"
#include "probe/sim/memory.h"

namespace sim {

namespace {

enum SCS_REG : U32 {
  ICTR = 0xE000E004,
  ACTLR = 0xE000E008,
  SYST_CSR = 0xE000E010,
  SYST_RVR = 0xE000E014,
  SYST_CVR = 0xE000E018,
  SYST_CALIB = 0xE000E01C,
  NVIC_ISER = 0xE000E100,
  NVIC_ICER = 0xE000E180,
  NVIC_ISPR = 0xE000E200,
  NVIC_ICPR = 0xE000E280,
  NVIC_IABR = 0xE000E300,
  NVIC_IPR = 0xE000E400,
  NVIC_IPR_END = 0xE000E4F0,
  CPUID = 0xE000ED00,
  ICSR = 0xE000ED04,
  VTOR = 0xE000ED08,
  AIRCR = 0xE000ED0C,
  SCR = 0xE000ED10,
  CCR = 0xE000ED14,
  SHPR1 = 0xE000ED18,
  SHPR3 = 0xE000ED20,
  SHCSR = 0xE000ED24,
  CFSR = 0xE000ED28,
  HFSR = 0xE000ED2C,
  DFSR = 0xE000ED30,
  MMFAR = 0xE000ED34,
  BFAR = 0xE000ED38,
  CPACR = 0xE000ED88,
  DHCSR = 0xE000EDF0,
  DEMCR = 0xE000EDFC,
  STIR = 0xE000EF00,
};

inline constexpr U32 NVIC_BLOCK_SIZE = 0x20;  // bytes of 240 interrupt bits

inline constexpr U32 AIRCR_KEY = 0x05FA;
inline constexpr U32 AIRCR_KEY_READ = 0xFA05u << 16;
inline constexpr U32 AIRCR_SYSRESETREQ = 1u << 2;
inline constexpr U32 AIRCR_VECTCLRACTIVE = 1u << 1;

inline constexpr U32 ICSR_NMIPENDSET = 1u << 31;
inline constexpr U32 ICSR_PENDSVSET = 1u << 28;
inline constexpr U32 ICSR_PENDSVCLR = 1u << 27;
inline constexpr U32 ICSR_PENDSTSET = 1u << 26;
inline constexpr U32 ICSR_PENDSTCLR = 1u << 25;
inline constexpr U32 ICSR_ISRPENDING = 1u << 22;
inline constexpr U32 ICSR_VECTPENDING_SHIFT = 12;
inline constexpr U32 ICSR_RETTOBASE = 1u << 11;

inline constexpr U32 VTOR_MASK = 0xFFFFFF80;
inline constexpr U32 SCR_MASK = 0x16;
inline constexpr U32 CCR_MASK = 0x31B;
inline constexpr U32 CCR_RESET_V6M = CCR_STKALIGN | CCR_UNALIGN_TRP;
inline constexpr U32 CCR_RESET = CCR_STKALIGN;
inline constexpr U32 CPACR_MASK = 0x00F00000;
inline constexpr U32 DEMCR_MASK = 0x010507F1;
inline constexpr U32 ACTLR_MASK = 0x307;

inline constexpr U32 DHCSR_DEBUGEN = 1u << 0;
inline constexpr U32 DHCSR_KEY = 0xA05F;       // in the upper half of what is written
inline constexpr U32 DHCSR_HALTED = 3u << 16;  // halted, and registers can be read
inline constexpr U32 DHCSR_SLEEP = 1u << 18;
inline constexpr U32 DHCSR_LOCKUP = 1u << 19;

// Which bit of SHCSR shows what of which exception.
struct SHCSR_BIT {
  U32 Bit;
  U32 Exc;
  CNvic::SET Set;
};
constexpr SHCSR_BIT SHCSR_BITS[] = {
    {0, EXC_MEMMANAGE, CNvic::SET::ACTIVE},   {1, EXC_BUSFAULT, CNvic::SET::ACTIVE},
    {3, EXC_USAGEFAULT, CNvic::SET::ACTIVE},  {7, EXC_SVCALL, CNvic::SET::ACTIVE},
    {8, EXC_DEBUGMON, CNvic::SET::ACTIVE},    {10, EXC_PENDSV, CNvic::SET::ACTIVE},
    {11, EXC_SYSTICK, CNvic::SET::ACTIVE},    {12, EXC_USAGEFAULT, CNvic::SET::PENDING},
    {13, EXC_MEMMANAGE, CNvic::SET::PENDING}, {14, EXC_BUSFAULT, CNvic::SET::PENDING},
    {15, EXC_SVCALL, CNvic::SET::PENDING},    {16, EXC_MEMMANAGE, CNvic::SET::ENABLED},
    {17, EXC_BUSFAULT, CNvic::SET::ENABLED},  {18, EXC_USAGEFAULT, CNvic::SET::ENABLED},
};
inline constexpr U32 SHCSR_BIT_SVCALLPENDED = 15;

U32 ReadShcsr(const STATE& S) {
  U32 Value = 0;
  for (const SHCSR_BIT& Row : SHCSR_BITS) {
    if (!S.bV7 && Row.Bit != SHCSR_BIT_SVCALLPENDED) continue;
    const bool bOn = Row.Set == CNvic::SET::ACTIVE    ? S.Nvic.IsActive(Row.Exc)
                     : Row.Set == CNvic::SET::PENDING ? S.Nvic.IsPending(Row.Exc)
                                                      : S.Nvic.IsEnabled(Row.Exc);
    Value |= static_cast<U32>(bOn) << Row.Bit;
  }
  return Value;
}

void WriteShcsr(STATE& S, U32 Value) {
  for (const SHCSR_BIT& Row : SHCSR_BITS) {
    if (!S.bV7 && Row.Bit != SHCSR_BIT_SVCALLPENDED) continue;
    const bool bOn = Value >> Row.Bit & 1;
    if (Row.Set == CNvic::SET::ACTIVE) {
      S.Nvic.SetActive(Row.Exc, bOn);
    } else if (Row.Set == CNvic::SET::PENDING) {
      S.Nvic.SetPending(Row.Exc, bOn);
    } else {
      S.Nvic.SetEnabled(Row.Exc, bOn);
    }
  }
}

U32 ReadIcsr(const STATE& S) {
  U32 Value = S.IPSR;
  if (S.Nvic.IsPending(EXC_NMI)) Value |= ICSR_NMIPENDSET;
  if (S.Nvic.IsPending(EXC_PENDSV)) Value |= ICSR_PENDSVSET;
  if (S.Nvic.IsPending(EXC_SYSTICK)) Value |= ICSR_PENDSTSET;
  for (U32 Word = 0; Word * 32 < MAX_EXCEPTIONS; Word++) {
    if (S.Nvic.IrqWord(CNvic::SET::PENDING, Word)) Value |= ICSR_ISRPENDING;
  }
  Value |= S.Nvic.HighestPending(false) << ICSR_VECTPENDING_SHIFT;
  if (S.bV7 && !S.Nvic.IsAnotherActive(S.IPSR)) Value |= ICSR_RETTOBASE;
  return Value;
}

void WriteIcsr(STATE& S, U32 Value) {
  if (Value & ICSR_NMIPENDSET) S.Nvic.SetPending(EXC_NMI, true);
  if (Value & ICSR_PENDSVSET) S.Nvic.SetPending(EXC_PENDSV, true);
  if (Value & ICSR_PENDSVCLR) S.Nvic.SetPending(EXC_PENDSV, false);
  if (Value & ICSR_PENDSTSET) S.Nvic.SetPending(EXC_SYSTICK, true);
  if (Value & ICSR_PENDSTCLR) S.Nvic.SetPending(EXC_SYSTICK, false);
  if (Value & (ICSR_NMIPENDSET | ICSR_PENDSVSET | ICSR_PENDSTSET) && (S.Scb.SCR & SCR_SEVONPEND)) S.bEvent = true;
}

void WriteAircr(STATE& S, U32 Value) {
  if (Value >> 16 != AIRCR_KEY) return;
  if (S.bV7) S.Scb.PriGroup = Value >> 8 & 7;
  if (Value & AIRCR_SYSRESETREQ) S.bResetRequested = true;
  if (Value & AIRCR_VECTCLRACTIVE) {
    for (U32 Exc = 0; Exc < MAX_EXCEPTIONS; Exc++) S.Nvic.SetActive(Exc, false);
  }
}

// Priorities of four exceptions, the lowest number in the low byte.
U32 ReadPriorities(const STATE& S, U32 FirstExc) {
  U32 Value = 0;
  for (U32 i = 0; i < 4; i++) Value |= static_cast<U32>(S.Nvic.Priority(FirstExc + i)) << (8 * i);
  return Value;
}

void WritePriorities(STATE& S, U32 FirstExc, U32 Value, U32 Lanes) {
  for (U32 i = 0; i < 4; i++) {
    if (Lanes >> (8 * i) & 1 && FirstExc + i < S.Nvic.NumExceptions())
      S.Nvic.SetPriority(FirstExc + i, static_cast<U8>(Value >> (8 * i)));
  }
}

bool InBlock(U32 Addr, U32 Start, U32 Size) {
  return Addr - Start < Size;
}

U32 ReadNvic(const STATE& S, U32 Addr) {
  const U32 Index = (Addr & (NVIC_BLOCK_SIZE - 1)) / 4;
  if (InBlock(Addr, NVIC_ISER, NVIC_BLOCK_SIZE) || InBlock(Addr, NVIC_ICER, NVIC_BLOCK_SIZE))
    return S.Nvic.IrqWord(CNvic::SET::ENABLED, Index);
  if (InBlock(Addr, NVIC_ISPR, NVIC_BLOCK_SIZE) || InBlock(Addr, NVIC_ICPR, NVIC_BLOCK_SIZE))
    return S.Nvic.IrqWord(CNvic::SET::PENDING, Index);
  if (InBlock(Addr, NVIC_IABR, NVIC_BLOCK_SIZE)) return S.Nvic.IrqWord(CNvic::SET::ACTIVE, Index);
  if (InBlock(Addr, NVIC_IPR, NVIC_IPR_END - NVIC_IPR)) return ReadPriorities(S, EXC_IRQ0 + (Addr - NVIC_IPR));
  return 0;
}

void WriteNvic(STATE& S, U32 Addr, U32 Value, U32 Lanes) {
  const U32 Index = (Addr & (NVIC_BLOCK_SIZE - 1)) / 4;
  if (InBlock(Addr, NVIC_ISER, NVIC_BLOCK_SIZE)) S.Nvic.ChangeIrqWord(CNvic::SET::ENABLED, Index, Value, true);
  if (InBlock(Addr, NVIC_ICER, NVIC_BLOCK_SIZE)) S.Nvic.ChangeIrqWord(CNvic::SET::ENABLED, Index, Value, false);
  if (InBlock(Addr, NVIC_ISPR, NVIC_BLOCK_SIZE)) {
    S.Nvic.ChangeIrqWord(CNvic::SET::PENDING, Index, Value, true);
    if (Value && (S.Scb.SCR & SCR_SEVONPEND)) S.bEvent = true;
  }
  if (InBlock(Addr, NVIC_ICPR, NVIC_BLOCK_SIZE)) S.Nvic.ChangeIrqWord(CNvic::SET::PENDING, Index, Value, false);
  if (InBlock(Addr, NVIC_IPR, NVIC_IPR_END - NVIC_IPR)) WritePriorities(S, EXC_IRQ0 + (Addr - NVIC_IPR), Value, Lanes);
}

// Registers that only ARMv7-M has.
U32 ReadV7(STATE& S, U32 Addr) {
  switch (Addr) {
    case ICTR:
      return (S.Spec.NumIRQs + 31) / 32 ? (S.Spec.NumIRQs + 31) / 32 - 1 : 0;
    case SHPR1:
      return ReadPriorities(S, EXC_MEMMANAGE);
    case CFSR:
      return S.Scb.CFSR;
    case HFSR:
      return S.Scb.HFSR;
    case MMFAR:
      return S.Scb.MMFAR;
    case BFAR:
      return S.Scb.BFAR;
    case ACTLR:
      return S.Scb.ACTLR;
    case CPACR:
      return S.Scb.CPACR;
    default:
      break;
  }
  U32 Value = 0;
  ReadFpSystemReg(S, Addr, &Value);
  return Value;
}

void WriteV7(STATE& S, U32 Addr, U32 Value, U32 Lanes) {
  switch (Addr) {
    case SHPR1:
      WritePriorities(S, EXC_MEMMANAGE, Value, Lanes);
      break;
    case CFSR:
      S.Scb.CFSR &= ~Value;
      break;
    case HFSR:
      S.Scb.HFSR &= ~Value;
      break;
    case MMFAR:
      S.Scb.MMFAR = Value;
      break;
    case BFAR:
      S.Scb.BFAR = Value;
      break;
    case ACTLR:
      S.Scb.ACTLR = Value & ACTLR_MASK;
      break;
    case CPACR:
      S.Scb.CPACR = S.HasFpu() ? Value & CPACR_MASK : 0;
      UpdateFpAccess(S);
      break;
    case STIR:
      S.Nvic.ChangeIrqWord(CNvic::SET::PENDING, (Value & 0x1FF) / 32, 1u << (Value & 31), true);
      break;
    default:
      WriteFpSystemReg(S, Addr, Value);
      break;
  }
}

// The core itself only ever reads it while it runs.
U32 ReadDhcsr(const STATE& S, bool bDebugger) {
  return (S.bHaltingDebug ? DHCSR_DEBUGEN : 0) | (bDebugger ? DHCSR_HALTED : 0) | (S.bSleeping ? DHCSR_SLEEP : 0) |
         (S.bLockup ? DHCSR_LOCKUP : 0);
}

U32 ReadWord(STATE& S, U32 Addr, bool bDebugger) {
  switch (Addr) {
    case DHCSR:
      return ReadDhcsr(S, bDebugger);
    case SYST_CSR:
      return S.SysTick.ReadControl(S.Now(), bDebugger);
    case SYST_RVR:
      return S.SysTick.ReadReload();
    case SYST_CVR:
      return S.SysTick.ReadCurrent(S.Now());
    case SYST_CALIB:
      return 1u << 31;
    case CPUID:
      return S.Spec.CpuId;
    case ICSR:
      return ReadIcsr(S);
    case VTOR:
      return S.Scb.VTOR;
    case AIRCR:
      return AIRCR_KEY_READ | S.Scb.PriGroup << 8;
    case SCR:
      return S.Scb.SCR;
    case CCR:
      return S.Scb.CCR;
    case SHPR1 + 4:
      return ReadPriorities(S, 8);
    case SHPR3:
      return ReadPriorities(S, 12);
    case SHCSR:
      return ReadShcsr(S);
    case DFSR:
      return S.Scb.DFSR;
    case DEMCR:
      return S.Scb.DEMCR | (S.Nvic.IsPending(EXC_DEBUGMON) ? DEMCR_MON_PEND : 0);
    default:
      break;
  }
  if (CMpu::IsRegister(Addr)) return S.Mpu.Read(Addr);
  if (InBlock(Addr, NVIC_ISER, NVIC_IPR_END - NVIC_ISER)) return ReadNvic(S, Addr);
  return S.bV7 ? ReadV7(S, Addr) : 0;
}

void WriteWord(STATE& S, U32 Addr, U32 Value, U32 Lanes, bool bDebugger) {
  switch (Addr) {
    case DHCSR:
      if (bDebugger && Value >> 16 == DHCSR_KEY) S.bHaltingDebug = Value & DHCSR_DEBUGEN;
      break;
    case SYST_CSR:
      S.SysTick.WriteControl(S.Now(), Value);
      break;
    case SYST_RVR:
      S.SysTick.WriteReload(Value);
      break;
    case SYST_CVR:
      S.SysTick.WriteCurrent(S.Now());
      break;
    case ICSR:
      WriteIcsr(S, Value);
      break;
    case VTOR:
      S.Scb.VTOR = Value & VTOR_MASK;
      break;
    case AIRCR:
      WriteAircr(S, Value);
      break;
    case SCR:
      S.Scb.SCR = Value & SCR_MASK;
      break;
    case CCR:
      if (S.bV7) S.Scb.CCR = Value & CCR_MASK;
      UpdateAccessPaths(S);
      break;
    case SHPR1 + 4:
      WritePriorities(S, 8, Value, Lanes);
      break;
    case SHPR3:
      WritePriorities(S, 12, Value, Lanes);
      break;
    case SHCSR:
      WriteShcsr(S, Value);
      break;
    case DFSR:
      S.Scb.DFSR &= ~Value;
      break;
    case DEMCR:
      S.Scb.DEMCR = Value & DEMCR_MASK;
      S.Nvic.SetEnabled(EXC_DEBUGMON, S.bV7 && (Value & DEMCR_MON_EN));
      S.Nvic.SetPending(EXC_DEBUGMON, S.bV7 && (Value & DEMCR_MON_PEND));
      UpdateDebugUnits(S);
      break;
    default:
      if (CMpu::IsRegister(Addr)) {
        S.Mpu.Write(Addr, Value, Lanes);
        UpdateAccessPaths(S);
      }
      WriteNvic(S, Addr, Value, Lanes);
      if (S.bV7) WriteV7(S, Addr, Value, Lanes);
      break;
  }
}

}  // namespace

bool IsStir(U32 Addr) {
  return (Addr & ~3u) == STIR;
}

U32 ReadScs(STATE& S, U32 Addr, U32 NumBytes, bool bDebugger) {
  const U32 Shift = 8 * (Addr & 3);
  const U32 Word = Addr & ~3u;
  const U32 Value = (IsDebugUnit(Word) ? ReadDebugUnit(S, Word, bDebugger) : ReadWord(S, Word, bDebugger)) >> Shift;
  return NumBytes == 4 ? Value : Value & ((1u << (8 * NumBytes)) - 1);
}

void WriteScs(STATE& S, U32 Addr, U32 NumBytes, U32 Value, bool bDebugger) {
  if (IsDebugUnit(Addr)) return WriteDebugUnit(S, Addr, NumBytes, Value, bDebugger);
  const U32 Shift = 8 * (Addr & 3);
  const U32 Lanes = (NumBytes == 4 ? 0xFFFFFFFF : (1u << (8 * NumBytes)) - 1) << Shift;
  WriteWord(S, Addr & ~3u, Value << Shift & Lanes, Lanes, bDebugger);
  S.Attention();
}

void ResetScs(STATE& S) {
  const SCB_REGS Old = S.Scb;
  S.Scb = SCB_REGS();
  S.Scb.VTOR = S.Flash.Start;
  S.Scb.CCR = S.bV7 ? CCR_RESET : CCR_RESET_V6M;
  S.Scb.DEMCR = Old.DEMCR;  // a debugger's settings survive
  ResetFp(S);
  S.SysTick.Reset();
  S.Mpu.Reset(S.Spec.NumMpuRegions, S.bV7);
  S.Nvic.Reset(S.Spec.NumIRQs, S.Spec.NumPriorityBits ? S.Spec.NumPriorityBits : S.bV7 ? 4 : 2);
  UpdateAccessPaths(S);
}

int ExecutionPriority(const STATE& S) {
  int Priority = S.Nvic.ActivePriority(S.Scb.PriGroup);
  if (S.Basepri) Priority = std::min(Priority, S.Nvic.ApplyGroup(S.Basepri, S.Scb.PriGroup));
  if (S.Primask) Priority = std::min(Priority, 0);
  if (S.Faultmask) Priority = std::min(Priority, -1);
  return Priority;
}

}  // namespace sim
