#include "device/device_event_listener.h"

#include <algorithm>
#include <vector>

namespace {

struct LISTENER_LIST {
  std::vector<CDeviceEventListener*> paListener;
  U32 Depth = 0;  // deliveries in progress
  bool bHasGaps = false;
  void (*pfDestroyHook)(CDeviceEventListener*) = nullptr;
};

// Never destroyed: listeners with static storage may outlive any other static object.
LISTENER_LIST& Listeners() {
  static LISTENER_LIST* pList = new LISTENER_LIST;
  return *pList;
}

}  // namespace

CDeviceEventListener::CDeviceEventListener() {
  Listeners().paListener.push_back(this);
}

CDeviceEventListener::~CDeviceEventListener() {
  LISTENER_LIST& List = Listeners();
  if (List.pfDestroyHook) List.pfDestroyHook(this);
  const auto It = std::find(List.paListener.begin(), List.paListener.end(), this);
  if (It == List.paListener.end()) return;
  if (List.Depth == 0) {
    List.paListener.erase(It);
    return;
  }
  *It = nullptr;
  List.bHasGaps = true;
}

void CDeviceEventListener::SetDestroyHook(void (*pfHook)(CDeviceEventListener*)) {
  Listeners().pfDestroyHook = pfHook;
}

void CDeviceEventListener::BeginDelivery() {
  ++Listeners().Depth;
}

void CDeviceEventListener::EndDelivery() {
  LISTENER_LIST& List = Listeners();
  if (--List.Depth > 0 || !List.bHasGaps) return;
  std::erase(List.paListener, nullptr);
  List.bHasGaps = false;
}

size_t CDeviceEventListener::NumListeners() {
  return Listeners().paListener.size();
}

CDeviceEventListener* CDeviceEventListener::ListenerAt(size_t Index) {
  return Listeners().paListener[Index];
}
