#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "probe/breakpoint_list.h"
#include "probe/data_event_list.h"
#include "probe/device_list.h"
#include "probe/faults.h"
#include "probe/messages.h"
#include "probe/probe_config.h"
#include "probe/rtt.h"
#include "probe/target.h"
#include "probe/web_control.h"

// One use of the library: the probe that is open, the target behind it and what was set on it. Everything but Messages
// and Devices is guarded by the lock that the classes of api_call.h take.
class CSession {
public:
  static CSession& Get();

  // Null, or an error text that is valid until the next call.
  const char* Open();
  // Takes back what the library has set on the target, and leaves the target as it is.
  void Close();
  // 0, or -1 with the reason as an error message.
  int Connect();
  void LoseConnection();

  bool IsOpen() const { return m_bOpen; }
  bool IsConnected() const { return m_bConnected && !m_bLost; }
  bool IsLost() const { return m_bLost; }
  // Where the control page can be read on this machine; 0 while there is none.
  U16 WebPort() const { return m_pWeb ? m_pWeb->Port() : 0; }
  // The present device; false when none is selected.
  bool GetDevice(DEVICE_ROW* pRow) const;
  // Only while connected.
  CTarget& Target() { return *m_pTarget; }
  // Closes an open download without programming; Result is what EndDownload gives from now on.
  void AbandonDownload(int Result);
  // Takes the board's power away: the next connect finds a fresh one.
  void DropBoard();

  CMessages Messages;
  CDeviceList Devices;

  std::mutex Mutex;
  PROBE_CONFIG Config;
  CFaults Faults;
  CBreakpointList Breakpoints;
  CDataEventList DataEvents;
  CRtt Rtt;
  bool bSoftBPsEnabled = false;

private:
  int ConnectSimulator(const DEVICE_ROW& Device);
  int ConnectServer(const DEVICE_ROW& Device);
  void ReleaseTarget();

  bool m_bOpen = false;
  bool m_bConnected = false;
  bool m_bLost = false;
  std::string m_sOpenError;
  // A simulated board stays powered between two connections to the same device and serial number. Its key is empty for
  // any other target, which ends with its connection.
  std::unique_ptr<CTarget> m_pTarget;
  std::string m_sTargetKey;
  std::unique_ptr<CWebControl> m_pWeb;  // the last member: it reads the others
};
