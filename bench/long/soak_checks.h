#pragma once

#include <QString>
#include <set>

#include "device/device.h"
#include "device/probe_api/probe_api.h"
#include "soak_watchdog.h"

class CMainWindow;

// What has to hold whenever everything that was asked for is done. Each check ends the program when it fails.
class CSoakChecks {
public:
  CSoakChecks(CMainWindow& Window, CSoakWatchdog& Watchdog);

  // Turns the event loop until nothing is on its way any more.
  void Settle();
  // No job is lost, no slot of the rings leaked.
  void CheckJobs();
  // The probe library holds exactly the breakpoints that the device's list says.
  void CheckBreakpoints();
  // Resident memory in KB; from the third call on it may not grow by more than the limit.
  long CheckMemory();

private:
  // What is on its way; empty when nothing is.
  QString Busy() const;

  CMainWindow& m_Window;
  CSoakWatchdog& m_Watchdog;
  decltype(&VNODEARM_GetBPInfoEx) m_pfGetBPInfo = nullptr;
  int m_NumMemoryChecks = 0;
  long m_FirstKB = 0;
};
