#pragma once
// The lock around work on the target. Plain C++ without Qt.

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

// A recursive lock with a limit to the wait. Those who wait get it in turn, so that a device thread that takes it again
// at once does not shut anybody out. Fits std::lock_guard and std::unique_lock, with a duration as second argument:
//   std::unique_lock Lock(Device.Mutex(), std::chrono::milliseconds(150));
//   if (!Lock) return -1;
class CDeviceMutex {
public:
  void lock() { Acquire(nullptr); }
  bool try_lock() { return try_lock_for(std::chrono::milliseconds(0)); }
  // False when the lock did not become free in time. At once true on the thread that holds it.
  template <typename REP, typename PERIOD>
  bool try_lock_for(std::chrono::duration<REP, PERIOD> Limit) {
    const CLOCK::time_point Until = CLOCK::now() + std::chrono::duration_cast<CLOCK::duration>(Limit);
    return Acquire(&Until);
  }
  void unlock();
  // Whether some thread waits for the lock: who holds it for many short pieces of work should let it go between two.
  bool IsWanted() const;

private:
  using CLOCK = std::chrono::steady_clock;

  bool Acquire(const CLOCK::time_point* pUntil);

  mutable std::mutex Guard;
  std::condition_variable Changed;
  std::deque<const void*> Waiting;  // one place on the stack of each waiter, the next one in front
  std::thread::id Owner;
  unsigned Depth = 0;  // 0: free
};
