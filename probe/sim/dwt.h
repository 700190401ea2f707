#pragma once
// The data watchpoint and trace unit: cycle counter, and comparators that stop the core at data accesses. It sends no
// trace packets and has no profiling counters, and says so in its control register.

#include <vector>

#include "probe/sim/machine.h"

namespace sim {

struct DWT_COMPARATOR {
  U32 Comp = 0;
  U32 Mask = 0;  // number of low address bits that are not compared
  U32 Function = 0;
  bool bHeld = false;     // given to a debugger by Add
  bool bByWatch = false;  // compares what Watch says; until a register of it is written
  DATA_WATCH Watch;
};

class CDwt {
public:
  void Create(U32 NumComparators, bool bV7);
  // Trace is on in the core; while it is off, the counter stands, nothing matches and registers ignore writes.
  void SetEnabled(bool bEnabled, U64 Now);

  // Registers by their offset in the unit; Now in cycles.
  U32 Read(U32 Offset, U64 Now);
  void Write(U32 Offset, U32 Value, U64 Now);

  // A free comparator, programmed for the watch; WATCH_ERRORS. A watch with a value and an address takes two: only
  // comparator 1 compares values, and another one compares the address for it.
  int Add(const DATA_WATCH& Watch);
  // Frees what Add gave.
  void Remove(int Index);

  // True when there is something to be compared.
  bool IsAnySet() const { return !m_Active.empty(); }
  // Whether this access of the core matches; the comparator remembers it.
  bool Match(U32 Addr, U32 NumBytes, U32 Value, bool bWrite);

private:
  // What one comparator, or a pair of them, compares at present.
  struct ACTIVE {
    DATA_WATCH Watch;
    U32 Index;
    U32 ItemBytes;  // width of the compared value; 0: the accessed value as a whole
  };
  U32 Counter(U64 Now) const;
  U32 ReadComparator(U32 Offset);
  void WriteComparator(U32 Offset, U32 Value);
  bool IsFree(U32 Index) const { return Index < m_Items.size() && !m_Items[Index].bHeld && !m_Items[Index].Function; }
  int FindFreeForAddr() const;
  void Program(U32 Index, const DATA_WATCH& Watch);
  void ProgramValue(const DATA_WATCH& Watch, U32 Linked);
  void Update();
  void Activate(U32 Index);

  std::vector<DWT_COMPARATOR> m_Items;
  std::vector<ACTIVE> m_Active;
  bool m_bV7 = true;
  bool m_bEnabled = false;
  bool m_bCounting = false;  // as the control register says
  U64 m_CounterStart = 0;    // cycle at which the counter was 0, while it counts
  U32 m_CounterHeld = 0;     // the counter while it does not
};

}  // namespace sim
