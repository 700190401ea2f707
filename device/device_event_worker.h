#pragma once

#include <QTimer>

class CDevice;

// Delivers the device's events on the main thread: at most EVENTS_PER_TICK every TICK_MS, as long as there are any. The
// device wakes it by one posted event, so that an idle session costs nothing. The main window owns it.
class CDeviceEventWorker : public QTimer {
  Q_OBJECT
public:
  static constexpr int TICK_MS = 1;
  static constexpr int EVENTS_PER_TICK = 10;

  explicit CDeviceEventWorker(CDevice& Device, QObject* pParent = nullptr);

private:
  void OnEventsAvailable();
  void OnTick();

  CDevice& Device;
};
