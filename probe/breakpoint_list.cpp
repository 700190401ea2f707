#include "probe/breakpoint_list.h"

#include <algorithm>

#include "probe/core_table.h"
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

bool IsHardPermitted(U32 TypeFlags) {
  return TypeFlags & VNODE_BP_IMP_HW;
}
bool IsSoftPermitted(U32 TypeFlags) {
  return TypeFlags & VNODE_BP_IMP_SW;
}

void Remove(sim::CMachine& Machine, const VNODEARM_BP_INFO& Item) {
  if (Item.ImpFlags == VNODE_BP_IS_HARD) {
    Machine.ClearCodeBreakpoint(Item.Addr);
  } else {
    Machine.ClearSoftBreakpoint(Item.Addr);
  }
}

// Comparators are scarce: RAM takes a software breakpoint first, flash only when no comparator is left.
U32 Install(sim::CMachine& Machine, bool bCodeRegionOnly, U32 Addr, U32 TypeFlags, bool bSoftEnabled) {
  const U32 Soft = bSoftEnabled && IsSoftPermitted(TypeFlags) ? SoftImplementation(Machine.Spec(), Addr) : 0;
  const bool bHard = IsHardPermitted(TypeFlags) && (!bCodeRegionOnly || Addr < CODE_REGION_END);
  if (Soft != VNODE_BP_IS_SOFT_RAM && bHard && Machine.SetCodeBreakpoint(Addr)) return VNODE_BP_IS_HARD;
  if (Soft) Machine.SetSoftBreakpoint(Addr);
  return Soft;
}

}  // namespace

int CBreakpointList::Set(CBoard& Board, bool bCodeRegionOnly, U32 Addr, U32 TypeFlags, bool bSoftEnabled,
                         std::string* psError) {
  Addr &= ~1u;
  if ((TypeFlags & VNODE_BP_ISA_MASK) == VNODE_BP_ARM) {
    *psError = FormatText("Cannot set an ARM breakpoint @ 0x%08X: the core executes Thumb only", Addr);
    return 0;
  }
  for (VNODEARM_BP_INFO& Item : m_Items) {
    if (Item.Addr != Addr) continue;
    const bool bHard = Item.ImpFlags == VNODE_BP_IS_HARD;
    if (bHard ? IsHardPermitted(TypeFlags) : IsSoftPermitted(TypeFlags)) {
      ++Item.UseCnt;
      return static_cast<int>(Item.Handle);
    }
    *psError = FormatText("There is a breakpoint of another kind @ 0x%08X", Addr);
    return 0;
  }
  CBoard::CAccess Access(Board);
  const U32 Implementation = Install(*Access, bCodeRegionOnly, Addr, TypeFlags, bSoftEnabled);
  if (!Implementation) {
    *psError = FormatText("Cannot set a breakpoint @ 0x%08X: no breakpoint unit and no memory to hold it", Addr);
    return 0;
  }
  VNODEARM_BP_INFO Item = {};
  Item.SizeOfStruct = sizeof(Item);
  Item.Handle = ++m_LastHandle;
  Item.Addr = Addr;
  Item.Type = TypeFlags;
  Item.ImpFlags = Implementation;
  Item.UseCnt = 1;
  m_Items.push_back(Item);
  return static_cast<int>(Item.Handle);
}

bool CBreakpointList::Clear(CBoard& Board, int Handle) {
  const auto it = std::find_if(m_Items.begin(), m_Items.end(),
                               [&](const VNODEARM_BP_INFO& Item) { return Item.Handle == static_cast<U32>(Handle); });
  if (it == m_Items.end()) return false;
  if (--it->UseCnt == 0) {
    CBoard::CAccess Access(Board);
    Remove(*Access, *it);
    m_Items.erase(it);
  }
  return true;
}

void CBreakpointList::ClearAll(CBoard& Board) {
  if (m_Items.empty()) return;
  CBoard::CAccess Access(Board);
  for (const VNODEARM_BP_INFO& Item : m_Items) Remove(*Access, Item);
  m_Items.clear();
}

const VNODEARM_BP_INFO* CBreakpointList::At(int Index) const {
  return Index >= 0 && Index < Size() ? &m_Items[static_cast<size_t>(Index)] : nullptr;
}

const VNODEARM_BP_INFO* CBreakpointList::FindHandle(U32 Handle) const {
  for (const VNODEARM_BP_INFO& Item : m_Items) {
    if (Item.Handle == Handle) return &Item;
  }
  return nullptr;
}
