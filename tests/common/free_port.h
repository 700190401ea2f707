#pragma once
// A TCP port for a server that a test starts.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "base/types.h"

// A port of the loopback interface that nobody uses now.
inline U16 FreePort() {
  const int Socket = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in Address = {};
  Address.sin_family = AF_INET;
  Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t Size = sizeof(Address);
  EXPECT_EQ(bind(Socket, reinterpret_cast<sockaddr*>(&Address), Size), 0);
  EXPECT_EQ(getsockname(Socket, reinterpret_cast<sockaddr*>(&Address), &Size), 0);
  close(Socket);
  return ntohs(Address.sin_port);
}
