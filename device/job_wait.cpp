#include "device/job_wait.h"

#include <chrono>

namespace {
constexpr int POLL_INTERVAL_MS = 1;
}

JOB_WAIT_RESULT WaitForPendingJob(CJobRings& Rings, U32 Type, int TimeoutMS, const JOB_WAIT_HOOKS& Hooks) {
  const CJobRings::JOB_REF Ref = Rings.FindPending(Type);
  if (Ref.pJob == nullptr) return JOB_WAIT_NO_JOB;
  const bool bStep = IsStepJob(Type) || Type == JT_STEP;
  bool bHasStepped = false;
  const auto Begin = std::chrono::steady_clock::now();
  const auto Limit = std::chrono::milliseconds(TimeoutMS < 0 ? JobTypeInfo(Type).TimeoutMS : TimeoutMS);
  for (;;) {
    if (!Rings.IsPending(Ref)) return JOB_WAIT_FINISHED;
    if (bStep) {
      const bool bStepping = Hooks.IsStepping();
      if (bHasStepped && !bStepping) return JOB_WAIT_FINISHED;
      bHasStepped = bHasStepped || bStepping;
    }
    if (!Hooks.IsThreadAlive()) return JOB_WAIT_TIMEOUT;
    if (std::chrono::steady_clock::now() - Begin > Limit) return JOB_WAIT_TIMEOUT;
    if (Hooks.ProcessEvents) Hooks.ProcessEvents();
    Rings.WaitForFinish(POLL_INTERVAL_MS);
  }
}
