#pragma once
// What the FPU holds: its register bank and the registers of the system control space that belong to it.

#include <cstring>

#include "base/types.h"

namespace sim {

inline constexpr U32 NUM_FP_REGS = 32;
inline constexpr U32 NUM_STACKED_FP_REGS = 16;  // by an exception; the rest belongs to the callee

// Coprocessor access control register: the FPU's field.
inline constexpr U32 CPACR_FPU_SHIFT = 20;
inline constexpr U32 CPACR_PRIVILEGED = 1;
inline constexpr U32 CPACR_FULL = 3;

// Floating-point context control register.
inline constexpr U32 FPCCR_LSPACT = 1u << 0;
inline constexpr U32 FPCCR_USER = 1u << 1;
inline constexpr U32 FPCCR_THREAD = 1u << 3;
inline constexpr U32 FPCCR_HFRDY = 1u << 4;
inline constexpr U32 FPCCR_MMRDY = 1u << 5;
inline constexpr U32 FPCCR_BFRDY = 1u << 6;
inline constexpr U32 FPCCR_MONRDY = 1u << 8;
inline constexpr U32 FPCCR_LSPEN = 1u << 30;
inline constexpr U32 FPCCR_ASPEN = 1u << 31;
inline constexpr U32 FPCCR_MASK = 0xC000017B;
inline constexpr U32 FPCCR_RESET = FPCCR_ASPEN | FPCCR_LSPEN;

struct FP_REGS {
  // S0 to S31; a double precision register is two of them. Instructions name it by the first one.
  alignas(8) U32 S[NUM_FP_REGS] = {};
  U32 FPSCR = 0;
  U32 FPCCR = 0;
  U32 FPCAR = 0;
  U32 FPDSCR = 0;
  // FP instructions may run at once: there is an FPU, it may be used, and no context has to be saved or begun first.
  bool bReady = false;

  template <class T>
  T Get(U32 Index) const {
    T Value;
    std::memcpy(&Value, &S[Index], sizeof(T));
    return Value;
  }
  template <class T>
  void Set(U32 Index, T Value) {
    std::memcpy(&S[Index], &Value, sizeof(T));
  }
};

struct STATE;

// Sets FP_REGS::bReady for the present privilege, CPACR, FPCCR and CONTROL.
void UpdateFpAccess(STATE& S);
bool IsFpAllowed(const STATE& S);
void ResetFp(STATE& S);

// FPCCR, FPCAR, FPDSCR, MVFR0 to MVFR2. False when there is no such register.
bool ReadFpSystemReg(const STATE& S, U32 Addr, U32* pValue);
bool WriteFpSystemReg(STATE& S, U32 Addr, U32 Value);

}  // namespace sim
