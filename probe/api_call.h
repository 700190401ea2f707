#pragma once
// How every exported function is framed.

// The exported functions are the library's only visible ones.
#pragma GCC visibility push(default)
#include "device/probe_api/probe_api.h"
#pragma GCC visibility pop

#include "probe/session.h"

// Holds the session's lock as long as it lives, and delivers the messages when it is given back.
class CApiCall {
public:
  CApiCall() { m_Session.Mutex.lock(); }
  ~CApiCall() {
    m_Session.Mutex.unlock();
    m_Session.Messages.Flush();
  }
  CApiCall(const CApiCall&) = delete;
  CApiCall& operator=(const CApiCall&) = delete;
  CSession* operator->() { return &m_Session; }

private:
  CSession& m_Session = CSession::Get();
};

// A call that reaches the target. It counts for the injected faults, and does not begin without a connection.
class CTargetCall : public CApiCall {
public:
  // For functions without a fault of their own.
  CTargetCall() { m_bReady = Begin(); }
  explicit CTargetCall(FAULT_POINT Point);

  // False: the function has to give its failure value.
  explicit operator bool() const { return m_bReady; }
  CTarget& Target() { return (*this)->Target(); }
  // The failure value of an injected fault, or Default.
  int FailureCode(int Default = -1) const { return m_Code ? m_Code : Default; }
  // Adds an error message.
  void Error(std::string sText) { (*this)->Messages.Add(MSG_KIND::ERROR, std::move(sText)); }

private:
  bool Begin();
  bool IsInjected(FAULT_POINT Point);

  bool m_bReady = false;
  int m_Code = 0;
};
