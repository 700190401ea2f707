#include "probe/sim/state.h"

#include "probe/sim/memory.h"

namespace sim {

namespace {

inline constexpr U32 APSR_N = 1u << 31;
inline constexpr U32 APSR_Z = 1u << 30;
inline constexpr U32 APSR_C = 1u << 29;
inline constexpr U32 APSR_V = 1u << 28;
inline constexpr U32 APSR_Q = 1u << 27;
inline constexpr U32 APSR_GE_SHIFT = 16;
inline constexpr U32 EPSR_T = 1u << 24;

inline constexpr I64 NZ_BOTH = 1ll << 63;  // negative with a zero low word

}  // namespace

STATE::STATE(const BOARD_SPEC& BoardSpec)
    : Spec(BoardSpec), bV7(BoardSpec.Arch != ARCH::ARMV6M), bDSP(BoardSpec.Arch == ARCH::ARMV7EM) {
  Flash.Create(Spec.Flash, 0xFF);
  for (U32 i = 0; i < std::size(aRAM); i++) aRAM[i].Create(Spec.RAM[i], 0);
  Dwt.Create(Spec.NumDataWatches, bV7);
  UpdateAccessPaths(*this);
}

U32 STATE::APSR() const {
  return (NZ < 0 ? APSR_N : 0) | (static_cast<U32>(NZ) == 0 ? APSR_Z : 0) | (C ? APSR_C : 0) | (V ? APSR_V : 0) |
         (bQ ? APSR_Q : 0) | static_cast<U32>(GE) << APSR_GE_SHIFT;
}

void STATE::SetAPSR(U32 Value, bool bFlags, bool bGE) {
  if (bFlags) {
    NZ = (Value & APSR_N ? NZ_BOTH : 0) | (Value & APSR_Z ? 0 : 1);
    C = (Value & APSR_C) != 0;
    V = (Value & APSR_V) != 0;
    bQ = bV7 && (Value & APSR_Q);
  }
  if (bGE && bDSP) GE = Value >> APSR_GE_SHIFT & 0xF;
}

// ITSTATE bits 7 to 2 are at 15 to 10, bits 1 and 0 at 26 and 25.
U32 STATE::XPSR(U8 ITState) const {
  return APSR() | IPSR | (bThumb ? EPSR_T : 0) | (ITState & 0xFCu) << 8 | (ITState & 3u) << 25;
}

void STATE::SetXPSR(U32 Value) {
  SetAPSR(Value, true, true);
  bThumb = (Value & EPSR_T) != 0;
  IT = bV7 ? static_cast<U8>((Value >> 8 & 0xFC) | (Value >> 25 & 3)) : 0;
  if (!(IT & 0xF)) IT = 0;  // bits of an interruptible load or store multiple, which starts again
}

}  // namespace sim
