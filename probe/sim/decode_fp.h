#pragma once

#include "probe/sim/state.h"

namespace sim {

// Coprocessor instructions: those of the FPU and those of coprocessors that no core has. As Decode32.
void DecodeCoprocessor(const STATE& S, INST* pI, U16 First, U16 Second);

}  // namespace sim
