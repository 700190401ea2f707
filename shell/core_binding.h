#pragma once

#include "base/types.h"

// Sets the core model up for a core, with the device as its source of memory and registers. Nothing happens for an
// unknown core (0 or below). Main thread.
void BindCoreModel(U32 CoreId);
