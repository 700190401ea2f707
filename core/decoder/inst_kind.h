#pragma once

#include "core/decoder/inst.h"
#include "core/decoder/inst_row.h"

// Fills Flags and Target of Inst.Info for an encoding of the given kind; false when its operands make no instruction.
bool ClassifyInst(INST& Inst, INST_KIND Kind);
