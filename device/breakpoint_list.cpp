#include "device/breakpoint_list.h"

#include <algorithm>

int CBreakpointList::Find(U32 Addr) const {
  const auto End = aSlot.begin() + NumUsed;
  const auto It = std::find_if(aSlot.begin(), End, [Addr](const BP& Entry) { return Entry.Addr == Addr; });
  return It == End ? -1 : static_cast<int>(It - aSlot.begin());
}

void CBreakpointList::Remove(int Pos) {
  std::move(aSlot.begin() + Pos + 1, aSlot.begin() + NumUsed, aSlot.begin() + Pos);
  aSlot[--NumUsed] = BP();
}

int CBreakpointList::BpListGetInsertPos() const {
  std::lock_guard Lock(Mutex);
  return NumUsed < MAX_BREAKPOINTS ? NumUsed : -1;
}

int CBreakpointList::BpListInsert(U32 Addr, BP_STATES State, BP_TYPES Type) {
  std::lock_guard Lock(Mutex);
  int Pos = Find(Addr);
  if (Pos < 0) {
    if (NumUsed >= MAX_BREAKPOINTS) return -1;
    Pos = NumUsed++;
  }
  BP& Entry = aSlot[Pos];
  Entry.Addr = Addr;
  Entry.State = State;
  Entry.Type = Type;
  Entry.bUsed = true;
  Entry.bConditional = Conditional.count(Addr) > 0;
  return Pos;
}

int CBreakpointList::BpListRemove(int Pos) {
  std::lock_guard Lock(Mutex);
  if (Pos < 0 || Pos >= NumUsed) return -1;
  Remove(Pos);
  return 0;
}

bool CBreakpointList::BpListOccupied(int Pos) const {
  std::lock_guard Lock(Mutex);
  return Pos >= 0 && Pos < NumUsed;
}

int CBreakpointList::BpListFind(U32 Addr) const {
  std::lock_guard Lock(Mutex);
  return Find(Addr);
}

int CBreakpointList::Count() const {
  std::lock_guard Lock(Mutex);
  return NumUsed;
}

bool CBreakpointList::Get(int Pos, BP& Entry) const {
  std::lock_guard Lock(Mutex);
  if (Pos < 0 || Pos >= NumUsed) return false;
  Entry = aSlot[Pos];
  return true;
}

bool CBreakpointList::GetAt(U32 Addr, BP& Entry) const {
  std::lock_guard Lock(Mutex);
  const int Pos = Find(Addr);
  if (Pos >= 0) Entry = aSlot[Pos];
  return Pos >= 0;
}

QList<BP> CBreakpointList::GetAll() const {
  std::lock_guard Lock(Mutex);
  return QList<BP>(aSlot.begin(), aSlot.begin() + NumUsed);
}

bool CBreakpointList::RemoveAt(U32 Addr) {
  std::lock_guard Lock(Mutex);
  const int Pos = Find(Addr);
  if (Pos >= 0) Remove(Pos);
  return Pos >= 0;
}

void CBreakpointList::Clear() {
  std::lock_guard Lock(Mutex);
  aSlot.fill(BP());
  NumUsed = 0;
}

void CBreakpointList::CountHit(U32 Addr) {
  std::lock_guard Lock(Mutex);
  const int Pos = Find(Addr);
  if (Pos >= 0) ++aSlot[Pos].HitCount;
}

void CBreakpointList::ResetHitCounts() {
  std::lock_guard Lock(Mutex);
  for (BP& Entry : aSlot) Entry.HitCount = 0;
}

void CBreakpointList::SetConditional(U32 Addr, bool bConditional) {
  std::lock_guard Lock(Mutex);
  if (bConditional) {
    Conditional.insert(Addr);
  } else {
    Conditional.erase(Addr);
  }
  const int Pos = Find(Addr);
  if (Pos >= 0) aSlot[Pos].bConditional = bConditional;
}
