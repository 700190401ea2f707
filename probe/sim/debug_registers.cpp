#include "probe/sim/debug_registers.h"

#include "probe/sim/memory.h"

namespace sim {

namespace {

inline constexpr U32 UNIT_SIZE = 0x1000;
enum UNIT : U32 { ITM = 0xE0000000, DWT = 0xE0001000, FPB = 0xE0002000, TPIU = 0xE0040000 };

inline constexpr U32 DWT_PCSR = 0x1C;

enum FPB_REG : U32 { FP_CTRL = 0x0, FP_COMP0 = 0x8 };
inline constexpr U32 FP_ENABLE = 1u << 0;
inline constexpr U32 FP_NUM_CODE_SHIFT = 4;
inline constexpr U32 FP_REVISION_2 = 1u << 28;
inline constexpr U32 FP_REPLACE_SHIFT = 30;  // which halfword of the word stops: 1 the lower, 2 the upper

enum TPIU_REG : U32 {
  SSPSR = 0x000,
  CSPSR = 0x004,
  ACPR = 0x010,
  SPPR = 0x0F0,
  FFSR = 0x300,
  FFCR = 0x304,
  DEVID = 0xFC8
};
inline constexpr U32 FFSR_FORMATTER_STOPPED = 8;
inline constexpr U32 DEVID_HAS_NRZ = 1u << 11;  // asynchronous output, as serial ports have it

bool IsEnabled(const STATE& S) {
  return S.Scb.DEMCR & DEMCR_TRCENA;
}

U32 ReadBreakpointUnit(const STATE& S, U32 Offset) {
  const U32 Num = S.Spec.NumCodeBreakpoints;
  if (Offset == FP_CTRL) {
    return (S.Spec.bCodeBreakpointsAnywhere ? FP_REVISION_2 : 0) | (Num & 0xF) << FP_NUM_CODE_SHIFT | FP_ENABLE;
  }
  const U32 Index = (Offset - FP_COMP0) / 4;
  const U32 Addr = Index < Num ? S.Breakpoints.UnitAddr(Index) : INVALID_ADDR;
  if (Addr == INVALID_ADDR) return 0;
  if (S.Spec.bCodeBreakpointsAnywhere) return Addr | FP_ENABLE;
  return (Addr & 2 ? 2u : 1u) << FP_REPLACE_SHIFT | (Addr & ~3u) | FP_ENABLE;
}

U32 ReadTpiu(const TPIU_REGS& Tpiu, U32 Offset) {
  switch (Offset) {
    case SSPSR:
      return 1;  // one data line
    case CSPSR:
      return Tpiu.PortSize;
    case ACPR:
      return Tpiu.Prescaler;
    case SPPR:
      return Tpiu.Protocol;
    case FFSR:
      return FFSR_FORMATTER_STOPPED;
    case FFCR:
      return Tpiu.Formatter;
    case DEVID:
      return DEVID_HAS_NRZ;
    default:
      return 0;
  }
}

void WriteTpiu(TPIU_REGS& Tpiu, U32 Offset, U32 Value) {
  if (Offset == CSPSR) Tpiu.PortSize = Value;
  if (Offset == ACPR) Tpiu.Prescaler = Value & TPIU_MAX_PRESCALER;
  if (Offset == SPPR) Tpiu.Protocol = Value & 3;
  if (Offset == FFCR) Tpiu.Formatter = Value & 0x102;
}

}  // namespace

bool IsDebugUnit(U32 Addr) {
  return Addr - ITM < FPB + UNIT_SIZE - ITM || Addr - TPIU < UNIT_SIZE;
}

bool IsStimulusPort(U32 Addr) {
  return Addr - ITM < STIMULUS_END;
}

U32 ReadDebugUnit(STATE& S, U32 Addr, bool bDebugger) {
  const U32 Offset = Addr & (UNIT_SIZE - 1);
  switch (Addr - Offset) {
    case ITM:
      return S.bV7 && IsEnabled(S) ? S.Itm.Read(Offset, bDebugger) : 0;
    case DWT:
      return Offset == DWT_PCSR ? S.R[PC] : S.Dwt.Read(Offset, S.Now());
    case FPB:
      return ReadBreakpointUnit(S, Offset);
    default:
      return S.bV7 && IsEnabled(S) ? ReadTpiu(S.Tpiu, Offset) : 0;
  }
}

void WriteDebugUnit(STATE& S, U32 Addr, U32 NumBytes, U32 Value, bool bDebugger) {
  if (IsStimulusPort(Addr)) {
    if (S.bV7) S.Itm.Send((Addr - ITM) / 4, Value, NumBytes, S.IsPrivileged(), IsEnabled(S));
    return;
  }
  if (NumBytes != 4 || !IsEnabled(S)) return;
  const U32 Offset = Addr & (UNIT_SIZE - 1);
  switch (Addr - Offset) {
    case ITM:
      if (S.bV7) S.Itm.Write(Offset, Value, bDebugger);
      break;
    case DWT:
      S.Dwt.Write(Offset, Value, S.Now());
      UpdateAccessPaths(S);
      break;
    case TPIU:
      if (S.bV7) WriteTpiu(S.Tpiu, Offset, Value);
      break;
    default:
      break;  // breakpoints are set by the debugger's own operations
  }
}

void UpdateDebugUnits(STATE& S) {
  S.Dwt.SetEnabled(IsEnabled(S), S.Now());
  UpdateAccessPaths(S);
}

}  // namespace sim
