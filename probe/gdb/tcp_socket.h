#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "base/types.h"

using DEADLINE = std::chrono::steady_clock::time_point;

// So many milliseconds from now.
DEADLINE DeadlineIn(int Milliseconds);

// A TCP connection whose operations end at a deadline.
class CTcpSocket {
public:
  CTcpSocket() = default;
  ~CTcpSocket() { Close(); }
  CTcpSocket(const CTcpSocket&) = delete;
  CTcpSocket& operator=(const CTcpSocket&) = delete;

  // False with the reason in *psError.
  bool Connect(const std::string& sHost, U16 Port, DEADLINE Deadline, std::string* psError);
  void Close();
  bool IsOpen() const { return m_Socket >= 0; }

  // False when not all could be sent: the connection is of no use any more.
  bool Send(std::string_view sData, DEADLINE Deadline);
  // Number of bytes appended to *psData, 0 when none came in time, negative when the connection is closed. A deadline
  // in the past asks for what is there.
  int Receive(std::string* psData, DEADLINE Deadline);

private:
  bool Wait(short Events, DEADLINE Deadline) const;

  int m_Socket = -1;
};
