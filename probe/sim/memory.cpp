#include "probe/sim/memory.h"

#include <algorithm>

#include "probe/sim/debug_registers.h"
#include "probe/sim/exceptions.h"
#include "probe/sim/protection.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

inline constexpr U32 WORD = 4;  // bytes

bool Fail(STATE& S, FAULT_CAUSE Cause, U32 Addr) {
  S.FaultCause = Cause;
  S.FaultAddr = Addr;
  return false;
}

bool FailBus(STATE& S, U32 Addr) {
  // Handlers of faults may probe for memory.
  if (S.bV7 && (S.Scb.CCR & CCR_BFHFNMIGN) && ExecutionPriority(S) < 0) return true;
  return Fail(S, FAULT_CAUSE::BUS, Addr);
}

const PERIPHERAL* FindPeripheral(const STATE& S, U32 Addr) {
  for (const PERIPHERAL& Peripheral : S.Peripherals) {
    if (Addr - Peripheral.Range.Start < Peripheral.Range.Size) return &Peripheral;
  }
  return nullptr;
}

void CheckWatches(STATE& S, U32 Addr, U32 NumBytes, U32 Value, bool bWrite) {
  if (S.Dwt.IsAnySet() && S.Dwt.Match(Addr, NumBytes, Value, bWrite)) RaiseWatchEvent(S);
}

bool LoadDevice(STATE& S, U32 Addr, U32 NumBytes, U32* pValue) {
  if (const PERIPHERAL* p = FindPeripheral(S, Addr)) {
    *pValue = p->Read ? p->Read(Addr - p->Range.Start, NumBytes) : 0;
    return true;
  }
  if (IsScs(Addr) && (IsAccessPrivileged(S) || IsStimulusPort(Addr))) {
    *pValue = ReadScs(S, Addr, NumBytes, false);
    return true;
  }
  *pValue = 0;
  return FailBus(S, Addr);
}

bool StoreDevice(STATE& S, U32 Addr, U32 NumBytes, U32 Value) {
  if (const PERIPHERAL* p = FindPeripheral(S, Addr)) {
    if (p->Write) p->Write(Addr - p->Range.Start, Value, NumBytes);
    return true;
  }
  if (IsScs(Addr) &&
      (IsAccessPrivileged(S) || IsStimulusPort(Addr) || (IsStir(Addr) && (S.Scb.CCR & CCR_USERSETMPEND)))) {
    WriteScs(S, Addr, NumBytes, Value, false);
    return true;
  }
  return FailBus(S, Addr);
}

// Lets accesses go the short way around Addr, in whole pages of marks.
void OpenFastPath(STATE& S, U32 Addr, const PERMISSION& Permission) {
  const REGION& RAM = S.aRAM[0];
  if (!RAM.Contains(Addr) || S.Accessor || S.Dwt.IsAnySet()) return;
  constexpr U32 PAGE_SIZE = 1u << CODE_PAGE_SHIFT;
  const U32 First =
      Permission.First > RAM.Start ? (Permission.First - RAM.Start + PAGE_SIZE - 1) & ~(PAGE_SIZE - 1) : 0;
  const U32 Last = std::min(Permission.Last - RAM.Start, RAM.Size - 1);
  if (Last < First + WORD) return;
  S.Fast = {RAM.Start + First, Last - First - (WORD - 2), RAM.pData + First,
            RAM.paHasCode + (First >> CODE_PAGE_SHIFT)};
}

bool CheckPermission(STATE& S, U32 Addr, U32 NumBytes, bool bWrite) {
  const PERMISSION First = PermissionAt(S, Addr);
  if (!(bWrite ? First.bWrite : First.bRead)) return Fail(S, FAULT_CAUSE::PROTECTION, Addr);
  if (Addr + (NumBytes - 1) > First.Last) {
    const PERMISSION Second = PermissionAt(S, First.Last + 1);
    if (!(bWrite ? Second.bWrite : Second.bRead)) return Fail(S, FAULT_CAUSE::PROTECTION, First.Last + 1);
  }
  if (First.bRead && First.bWrite) OpenFastPath(S, Addr, First);
  return true;
}

U32 ValueMask(U32 NumBytes) {
  return NumBytes == WORD ? 0xFFFFFFFF : (1u << (NumBytes * 8)) - 1;
}

}  // namespace

REGION* FindRegion(STATE& S, U32 Addr) {
  if (S.Flash.Contains(Addr)) return &S.Flash;
  for (REGION& RAM : S.aRAM) {
    if (RAM.Contains(Addr)) return &RAM;
  }
  return nullptr;
}

const U8* FindMem(const STATE& S, U32 Addr, U32 NumBytes) {
  if (S.Flash.Covers(Addr, NumBytes)) return S.Flash.pData + (Addr - S.Flash.Start);
  for (const REGION& RAM : S.aRAM) {
    if (RAM.Covers(Addr, NumBytes)) return RAM.pData + (Addr - RAM.Start);
  }
  return nullptr;
}

bool LoadSlow(STATE& S, U32 Addr, U32 NumBytes, U32* pValue) {
  if (Addr & S.AlignMask & (NumBytes - 1)) return Fail(S, FAULT_CAUSE::UNALIGNED, Addr);
  if (S.Mpu.IsOn() && !CheckPermission(S, Addr, NumBytes, false)) return false;
  if (const U8* p = FindMem(S, Addr, NumBytes)) {
    *pValue = 0;
    std::memcpy(pValue, p, NumBytes);
  } else if (Addr & (NumBytes - 1)) {
    // Not within one memory: byte by byte, as the bus would.
    *pValue = 0;
    for (U32 i = 0; i < NumBytes; i++) {
      U32 Byte;
      if (IsScs(Addr + i)) return Fail(S, FAULT_CAUSE::UNALIGNED, Addr);
      if (!LoadSlow(S, Addr + i, 1, &Byte)) return false;
      *pValue |= Byte << (8 * i);
    }
    return true;
  } else if (!LoadDevice(S, Addr, NumBytes, pValue)) {
    return false;
  }
  CheckWatches(S, Addr, NumBytes, *pValue, false);
  return true;
}

bool StoreSlow(STATE& S, U32 Addr, U32 NumBytes, U32 Value) {
  if (Addr & S.AlignMask & (NumBytes - 1)) return Fail(S, FAULT_CAUSE::UNALIGNED, Addr);
  if (S.Mpu.IsOn() && !CheckPermission(S, Addr, NumBytes, true)) return false;
  Value &= ValueMask(NumBytes);
  for (REGION& RAM : S.aRAM) {
    if (!RAM.Covers(Addr, NumBytes)) continue;
    std::memcpy(RAM.pData + (Addr - RAM.Start), &Value, NumBytes);
    RAM.Invalidate(Addr - RAM.Start, NumBytes);
    CheckWatches(S, Addr, NumBytes, Value, true);
    return true;
  }
  if (Addr & (NumBytes - 1)) {
    for (U32 i = 0; i < NumBytes; i++) {
      if (IsScs(Addr + i)) return Fail(S, FAULT_CAUSE::UNALIGNED, Addr);
      if (!StoreSlow(S, Addr + i, 1, Value >> (8 * i))) return false;
    }
    return true;
  }
  if (!StoreDevice(S, Addr, NumBytes, Value)) return false;
  CheckWatches(S, Addr, NumBytes, Value, true);
  return true;
}

void UpdateAccessPaths(STATE& S) {
  const REGION& RAM = S.aRAM[0];
  const bool bFast = RAM.Size >= WORD && !S.Dwt.IsAnySet() && !S.Mpu.IsOn();
  S.Fast = {RAM.Start, bFast ? RAM.Size - (WORD - 1) : 0, RAM.pData, RAM.paHasCode};
  S.AlignMask = !S.bV7 || (S.Scb.CCR & CCR_UNALIGN_TRP) ? WORD - 1 : 0;
}

}  // namespace sim
