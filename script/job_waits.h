#pragma once
// The device work that a command called from a script has to wait for.

#include <span>

#include "base/types.h"

struct JOB_WAIT {
  U32 ActionID;        // ACTION_ID
  U32 JobType;         // JOB_TYPES
  bool ProcessEvents;  // the event loop runs meanwhile
};

// Every wait of a command, in order.
std::span<const JOB_WAIT> AllJobWaits();
