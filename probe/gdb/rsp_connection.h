#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "probe/gdb/rsp_packet.h"
#include "probe/gdb/tcp_socket.h"

// A connection to a GDB server: one request at a time, each with its reply before its deadline. Whatever breaks the
// protocol (no reply in time, a closed connection, damaged packets after all repetitions) ends the connection, for
// what comes later could not be told apart any more.
class CRspConnection {
public:
  // False with the reason in Error().
  bool Open(const std::string& sHost, U16 Port, DEADLINE Deadline);
  void Close(const std::string& sReason);
  bool IsOpen() const { return m_Socket.IsOpen(); }
  // Why the connection ended.
  const std::string& Error() const { return m_sError; }

  // Sends without waiting for a reply.
  bool Send(std::string_view sBody, DEADLINE Deadline);
  // Asks the running target to stop.
  bool SendInterrupt(DEADLINE Deadline);
  // False: the connection is gone. An empty reply is the server's way to say that it does not know the request.
  bool Request(std::string_view sBody, std::string* psReply, DEADLINE Deadline);
  // A packet that comes without a request: 1 and the packet, 0 when none came in time, negative when the connection is
  // gone.
  int Poll(std::string* psPacket, DEADLINE Deadline);
  // No acknowledgements from now on: the server has agreed.
  void EndAcks() { m_bAcks = false; }

  // Gets the console output of the target and of the server's commands.
  std::function<void(const std::string& sText)> OnConsole;

private:
  int TakePacket(std::string* psBody, DEADLINE Deadline);
  int TakeItem(std::string* psBody, RSP_ITEM* pItem, DEADLINE Deadline);
  bool HandleConsole(const std::string& sBody) const;

  CTcpSocket m_Socket;
  CRspReader m_Reader;
  bool m_bAcks = true;
  std::string m_sLastSent;
  int m_NumRepeats = 0;
  std::string m_sError;
};

// "Txx..." or "Sxx": the target has stopped. No reply to a request for data looks like it.
bool IsStopReply(std::string_view sBody);
