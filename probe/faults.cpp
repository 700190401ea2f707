#include "probe/faults.h"

#include <iterator>
#include <vector>

#include "probe/text.h"

namespace {

constexpr int MAX_SLOW_MS = 10'000;

constexpr const char* POINT_NAMES[] = {
#define VNODE_FAULT_NAME(Name) #Name,
    VNODE_FAULT_POINTS(VNODE_FAULT_NAME)
#undef VNODE_FAULT_NAME
};

std::vector<std::string_view> Words(std::string_view sText) {
  std::vector<std::string_view> Result;
  for (std::string_view sWord : SplitTrimmed(sText, ' ')) {
    if (!sWord.empty()) Result.push_back(sWord);
  }
  return Result;
}

}  // namespace

const char* FaultPointName(FAULT_POINT Point) {
  return POINT_NAMES[static_cast<int>(Point)];
}

bool CFaults::Take(FAULT_POINT Point, int* pCode) {
  POINT& Item = m_aPoints[static_cast<int>(Point)];
  if (Item.NumCalls == 0) return false;
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

bool CFaults::SetPoint(std::string_view sName, int NumCalls, int Code) {
  for (size_t i = 0; i < std::size(POINT_NAMES); ++i) {
    if (!EqualsNoCase(POINT_NAMES[i], sName)) continue;
    m_aPoints[i] = {NumCalls, Code};
    return true;
  }
  return false;
}

bool CFaults::Execute(std::string_view sCommand, std::string* psError) {
  const std::vector<std::string_view> Args = Words(sCommand);
  if (Args.empty()) return false;
  const std::string_view sName = Args[0];
  int Value = 0;
  const bool bValue = Args.size() == 2 && ParseInt(Args[1], &Value);
  bool bValid = false;
  if (sName == "sim.fail") {
    int NumCalls = 0;
    int Code = 0;
    bValid = (Args.size() == 3 || (Args.size() == 4 && ParseInt(Args[3], &Code))) && ParseInt(Args[2], &NumCalls) &&
             SetPoint(Args[1], NumCalls, Code);
  } else if (sName == "sim.refuse-connect") {
    bValid = bValue && SetPoint("Connect", Value, 0);
  } else if (sName == "sim.lose-connection") {
    bValid = bValue && Value >= 0;
    if (bValid) m_CallsToLoss = Value;
  } else if (sName == "sim.slow") {
    bValid = bValue && Value >= 0 && Value <= MAX_SLOW_MS;
    if (bValid) m_SlowMs = static_cast<U32>(Value);
  } else if (sName == "sim.no-halt") {
    bValid = Args.size() == 1 || (bValue && (Value == 0 || Value == 1));
    if (bValid) m_bNoHalt = Args.size() == 1 || Value == 1;
  } else if (sName == "sim.clear-faults") {
    bValid = Args.size() == 1;
    if (bValid) *this = {};
  } else {
    return false;
  }
  if (!bValid) *psError = "invalid arguments";
  return true;
}
