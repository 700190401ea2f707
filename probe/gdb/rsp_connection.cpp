#include "probe/gdb/rsp_connection.h"

#include <vector>

#include "probe/gdb/hex.h"

namespace {

constexpr int MAX_REPEATS = 3;
constexpr int MAX_SKIPPED_ITEMS = 100;
constexpr char INTERRUPT = 0x03;
constexpr size_t MAX_BYTES_PER_POLL = 256 * 1024;  // a server that never stops talking does not hold us up

}  // namespace

bool IsStopReply(std::string_view sBody) {
  return sBody.size() >= 3 && (sBody[0] == 'T' || sBody[0] == 'S') && HexDigit(sBody[1]) >= 0 &&
         HexDigit(sBody[2]) >= 0;
}

bool CRspConnection::Open(const std::string& sHost, U16 Port, DEADLINE Deadline) {
  m_Reader.Clear();
  m_bAcks = true;
  m_sError.clear();
  return m_Socket.Connect(sHost, Port, Deadline, &m_sError);
}

void CRspConnection::Close(const std::string& sReason) {
  if (m_Socket.IsOpen()) m_sError = sReason;
  m_Socket.Close();
}

bool CRspConnection::Send(std::string_view sBody, DEADLINE Deadline) {
  m_sLastSent = FramePacket(sBody);
  m_NumRepeats = 0;
  if (m_Socket.Send(m_sLastSent, Deadline)) return true;
  Close("The GDB server does not take requests");
  return false;
}

bool CRspConnection::SendInterrupt(DEADLINE Deadline) {
  m_sLastSent.clear();
  if (m_Socket.Send(std::string_view(&INTERRUPT, 1), Deadline)) return true;
  Close("The GDB server does not take requests");
  return false;
}

// 1, 0 when none came in time, -1 when the connection is gone.
int CRspConnection::TakeItem(std::string* psBody, RSP_ITEM* pItem, DEADLINE Deadline) {
  size_t NumReceived = 0;
  while ((*pItem = m_Reader.Next(psBody)) == RSP_ITEM::NONE) {
    std::string sInput;
    if (NumReceived > MAX_BYTES_PER_POLL) return 0;
    const int Count = m_Socket.Receive(&sInput, Deadline);
    if (Count < 0) Close("The GDB server has closed the connection");
    if (Count <= 0) return Count;
    NumReceived += static_cast<size_t>(Count);
    m_Reader.Feed(sInput);
  }
  return 1;
}

int CRspConnection::TakePacket(std::string* psBody, DEADLINE Deadline) {
  RSP_ITEM Item = RSP_ITEM::NONE;
  int NumSkipped = 0;
  for (;;) {
    if (const int Result = TakeItem(psBody, &Item, Deadline); Result <= 0) return Result;
    switch (Item) {
      case RSP_ITEM::PACKET:
        if (m_bAcks) m_Socket.Send("+", Deadline);
        return 1;
      case RSP_ITEM::BAD_CHECKSUM:
        if (!m_bAcks || ++m_NumRepeats > MAX_REPEATS || !m_Socket.Send("-", Deadline)) {
          Close("The GDB server sends damaged packets");
          return -1;
        }
        break;
      case RSP_ITEM::NAK:
        if (!m_bAcks || m_sLastSent.empty()) break;
        if (++m_NumRepeats > MAX_REPEATS || !m_Socket.Send(m_sLastSent, Deadline)) {
          Close("The GDB server refuses what it is sent");
          return -1;
        }
        break;
      case RSP_ITEM::TOO_LONG:
        Close("The GDB server has sent a packet that is too long");
        return -1;
      default:
        break;
    }
    // A stream of anything but packets ends, too.
    if (++NumSkipped > MAX_SKIPPED_ITEMS && std::chrono::steady_clock::now() > Deadline) return 0;
  }
}

// True when the packet was console output.
bool CRspConnection::HandleConsole(const std::string& sBody) const {
  if (sBody.empty() || sBody[0] != 'O' || sBody == "OK") return false;
  std::vector<U8> Text;
  if (!ParseHexBytes(std::string_view(sBody).substr(1), &Text)) return false;
  if (OnConsole) OnConsole(std::string(Text.begin(), Text.end()));
  return true;
}

bool CRspConnection::Request(std::string_view sBody, std::string* psReply, DEADLINE Deadline) {
  if (!IsOpen() || !Send(sBody, Deadline)) return false;
  for (;;) {
    const int Result = TakePacket(psReply, Deadline);
    if (Result == 0) Close("The GDB server does not answer");
    if (Result <= 0) return false;
    // A stop that crossed the request is no reply to it. "?" alone asks for one.
    if (HandleConsole(*psReply) || (IsStopReply(*psReply) && sBody != "?")) {
      if (std::chrono::steady_clock::now() <= Deadline) continue;
      Close("The GDB server does not answer");
      return false;
    }
    return true;
  }
}

int CRspConnection::Poll(std::string* psPacket, DEADLINE Deadline) {
  if (!IsOpen()) return -1;
  for (;;) {
    const int Result = TakePacket(psPacket, Deadline);
    if (Result <= 0 || !HandleConsole(*psPacket)) return Result;
    if (std::chrono::steady_clock::now() > Deadline) return 0;
  }
}
