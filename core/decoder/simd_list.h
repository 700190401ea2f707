#pragma once

#include "core/decoder/inst.h"

// The registers and the alignment that a structure load or store of Advanced SIMD names.
struct SIMD_LIST {
  bool bValid = false;  // false where the encoding is none or the list runs past the last register
  U32 First = 0;        // double word register
  U32 Count = 0;
  U32 Step = 1;
  U32 ElementBits = 8;
  U32 Lane = 0;       // of one-lane forms
  U32 Alignment = 0;  // bits, 0 for none
};

// Whole registers, one lane of each, or one element to all lanes of each.
SIMD_LIST SimdWholeList(const INST& Inst);
SIMD_LIST SimdLaneList(const INST& Inst);
SIMD_LIST SimdAllLanesList(const INST& Inst);
