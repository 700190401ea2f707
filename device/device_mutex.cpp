#include "device/device_mutex.h"

#include <algorithm>

bool CDeviceMutex::Acquire(const CLOCK::time_point* pUntil) {
  const std::thread::id Self = std::this_thread::get_id();
  std::unique_lock Lock(Guard);
  if (Depth > 0 && Owner == Self) {
    ++Depth;
    return true;
  }
  const char Place = 0;
  Waiting.push_back(&Place);
  const auto IsMyTurn = [&] { return Depth == 0 && Waiting.front() == &Place; };
  bool bTaken = true;
  if (pUntil == nullptr) {
    Changed.wait(Lock, IsMyTurn);
  } else {
    bTaken = Changed.wait_until(Lock, *pUntil, IsMyTurn);
  }
  Waiting.erase(std::find(Waiting.begin(), Waiting.end(), &Place));
  if (bTaken) {
    Owner = Self;
    Depth = 1;
  } else {
    // The next one may have waited for this one only.
    Changed.notify_all();
  }
  return bTaken;
}

void CDeviceMutex::unlock() {
  {
    std::lock_guard Lock(Guard);
    if (--Depth > 0) return;
    Owner = std::thread::id();
  }
  Changed.notify_all();
}

bool CDeviceMutex::IsWanted() const {
  std::lock_guard Lock(Guard);
  return !Waiting.empty();
}
