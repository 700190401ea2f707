#pragma once
// The rows behind sys_vars.h.

#include "shell/settings/sys_vars.h"

inline constexpr const char* YES_NO = "no=0,yes=1";

extern const SYS_VAR SysVars[NUM_VARS];
