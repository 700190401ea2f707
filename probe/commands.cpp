#include "probe/commands.h"

#include <fstream>

#include "probe/text.h"

namespace {

std::string SelectDevice(CSession& Session, std::string_view sArg) {
  if (sArg.size() >= 2 && sArg.front() == '"' && sArg.back() == '"') sArg = Trimmed(sArg.substr(1, sArg.size() - 2));
  const int Index = Session.Devices.Find(sArg);
  if (Index < 0) return "Unknown device \"" + std::string(sArg) + "\"";
  Session.Config.DeviceIndex = Index;
  return {};
}

std::string RunScript(CSession&, std::string_view sArg) {
  const std::string sPath(sArg);
  if (!std::ifstream(sPath).good()) return "Cannot open script file \"" + sPath + "\"";
  return "The simulated probe does not execute scripts";
}

std::string HideDeviceSelection(CSession& Session, std::string_view sArg) {
  if (sArg != "0" && sArg != "1") return "0 or 1 expected";
  Session.Config.bHideDeviceSelection = sArg == "1";
  return {};
}

std::string SetRTTAddr(CSession& Session, std::string_view sArg) {
  return ParseU32(sArg, &Session.Config.RTTAddr) ? "" : "Address expected";
}

// Pairs of an address and a size, separated by commas.
bool AreRanges(std::string_view sArg) {
  for (std::string_view sRange : SplitTrimmed(sArg, ',')) {
    const size_t Blank = sRange.find(' ');
    U32 Addr = 0;
    U32 Size = 0;
    if (Blank == std::string_view::npos || !ParseU32(sRange.substr(0, Blank), &Addr)) return false;
    if (!ParseU32(Trimmed(sRange.substr(Blank)), &Size)) return false;
  }
  return true;
}

std::string SetRTTSearchRanges(CSession& Session, std::string_view sArg) {
  if (!AreRanges(sArg)) return "Pairs of address and size expected";
  Session.Config.sRTTSearchRanges = sArg;
  return {};
}

std::string ReadIntoTraceCache(CSession&, std::string_view sArg) {
  // The simulator traces addresses, which need no program memory for their decoding.
  return AreRanges(sArg) ? "" : "Address and size expected";
}

std::string AddDeviceFile(CSession& Session, std::string_view sArg) {
  return Session.Devices.AddFile(std::string(sArg));
}

std::string PowerCycle(CSession& Session, std::string_view) {
  Session.DropBoard();
  return {};
}

constexpr struct {
  std::string_view sName;
  std::string (*pfExecute)(CSession& Session, std::string_view sArg);
} COMMANDS[] = {
    {"device", SelectDevice},
    {"ScriptFile", RunScript},
    {"HideDeviceSelection", HideDeviceSelection},
    {"SetRTTAddr", SetRTTAddr},
    {"SetRTTSearchRanges", SetRTTSearchRanges},
    {"ReadIntoTraceCache", ReadIntoTraceCache},
    {"DeviceListFile", AddDeviceFile},
    {"sim.power-cycle", PowerCycle},
};

}  // namespace

std::string ExecuteCommand(CSession& Session, std::string_view sCommand) {
  sCommand = Trimmed(sCommand);
  const size_t NameEnd = std::min(sCommand.find_first_of("= \t"), sCommand.size());
  const std::string_view sName = sCommand.substr(0, NameEnd);
  std::string_view sArg = Trimmed(sCommand.substr(NameEnd));
  if (sArg.starts_with('=')) sArg = Trimmed(sArg.substr(1));
  for (const auto& Command : COMMANDS) {
    if (EqualsNoCase(Command.sName, sName)) return Command.pfExecute(Session, sArg);
  }
  std::string sError;
  if (Session.Faults.Execute(sCommand, &sError)) return sError;
  return "Unknown command \"" + std::string(sCommand) + "\"";
}
