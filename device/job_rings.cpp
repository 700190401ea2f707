#include "device/job_rings.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace {

constexpr U32 NUM_SLOTS = (NUM_JOB_QUEUES + 1) * CJobRings::RING_SIZE;

template <typename T>
std::atomic_ref<T> Shared(const T& Value) {
  return std::atomic_ref<T>(const_cast<T&>(Value));
}

U32 TypeOf(const DEVICE_JOB& Slot) {
  return Shared(Slot.Type).load(std::memory_order_acquire);
}

// Copies everything but the shared words, which are stored last: a slot with a type is complete.
void Publish(DEVICE_JOB& Slot, DEVICE_JOB& Job, U64 ID, U32 Queue, U32 Flags) {
  Slot.Queue = Queue;
  Slot.Status = Job.Status;
  Slot.Result = Job.Result;
  Slot.Result2 = Job.Result2;
  Slot.Result3 = Job.Result3;
  std::copy(std::begin(Job.Param), std::end(Job.Param), Slot.Param);
  for (U32 i = 0; i < NUM_JOB_DYN_PARAMS; ++i) {
    Slot.pDyn[i] = std::exchange(Job.pDyn[i], nullptr);
    Slot.DynSize[i] = std::exchange(Job.DynSize[i], 0);
  }
  Shared(Slot.ID).store(ID, std::memory_order_relaxed);
  Shared(Slot.Flags).store(Flags, std::memory_order_relaxed);
  Shared(Slot.Type).store(Job.Type, std::memory_order_release);
}

bool HasRequiredDyn(const DEVICE_JOB& Slot, U32 Type) {
  return !JobTypeInfo(Type).bNeedsDyn || Slot.pDyn[0] != nullptr;
}

}  // namespace

CJobRings::CJobRings() : paSlot(new DEVICE_JOB[NUM_SLOTS]) {
  for (U32 i = 0; i < NUM_JOB_QUEUES; ++i) aRing[i].paSlot = paSlot.get() + i * RING_SIZE;
}

CJobRings::~CJobRings() {
  for (U32 i = 0; i < NUM_SLOTS; ++i) FreeDynParams(paSlot[i]);
}

CJobRings::SCHEDULE_RESULT CJobRings::Schedule(DEVICE_JOB& Job) {
  if (Job.Type == JT_NONE || Job.Type > JT_ANY) {
    FreeDynParams(Job);
    return BAD_TYPE;
  }
  const U32 Queue = JobTypeInfo(Job.Type).Queue;
  RING& Ring = aRing[Queue];
  {
    std::lock_guard Lock(ScheduleMutex);
    const U64 Pos = Ring.WritePos.load(std::memory_order_relaxed);
    DEVICE_JOB& Slot = Ring.paSlot[Pos % RING_SIZE];
    if (TypeOf(Slot) != JT_NONE) {
      FreeDynParams(Job);
      return QUEUE_FULL;
    }
    Publish(Slot, Job, NextJobID++, Queue, Job.Flags | JF_PENDING);
    ++Counters.NumScheduled;
    Ring.WritePos.store(Pos + 1);
  }
  Wake();
  return SCHEDULED;
}

DEVICE_JOB* CJobRings::Take() {
  for (RING& Ring : aRing) {
    for (U64 Pos = Ring.ReadPos.load(); Pos < Ring.WritePos.load(); ++Pos) {
      DEVICE_JOB& Slot = Ring.paSlot[Pos % RING_SIZE];
      const bool bComplete = HasRequiredDyn(Slot, TypeOf(Slot));
      // A searcher reads the position first and the running job second, so it never misses the job between the two.
      if (bComplete) pRunning.store(&Slot);
      Ring.ReadPos.store(Pos + 1);
      if (bComplete) return &Slot;
      Release(&Slot);
      WakeWaiters();
    }
  }
  return nullptr;
}

void CJobRings::Finished() {
  pRunning.store(nullptr);
  WakeWaiters();
}

DEVICE_JOB* CJobRings::AddNotification(DEVICE_JOB& Job) {
  std::lock_guard Lock(NotificationMutex);
  DEVICE_JOB& Slot = paSlot[NUM_JOB_QUEUES * RING_SIZE + NextNotification];
  if (TypeOf(Slot) != JT_NONE) {
    FreeDynParams(Job);
    return nullptr;
  }
  NextNotification = (NextNotification + 1) % RING_SIZE;
  Publish(Slot, Job, 0, JQ_NOTIFICATION, 0);
  ++Counters.NumPosted;
  return &Slot;
}

void CJobRings::Release(DEVICE_JOB* pJob) {
  FreeDynParams(*pJob);
  pJob->Queue = 0;
  pJob->Status = JS_DONE;
  pJob->Result = pJob->Result2 = pJob->Result3 = 0;
  std::fill(std::begin(pJob->Param), std::end(pJob->Param), 0);
  ++Counters.NumReleased;
  Shared(pJob->Flags).store(0, std::memory_order_relaxed);
  Shared(pJob->ID).store(0, std::memory_order_relaxed);
  Shared(pJob->Type).store(JT_NONE, std::memory_order_release);
}

bool CJobRings::IsValid(const DEVICE_JOB* pJob) const {
  const auto First = reinterpret_cast<uintptr_t>(paSlot.get());
  const auto Place = reinterpret_cast<uintptr_t>(pJob);
  if (Place < First || Place >= First + NUM_SLOTS * sizeof(DEVICE_JOB)) return false;
  if ((Place - First) % sizeof(DEVICE_JOB) != 0) return false;
  const U32 Type = TypeOf(*pJob);
  return Type != JT_NONE && HasRequiredDyn(*pJob, Type);
}

bool CJobRings::IsInQueue(U32 SlotQueue, U32 Type, U32 Queue) const {
  if (Queue == JQ_ALL) return true;
  if (Queue != JQ_OF_TYPE) return SlotQueue == Queue;
  return SlotQueue == (Type == JT_STEP ? static_cast<U32>(JQ_CONTROL) : JobTypeInfo(Type).Queue);
}

template <typename F>
void CJobRings::ForEachWaiting(U32 Type, U32 Queue, F&& Call) const {
  for (U32 i = 0; i < NUM_JOB_QUEUES; ++i) {
    if (!IsInQueue(i, Type, Queue)) continue;
    const U64 End = aRing[i].WritePos.load();
    for (U64 Pos = aRing[i].ReadPos.load(); Pos < End; ++Pos) {
      DEVICE_JOB& Slot = aRing[i].paSlot[Pos % RING_SIZE];
      if (JobTypeMatches(TypeOf(Slot), Type) && IsPending(Slot) && !Call(Slot)) return;
    }
  }
}

U32 CJobRings::Cancel(U32 Type, U32 Queue) {
  U32 NumCancelled = 0;
  ForEachWaiting(Type, Queue, [&](DEVICE_JOB& Slot) {
    if (&Slot == pRunning.load()) return true;
    if (Shared(Slot.Flags).load() & JF_NOT_CANCELLABLE) return true;
    ClearPending(Slot);
    ++NumCancelled;
    return true;
  });
  Counters.NumCancelled += NumCancelled;
  if (NumCancelled > 0) WakeWaiters();
  return NumCancelled;
}

CJobRings::JOB_REF CJobRings::FindPending(U32 Type, U32 Queue) const {
  JOB_REF Ref;
  ForEachWaiting(Type, Queue, [&](DEVICE_JOB& Slot) {
    Ref = {&Slot, Shared(Slot.ID).load()};
    return false;
  });
  // The running job is older than any that waits.
  const DEVICE_JOB* pJob = pRunning.load();
  if (pJob == nullptr) return Ref;
  const U32 RunningType = TypeOf(*pJob);
  const bool bInQueue = IsInQueue(JobTypeInfo(RunningType).Queue, Type, Queue);
  if (JobTypeMatches(RunningType, Type) && bInQueue && IsPending(*pJob)) Ref = {pJob, Shared(pJob->ID).load()};
  return Ref;
}

bool CJobRings::IsPending(const JOB_REF& Ref) const {
  return Ref.pJob != nullptr && IsPending(*Ref.pJob) && Shared(Ref.pJob->ID).load() == Ref.ID;
}

bool CJobRings::IsPending(const DEVICE_JOB& Slot) {
  return (Shared(Slot.Flags).load() & JF_PENDING) != 0;
}

void CJobRings::ClearPending(DEVICE_JOB& Slot) {
  Shared(Slot.Flags).fetch_and(~JF_PENDING);
}

void CJobRings::WaitForWork(int TimeoutMS) {
  std::unique_lock Lock(WorkMutex);
  JobAvailable.wait_for(Lock, std::chrono::milliseconds(TimeoutMS), [this] { return bWork; });
  bWork = false;
}

void CJobRings::Wake() {
  {
    std::lock_guard Lock(WorkMutex);
    bWork = true;
  }
  JobAvailable.notify_one();
}

void CJobRings::WaitForFinish(int TimeoutMS) {
  std::unique_lock Lock(FinishMutex);
  JobFinished.wait_for(Lock, std::chrono::milliseconds(TimeoutMS));
}

void CJobRings::WakeWaiters() {
  JobFinished.notify_all();
}
