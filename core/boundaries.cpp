// Where instructions begin, and what may be said of ranges of them.

#include "core/core_state.h"

namespace VCore {

namespace {

constexpr U32 MAX_COUNTED_RANGE = 1'000'000;  // bytes
constexpr U64 MAX_MEMOISED_COUNTS = 1 << 16;

bool IsInstructionLocked(const CORE_STATE& Core, U32 Addr) {
  return Core.Cache.LengthAt(Addr) != 0 && !Core.Program.IsData(Addr);
}

U32 AlignedDown(const CORE_STATE& Core, U32 Addr) {
  return Addr & ~(Core.Info.InstAlign - 1);
}

int FindPrev(const CORE_STATE& Core, U32 Addr, U32& Result) {
  const U32 Step = Core.Info.InstAlign;
  U32 Prev = AlignedDown(Core, Addr);
  if (Prev == Addr) Prev -= Step;
  for (; Prev < Addr && Addr - Prev <= Core.Info.MaxInstLen; Prev -= Step) {
    if (!IsInstructionLocked(Core, Prev)) continue;
    Result = Prev;
    return 0;
  }
  return -1;
}

int FindNext(const CORE_STATE& Core, U32 Addr, U32& Result) {
  const U32 Step = Core.Info.InstAlign;
  for (U32 Next = AlignedDown(Core, Addr) + Step; Next > Addr && Next - Addr <= Core.Info.MaxInstLen; Next += Step) {
    if (!IsInstructionLocked(Core, Next)) continue;
    Result = Next;
    return 0;
  }
  return -1;
}

bool IsInsideInstruction(const CORE_STATE& Core, U32 Addr) {
  U32 Prev = 0;
  return FindPrev(Core, Addr, Prev) == 0 && Core.Cache.LengthAt(Prev) > Addr - Prev;
}

}  // namespace

bool GetCachedInst(U32 Addr, VCORE_INST& Inst) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return !Core.Program.IsData(Addr) && Core.Cache.Find(Addr, Inst);
}

bool GetInst(U32 Addr, VCORE_INST& Inst) {
  if (GetCachedInst(Addr, Inst)) return true;
  if (IsDataAddr(Addr)) return false;
  // A failed decode has no flags at all; every decoded instruction has a condition field or the mark of having none.
  return Analyze(Addr, Inst) == 0 && Inst.Flags != 0;
}

bool IsInstruction(U32 Addr) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return IsInstructionLocked(Core, Addr);
}

U32 GetInstLength(U32 Addr) {
  U32 Distance = 0;
  {
    CORE_STATE& Core = State();
    const std::shared_lock Lock(Core.Mutex);
    if (IsInstructionLocked(Core, Addr)) return Core.Cache.LengthAt(Addr);
    U32 Next = 0;
    if (FindNext(Core, Addr, Next) == 0) Distance = Next - Addr;
    if (Core.Program.IsData(Addr) || IsInsideInstruction(Core, Addr)) {
      return Distance != 0 ? Distance : Core.Info.MinInstLen;
    }
  }
  VCORE_INST Inst;
  if (!GetInst(Addr, Inst)) return 0;
  return Distance != 0 ? std::min(Distance, Inst.Length) : Inst.Length;
}

int GetPrevInst(U32 Addr, U32& Result) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return FindPrev(Core, Addr, Result);
}

int GetNextInst(U32 Addr, U32& Result) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return FindNext(Core, Addr, Result);
}

bool IsStraightRange(U32 Start, U32 End) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  const U32 First = AlignedDown(Core, Start);
  for (U32 Addr = Core.Cache.NextStart(First, End); Addr < End; Addr = Core.Cache.NextStart(Addr + 1, End)) {
    VCORE_INST Inst;
    if (!Core.Cache.Find(Addr, Inst) || Core.Program.IsData(Addr)) continue;
    if ((Inst.Flags & IF_SEMIHOST) != 0) return false;
    if ((Inst.Flags & (IF_BRANCH | IF_CALL)) == IF_BRANCH) return false;
  }
  return true;
}

U32 CountInstructions(U32 Start, U32 End) {
  if (Start >= End || End - Start > MAX_COUNTED_RANGE) return 0;
  const U64 Key = static_cast<U64>(Start) << 32 | End;
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  const auto Known = Core.InstCounts.constFind(Key);
  if (Known != Core.InstCounts.constEnd()) return *Known;
  U32 Count = 0;
  for (U32 Addr = Core.Cache.NextStart(Start, End); Addr < End; Addr = Core.Cache.NextStart(Addr + 1, End)) {
    if (!Core.Program.IsData(Addr)) ++Count;
  }
  if (static_cast<U64>(Core.InstCounts.size()) >= MAX_MEMOISED_COUNTS) Core.InstCounts.clear();
  Core.InstCounts.insert(Key, Count);
  return Count;
}

U32 CountInstructions(const QAddrRanges& Ranges) {
  U32 Count = 0;
  for (const CAddrRange& Range : Ranges) Count += CountInstructions(Range.Start, Range.End());
  return Count;
}

int GetRegionAt(U32 Addr) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return Core.Program.RegionAt(Addr);
}

bool FindRegion(U32 Addr, VCORE_REGION& Region) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  const int Index = Core.Program.RegionAt(Addr);
  if (Index < 0) return false;
  Region = Core.Program.Regions()[static_cast<size_t>(Index)];
  return true;
}

bool IsDataAddr(U32 Addr) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return Core.Program.IsData(Addr);
}

U32 GetDataItemSize(U32 Addr) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  if (!Core.Program.IsData(Addr)) return 0;
  return std::min(Core.Program.NextRegionStart(Addr) - Addr, Core.Info.DataItemSize);
}

}  // namespace VCore
