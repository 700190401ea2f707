#include "probe/gdb/tcp_socket.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "probe/text.h"

namespace {

constexpr size_t RECEIVE_BUFFER_SIZE = 16 * 1024;

int MillisecondsTo(DEADLINE Deadline) {
  const auto Rest = std::chrono::ceil<std::chrono::milliseconds>(Deadline - std::chrono::steady_clock::now()).count();
  return static_cast<int>(std::clamp<long long>(Rest, 0, 60'000));
}

// A look-up that has to outlive its caller when the name server does not answer in time.
struct LOOKUP {
  std::string sHost;
  std::string sPort;
  addrinfo Hints = {};
  gaicb Request = {};
  ~LOOKUP() {
    if (Request.ar_result) freeaddrinfo(Request.ar_result);
  }
};

// Null with the reason in *psError.
std::unique_ptr<LOOKUP> LookUp(const std::string& sHost, U16 Port, DEADLINE Deadline, std::string* psError) {
  auto pLookup = std::make_unique<LOOKUP>();
  pLookup->sHost = sHost;
  pLookup->sPort = std::to_string(Port);
  pLookup->Hints.ai_socktype = SOCK_STREAM;
  pLookup->Hints.ai_flags = AI_NUMERICSERV;
  pLookup->Request.ar_name = pLookup->sHost.c_str();
  pLookup->Request.ar_service = pLookup->sPort.c_str();
  pLookup->Request.ar_request = &pLookup->Hints;
  // An address in figures needs no name server, and no thread that waits for one.
  addrinfo Numeric = pLookup->Hints;
  Numeric.ai_flags |= AI_NUMERICHOST;
  if (getaddrinfo(sHost.c_str(), pLookup->sPort.c_str(), &Numeric, &pLookup->Request.ar_result) == 0) return pLookup;
  gaicb* pRequest = &pLookup->Request;
  int Result = getaddrinfo_a(GAI_NOWAIT, &pRequest, 1, nullptr);
  while (Result == 0 && (Result = gai_error(pRequest)) == EAI_INPROGRESS) {
    const int Rest = MillisecondsTo(Deadline);
    const timespec Limit = {Rest / 1000, Rest % 1000 * 1'000'000L};
    if (Rest == 0 || gai_suspend(&pRequest, 1, &Limit) == EAI_AGAIN) break;
    Result = 0;
  }
  if (Result == 0) return pLookup;
  if (Result == EAI_INPROGRESS && gai_cancel(pRequest) != EAI_CANCELED) {
    static_cast<void>(pLookup.release());  // the resolver still writes into it
    *psError = FormatText("The name \"%s\" could not be looked up in time", sHost.c_str());
    return nullptr;
  }
  *psError = FormatText("Cannot look up \"%s\": %s", sHost.c_str(), gai_strerror(Result));
  return nullptr;
}

}  // namespace

DEADLINE DeadlineIn(int Milliseconds) {
  return std::chrono::steady_clock::now() + std::chrono::milliseconds(Milliseconds);
}

bool CTcpSocket::Wait(short Events, DEADLINE Deadline) const {
  pollfd Item = {m_Socket, Events, 0};
  for (;;) {
    const int Result = poll(&Item, 1, MillisecondsTo(Deadline));
    if (Result > 0) return true;
    if (Result == 0 || errno != EINTR) return false;
  }
}

bool CTcpSocket::Connect(const std::string& sHost, U16 Port, DEADLINE Deadline, std::string* psError) {
  Close();
  const auto pLookup = LookUp(sHost, Port, Deadline, psError);
  if (!pLookup) return false;
  int Error = ENOENT;
  for (const addrinfo* pInfo = pLookup->Request.ar_result; pInfo; pInfo = pInfo->ai_next) {
    m_Socket = socket(pInfo->ai_family, pInfo->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, pInfo->ai_protocol);
    if (m_Socket < 0) continue;
    Error = connect(m_Socket, pInfo->ai_addr, pInfo->ai_addrlen) == 0 ? 0 : errno;
    if (Error == EINPROGRESS) {
      socklen_t Size = sizeof(Error);
      if (!Wait(POLLOUT, Deadline)) {
        Error = ETIMEDOUT;
      } else if (getsockopt(m_Socket, SOL_SOCKET, SO_ERROR, &Error, &Size) < 0) {
        Error = errno;
      }
    }
    if (Error == 0) break;
    Close();
  }
  if (!IsOpen()) {
    *psError = FormatText("Cannot connect to %s:%u: %s", sHost.c_str(), Port, std::strerror(Error));
    return false;
  }
  const int One = 1;  // requests are short and each waits for its reply
  setsockopt(m_Socket, IPPROTO_TCP, TCP_NODELAY, &One, sizeof(One));
  return true;
}

void CTcpSocket::Close() {
  if (m_Socket >= 0) close(m_Socket);
  m_Socket = -1;
}

bool CTcpSocket::Send(std::string_view sData, DEADLINE Deadline) {
  while (!sData.empty()) {
    if (!IsOpen()) return false;
    const ssize_t Sent = send(m_Socket, sData.data(), sData.size(), MSG_NOSIGNAL);
    if (Sent > 0) {
      sData.remove_prefix(static_cast<size_t>(Sent));
    } else if (errno != EINTR && ((errno != EAGAIN && errno != EWOULDBLOCK) || !Wait(POLLOUT, Deadline))) {
      return false;
    }
  }
  return true;
}

int CTcpSocket::Receive(std::string* psData, DEADLINE Deadline) {
  char acBuffer[RECEIVE_BUFFER_SIZE];
  for (;;) {
    if (!IsOpen()) return -1;
    const ssize_t Count = recv(m_Socket, acBuffer, sizeof(acBuffer), 0);
    if (Count > 0) {
      psData->append(acBuffer, static_cast<size_t>(Count));
      return static_cast<int>(Count);
    }
    if (Count == 0) return -1;
    if (errno == EINTR) continue;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return -1;
    if (!Wait(POLLIN, Deadline)) return 0;
  }
}
