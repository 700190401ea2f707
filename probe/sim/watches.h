#pragma once
// The comparators of the data watchpoint unit.

#include <vector>

#include "probe/sim/machine.h"

namespace sim {

class CWatches {
public:
  void SetNumComparators(U32 Num) { m_Items.resize(Num); }
  // Index of the comparator, or -1 when none is free.
  int Add(const DATA_WATCH& Watch);
  void Remove(int Index);
  bool IsAnySet() const { return m_bAnySet; }

  // Index of a comparator that this access of the core matches, or -1.
  int Match(U32 Addr, U32 NumBytes, U32 Value, bool bWrite) const;

private:
  struct ITEM {
    DATA_WATCH Watch;
    bool bUsed = false;
  };
  std::vector<ITEM> m_Items;
  bool m_bAnySet = false;
};

}  // namespace sim
