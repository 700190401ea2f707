#include "device/device_mutex.h"

#include <gtest/gtest.h>

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

TEST(DeviceMutex, WhoWaitsComesBeforeWhoTakesItAgain) {
  CDeviceMutex Mutex;
  std::unique_lock Holder(Mutex);
  bool bServed = false;
  std::thread Waiter([&] {
    std::lock_guard Lock(Mutex);
    bServed = true;
  });
  while (!Mutex.IsWanted()) std::this_thread::yield();
  Holder.unlock();
  Holder.lock();
  EXPECT_TRUE(bServed);
  Holder.unlock();
  Waiter.join();
}
