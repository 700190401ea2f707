#pragma once

#include <algorithm>

#include "device/device_job.h"

// A job of a type with its numbers and nothing else.
inline DEVICE_JOB MakeJob(U32 Type, U64 P0 = 0, U64 P1 = 0, U64 P2 = 0, U64 P3 = 0, U64 P4 = 0) {
  DEVICE_JOB Job;
  Job.Type = Type;
  const U64 aParam[] = {P0, P1, P2, P3, P4};
  std::copy(std::begin(aParam), std::end(aParam), Job.Param);
  return Job;
}
