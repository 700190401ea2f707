#pragma once

#include "base/elf_sym.h"
#include "program/elf/location_ops.h"

// What an expression asks of its surroundings.
class IExprContext {
public:
  virtual ~IExprContext() = default;
  // Address or constant of that number in the unit's part of .debug_addr.
  virtual std::optional<U64> IndexedAddress(U64 Index) = 0;
  // Canonical frame address at the pc that the question is about.
  virtual ELF_SYM_LOC Cfa() = 0;
  // Takes a message for the user.
  virtual void Complain(const char* sText) = 0;
};

// The place that a location expression describes, with addresses as the file has them. ELF_LOC_NONE for an expression
// that ELF_SYM_LOC cannot say: one that computes with several operations, other than adding a constant to a place, or
// one that is damaged. bFrameBase: a register with an offset is the value of that sum and no place in memory.
ELF_SYM_LOC TranslateExpr(CByteCursor Expr, const OPERAND_SIZES& Sizes, bool bFrameBase, IExprContext& Context);
