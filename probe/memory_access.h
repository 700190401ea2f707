#pragma once
// Transfers between a buffer and the machine's memory, cut into accesses of the width that the caller wants.

#include "base/types.h"
#include "probe/sim/machine.h"

// AccessWidth 1, 2 or 4; 0 stands for words. Where the address or the length does not allow the width, bytes are used.
// The result is the number of bytes before the first one that does not answer.
U32 ReadMachine(sim::CMachine& Machine, U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth);
U32 WriteMachine(sim::CMachine& Machine, U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth);
// NumBytes, cut at the end of the address space.
U32 LimitToAddressSpace(U32 Addr, U32 NumBytes);
