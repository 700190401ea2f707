#include "probe/sim/fp.h"
#include "probe/sim/state.h"

namespace sim {

namespace {

enum FP_SYSTEM_REG : U32 {
  FPCCR = 0xE000EF34,
  FPCAR = 0xE000EF38,
  FPDSCR = 0xE000EF3C,
  MVFR0 = 0xE000EF40,
  MVFR1 = 0xE000EF44,
  MVFR2 = 0xE000EF48,
};

inline constexpr U32 FPCAR_MASK = ~7u;

// What MVFR0 to MVFR2 say of each kind.
struct FEATURES {
  U32 MVFR[3];
};
constexpr FEATURES FEATURE_TABLE[] = {
    {{0, 0, 0}},
    {{0x10110021, 0x11000011, 0}},
    {{0x10110021, 0x11000011, 0x40}},
    {{0x10110221, 0x12000011, 0x40}},
};

}  // namespace

bool IsFpAllowed(const STATE& S) {
  const U32 Access = S.Scb.CPACR >> CPACR_FPU_SHIFT & 3;
  return S.HasFpu() && (Access == CPACR_FULL || (Access == CPACR_PRIVILEGED && S.IsPrivileged()));
}

void UpdateFpAccess(STATE& S) {
  const bool bContextBegun = (S.Control & CONTROL_FPCA) || !(S.Fp.FPCCR & FPCCR_ASPEN);
  S.Fp.bReady = IsFpAllowed(S) && bContextBegun && !(S.Fp.FPCCR & FPCCR_LSPACT);
}

void ResetFp(STATE& S) {
  S.Fp = FP_REGS();
  if (S.HasFpu()) S.Fp.FPCCR = FPCCR_RESET;
  UpdateFpAccess(S);
}

bool ReadFpSystemReg(const STATE& S, U32 Addr, U32* pValue) {
  if (!S.HasFpu()) return false;
  switch (Addr) {
    case FPCCR:
      *pValue = S.Fp.FPCCR;
      return true;
    case FPCAR:
      *pValue = S.Fp.FPCAR;
      return true;
    case FPDSCR:
      *pValue = S.Fp.FPDSCR;
      return true;
    case MVFR0:
    case MVFR1:
    case MVFR2:
      *pValue = FEATURE_TABLE[static_cast<size_t>(S.Spec.Fpu)].MVFR[(Addr - MVFR0) / 4];
      return true;
    default:
      return false;
  }
}

bool WriteFpSystemReg(STATE& S, U32 Addr, U32 Value) {
  if (!S.HasFpu()) return false;
  switch (Addr) {
    case FPCCR:
      S.Fp.FPCCR = Value & FPCCR_MASK;
      UpdateFpAccess(S);
      return true;
    case FPCAR:
      S.Fp.FPCAR = Value & FPCAR_MASK;
      return true;
    case FPDSCR:
      S.Fp.FPDSCR = Value & FPDSCR_MASK;
      return true;
    default:
      return false;
  }
}

}  // namespace sim
