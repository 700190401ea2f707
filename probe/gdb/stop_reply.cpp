#include "probe/gdb/stop_reply.h"

#include "probe/gdb/hex.h"
#include "probe/gdb/rsp_connection.h"
#include "probe/text.h"

namespace {

constexpr int SIGNAL_TRAP = 5;

}  // namespace

bool GDB_STOP::IsInterrupt() const {
  return Kind == KIND::STOPPED && !bWatch && !bBreakpoint && Signal != SIGNAL_TRAP;
}

GDB_STOP ParseStopReply(std::string_view sBody) {
  GDB_STOP Stop;
  if (sBody.empty()) return Stop;
  if (sBody[0] == 'W' || sBody[0] == 'X') Stop.Kind = GDB_STOP::KIND::ENDED;
  if (sBody[0] == 'F') Stop.Kind = GDB_STOP::KIND::FILE_IO;
  if (!IsStopReply(sBody)) return Stop;
  Stop.Kind = GDB_STOP::KIND::STOPPED;
  Stop.Signal = HexDigit(sBody[1]) << 4 | HexDigit(sBody[2]);
  for (std::string_view sPair : SplitTrimmed(sBody.substr(3), ';')) {
    const std::string_view sName = sPair.substr(0, sPair.find(':'));
    if (sName == "watch" || sName == "rwatch" || sName == "awatch") Stop.bWatch = true;
    if (sName == "swbreak" || sName == "hwbreak") Stop.bBreakpoint = true;
  }
  return Stop;
}
