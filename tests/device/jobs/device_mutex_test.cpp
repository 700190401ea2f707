#include "device/device_mutex.h"

#include <gtest/gtest.h>

#include <atomic>

#include "base/types.h"

using namespace std::chrono_literals;

namespace {

bool TryElsewhere(CDeviceMutex& Mutex, std::chrono::milliseconds Limit) {
  bool bTaken = false;
  std::thread([&] {
    std::unique_lock Lock(Mutex, Limit);
    bTaken = Lock.owns_lock();
  }).join();
  return bTaken;
}

}  // namespace

TEST(DeviceMutex, WaitsNoLongerThanItsLimit) {
  CDeviceMutex Mutex;
  std::unique_lock Holder(Mutex);
  const auto Begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(TryElsewhere(Mutex, 60ms));
  EXPECT_GE(std::chrono::steady_clock::now() - Begin, 60ms);
  EXPECT_FALSE(Mutex.IsWanted()) << "who gave up does not stand in the way";
  std::thread Late([&] { EXPECT_TRUE(TryElsewhere(Mutex, 10s)) << "free in time"; });
  while (!Mutex.IsWanted()) std::this_thread::yield();
  Holder.unlock();
  Late.join();
}

// A thread that works in many short pieces, and two that want a word in between.
TEST(DeviceMutex, EveryWaiterGetsItsTurn) {
  CDeviceMutex Mutex;
  std::atomic<bool> bEnd{false};
  U64 Count = 0;
  std::thread Greedy([&] {
    while (!bEnd) {
      std::lock_guard Lock(Mutex);
      ++Count;
      std::this_thread::sleep_for(1ms);
    }
  });
  std::atomic<int> NumServed{0};
  const auto Ask = [&] {
    for (int i = 0; i < 50; ++i) {
      std::unique_lock Lock(Mutex, 10s);
      NumServed += Lock.owns_lock();
      ++Count;
    }
  };
  std::thread Other(Ask);
  Ask();
  Other.join();
  bEnd = true;
  Greedy.join();
  EXPECT_EQ(NumServed, 100);
  EXPECT_LT(Count, 100u + 300u) << "nobody waits for more than a few pieces of the others'";
}
