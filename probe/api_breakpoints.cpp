// Breakpoints and data events.

#include <algorithm>
#include <cstring>

#include "probe/api_call.h"

namespace {

constexpr int ALL_BREAKPOINTS = -1;
constexpr U32 ALL_DATA_EVENTS = 0xFFFFFFFF;

// As much of the record as the caller has room for.
template <typename RECORD>
void CopyRecord(const RECORD& Record, RECORD* pOut) {
  const U32 Size = pOut->SizeOfStruct;
  std::memcpy(pOut, &Record, std::min<size_t>(Size, sizeof(Record)));
  if (Size >= sizeof(Size)) pOut->SizeOfStruct = Size;
}

}  // namespace

int VNODEARM_SetBPEx(U32 Addr, U32 TypeFlags) {
  CTargetCall Call(FAULT_POINT::SetBPEx);
  if (!Call) return 0;
  std::string sError;
  const int Handle = Call->Breakpoints.Set(Call.Target(), Addr, TypeFlags, Call->bSoftBPsEnabled, &sError);
  if (!Handle) Call.Error(sError);
  return Handle;
}

int VNODEARM_ClrBPEx(int Handle) {
  CTargetCall Call(FAULT_POINT::ClrBPEx);
  if (!Call) return -1;
  if (Handle == ALL_BREAKPOINTS) {
    Call->Breakpoints.ClearAll(Call.Target());
    return 0;
  }
  return Call->Breakpoints.Clear(Call.Target(), Handle) ? 0 : -1;
}

int VNODEARM_GetBPInfoEx(int Index, VNODEARM_BP_INFO* pInfo) {
  CApiCall Call;
  const CBreakpointList& List = Call->Breakpoints;
  if (!Call->IsConnected()) return 0;
  if (pInfo) {
    const VNODEARM_BP_INFO* pFound = Index < 0 ? List.FindHandle(pInfo->Handle) : List.At(Index);
    CopyRecord(pFound ? *pFound : VNODEARM_BP_INFO{}, pInfo);
  }
  return List.Size();
}

int VNODEARM_SetDataEvent(const VNODEARM_DATA_EVENT* pEvent, U32* pHandle) {
  CTargetCall Call(FAULT_POINT::SetDataEvent);
  if (!Call) return Call.FailureCode();
  if (!pEvent || !pHandle || pEvent->SizeOfStruct < sizeof(*pEvent)) return VNODE_DATA_EVENT_INVALID;
  return Call->DataEvents.Set(Call.Target(), *pEvent, pHandle);
}

int VNODEARM_ClrDataEvent(U32 Handle) {
  CTargetCall Call(FAULT_POINT::ClrDataEvent);
  if (!Call) return Call.FailureCode();
  if (Handle == ALL_DATA_EVENTS) {
    Call->DataEvents.ClearAll(Call.Target());
    return 0;
  }
  return Call->DataEvents.Clear(Call.Target(), Handle) ? 0 : -1;
}

int VNODEARM_GetWPInfoEx(int Index, VNODEARM_WP_INFO* pInfo) {
  CApiCall Call;
  if (!Call->IsConnected()) return 0;
  VNODEARM_WP_INFO Info = {};
  if (pInfo && Index >= 0) {
    Call->DataEvents.Get(Index, &Info);
    CopyRecord(Info, pInfo);
  }
  return Call->DataEvents.Size();
}
