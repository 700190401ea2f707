#pragma once
// A TCP port of the loopback interface that belongs to a test, and to the server that it starts.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "base/types.h"

// Taken as long as this object lives: a connection is refused, until Listen is called. From then on it waits for who
// accepts it: the test itself or a child process, which inherits the socket.
class CLoopbackPort {
public:
  CLoopbackPort() : m_Socket(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in Address = {};
    Address.sin_family = AF_INET;
    Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t Size = sizeof(Address);
    EXPECT_EQ(bind(m_Socket, reinterpret_cast<sockaddr*>(&Address), Size), 0);
    EXPECT_EQ(getsockname(m_Socket, reinterpret_cast<sockaddr*>(&Address), &Size), 0);
    m_Port = ntohs(Address.sin_port);
  }
  ~CLoopbackPort() { Close(); }
  CLoopbackPort(const CLoopbackPort&) = delete;
  CLoopbackPort& operator=(const CLoopbackPort&) = delete;

  void Listen() { EXPECT_EQ(listen(m_Socket, SOMAXCONN), 0); }
  // Leaves the port to the child process.
  void Close() {
    if (m_Socket >= 0) close(m_Socket);
    m_Socket = -1;
  }
  int Socket() const { return m_Socket; }
  U16 Port() const { return m_Port; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(m_Port); }
  // The options by which the emulator serves its debugger or its monitor on the port.
  std::string EmulatorOptions(const std::string& sName, const std::string& sUse) const {
    return " -chardev socket,server=on,wait=off,id=" + sName + ",fd=" + std::to_string(m_Socket) + " " + sUse + sName;
  }

private:
  int m_Socket = -1;
  U16 m_Port = 0;
};
