#include "probe/web_control.h"

#include <chrono>
#include <mutex>
#include <thread>

#include "probe/session.h"

namespace {

// For a page that is read once a second an older state is better than a long wait.
constexpr std::chrono::milliseconds MAX_WAIT{100};
constexpr std::chrono::milliseconds RETRY_PERIOD{1};

}  // namespace

CWebControl::CWebControl(CSession& Session)
    : m_Session(Session),
      m_Server([this](const std::string& sPath, WEB_REPLY* pReply) { return Serve(sPath, pReply); }) {}

PROBE_STATUS CWebControl::Status() {
  const auto End = std::chrono::steady_clock::now() + MAX_WAIT;
  std::unique_lock Lock(m_Session.Mutex, std::try_to_lock);
  // Whoever closes the session holds its lock and waits for this thread.
  while (!Lock && !m_bStopping && std::chrono::steady_clock::now() < End) {
    std::this_thread::sleep_for(RETRY_PERIOD);
    (void)Lock.try_lock();
  }
  if (Lock) {
    m_LastStatus = CollectStatus(m_Session);
  } else {
    m_LastStatus.bBusy = true;
  }
  return m_LastStatus;
}

bool CWebControl::Serve(const std::string& sPath, WEB_REPLY* pReply) {
  if (sPath == "/") {
    *pReply = {"text/html; charset=utf-8", StatusPage(Status())};
  } else if (sPath == "/state.json") {
    *pReply = {"application/json", StatusJson(Status())};
  } else if (sPath == "/page.css") {
    *pReply = {"text/css", PAGE_STYLE};
  } else if (sPath == "/refresh.js") {
    *pReply = {"text/javascript", PAGE_SCRIPT};
  } else {
    return false;
  }
  return true;
}
