#pragma once

#include <QString>

#include "base/types.h"

// What one instruction does to the stack pointer.
struct SP_CHANGE {
  U32 NumBytes = 0;       // that it takes from the stack
  bool bUnknown = false;  // by an amount, or to an address, that stands in a register
  I32 Source = -1;        // register that SP is set from, -1 for none
};

// Reads the text of a disassembled instruction: SUB, PUSH, VPUSH and MOV with SP as destination.
SP_CHANGE ChangeOfStackPointer(const QString& sText);
