#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "base/types.h"

struct MHD_Daemon;

struct WEB_REPLY {
  const char* sType = "";  // media type
  std::string sBody;
};

// A web server on the loopback interface, at a port that the system picks. It answers GET requests that name it as
// their host, and no others: a page of another site that is made to point here gets nothing.
class CWebServer {
public:
  // False: no such path. Called on the server's own thread, one request at a time.
  using HANDLER = std::function<bool(const std::string& sPath, WEB_REPLY* pReply)>;

  explicit CWebServer(HANDLER Handler);
  // Waits for the end of a request that is being answered.
  ~CWebServer();
  CWebServer(const CWebServer&) = delete;
  CWebServer& operator=(const CWebServer&) = delete;

  // 0 when no port could be had.
  U16 Port() const { return m_Port; }

private:
  friend struct WEB_REQUEST;
  bool IsOwnHost(const char* sHost) const;

  HANDLER m_Handler;
  MHD_Daemon* m_pDaemon = nullptr;
  std::atomic<U16> m_Port{0};
};
