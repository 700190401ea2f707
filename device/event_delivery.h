#pragma once

#include <functional>

#include "device/device_event_listener.h"
#include "device/device_view.h"
#include "device/event_ring.h"
#include "device/job_rings.h"

// Takes events out of the ring and calls the listeners. Main thread.
class CEventDelivery {
public:
  // How many of the next events are searched for a later step before a step is reported.
  static constexpr U32 STEP_LOOK_AHEAD = 10;
  // Answer of a mode source that does not know.
  static constexpr U32 NO_MODE = ~0u;

  CEventDelivery(CJobRings& Rings, CEventRing& Events, CTextRing& Texts, const CDeviceView& View)
      : Rings(Rings), Events(Events), Texts(Texts), View(View) {}

  // The listener that alone gets the answers of memory, register and location reads; null drops them.
  void SetDataReceiver(CDeviceEventListener* pReceiver) { pDataReceiver = pReceiver; }
  // The processor's mode (low five bits of CPSR) and the execution mode of its code, NO_MODE when unknown; asked when
  // the target has halted, stepped, or had a register written.
  void SetModeSources(std::function<U32()> CPUMode, std::function<U32()> ExecMode);

  // Takes and delivers at most MaxEvents; the number taken. May be entered again from a listener.
  int ProcessEvents(int MaxEvents);
  // Calls the listeners at once.
  void Deliver(const DEVICE_EVENT& Event);

private:
  void DeliverText(const DEVICE_EVENT& Event);
  void DeliverJob(DEVICE_JOB* pJob);
  bool IsOutdated(const DEVICE_JOB& Job) const;
  void CheckModes(const DEVICE_JOB& Job);

  CJobRings& Rings;
  CEventRing& Events;
  CTextRing& Texts;
  const CDeviceView& View;
  CDeviceEventListener* pDataReceiver = nullptr;
  std::function<U32()> CPUModeSource;
  std::function<U32()> ExecModeSource;
  U32 LastCPUMode = 0;
  U32 LastExecMode = 0;
};
