// Breakpoints and data events of the simulated board.

#include "probe/data_event_access.h"
#include "probe/sim_target.h"
#include "probe/text.h"

namespace {

bool IsIn(const sim::MEM_RANGE& Range, U32 Addr) {
  return Addr >= Range.Start && Addr - Range.Start < Range.Size;
}

// The implementation of a breakpoint without comparator, 0 where there is no memory to hold one.
U32 SoftImplementation(const sim::BOARD_SPEC& Spec, U32 Addr) {
  if (IsIn(Spec.RAM[0], Addr) || IsIn(Spec.RAM[1], Addr)) return VNODE_BP_IS_SOFT_RAM;
  return IsIn(Spec.Flash, Addr) ? VNODE_BP_IS_SOFT_FLASH : 0;
}

sim::DATA_WATCH WatchOf(const VNODEARM_DATA_EVENT& Event) {
  const DATA_EVENT_ACCESS Access = AccessOf(Event);
  sim::DATA_WATCH Watch;
  Watch.Addr = Event.Addr;
  Watch.AddrMask = Event.AddrMask;
  Watch.Data = Event.Data;
  Watch.DataMask = Event.DataMask;
  Watch.bOnWrite = Access.bOnWrite;
  Watch.bOnRead = Access.bOnRead;
  Watch.NumBytes = Access.NumBytes;
  return Watch;
}

}  // namespace

// Comparators are scarce: RAM takes a software breakpoint first, flash only when no comparator is left.
U32 CSimTarget::InstallBreakpoint(U32 Addr, U32 TypeFlags, bool bSoftEnabled, std::string* psError) {
  if ((TypeFlags & VNODE_BP_ISA_MASK) == VNODE_BP_ARM) {
    *psError = FormatText("Cannot set an ARM breakpoint @ 0x%08X: the core executes Thumb only", Addr);
    return 0;
  }
  CBoard::CAccess Machine(m_Board);
  const bool bSoftPermitted = bSoftEnabled && (TypeFlags & VNODE_BP_IMP_SW);
  const U32 Soft = bSoftPermitted ? SoftImplementation(Machine->Spec(), Addr) : 0;
  const bool bHard = (TypeFlags & VNODE_BP_IMP_HW) && (!m_Core.bCodeRegionOnly || Addr < CODE_REGION_END);
  if (Soft != VNODE_BP_IS_SOFT_RAM && bHard && Machine->SetCodeBreakpoint(Addr)) return VNODE_BP_IS_HARD;
  if (Soft) {
    Machine->SetSoftBreakpoint(Addr);
  } else {
    *psError = FormatText("Cannot set a breakpoint @ 0x%08X: no breakpoint unit and no memory to hold it", Addr);
  }
  return Soft;
}

void CSimTarget::RemoveBreakpoint(U32 Addr, U32, U32 Implementation) {
  CBoard::CAccess Machine(m_Board);
  if (Implementation == VNODE_BP_IS_HARD) {
    Machine->ClearCodeBreakpoint(Addr);
  } else {
    Machine->ClearSoftBreakpoint(Addr);
  }
}

U32 CSimTarget::ReplaceBreakpoint(U32 Addr, U32 TypeFlags, U32 Implementation) {
  std::string sError;
  const U32 New = InstallBreakpoint(Addr, TypeFlags, true, &sError);
  if (!New) return Implementation;
  RemoveBreakpoint(Addr, TypeFlags, Implementation);
  return New;
}

int CSimTarget::InstallDataEvent(const VNODEARM_DATA_EVENT& Event) {
  const int Unit = CBoard::CAccess(m_Board)->SetDataWatch(WatchOf(Event));
  if (Unit == sim::WATCH_NO_VALUES) return VNODE_DATA_EVENT_NO_VALUE_MATCH;
  return Unit < 0 ? VNODE_DATA_EVENT_NO_FREE_UNIT : Unit;
}

void CSimTarget::RemoveDataEvent(int Unit) {
  CBoard::CAccess(m_Board)->ClearDataWatch(Unit);
}
