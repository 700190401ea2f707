#pragma once
// The rows behind colors.h.

#include "shell/settings/colors.h"

extern const COLOR_INFO Colors[NUM_COLORS];
