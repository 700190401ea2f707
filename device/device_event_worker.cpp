#include "device/device_event_worker.h"

#include "device/device.h"

CDeviceEventWorker::CDeviceEventWorker(CDevice& Device, QObject* pParent) : QTimer(pParent), Device(Device) {
  setInterval(TICK_MS);
  setTimerType(Qt::PreciseTimer);
  connect(this, &QTimer::timeout, this, &CDeviceEventWorker::OnTick);
  connect(&Device, &CDevice::EventsAvailable, this, &CDeviceEventWorker::OnEventsAvailable, Qt::QueuedConnection);
  if (Device.HasEvents()) start();
}

void CDeviceEventWorker::OnEventsAvailable() {
  if (!isActive()) OnTick();
}

// The timer runs before anything is delivered: a listener may open a dialog, and events go on meanwhile.
void CDeviceEventWorker::OnTick() {
  if (!isActive()) start();
  Device.ProcessEvents(EVENTS_PER_TICK);
  if (!Device.HasEvents()) stop();
}
