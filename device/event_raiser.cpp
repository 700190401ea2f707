#include "device/event_raiser.h"

#include <QtGlobal>

namespace {

bool IsAnnouncement(U32 Type) {
  return Type == DE_ABOUT_TO_DISCONNECT || Type == DE_BEFORE_RESUME || Type == DE_BEFORE_STEP;
}

U64 Word(int Value) {
  return static_cast<U64>(static_cast<I64>(Value));
}

}  // namespace

CEventRaiser::CEventRaiser(CJobRings& Rings, CEventRing& Events, CTextRing& Texts, CEventDelivery& Delivery,
                           PLUGS Plugs)
    : Rings(Rings), Events(Events), Texts(Texts), Delivery(Delivery), Plugs(std::move(Plugs)) {}

int CEventRaiser::Raise(const DEVICE_EVENT& Event) {
  if (IsAnnouncement(Event.Type) && std::this_thread::get_id() == MainThread) {
    Delivery.Deliver(Event);
    return 0;
  }
  if (!Events.Put(Event)) {
    qWarning("Target event queue full. job not inserted");
    return -1;
  }
  WakeMainThread();
  return 0;
}

bool CEventRaiser::RaiseJobFinished(DEVICE_JOB& Job) {
  if (!Events.Put(JobFinishedEvent(&Job), &Job)) {
    qWarning("Target event queue full. job not inserted");
    return false;
  }
  WakeMainThread();
  return true;
}

int CEventRaiser::RaiseText(U32 EventType, const QString& sText, U32 Flags) {
  const QByteArray sUtf8 = sText.toUtf8();
  return Raise({EventType, Texts.Add({sUtf8.constData(), static_cast<size_t>(sUtf8.size())}), Flags});
}

void CEventRaiser::WakeMainThread() {
  if (!bWakePosted.exchange(true)) Plugs.Wake();
}

void CEventRaiser::WakeHandled() {
  bWakePosted = false;
  if (!Events.IsEmpty()) WakeMainThread();
}

void CEventRaiser::PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result, U64 Result2) {
  if (Type == JT_NONE || Type >= JT_ANY || Plugs.IsSuppressed(Type)) return;
  DEVICE_JOB Job;
  Job.Type = Type;
  Job.Status = Status;
  Job.Param[0] = P0;
  Job.Result = Result;
  Job.Result2 = Result2;
  DEVICE_JOB* pSlot = Rings.AddNotification(Job);
  if (pSlot == nullptr) {
    qWarning("Target event queue full. job not inserted");
  } else if (!RaiseJobFinished(*pSlot)) {
    Rings.Release(pSlot);
  }
}

void CEventRaiser::RaiseConfigParamChanged(int Param, int Value) {
  Raise({DE_CONFIG_CHANGED, Word(Param), Word(Value)});
}

void CEventRaiser::RaiseHWCapabilityChanged(int Capability, int Value) {
  Raise({DE_CAPABILITY_CHANGED, Word(Capability), Word(Value)});
}

void CEventRaiser::RaiseEndianessChanged(int InstEndian, int DataEndian) {
  Raise({DE_ENDIANNESS_CHANGED, Word(InstEndian), Word(DataEndian)});
}

void CEventRaiser::StartProgress(const QString& sText, int Min, int Max) {
  RaiseText(DE_PROGRESS_TEXT, sText);
  Raise({DE_PROGRESS_START, Word(Min), Word(Max)});
}

void CEventRaiser::SetProgressValue(int Value) {
  Raise({DE_PROGRESS_VALUE, Word(Value), 0});
}
