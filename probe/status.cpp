#include "probe/status.h"

#include "probe/data_event_access.h"
#include "probe/session.h"
#include "probe/text.h"

namespace {

const char* ImplementationText(U32 ImpFlags) {
  switch (ImpFlags) {
    case VNODE_BP_IS_HARD:
      return "breakpoint unit";
    case VNODE_BP_IS_SOFT_RAM:
      return "RAM";
    case VNODE_BP_IS_SOFT_FLASH:
      return "flash";
    default:
      return "unknown";
  }
}

PROBE_STATUS::DATA_EVENT DataEventOf(const VNODEARM_WP_INFO& Info) {
  VNODEARM_DATA_EVENT Event = {};
  Event.Access = static_cast<U8>(Info.Ctrl);
  Event.AccessMask = static_cast<U8>(Info.CtrlMask);
  const DATA_EVENT_ACCESS Access = AccessOf(Event);
  const char* sAccess = !Access.bOnWrite ? "read" : !Access.bOnRead ? "write" : "read or write";
  return {Info, sAccess, Access.NumBytes};
}

const char* RunState(CTarget& Target) {
  const int Halted = Target.IsHalted();
  return Halted < 0 ? "connection lost" : Halted ? "halted" : "running";
}

}  // namespace

PROBE_STATUS CollectStatus(CSession& Session) {
  PROBE_STATUS Status;
  Status.bOpen = Session.IsOpen();
  Status.SerialNo = Session.Config.SerialNo;
  Status.sInterface = Session.Config.TargetIF == VNODE_TIF_JTAG ? "JTAG" : "SWD";
  Status.SpeedKHz = Session.Config.SpeedKHz;
  Status.RTTAddr = Session.Config.RTTAddr;
  for (const RTT_SEARCH_RANGE& Range : Session.Config.RTTSearchRanges) {
    if (!Status.sRTTSearchRanges.empty()) Status.sRTTSearchRanges += ", ";
    Status.sRTTSearchRanges += FormatText("0x%X 0x%X", Range.Addr, Range.Size);
  }
  Session.GetDevice(&Status.Device);
  Status.Faults = Session.Faults.Describe();
  Status.sRunState = Session.IsLost() ? "connection lost" : "not connected";
  if (!Session.IsConnected()) return Status;
  Status.sRunState = RunState(Session.Target());
  Status.Target = Session.Target().Status();
  if (Session.Rtt.IsOn()) {
    const U32 Addr = Session.Rtt.FoundAddr();
    Status.Target.Channels.push_back(Addr == INVALID_ADDR ? "RTT, no control block found"
                                                          : FormatText("RTT, control block at 0x%08X", Addr));
  }
  if (!Status.Target.sRunState.empty()) Status.sRunState = Status.Target.sRunState;
  for (int i = 0; const VNODEARM_BP_INFO* pInfo = Session.Breakpoints.At(i); ++i) {
    Status.Breakpoints.push_back({pInfo->Addr, ImplementationText(pInfo->ImpFlags), pInfo->UseCnt});
  }
  VNODEARM_WP_INFO Info;
  for (int i = 0; Session.DataEvents.Get(i, &Info); ++i) Status.DataEvents.push_back(DataEventOf(Info));
  return Status;
}
