#include "probe/faults.h"

#include <algorithm>
#include <iterator>

#include "device/probe_api/records.h"
#include "probe/text.h"

namespace {

constexpr int MAX_SLOW_MS = 10'000;
constexpr size_t MAX_BAD_RANGES = 64;

constexpr const char* POINT_NAMES[] = {
#define VNODE_FAULT_NAME(Name) #Name,
    VNODE_FAULT_POINTS(VNODE_FAULT_NAME)
#undef VNODE_FAULT_NAME
};

constexpr struct {
  std::string_view sName;
  VNODE_DOWNLOAD_RESULTS Result;
} DOWNLOAD_PHASES[] = {
    {"other", VNODE_DOWNLOAD_UNSPECIFIED},
    {"compare", VNODE_DOWNLOAD_COMPARE_FAILED},
    {"program", VNODE_DOWNLOAD_PROGRAM_FAILED},
    {"verify", VNODE_DOWNLOAD_VERIFY_FAILED},
};

std::vector<std::string_view> Words(std::string_view sText) {
  std::vector<std::string_view> Result;
  for (std::string_view sWord : SplitTrimmed(sText, ' ')) {
    if (!sWord.empty()) Result.push_back(sWord);
  }
  return Result;
}

// The command's one argument, a number from Min to Max.
bool IsNumber(const std::vector<std::string_view>& Args, int Min, int Max, int* pValue) {
  return Args.size() == 2 && ParseInt(Args[1], pValue) && *pValue >= Min && *pValue <= Max;
}

}  // namespace

const char* FaultPointName(FAULT_POINT Point) {
  return POINT_NAMES[static_cast<int>(Point)];
}

bool CFaults::Take(FAULT_POINT Point, int* pCode) {
  POINT& Item = At(Point);
  if (Item.NumCalls == 0) return false;
  if (Item.NumGood > 0) {
    --Item.NumGood;
    return false;
  }
  if (Item.NumCalls > 0) --Item.NumCalls;
  if (pCode && Item.Code) *pCode = Item.Code;
  return true;
}

bool CFaults::TakeConnectionLoss() {
  if (m_CallsToLoss < 0) return false;
  if (m_CallsToLoss > 1) {
    --m_CallsToLoss;
    return false;
  }
  m_CallsToLoss = -1;
  return true;
}

U32 CFaults::NumAnswering(U32 Addr, U32 NumBytes) const {
  U32 Result = NumBytes;
  for (const RANGE& Bad : m_BadRanges) {
    if (Addr - Bad.Addr < Bad.Size) return 0;
    if (Bad.Addr > Addr) Result = std::min(Result, Bad.Addr - Addr);
  }
  return Result;
}

bool CFaults::Fail(const ARGS& Args) {
  POINT Item;
  size_t NumArgs = Args.size();
  if (NumArgs >= 5 && EqualsNoCase(Args[NumArgs - 2], "AFTER")) {
    if (!ParseInt(Args[NumArgs - 1], &Item.NumGood) || Item.NumGood < 0) return false;
    NumArgs -= 2;
  }
  if (NumArgs < 3 || NumArgs > 4 || !ParseInt(Args[2], &Item.NumCalls)) return false;
  if (NumArgs == 4 && !ParseInt(Args[3], &Item.Code)) return false;
  const auto pName =
      std::find_if(std::begin(POINT_NAMES), std::end(POINT_NAMES), [&](auto s) { return EqualsNoCase(s, Args[1]); });
  if (pName == std::end(POINT_NAMES)) return false;
  m_aPoints[pName - POINT_NAMES] = Item;
  return true;
}

bool CFaults::FailDownload(const ARGS& Args) {
  int NumCalls = 1;
  if (Args.size() < 2 || Args.size() > 3 || (Args.size() == 3 && !ParseInt(Args[2], &NumCalls))) return false;
  for (const auto& Phase : DOWNLOAD_PHASES) {
    if (!EqualsNoCase(Phase.sName, Args[1])) continue;
    At(FAULT_POINT::EndDownload) = {NumCalls, Phase.Result};
    return true;
  }
  return false;
}

bool CFaults::RefuseConnect(const ARGS& Args) {
  POINT Item;
  if (Args.size() != 2 || !ParseInt(Args[1], &Item.NumCalls)) return false;
  At(FAULT_POINT::Connect) = Item;
  return true;
}

bool CFaults::LoseConnection(const ARGS& Args) {
  int NumCalls = 0;
  if (!IsNumber(Args, 0, INT32_MAX, &NumCalls)) return false;
  m_CallsToLoss = NumCalls;
  return true;
}

bool CFaults::Slow(const ARGS& Args) {
  int Milliseconds = 0;
  if (!IsNumber(Args, 0, MAX_SLOW_MS, &Milliseconds)) return false;
  m_SlowMs = static_cast<U32>(Milliseconds);
  return true;
}

bool CFaults::NoHalt(const ARGS& Args) {
  if (Args.size() > 2) return false;
  const std::string_view sHow = Args.size() == 2 ? Args[1] : "1";
  if (sHow != "0" && sHow != "1" && !EqualsNoCase(sHow, "silent")) return false;
  m_HaltFault = sHow == "0" ? HALT_FAULT::None : sHow == "1" ? HALT_FAULT::Refused : HALT_FAULT::Silent;
  return true;
}

bool CFaults::BadMemory(const ARGS& Args) {
  RANGE Range;
  if (Args.size() != 3 || !ParseU32(Args[1], &Range.Addr) || !ParseU32(Args[2], &Range.Size)) return false;
  if (Range.Size == 0 || m_BadRanges.size() == MAX_BAD_RANGES) return false;
  m_BadRanges.push_back(Range);
  return true;
}

bool CFaults::Clear(const ARGS& Args) {
  if (Args.size() != 1) return false;
  *this = {};
  return true;
}

bool CFaults::Execute(std::string_view sCommand, std::string* psError) {
  constexpr struct {
    std::string_view sName;
    bool (CFaults::*pfExecute)(const ARGS& Args);
  } COMMANDS[] = {
      {"sim.fail", &CFaults::Fail},
      {"sim.fail-download", &CFaults::FailDownload},
      {"sim.refuse-connect", &CFaults::RefuseConnect},
      {"sim.lose-connection", &CFaults::LoseConnection},
      {"sim.slow", &CFaults::Slow},
      {"sim.no-halt", &CFaults::NoHalt},
      {"sim.bad-memory", &CFaults::BadMemory},
      {"sim.clear-faults", &CFaults::Clear},
  };
  const ARGS Args = Words(sCommand);
  if (Args.empty()) return false;
  for (const auto& Command : COMMANDS) {
    if (Command.sName != Args[0]) continue;
    if (!(this->*Command.pfExecute)(Args)) *psError = "invalid arguments";
    return true;
  }
  return false;
}

std::vector<std::string> CFaults::Describe() const {
  std::vector<std::string> Result;
  for (size_t i = 0; i < std::size(POINT_NAMES); ++i) {
    const POINT& Item = m_aPoints[i];
    if (Item.NumCalls == 0) continue;
    std::string sText = FormatText("sim.fail %s %d", POINT_NAMES[i], Item.NumCalls);
    if (Item.Code) sText += FormatText(" %d", Item.Code);
    if (Item.NumGood) sText += FormatText(" AFTER %d", Item.NumGood);
    Result.push_back(sText);
  }
  if (m_CallsToLoss >= 0) Result.push_back(FormatText("sim.lose-connection %d", m_CallsToLoss));
  if (m_SlowMs) Result.push_back(FormatText("sim.slow %u", m_SlowMs));
  if (m_HaltFault == HALT_FAULT::Refused) Result.push_back("sim.no-halt 1");
  if (m_HaltFault == HALT_FAULT::Silent) Result.push_back("sim.no-halt silent");
  for (const RANGE& Bad : m_BadRanges) Result.push_back(FormatText("sim.bad-memory 0x%08X 0x%X", Bad.Addr, Bad.Size));
  return Result;
}
