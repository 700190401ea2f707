#include "probe/api_call.h"

#include <chrono>
#include <thread>

namespace {

// Called all the time while the target runs.
bool IsPolled(FAULT_POINT Point) {
  switch (Point) {
    case FAULT_POINT::IsHalted:
    case FAULT_POINT::SWO_Control:
    case FAULT_POINT::SWO_ReadStimulus:
    case FAULT_POINT::RTTERMINAL_Read:
    case FAULT_POINT::HSS_Read:
      return true;
    default:
      return false;
  }
}

}  // namespace

CTargetCall::CTargetCall(FAULT_POINT Point) {
  if (!IsPolled(Point)) CSession::Get().Messages.Trace(FaultPointName(Point));
  m_bReady = Begin() && !IsInjected(Point);
}

bool CTargetCall::Begin() {
  CSession& Session = CSession::Get();
  if (!Session.IsConnected()) return false;
  if (const U32 SlowMs = Session.Faults.SlowMs()) std::this_thread::sleep_for(std::chrono::milliseconds(SlowMs));
  if (Session.Faults.TakeConnectionLoss() || !Session.Target().IsAlive()) Session.LoseConnection();
  return Session.IsConnected();
}

bool CTargetCall::IsInjected(FAULT_POINT Point) {
  if (!CSession::Get().Faults.Take(Point, &m_Code)) return false;
  Error(std::string(FaultPointName(Point)) + " failed (injected fault)");
  return true;
}
