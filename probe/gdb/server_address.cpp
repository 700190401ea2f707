#include "probe/gdb/server_address.h"

#include <algorithm>

#include "probe/text.h"

namespace {

bool ParsePort(std::string_view sText, U16* pPort) {
  U32 Port = 0;
  if (!ParseU32(sText, &Port) || Port == 0 || Port > 0xFFFF) return false;
  *pPort = static_cast<U16>(Port);
  return true;
}

}  // namespace

bool GDB_SERVER_ADDRESS::Parse(std::string_view sText, int GivenPort) {
  constexpr std::string_view MONITOR_OPTION = "qmp=";
  *this = {};
  Port = GivenPort > 0 && GivenPort <= 0xFFFF ? static_cast<U16>(GivenPort) : DEFAULT_PORT;
  const auto Parts = SplitTrimmed(sText, ',');
  for (size_t i = 1; i < Parts.size(); ++i) {
    if (!Parts[i].starts_with(MONITOR_OPTION)) return false;
    if (!ParsePort(Parts[i].substr(MONITOR_OPTION.size()), &MonitorPort)) return false;
  }
  std::string_view sRest = Parts[0];
  if (sRest.starts_with('[')) {
    const size_t End = sRest.find(']');
    if (End == std::string_view::npos) return false;
    sHost = sRest.substr(1, End - 1);
    sRest.remove_prefix(End + 1);
  } else {
    const size_t Colon = std::min(sRest.find(':'), sRest.size());
    sHost = sRest.substr(0, Colon);
    sRest.remove_prefix(Colon);
  }
  if (!sRest.empty() && (sRest[0] != ':' || !ParsePort(sRest.substr(1), &Port))) return false;
  return !sHost.empty();
}

std::string GDB_SERVER_ADDRESS::Text() const {
  return FormatText("%s:%u", sHost.c_str(), Port);
}
