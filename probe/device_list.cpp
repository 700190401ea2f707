#include "probe/device_list.h"

#include <dlfcn.h>
#include <strings.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "probe/sim/mpu.h"
#include "probe/text.h"

namespace {

constexpr U32 MAX_MEMORY_SIZE = 256u << 20;
constexpr U32 MAX_CLOCK_MHZ = 4000;
constexpr U32 MAX_IRQS = 496;

// What a core with that unit can have in its place.
struct FPU_ROW {
  sim::FPU OfCore;
  std::string_view sName;
  sim::FPU Fpu;
};
constexpr FPU_ROW FPU_ROWS[] = {
    {sim::FPU::V4_SINGLE, "none", sim::FPU::NONE},        {sim::FPU::V4_SINGLE, "single", sim::FPU::V4_SINGLE},
    {sim::FPU::V5_DOUBLE, "none", sim::FPU::NONE},        {sim::FPU::V5_DOUBLE, "single", sim::FPU::V5_SINGLE},
    {sim::FPU::V5_DOUBLE, "double", sim::FPU::V5_DOUBLE},
};

// ADDRESS+SIZE or "-".
bool ParseRange(std::string_view sText, sim::MEM_RANGE* pRange) {
  *pRange = {};
  if (sText == "-") return true;
  const size_t Plus = sText.find('+');
  if (Plus == std::string_view::npos || Plus + 1 >= sText.size()) return false;
  std::string_view sSize = sText.substr(Plus + 1);
  U32 Shift = 0;
  if (sSize.back() == 'K') Shift = 10;
  if (sSize.back() == 'M') Shift = 20;
  if (Shift) sSize.remove_suffix(1);
  U32 Size = 0;
  if (!ParseU32(sText.substr(0, Plus), &pRange->Start) || !ParseU32(sSize, &Size)) return false;
  const U64 NumBytes = static_cast<U64>(Size) << Shift;
  if (NumBytes == 0 || NumBytes > MAX_MEMORY_SIZE || pRange->Start + NumBytes > 0x100000000ull) return false;
  pRange->Size = static_cast<U32>(NumBytes);
  return true;
}

bool Overlap(const sim::MEM_RANGE& A, const sim::MEM_RANGE& B) {
  return A.Size && B.Size && A.Start < static_cast<U64>(B.Start) + B.Size &&
         B.Start < static_cast<U64>(A.Start) + A.Size;
}

std::string LibraryFolder() {
  Dl_info Info = {};
  if (!dladdr(reinterpret_cast<const void*>(&BUILTIN_DEVICES), &Info) || !Info.dli_fname) return {};
  const std::string sPath = Info.dli_fname;
  const size_t Slash = sPath.rfind('/');
  return Slash == std::string::npos ? "." : sPath.substr(0, Slash);
}

}  // namespace

CDeviceList::CDeviceList() {
  m_Rows.push_back({.sName = "Unspecified"});
  AddText(BUILTIN_DEVICES);
  const std::string sOwnFile = LibraryFolder() + "/devices.txt";
  if (std::ifstream(sOwnFile).good()) AddFile(sOwnFile);
}

const char* CDeviceList::Intern(std::string_view sText) {
  return m_Texts.emplace(sText).first->c_str();
}

bool CDeviceList::ParseOption(std::string_view sOption, DEVICE_ROW* pRow) {
  const size_t Equals = sOption.find('=');
  if (Equals == std::string_view::npos) return false;
  const std::string_view sName = sOption.substr(0, Equals), sValue = sOption.substr(Equals + 1);
  if (EqualsNoCase(sName, "MPU")) {
    return ParseU32(sValue, &pRow->NumMpuRegions) && pRow->NumMpuRegions <= sim::CMpu::MAX_REGIONS;
  }
  const auto Found = std::find_if(std::begin(FPU_ROWS), std::end(FPU_ROWS), [&](const FPU_ROW& Row) {
    return Row.OfCore == pRow->pCore->SimFpu && EqualsNoCase(Row.sName, sValue);
  });
  if (!EqualsNoCase(sName, "FPU") || Found == std::end(FPU_ROWS)) return false;
  pRow->Fpu = Found->Fpu;
  return true;
}

bool CDeviceList::ParseLine(std::string_view sLine, DEVICE_ROW* pRow, std::string* psError) {
  enum FIELDS { NAME, MAKER, CORE, CLOCK, IRQS, FLASH, RAM, RAM2, NUM_FIELDS };
  std::vector<std::string_view> Fields = SplitTrimmed(sLine, ',');
  std::vector<std::string_view> Options;
  for (; Fields.size() > RAM2 && Fields.back().find('=') != std::string_view::npos; Fields.pop_back()) {
    Options.push_back(Fields.back());
  }
  if (Fields.size() < RAM2 || Fields.size() > NUM_FIELDS || Fields[NAME].empty()) {
    *psError = "7 or 8 fields expected";
    return false;
  }
  pRow->pCore = FindCore(std::string(Fields[CORE]).c_str());
  if (!pRow->pCore) {
    *psError = "unknown core " + std::string(Fields[CORE]);
    return false;
  }
  pRow->Fpu = pRow->pCore->SimFpu;
  pRow->NumMpuRegions = pRow->pCore->NumMpuRegions;
  for (const std::string_view sOption : Options) {
    if (ParseOption(sOption, pRow)) continue;
    *psError = "invalid option " + std::string(sOption);
    return false;
  }
  U32 ClockMHz = 0;
  const bool bNumbers = ParseU32(Fields[CLOCK], &ClockMHz) && ClockMHz > 0 && ClockMHz <= MAX_CLOCK_MHZ &&
                        ParseU32(Fields[IRQS], &pRow->NumIRQs) && pRow->NumIRQs <= MAX_IRQS;
  const bool bRanges = ParseRange(Fields[FLASH], &pRow->Flash) && ParseRange(Fields[RAM], &pRow->RAM[0]) &&
                       (Fields.size() <= RAM2 || ParseRange(Fields[RAM2], &pRow->RAM[1]));
  if (!bNumbers || !bRanges) {
    *psError = bNumbers ? "invalid memory range" : "invalid number";
    return false;
  }
  if (Overlap(pRow->Flash, pRow->RAM[0]) || Overlap(pRow->Flash, pRow->RAM[1]) || Overlap(pRow->RAM[0], pRow->RAM[1])) {
    *psError = "memories overlap";
    return false;
  }
  pRow->ClockHz = ClockMHz * 1'000'000u;
  pRow->sName = Intern(Fields[NAME]);
  pRow->sMaker = Intern(Fields[MAKER]);
  return true;
}

std::string CDeviceList::AddText(std::string_view sText) {
  std::lock_guard Lock(m_Mutex);
  std::string sFirstError;
  int LineNo = 0;
  for (std::string_view sLine : SplitTrimmed(sText, '\n')) {
    ++LineNo;
    if (sLine.empty() || sLine.front() == '#') continue;
    DEVICE_ROW Row;
    std::string sError;
    if (!ParseLine(sLine, &Row, &sError)) {
      if (sFirstError.empty()) sFirstError = "line " + std::to_string(LineNo) + ": " + sError;
      continue;
    }
    const int Known = FindLocked(Row.sName);
    if (Known > 0) {
      m_Rows[static_cast<size_t>(Known)] = Row;
    } else {
      m_Rows.push_back(Row);
    }
  }
  return sFirstError;
}

std::string CDeviceList::AddFile(const std::string& sPath) {
  std::ifstream File(sPath, std::ios::binary);
  if (!File) return "cannot open \"" + sPath + "\"";
  const std::string sText{std::istreambuf_iterator<char>(File), {}};
  const std::string sError = AddText(sText);
  return sError.empty() ? sError : sPath + ", " + sError;
}

int CDeviceList::Size() const {
  std::lock_guard Lock(m_Mutex);
  return static_cast<int>(m_Rows.size());
}

int CDeviceList::FindLocked(std::string_view sName) const {
  for (size_t i = 1; i < m_Rows.size(); ++i) {
    if (EqualsNoCase(m_Rows[i].sName, sName)) return static_cast<int>(i);
  }
  return -1;
}

int CDeviceList::Find(std::string_view sName) const {
  std::lock_guard Lock(m_Mutex);
  return FindLocked(sName);
}

bool CDeviceList::Get(int Index, DEVICE_ROW* pRow) const {
  std::lock_guard Lock(m_Mutex);
  if (Index < 0 || Index >= static_cast<int>(m_Rows.size())) return false;
  *pRow = m_Rows[static_cast<size_t>(Index)];
  return true;
}
