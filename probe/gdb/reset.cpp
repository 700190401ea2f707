#include "probe/gdb/reset.h"

#include <algorithm>
#include <cctype>

#include "probe/text.h"

namespace {

// An emulator resets by a command that other servers do not have; asking for its help changes nothing.
constexpr const char* EMULATOR_RESET = "system_reset";
constexpr const char* RESET = "reset halt";

// Servers report failed commands as text too, with a reply that says that all is well.
bool SaysFailure(std::string sOutput) {
  std::transform(sOutput.begin(), sOutput.end(), sOutput.begin(), [](unsigned char c) { return std::tolower(c); });
  for (const char* sWord : {"error", "unknown", "invalid", "failed"}) {
    if (sOutput.find(sWord) != std::string::npos) return true;
  }
  return false;
}

bool IsEmulator(CGdbServer& Server) {
  std::string sOutput;
  return Server.Monitor(std::string("help ") + EMULATOR_RESET, &sOutput) &&
         Trimmed(sOutput).starts_with(EMULATOR_RESET);
}

}  // namespace

bool ResetByServer(CGdbServer& Server, std::string* psError) {
  std::string sOutput;
  const char* sCommand = IsEmulator(Server) ? EMULATOR_RESET : RESET;
  if (Server.Connection().IsOpen() && Server.Monitor(sCommand, &sOutput) && !SaysFailure(sOutput)) return true;
  *psError = FormatText("Reset: the GDB server does not execute \"%s\"", sCommand);
  if (!Trimmed(sOutput).empty()) *psError += ": " + std::string(Trimmed(sOutput));
  return false;
}
