#pragma once

#include <array>
#include <mutex>
#include <set>

#include <QList>

#include "device/device_types.h"

// The device's breakpoints: at most 256, one an address, used slots contiguous from 0. It outlives connections. The
// device thread changes it, any thread may read; answers are copies.
class CBreakpointList {
public:
  static constexpr int MAX_BREAKPOINTS = 256;

  // First free slot, -1 when the list is full.
  int BpListGetInsertPos() const;
  // Enters or overwrites the entry of the address; hit count and condition flag of an existing entry stay. The slot,
  // or -1 when the list is full.
  int BpListInsert(U32 Addr, BP_STATES State, BP_TYPES Type);
  // Removes a slot; the rest moves down. 0, or -1 for a free slot.
  int BpListRemove(int Pos);
  bool BpListOccupied(int Pos) const;
  // Slot of the address, -1 if it has none.
  int BpListFind(U32 Addr) const;

  int Count() const;
  // False for a free slot.
  bool Get(int Pos, BP& Entry) const;
  // False when the address has no entry.
  bool GetAt(U32 Addr, BP& Entry) const;
  QList<BP> GetAll() const;
  bool RemoveAt(U32 Addr);
  void Clear();

  // Counts a halt at the address; no-op without an entry.
  void CountHit(U32 Addr);
  void ResetHitCounts();
  // Whether halts at the address go through the main thread's evaluation: of its entry, and of any that it gets later.
  // Called by the breakpoint manager.
  void SetConditional(U32 Addr, bool bConditional);

private:
  int Find(U32 Addr) const;
  void Remove(int Pos);

  mutable std::mutex Mutex;
  std::array<BP, MAX_BREAKPOINTS> aSlot;
  int NumUsed = 0;
  std::set<U32> Conditional;
};
