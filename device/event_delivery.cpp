#include "device/event_delivery.h"

#include <QtGlobal>

namespace {

using L = CDeviceEventListener;

int Int(U64 Value) {
  return static_cast<int>(static_cast<I64>(Value));
}

bool IsDataRead(U32 Type) {
  return Type == JT_READ_REG || Type == JT_READ_REGS || Type == JT_READ_MEM || Type == JT_READ_LOCATION;
}

bool IsCPUMode(U32 Mode) {
  return (Mode >= 16 && Mode <= 19) || Mode == 23 || Mode == 27 || (Mode >= 31 && Mode != CEventDelivery::NO_MODE);
}

}  // namespace

void CEventDelivery::SetModeSources(std::function<U32()> CPUMode, std::function<U32()> ExecMode) {
  CPUModeSource = std::move(CPUMode);
  ExecModeSource = std::move(ExecMode);
}

int CEventDelivery::ProcessEvents(int MaxEvents) {
  int NumEvents = 0;
  for (; NumEvents < MaxEvents; ++NumEvents) {
    const std::optional<DEVICE_EVENT> Event = Events.Take();
    if (!Event) break;
    Deliver(*Event);
  }
  return NumEvents;
}

void CEventDelivery::Deliver(const DEVICE_EVENT& Event) {
  const int P1 = Int(Event.Param1);
  const int P2 = Int(Event.Param2);
  switch (Event.Type) {
    case DE_JOB_FINISHED:
      return DeliverJob(Event.Job());
    case DE_EVAL_BP_CONDITION:
      return L::ForEach([&](L& Listener) { Listener.OnDeviceEvalBPCondition(static_cast<U32>(Event.Param1)); });
    case DE_CONFIG_CHANGED:
      return L::ForEach([&](L& Listener) { Listener.OnDeviceConfigParamChanged(P1, P2); });
    case DE_CAPABILITY_CHANGED:
      return L::ForEach([&](L& Listener) { Listener.OnDeviceHWCapabilityChanged(P1, P2); });
    case DE_CONNECTION_LOST:
      return L::ForEach([](L& Listener) { Listener.OnDeviceConnectionLost(); });
    case DE_ABOUT_TO_DISCONNECT:
      return L::ForEach([](L& Listener) { Listener.OnDeviceAboutToDisconnect(); });
    case DE_BEFORE_RESUME:
      return L::ForEach([](L& Listener) { Listener.OnDeviceBeforeResume(); });
    case DE_BEFORE_STEP:
      return L::ForEach([](L& Listener) { Listener.OnDeviceBeforeStep(); });
    case DE_ENDIANNESS_CHANGED:
      return L::ForEach([&](L& Listener) { Listener.OnDeviceEndianessChanged(P1, P2); });
    case DE_LOG_MSG:
    case DE_STATUS_TEXT:
    case DE_PROGRESS_TEXT:
      return DeliverText(Event);
    case DE_PROGRESS_START:
      return L::ForEach([&](L& Listener) { Listener.OnDeviceStartProgress(P1, P2); });
    case DE_PROGRESS_END:
      return L::ForEach([](L& Listener) { Listener.OnDeviceEndProgress(); });
    case DE_PROGRESS_VALUE:
      return L::ForEach([&](L& Listener) { Listener.OnDeviceSetProgressValue(P1); });
    default:
      return;
  }
}

void CEventDelivery::DeliverText(const DEVICE_EVENT& Event) {
  const std::string sText = Texts.Get(Event.Param1);
  L::ForEach([&](L& Listener) {
    if (Event.Type == DE_LOG_MSG) {
      Listener.OnDeviceLogMsg(sText.c_str(), static_cast<MSG_INFO_FLAGS>(Event.Param2));
    } else if (Event.Type == DE_STATUS_TEXT) {
      Listener.OnDeviceSetStatusMsg(sText.c_str());
    } else {
      Listener.OnDeviceSetProgressMsg(sText.c_str());
    }
  });
}

void CEventDelivery::DeliverJob(DEVICE_JOB* pJob) {
  if (!Rings.IsValid(pJob)) return;
  if (IsOutdated(*pJob)) {
    qDebug("Skipping job event %s", JobTypeName(pJob->Type));
  } else {
    CheckModes(*pJob);
    if (!IsDataRead(pJob->Type)) {
      L::ForEach([&](L& Listener) { Listener.OnJobDone(*pJob); });
    } else if (pDataReceiver != nullptr) {
      pDataReceiver->OnJobDone(*pJob);
    }
  }
  Rings.Release(pJob);
}

bool CEventDelivery::IsOutdated(const DEVICE_JOB& Job) const {
  switch (Job.Type) {
    case JT_CONNECT:
      return Job.Param[0] == CM_BARE || Job.Param[0] == 4;
    case JT_RESET:
      return Job.Param[0] == RM_HARDWARE_ONLY;
    case JT_HALT:
      return !View.IsAccessible() || Job.Result != View.GetPC();
    case JT_STEP_INST:
    case JT_STEP_INTO:
    case JT_STEP_OVER:
    case JT_STEP_OUT:
      return !View.IsAccessible() || Job.Result != View.GetPC() || View.IsStepping() ||
             Events.HasStepEvent(STEP_LOOK_AHEAD);
    default:
      return false;
  }
}

void CEventDelivery::CheckModes(const DEVICE_JOB& Job) {
  if (Job.Type == JT_RESET) {
    LastCPUMode = LastExecMode = 0;
    L::ForEach([](L& Listener) { Listener.OnDeviceCPUModeChanged(0); });
    L::ForEach([](L& Listener) { Listener.OnDeviceExecModeChanged(0); });
    return;
  }
  if (Job.Type != JT_HALT && Job.Type != JT_WRITE_REG && !IsStepJob(Job.Type)) return;
  const U32 CPUMode = CPUModeSource ? CPUModeSource() : NO_MODE;
  if (IsCPUMode(CPUMode) && CPUMode != LastCPUMode) {
    LastCPUMode = CPUMode;
    L::ForEach([&](L& Listener) { Listener.OnDeviceCPUModeChanged(CPUMode); });
  }
  const U32 ExecMode = ExecModeSource ? ExecModeSource() : NO_MODE;
  if (ExecMode != NO_MODE && ExecMode != LastExecMode) {
    LastExecMode = ExecMode;
    L::ForEach([&](L& Listener) { Listener.OnDeviceExecModeChanged(ExecMode); });
  }
}
