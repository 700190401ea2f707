#include "probe/data_event_list.h"

namespace {

constexpr U32 TYPE_DATA_BREAKPOINT = 1;
constexpr U32 NO_VALUE = 0xFFFFFFFF;  // DataMask of an event that compares no value
constexpr U8 ACCESS_WRITE = 0x01;
constexpr U8 ACCESS_SIZE = 0x06;  // twice the binary logarithm of the number of bytes

}  // namespace

sim::DATA_WATCH WatchOf(const VNODEARM_DATA_EVENT& Event) {
  sim::DATA_WATCH Watch;
  Watch.Addr = Event.Addr;
  Watch.AddrMask = Event.AddrMask;
  Watch.Data = Event.Data;
  Watch.DataMask = Event.DataMask;
  const bool bAnyDirection = Event.AccessMask & ACCESS_WRITE;
  Watch.bOnWrite = bAnyDirection || (Event.Access & ACCESS_WRITE);
  Watch.bOnRead = bAnyDirection || !(Event.Access & ACCESS_WRITE);
  const bool bAnySize = (Event.AccessMask & ACCESS_SIZE) == ACCESS_SIZE;
  Watch.NumBytes = bAnySize ? 0 : 1u << ((Event.Access & ACCESS_SIZE) >> 1);
  return Watch;
}

int CDataEventList::Set(CBoard& Board, const VNODEARM_DATA_EVENT& Event, U32* pHandle) {
  if (Event.Type != TYPE_DATA_BREAKPOINT || (Event.Access & ACCESS_SIZE) == ACCESS_SIZE)
    return VNODE_DATA_EVENT_INVALID;
  if (Board.Spec().Arch == sim::ARCH::ARMV6M && Event.DataMask != NO_VALUE) return VNODE_DATA_EVENT_NO_VALUE_MATCH;
  CBoard::CAccess Access(Board);
  const int Unit = Access->SetDataWatch(WatchOf(Event));
  if (Unit < 0) return VNODE_DATA_EVENT_NO_FREE_UNIT;
  m_Items.push_back({Event, ++m_LastHandle, Unit});
  *pHandle = m_LastHandle;
  return 0;
}

bool CDataEventList::Clear(CBoard& Board, U32 Handle) {
  for (auto it = m_Items.begin(); it != m_Items.end(); ++it) {
    if (it->Handle != Handle) continue;
    CBoard::CAccess(Board)->ClearDataWatch(it->Unit);
    m_Items.erase(it);
    return true;
  }
  return false;
}

void CDataEventList::ClearAll(CBoard& Board) {
  if (m_Items.empty()) return;
  CBoard::CAccess Access(Board);
  for (const ITEM& Item : m_Items) Access->ClearDataWatch(Item.Unit);
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
