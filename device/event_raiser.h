#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include "device/device_context.h"
#include "device/event_delivery.h"
#include "device/job_loop.h"

// Puts events into the ring and wakes the main thread for the first one. Any thread. What comes from the probe side
// of the device layer enters as DEVICE_EVENT_SINK.
class CEventRaiser : public DEVICE_EVENT_SINK {
public:
  struct PLUGS {
    std::function<void()> Wake;                  // events wait: called once until WakeHandled
    std::function<bool(U32 Type)> IsSuppressed;  // the finished-events of a job type are dropped
    std::function<void(RESUME_MODES)> ScheduleContinue;
  };

  // The thread that makes the object is the main thread.
  CEventRaiser(CJobRings& Rings, CEventRing& Events, CTextRing& Texts, CEventDelivery& Delivery, PLUGS Plugs);

  // 0, or -1 when the ring is full. What announces a step, a resume or a disconnect is delivered at once on the main
  // thread.
  int Raise(const DEVICE_EVENT& Event);
  // The finished job of a ring slot; false when it could not be reported and the caller keeps the slot.
  bool RaiseJobFinished(DEVICE_JOB& Job);
  int RaiseText(U32 EventType, const QString& sText, U32 Flags = 0);
  // Called when the ring was found empty: the next event wakes again.
  void WakeHandled();

  void PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result, U64 Result2);

  void RaiseEvalBPCondition(U32 Addr) override { Raise({DE_EVAL_BP_CONDITION, Addr, 0}); }
  void RaiseConfigParamChanged(int Param, int Value) override;
  void RaiseHWCapabilityChanged(int Capability, int Value) override;
  void RaiseConnectionLost() override { Raise({DE_CONNECTION_LOST, 0, 0}); }
  void RaiseEndianessChanged(int InstEndian, int DataEndian) override;
  void PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result) override { PostJobEvent(Type, Status, P0, Result, 0); }
  void ScheduleContinue(RESUME_MODES Mode) override { Plugs.ScheduleContinue(Mode); }
  void CancelAllJobs() override { Rings.Cancel(JT_ANY, JQ_ALL); }
  void Log(const QString& sText, U32 Flags) override { RaiseText(DE_LOG_MSG, sText, Flags); }
  void SetStatusMsg(const QString& sText) override { RaiseText(DE_STATUS_TEXT, sText); }
  void StartProgress(const QString& sText, int Min, int Max) override;
  void SetProgressMsg(const QString& sText) override { RaiseText(DE_PROGRESS_TEXT, sText); }
  void SetProgressValue(int Value) override;
  void EndProgress() override { Raise({DE_PROGRESS_END, 0, 0}); }

private:
  void WakeMainThread();

  CJobRings& Rings;
  CEventRing& Events;
  CTextRing& Texts;
  CEventDelivery& Delivery;
  PLUGS Plugs;
  const std::thread::id MainThread = std::this_thread::get_id();
  std::atomic<bool> bWakePosted{false};
};
