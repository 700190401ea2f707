#pragma once

#include <string_view>

// What a server sends when its target stops.
struct GDB_STOP {
  enum class KIND {
    NONE,     // no stop reply
    STOPPED,  // the target stands
    ENDED,    // the target is gone
    FILE_IO,  // the target stands and waits for a file operation of the host
  } Kind = KIND::NONE;
  int Signal = 0;
  bool bWatch = false;       // a data watch matched
  bool bBreakpoint = false;  // the server says that it was a breakpoint

  // True when the stop may be the answer to an interrupt, and has no cause of its own.
  bool IsInterrupt() const;
};

GDB_STOP ParseStopReply(std::string_view sBody);
