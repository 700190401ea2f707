#include "probe/data_event_list.h"

#include "probe/data_event_access.h"

int CDataEventList::Set(CTarget& Target, const VNODEARM_DATA_EVENT& Event, U32* pHandle) {
  if (!IsDataBreakpoint(Event)) return VNODE_DATA_EVENT_INVALID;
  const int Unit = Target.InstallDataEvent(Event);
  if (Unit < 0) return Unit;
  m_Items.push_back({Event, ++m_LastHandle, Unit});
  *pHandle = m_LastHandle;
  return 0;
}

bool CDataEventList::Clear(CTarget& Target, U32 Handle) {
  for (auto it = m_Items.begin(); it != m_Items.end(); ++it) {
    if (it->Handle != Handle) continue;
    Target.RemoveDataEvent(it->Unit);
    m_Items.erase(it);
    return true;
  }
  return false;
}

void CDataEventList::ClearAll(CTarget& Target) {
  for (const ITEM& Item : m_Items) Target.RemoveDataEvent(Item.Unit);
  m_Items.clear();
}

bool CDataEventList::Get(int Index, VNODEARM_WP_INFO* pInfo) const {
  if (Index < 0 || Index >= Size()) return false;
  const ITEM& Item = m_Items[static_cast<size_t>(Index)];
  *pInfo = {};
  pInfo->SizeOfStruct = sizeof(*pInfo);
  pInfo->Handle = Item.Handle;
  pInfo->Addr = Item.Event.Addr;
  pInfo->AddrMask = Item.Event.AddrMask;
  pInfo->Data = Item.Event.Data;
  pInfo->DataMask = Item.Event.DataMask;
  pInfo->Ctrl = Item.Event.Access;
  pInfo->CtrlMask = Item.Event.AccessMask;
  return true;
}
