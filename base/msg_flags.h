#pragma once

#include "base/types.h"

// What a message is, where it comes from and where it goes: one level, any number of sinks, at most one source.
// See LogMsg in shell/log.
enum MSG_INFO_FLAGS : U32 {
  MSG_INFO = 0x0001,
  MSG_WARNING = 0x0002,
  MSG_ERROR = 0x0004,
  MSG_TO_STDOUT = 0x0008,   // debug console, when that is on
  MSG_TO_FILE = 0x0010,     // application log file, when one is set
  MSG_TO_CONSOLE = 0x0020,  // console window
  MSG_TO_ALL = 0x0040,      // all three
  MSG_FROM_QT = 0x0080,     // came through Qt's message handler
  MSG_SRC_ELF = 0x0100,
  MSG_SRC_PROBE = 0x0200,
  MSG_SRC_TARGET = 0x0800,
  MSG_SRC_CORE = 0x1000,
};
