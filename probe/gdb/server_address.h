#pragma once

#include <string>
#include <string_view>

#include "base/types.h"

// Where a GDB server is.
struct GDB_SERVER_ADDRESS {
  static constexpr U16 DEFAULT_PORT = 3333;

  std::string sHost;
  U16 Port = 0;
  U16 MonitorPort = 0;  // of an emulator's machine protocol on the same host, 0: none

  // "host", "host:port", "[v6 address]:port", any of them with ",qmp=port" behind. GivenPort counts where the
  // text names no port; below 1 it stands for the default. False when the text is none of these.
  bool Parse(std::string_view sText, int GivenPort);
  // "host:port"
  std::string Text() const;
};
