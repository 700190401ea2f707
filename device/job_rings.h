#pragma once
// The queues between those who want something of the target and the device thread. Plain C++ without Qt.

#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "device/device_job.h"

// Three job rings and the notification pool, each with a fixed number of slots that are allocated once.
//
// A slot is free while its Type is 0. Scheduling copies a job into the next slot of its ring; the device thread takes
// jobs, control before read before background; a slot is occupied until Release, also after its job has run, so that
// a main thread that delivers nothing makes the rings refuse. Type, ID and Flags of a slot are atomic, all other
// fields belong to whoever the job was handed to.
class CJobRings {
public:
  static constexpr U32 RING_SIZE = 10000;

  enum SCHEDULE_RESULT { SCHEDULED, BAD_TYPE, QUEUE_FULL };

  CJobRings();
  ~CJobRings();
  CJobRings(const CJobRings&) = delete;
  CJobRings& operator=(const CJobRings&) = delete;

  // Copies the job into its ring and wakes the device thread. The dynamic parameters pass to the slot, or are freed
  // when the job is refused; Job's own pointers are null afterwards. Any thread.
  SCHEDULE_RESULT Schedule(DEVICE_JOB& Job);

  // The next job, which counts as running until Finished; null when there is none. Slots that lack their required
  // dynamic parameter are released on the way. Device thread.
  DEVICE_JOB* Take();
  // Ends what Take began. The slot itself stays occupied until Release. Device thread.
  void Finished();

  // Copies a job that was not scheduled into the notification pool. Null when the slot whose turn it is has not been
  // delivered yet; the job's dynamic parameters are freed then. Any thread.
  DEVICE_JOB* AddNotification(DEVICE_JOB& Job);

  // Frees the dynamic parameters and the slot.
  void Release(DEVICE_JOB* pJob);
  // Whether the pointer names an occupied slot with everything its type requires.
  bool IsValid(const DEVICE_JOB* pJob) const;

  // Takes back the cancellable jobs of the type (JT_STEP, JT_ANY: several) that have not begun. Queue: JOB_QUEUES.
  // Returns their number. Any thread.
  U32 Cancel(U32 Type, U32 Queue);

  // A job found by Find, told apart from a later one in the same slot by its ID.
  struct JOB_REF {
    const DEVICE_JOB* pJob = nullptr;
    U64 ID = 0;
  };
  // The first job of the type, the running one included, that is pending; pJob null when there is none. Any thread.
  JOB_REF FindPending(U32 Type, U32 Queue = JQ_ALL) const;
  // Whether the job waits or runs.
  bool IsPending(const JOB_REF& Ref) const;

  // The device thread's sleep: until a job was scheduled since the last call or Wake was called, or TimeoutMS.
  void WaitForWork(int TimeoutMS);
  void Wake();
  // A waiter's sleep: until some job has finished or TimeoutMS. Any thread.
  void WaitForFinish(int TimeoutMS);
  // Wakes those in WaitForFinish; called when a job's pending bit was cleared.
  void WakeWaiters();

  // See JOB_COUNTS.
  struct COUNTERS {
    std::atomic<U64> NumScheduled{0}, NumExecuted{0}, NumCancelled{0}, NumReleased{0}, NumPosted{0};
  };
  COUNTERS Counters;

  static bool IsPending(const DEVICE_JOB& Slot);
  static void ClearPending(DEVICE_JOB& Slot);

private:
  // Positions count up for ever; the slot of a position is its remainder.
  struct RING {
    DEVICE_JOB* paSlot = nullptr;
    std::atomic<U64> ReadPos{0};
    std::atomic<U64> WritePos{0};
  };

  template <typename F>
  void ForEachWaiting(U32 Type, U32 Queue, F&& Call) const;
  bool IsInQueue(U32 SlotQueue, U32 Type, U32 Queue) const;

  std::unique_ptr<DEVICE_JOB[]> paSlot;  // the rings' slots, then the notification pool's
  std::array<RING, NUM_JOB_QUEUES> aRing;
  std::atomic<DEVICE_JOB*> pRunning{nullptr};
  std::mutex ScheduleMutex;
  U64 NextJobID = 1;
  std::mutex NotificationMutex;
  U32 NextNotification = 0;

  std::mutex WorkMutex;
  std::condition_variable JobAvailable;
  bool bWork = false;
  std::mutex FinishMutex;
  std::condition_variable JobFinished;
};
