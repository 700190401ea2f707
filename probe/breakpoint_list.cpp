#include "probe/breakpoint_list.h"

#include <algorithm>

#include "probe/text.h"

namespace {

bool IsPermitted(U32 TypeFlags, U32 Implementation) {
  return TypeFlags & (Implementation == VNODE_BP_IS_HARD ? VNODE_BP_IMP_HW : VNODE_BP_IMP_SW);
}

}  // namespace

int CBreakpointList::Set(CTarget& Target, U32 Addr, U32 TypeFlags, bool bSoftEnabled, std::string* psError) {
  Addr &= ~1u;
  for (VNODEARM_BP_INFO& Item : m_Items) {
    if (Item.Addr != Addr) continue;
    const bool bSameISA = (Item.Type & VNODE_BP_ISA_MASK) == (TypeFlags & VNODE_BP_ISA_MASK);
    if (bSameISA && IsPermitted(TypeFlags, Item.ImpFlags)) {
      ++Item.UseCnt;
      Item.Type &= TypeFlags;  // what suits all of its users
      return static_cast<int>(Item.Handle);
    }
    *psError = FormatText("There is a breakpoint of another kind @ 0x%08X", Addr);
    return 0;
  }
  U32 Implementation = Target.InstallBreakpoint(Addr, TypeFlags, bSoftEnabled, psError);
  if (!Implementation && bSoftEnabled && IsPermitted(TypeFlags, VNODE_BP_IS_HARD)) {
    Implementation = InstallInsteadOfAnother(Target, Addr, TypeFlags, psError);
  }
  if (!Implementation) return 0;
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

U32 CBreakpointList::InstallInsteadOfAnother(CTarget& Target, U32 Addr, U32 TypeFlags, std::string* psError) {
  for (VNODEARM_BP_INFO& Item : m_Items) {
    if (Item.ImpFlags != VNODE_BP_IS_HARD || !IsPermitted(Item.Type, VNODE_BP_IS_SOFT_FLASH)) continue;
    const U32 ISA = Item.Type & VNODE_BP_ISA_MASK;
    const U32 Moved = Target.ReplaceBreakpoint(Item.Addr, VNODE_BP_IMP_SW | ISA, Item.ImpFlags);
    if (Moved == Item.ImpFlags) continue;
    Item.ImpFlags = Moved;
    const U32 Implementation = Target.InstallBreakpoint(Addr, TypeFlags, true, psError);
    // It was not a comparator that was missing.
    if (!Implementation && Moved) Item.ImpFlags = Target.ReplaceBreakpoint(Item.Addr, VNODE_BP_IMP_HW | ISA, Moved);
    return Implementation;
  }
  return 0;
}

bool CBreakpointList::Clear(CTarget& Target, int Handle) {
  const auto it = std::find_if(m_Items.begin(), m_Items.end(),
                               [&](const VNODEARM_BP_INFO& Item) { return Item.Handle == static_cast<U32>(Handle); });
  if (it == m_Items.end()) return false;
  if (--it->UseCnt == 0) {
    Target.RemoveBreakpoint(it->Addr, it->Type, it->ImpFlags);
    m_Items.erase(it);
  }
  return true;
}

void CBreakpointList::ClearAll(CTarget& Target) {
  for (const VNODEARM_BP_INFO& Item : m_Items) Target.RemoveBreakpoint(Item.Addr, Item.Type, Item.ImpFlags);
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
