#pragma once
// Waiting for a job. Plain C++ without Qt.

#include <functional>

#include "device/job_rings.h"

struct JOB_WAIT_HOOKS {
  std::function<bool()> IsThreadAlive;  // the device thread runs and was not asked to end
  std::function<bool()> IsStepping;     // a source step is in progress
  std::function<void()> ProcessEvents;  // empty when the caller's event loop is not to run
};

enum JOB_WAIT_RESULT { JOB_WAIT_FINISHED = 0, JOB_WAIT_NO_JOB = 1, JOB_WAIT_TIMEOUT = -1 };

// Waits until the first pending job of the type is finished: FINISHED, also for a step job when the device has stopped
// stepping, because a step that ends in a run finishes with the halt; NO_JOB at once when none is pending; TIMEOUT
// after TimeoutMS (-1: the type's default) or when the device thread ends.
JOB_WAIT_RESULT WaitForPendingJob(CJobRings& Rings, U32 Type, int TimeoutMS, const JOB_WAIT_HOOKS& Hooks);
