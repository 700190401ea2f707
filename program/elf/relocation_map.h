#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/types.h"

// Maps addresses in the program file to addresses on the target, for code that was copied elsewhere.
class CRelocationMap {
public:
  struct RANGE {
    U32 Start = 0;
    U32 End = 0;
  };
  // Looks a section or symbol name up in the open file; false if there is none.
  using RESOLVER = std::function<bool(const char* sName, RANGE& Range)>;

  // False for a text that is empty, too long or refused. Without a resolver, names wait for ResolveAll.
  bool Add(const char* sText, I32 Delta, const RESOLVER& Resolve);
  void ResolveAll(const RESOLVER& Resolve);
  void Clear() { aEntries.clear(); }
  bool IsEmpty() const { return aEntries.empty(); }

  U32 ToTarget(U32 Addr, U32 LowAdjust, U32 HighAdjust) const;
  U32 ToFile(U32 Addr, U32 LowAdjust, U32 HighAdjust) const;
  // Lowest start or end of an entry above Addr, 0xFFFFFFFF if there is none.
  U32 NextEdge(U32 Addr) const;

private:
  struct ENTRY {
    RANGE Range;
    I32 Delta = 0;
    std::string sText;
  };

  std::vector<ENTRY> aEntries;
};
