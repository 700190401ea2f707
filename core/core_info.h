#pragma once

#include "core/vcore.h"

// Text of the first invalid field of a core's description, null when it is valid.
const char* FirstInvalidField(const VCORE_INFO& Info);
