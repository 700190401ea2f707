#pragma once

#include <QString>
#include <functional>
#include <random>
#include <vector>

#include "device/device_event_listener.h"

class CMainWindow;

// Draws random actions and performs them. What is drawn depends on the seed alone.
class CSoakActions : public CDeviceEventListener {
public:
  CSoakActions(CMainWindow& Window, U32 Seed);

  // A console line, as a user types it. Returns it.
  QString Type();
  // A call to the device or its data provider, as a window makes it. Returns what it was.
  QString Call();
  // A fault; every other time through the console, otherwise as a job.
  QString Inject();
  // Up to Max, from 0.
  U32 Draw(U32 Max);

private:
  struct CALL {
    const char* sName;
    std::function<void()> Do;
  };

  template <typename T>
  const T& Pick(const std::vector<T>& Items) {
    return Items[Draw(static_cast<U32>(Items.size() - 1))];
  }
  U32 CodeAddr();
  U32 DataAddr();
  void AddRunControl();
  void AddBreakpoints();
  void AddAccess();
  void AddProvider();

  CMainWindow& m_Window;
  std::mt19937 m_Random;
  std::vector<CALL> m_Calls;
};
