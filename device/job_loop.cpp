#include "device/job_loop.h"

void CJobLoop::Run() {
  while (!bTerminate) {
    U32 NumJobs = 0;
    {
      std::lock_guard Lock(Mutex);
      NumJobs = ProcessJobs();
    }
    if (NumJobs < JOBS_PER_BATCH && !bTerminate) Rings.WaitForWork(IDLE_WAIT_MS);
  }
}

U32 CJobLoop::ProcessJobs() {
  for (U32 i = 0; i < JOBS_PER_BATCH; ++i) {
    Runner.PollTarget();
    DEVICE_JOB* pJob = Rings.Take();
    if (pJob == nullptr) return i;
    Execute(*pJob);
    Rings.Finished();
    if (!Mutex.IsWanted()) continue;
    Rings.Wake();  // the rest goes on as soon as the lock is free again
    return i + 1;
  }
  return JOBS_PER_BATCH;
}

void CJobLoop::RequestEnd() {
  bTerminate = true;
  Rings.Wake();
  Rings.WakeWaiters();
}

void CJobLoop::SetSuppressed(U32 Type, bool bSuppress) {
  if (Type < JT_LAST) aSuppressEvent[Type] = bSuppress ? 1 : 0;
}

void CJobLoop::Execute(DEVICE_JOB& Job) {
  if (!CJobRings::IsPending(Job)) {
    Rings.Release(&Job);
    return;
  }
  int Result = 0;
  if (!IsDoneAlready(Job)) {
    CancelOutdated(Job.Type);
    Result = Runner.Dispatch(Job);
  }
  ++Rings.Counters.NumExecuted;
  SetStatus(Job, Result);
  if (Job.Status != JS_DROPPED) {
    if (Job.Type == JT_RESET || IsStepJob(Job.Type)) Job.Result = Runner.GetPC();
    if (Job.Type == JT_WRITE_REG || Job.Type == JT_WRITE_LOCATION) Runner.OnRegistersWritten();
  }
  // From here on a reported job belongs to the main thread.
  if (!IsReportable(Job, Result) || !Runner.RaiseJobFinished(Job)) Rings.Release(&Job);
}

bool CJobLoop::IsDoneAlready(const DEVICE_JOB& Job) const {
  return Job.Type == JT_HALT && Runner.IsHalted();
}

void CJobLoop::CancelOutdated(U32 Type) {
  switch (Type) {
    case JT_RESET:
    case JT_HALT:
    case JT_CONTINUE:
    case JT_STEP_INST:
    case JT_STEP_INTO:
    case JT_STEP_OVER:
    case JT_STEP_OUT:
      Rings.Cancel(JT_ANY, JQ_BACKGROUND);
      Rings.Cancel(JT_ANY, JQ_READ);
      break;
    case JT_START_HSS:
      Rings.Cancel(JT_READ_HSS, JQ_READ);
      break;
    default:
      break;
  }
}

void CJobLoop::SetStatus(DEVICE_JOB& Job, int Result) {
  if (Result >= 0) {
    Job.Status = JS_DONE;
  } else if (Job.Type == JT_END_DOWNLOAD) {
    Job.Status = JS_FAILED;
  } else {
    Job.Status = Result == -1 ? JS_FAILED : JS_DROPPED;
  }
}

bool CJobLoop::IsReportable(const DEVICE_JOB& Job, int Result) const {
  if (Job.Status == JS_DROPPED || IsSuppressed(Job.Type)) return false;
  // A halt is heard of when the target has halted, and so is what runs towards a hidden breakpoint.
  if (Job.Type == JT_HALT) return false;
  const bool bToHiddenBreakpoint =
      Job.Type == JT_RUN_TO || Job.Type == JT_STEP_INTO || Job.Type == JT_STEP_OVER || Job.Type == JT_STEP_OUT;
  return !(bToHiddenBreakpoint && Result == 1);
}
