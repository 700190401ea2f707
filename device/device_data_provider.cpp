#include "device/device_data_provider.h"

#include <chrono>
#include <thread>

#include "device/device.h"

namespace {

constexpr auto WAIT_STEP = std::chrono::microseconds(100);

CDeviceDataProvider* pAnyProvider = nullptr;

}  // namespace

CDeviceDataProvider::CDeviceDataProvider(CDeviceAccess& Access) : Access(Access) {
  pAnyProvider = this;
  SetDestroyHook(OnListenerDestroyed);
}

CDeviceDataProvider& CDeviceDataProvider::Get() {
  static CDeviceDataProvider* pProvider = nullptr;
  if (pProvider == nullptr) {
    pProvider = new CDeviceDataProvider(CDevice::Get());
    CDevice::Get().SetDataProvider(pProvider);
  }
  return *pProvider;
}

CDeviceDataProvider::~CDeviceDataProvider() {
  SetDestroyHook(nullptr);
  pAnyProvider = nullptr;
}

void CDeviceDataProvider::OnListenerDestroyed(CDeviceEventListener* pListener) {
  if (pAnyProvider == nullptr) return;
  pAnyProvider->Requests.RemoveListener(pListener);
  for (DATA_REQUEST* pRequest : pAnyProvider->apServing) {
    if (pRequest->pListener == pListener) pRequest->pListener = nullptr;
  }
}

void CDeviceDataProvider::ClearCaches(bool bDropRequests) {
  Memory.Clear();
  Regs.Clear();
  CPRegs.Clear();
  if (!bDropRequests) return;
  Requests.Clear();
  for (DATA_REQUEST* pRequest : apServing) pRequest->pListener = nullptr;
}

U8 CDeviceDataProvider::Deliver(const DATA_REQUEST& Request) {
  switch (Request.Kind) {
    case DR_MEM:
      return DeliverMem(Request);
    case DR_REGS:
      return DeliverRegs(Request);
    case DR_CP_REG:
      return DeliverCPReg(Request);
    default:
      return DeliverLoc(Request);
  }
}

// A listener may ask for more, cancel, or be destroyed while it is called.
void CDeviceDataProvider::Serve(U8 Kind) {
  Requests.RemoveListener(this);
  std::vector<DATA_REQUEST> aTaken = Requests.TakeKind(Kind);
  for (DATA_REQUEST& Request : aTaken) apServing.push_back(&Request);
  for (DATA_REQUEST& Request : aTaken) {
    if (Request.pListener != nullptr && !IsFinal(Deliver(Request)) && Request.pListener != nullptr) {
      Requests.Add(Request);
    }
    Request.pListener = nullptr;
  }
  for (size_t i = 0; i < aTaken.size(); ++i) apServing.pop_back();
}

U8 CDeviceDataProvider::WaitFor(const std::function<U8()>& Status) {
  const auto Begin = std::chrono::steady_clock::now();
  for (;;) {
    const U8 Now = Status();
    if (IsFinal(Now)) return Now;
    Access.ProcessEvents(EVENTS_PER_WAIT);
    if (std::chrono::steady_clock::now() - Begin > std::chrono::milliseconds(WAIT_LIMIT_MS)) return Status();
    std::this_thread::sleep_for(WAIT_STEP);
  }
}

void CDeviceDataProvider::Log(const QString& sText, U32 Flags) {
  Access.LogText(sText, Flags);
}
