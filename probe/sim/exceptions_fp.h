#pragma once
// What exceptions do with the floating point context: stacking it at once or lazily, and taking it back.

#include "probe/sim/state.h"

namespace sim {

inline constexpr U32 BASIC_FRAME_SIZE = 0x20;     // bytes: R0 to R3, R12, LR, return address, xPSR
inline constexpr U32 EXTENDED_FRAME_SIZE = 0x68;  // above these S0 to S15, FPSCR and an unused word

// A fault that was found on the way into or out of an exception; Exc is EXC_NONE when there was none.
struct DERIVED_FAULT {
  U32 Exc = EXC_NONE;
  U32 CfsrBit = 0;
};

// The fault of a stack access that Load or Store has left: of the bus or of memory protection.
DERIVED_FAULT StackFault(const STATE& S, U32 BusBit, U32 ProtectionBit);

// Saves S0 to S15 and FPSCR above the basic frame at Frame, or notes that this is still to be done.
DERIVED_FAULT PushFpContext(STATE& S, U32 Frame);
// Takes them back; the registers are written when there was no fault.
DERIVED_FAULT PopFpContext(STATE& S, U32 Frame);

}  // namespace sim
