#include "probe/api_call.h"

#include <chrono>
#include <thread>

CTargetCall::CTargetCall(FAULT_POINT Point) {
  // The halt state is asked all the time.
  if (Point != FAULT_POINT::IsHalted) CSession::Get().Messages.Trace(FaultPointName(Point));
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
