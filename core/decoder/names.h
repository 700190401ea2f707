#pragma once

#include <string_view>

#include "base/types.h"

// Names of the instruction set as disassembly text shows them.

// Registers R0 to R12, SP, LR, PC.
std::string_view RegName(U32 Reg);
// Condition suffix by ARM condition code; empty for 14 and 15.
std::string_view CondName(U32 Cond);
// Option of a barrier; empty for 15.
std::string_view BarrierName(U32 Option);
// Interrupt flags of CPS, bits A, I, F from the high bit down; empty for 0.
std::string_view InterruptFlagsName(U32 Flags);
// Shift "LSL", "LSR", "ASR", "ROR"; "??" for another type.
std::string_view ShiftName(U32 Type);
// Special register of MRS and MSR on M-profile cores by its SYSm number; null for a number without a register.
const char* SysRegName(U32 SYSm, U32 ArchVersion);
// "CPSR" or "SPSR" with the suffix of a field mask, bits c, x, s, f from the low bit up.
std::string_view StatusRegName(bool bSaved, U32 FieldMask);
// Register of another processor mode by its 5 bits of MRS and MSR; null for a number without a register.
const char* BankedRegName(bool bSaved, U32 Index);
// Register of the floating point unit that has a load and a store of its own; null for a number without a register.
const char* FloatSystemRegName(U32 Index);
