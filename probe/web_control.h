#pragma once

#include <atomic>

#include "probe/status.h"
#include "probe/web_server.h"

// Texts of web/page.css and web/refresh.js, compiled in.
extern const char PAGE_STYLE[];
extern const char PAGE_SCRIPT[];

// The pages that show the session's state: "/" for people and "/state.json" for programs. They are there as long as
// this object lives; made and destroyed while the session is locked.
class CWebControl {
public:
  explicit CWebControl(CSession& Session);
  ~CWebControl() { m_bStopping = true; }

  // 0 when no port could be had.
  U16 Port() const { return m_Server.Port(); }

private:
  bool Serve(const std::string& sPath, WEB_REPLY* pReply);
  PROBE_STATUS Status();

  CSession& m_Session;
  std::atomic<bool> m_bStopping{false};
  PROBE_STATUS m_LastStatus;
  CWebServer m_Server;  // the last member: it ends first, and uses the others until then
};
