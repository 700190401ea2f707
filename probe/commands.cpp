#include "probe/commands.h"

#include <algorithm>
#include <fstream>

#include "probe/text.h"

namespace {

constexpr U32 TRACE_CACHE_PIECE = 0x10000;  // bytes
constexpr U32 MAX_TRACE_SOURCE = 3;

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
bool ParseRanges(std::string_view sArg, std::vector<RTT_SEARCH_RANGE>* pRanges) {
  for (std::string_view sRange : SplitTrimmed(sArg, ',')) {
    const size_t Blank = sRange.find(' ');
    U32 Addr = 0;
    U32 Size = 0;
    if (Blank == std::string_view::npos || !ParseU32(sRange.substr(0, Blank), &Addr)) return false;
    if (!ParseU32(Trimmed(sRange.substr(Blank)), &Size)) return false;
    pRanges->push_back({Addr, Size});
  }
  return true;
}

std::string SetRTTSearchRanges(CSession& Session, std::string_view sArg) {
  std::vector<RTT_SEARCH_RANGE> Ranges;
  if (!ParseRanges(sArg, &Ranges)) return "Pairs of address and size expected";
  Session.Config.RTTSearchRanges = std::move(Ranges);
  return {};
}

// Traces hold whole addresses here, which need no program memory for their decoding; the range has to be there all the
// same.
std::string ReadIntoTraceCache(CSession& Session, std::string_view sArg) {
  std::vector<RTT_SEARCH_RANGE> Ranges;
  if (!ParseRanges(sArg, &Ranges) || Ranges.size() != 1) return "Address and size expected";
  if (!Session.IsConnected()) return {};
  std::vector<U8> Piece(TRACE_CACHE_PIECE);
  const auto [Addr, Size] = Ranges[0];
  for (U64 Done = 0; Done < Size; Done += Piece.size()) {
    const U32 Num = static_cast<U32>(std::min<U64>(Piece.size(), Size - Done));
    const U64 From = Addr + Done;
    if (From > 0xFFFFFFFF ||
        Session.Target().ReadMem(static_cast<U32>(From), Num, Piece.data(), 0) != static_cast<int>(Num))
      return FormatText("Cannot read the memory @ 0x%08X", static_cast<U32>(From));
  }
  return {};
}

std::string SelectTraceSource(CSession& Session, std::string_view sArg) {
  U32 Source = 0;
  if (!ParseU32(sArg, &Source) || Source > MAX_TRACE_SOURCE) return "Trace source from 0 to 3 expected";
  Session.Config.TraceSource = static_cast<int>(Source);
  return {};
}

std::string PortWidth(CSession&, std::string_view sArg) {
  return sArg == "1" || sArg == "2" || sArg == "4" ? "" : "1, 2 or 4 expected";
}

// Times at which the data lines of a trace port are sampled. The simulated lines need none.
std::string TraceSampleAdjust(CSession&, std::string_view sArg) {
  return sArg.empty() ? "Adjustment expected" : "";
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
    {"SelectTraceSource", SelectTraceSource},
    {"PortWidth", PortWidth},
    {"TraceSampleAdjust", TraceSampleAdjust},
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
