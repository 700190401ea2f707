#pragma once
// The device thread's loop. Plain C++ without Qt.

#include <array>
#include <atomic>

#include "device/device_mutex.h"
#include "device/event_ring.h"
#include "device/job_rings.h"

// What the loop needs of the target. Called on the device thread with the device mutex held.
class CJobRunner {
public:
  virtual ~CJobRunner() = default;
  // Before each job and while idle: pending notifications and the polls of the halt state.
  virtual void PollTarget() = 0;
  // Does the job's work. A negative result is a failure: -1 is reported, any other is not.
  virtual int Dispatch(DEVICE_JOB& Job) = 0;
  virtual bool IsHalted() const = 0;
  virtual U64 GetPC() const = 0;
  // A job has written a register or a location that may be one: takes PC, SP and what depends on them anew.
  virtual void OnRegistersWritten() = 0;
  // Hands a finished job on, see CEventRing::Put; false when it could not be.
  virtual bool RaiseJobFinished(DEVICE_JOB& Job) = 0;
};

// Takes jobs from the rings and runs them, in batches under the device mutex and with polls of the target in between.
class CJobLoop {
public:
  static constexpr U32 JOBS_PER_BATCH = 100;
  // A third of the interval of the halt poll, so that a poll that is due is not a whole wait late.
  static constexpr int IDLE_WAIT_MS = 17;

  CJobLoop(CJobRings& Rings, CJobRunner& Runner) : Rings(Rings), Runner(Runner) {}

  // Works until RequestEnd. Device thread.
  void Run();
  // At most one batch, less when somebody waits for the device mutex; returns the number of jobs handled. Device
  // thread.
  U32 ProcessJobs();
  void RequestEnd();
  bool IsEnding() const { return bTerminate; }

  // Held by the device thread around each batch, and by others around what no job may see half done.
  CDeviceMutex& DeviceMutex() { return Mutex; }
  // Drops the events of finished jobs of a type; any thread.
  void SetSuppressed(U32 Type, bool bSuppress);
  bool IsSuppressed(U32 Type) const { return Type < JT_LAST && aSuppressEvent[Type] != 0; }

private:
  void Execute(DEVICE_JOB& Job);
  bool IsDoneAlready(const DEVICE_JOB& Job) const;
  void CancelOutdated(U32 Type);
  static void SetStatus(DEVICE_JOB& Job, int Result);
  bool IsReportable(const DEVICE_JOB& Job, int Result) const;

  CJobRings& Rings;
  CJobRunner& Runner;
  CDeviceMutex Mutex;
  std::array<std::atomic<U8>, JT_LAST> aSuppressEvent{};
  std::atomic<bool> bTerminate{false};
};
