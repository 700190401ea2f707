#include "probe/web_server.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>

#include <cstring>

#include "probe/text.h"

namespace {

constexpr unsigned MAX_CONNECTIONS = 16;
constexpr unsigned IDLE_TIMEOUT_S = 10;

// Nothing but what this server itself gives, and no page of somebody else around it.
constexpr const char* CONTENT_POLICY =
    "default-src 'none'; style-src 'self'; script-src 'self'; connect-src 'self'; base-uri 'none'; "
    "form-action 'none'; frame-ancestors 'none'";

MHD_Result Answer(MHD_Connection* pConnection, unsigned Code, const char* sType, const std::string& sBody) {
  MHD_Response* pResponse =
      MHD_create_response_from_buffer(sBody.size(), const_cast<char*>(sBody.data()), MHD_RESPMEM_MUST_COPY);
  if (!pResponse) return MHD_NO;
  MHD_add_response_header(pResponse, "Content-Type", sType);
  MHD_add_response_header(pResponse, "Content-Security-Policy", CONTENT_POLICY);
  MHD_add_response_header(pResponse, "X-Content-Type-Options", "nosniff");
  MHD_add_response_header(pResponse, "Cache-Control", "no-store");
  if (Code == MHD_HTTP_METHOD_NOT_ALLOWED) MHD_add_response_header(pResponse, "Allow", "GET");
  const MHD_Result Result = MHD_queue_response(pConnection, Code, pResponse);
  MHD_destroy_response(pResponse);
  return Result;
}

}  // namespace

struct WEB_REQUEST {
  static MHD_Result OnRequest(void* pServer, MHD_Connection* pConnection, const char* sPath, const char* sMethod,
                              const char*, const char*, size_t*, void**) {
    const CWebServer& Server = *static_cast<CWebServer*>(pServer);
    const auto Refuse = [&](unsigned Code, const char* sWhy) { return Answer(pConnection, Code, "text/plain", sWhy); };
    if (!Server.IsOwnHost(MHD_lookup_connection_value(pConnection, MHD_HEADER_KIND, "Host"))) {
      return Refuse(MHD_HTTP_FORBIDDEN, "This host is not served here.\n");
    }
    if (std::strcmp(sMethod, "GET") != 0) return Refuse(MHD_HTTP_METHOD_NOT_ALLOWED, "This page can only be read.\n");
    WEB_REPLY Reply;
    if (!Server.m_Handler(sPath, &Reply)) return Refuse(MHD_HTTP_NOT_FOUND, "There is no such page.\n");
    return Answer(pConnection, MHD_HTTP_OK, Reply.sType, Reply.sBody);
  }
};

bool CWebServer::IsOwnHost(const char* sHost) const {
  if (!sHost) return false;
  return EqualsNoCase(sHost, FormatText("127.0.0.1:%u", Port())) ||
         EqualsNoCase(sHost, FormatText("localhost:%u", Port()));
}

CWebServer::CWebServer(HANDLER Handler) : m_Handler(std::move(Handler)) {
  sockaddr_in Address = {};
  Address.sin_family = AF_INET;
  Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  m_pDaemon = MHD_start_daemon(MHD_USE_AUTO_INTERNAL_THREAD, 0, nullptr, nullptr, &WEB_REQUEST::OnRequest, this,
                               MHD_OPTION_SOCK_ADDR, &Address, MHD_OPTION_CONNECTION_LIMIT, MAX_CONNECTIONS,
                               MHD_OPTION_CONNECTION_TIMEOUT, IDLE_TIMEOUT_S, MHD_OPTION_END);
  if (!m_pDaemon) return;
  const MHD_DaemonInfo* pInfo = MHD_get_daemon_info(m_pDaemon, MHD_DAEMON_INFO_BIND_PORT);
  if (pInfo) m_Port = pInfo->port;
}

CWebServer::~CWebServer() {
  if (m_pDaemon) MHD_stop_daemon(m_pDaemon);
}
