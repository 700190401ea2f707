#pragma once

#include <deque>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/types.h"
#include "device/probe_api/records.h"
#include "probe/core_table.h"

// Text of devices.txt, compiled in.
extern const char BUILTIN_DEVICES[];

struct DEVICE_ROW {
  const char* sName = "";  // interned: these two are valid as long as the list
  const char* sMaker = "";
  const CORE_ROW* pCore = nullptr;  // null for index 0
  U32 ClockHz = 0;
  U32 NumIRQs = 0;
  sim::MEM_RANGE Flash;
  sim::MEM_RANGE RAM[2];
  sim::FPU Fpu = sim::FPU::NONE;
  U32 NumMpuRegions = 0;
};

// The devices that the library knows. Index 0 stands for an unspecified device. Any thread.
class CDeviceList {
public:
  // With the compiled-in list and the user's own "devices.txt" in the library's folder, if there is one.
  CDeviceList();

  // Adds the lines of a device file's text; a known name is replaced. Empty, or what is wrong in the first bad line;
  // the other lines count.
  std::string AddText(std::string_view sText);
  std::string AddFile(const std::string& sPath);

  int Size() const;
  // Without regard to case; -1 when unknown.
  int Find(std::string_view sName) const;
  // False when out of range.
  bool Get(int Index, DEVICE_ROW* pRow) const;

private:
  const char* Intern(std::string_view sText);
  int FindLocked(std::string_view sName) const;
  static bool ParseOption(std::string_view sOption, DEVICE_ROW* pRow);
  bool ParseLine(std::string_view sLine, DEVICE_ROW* pRow, std::string* psError);

  mutable std::mutex m_Mutex;
  std::deque<DEVICE_ROW> m_Rows;
  std::set<std::string, std::less<>> m_Texts;
};
