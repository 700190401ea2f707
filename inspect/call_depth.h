#pragma once

#include <vector>

#include "base/types.h"

// What one function needs of the stack and what it calls. Numbers of functions are positions in one list.
struct STACK_FUNCTION {
  U32 Frame = 0;            // bytes
  bool bUnknown = false;    // its frame is not known and counts as 0
  bool bUnbounded = false;  // calls code of which nothing is known, or takes a number of bytes that depends
  bool bIndirect = false;   // calls through a register
  bool bRecursive = false;  // can call itself, out
  std::vector<U32> aCalls;
  std::vector<U32> aTailCalls;  // jumps to other functions, made when the frame is gone

  // The deepest use, its own frame included. Of functions that call each other each counts once.
  U32 Depth = 0;
  I32 Deepest = -1;  // the callee of the deepest use, -1 if there is none
  // What holds for it or for anything below it.
  bool bUnknownBelow = false;
  bool bIndirectBelow = false;
  bool bRecursiveBelow = false;
};

// Fills in what follows from frames and calls.
void ComputeCallDepths(std::vector<STACK_FUNCTION>& aFunctions);
