#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "probe/board.h"
#include "probe/breakpoint_list.h"
#include "probe/data_event_list.h"
#include "probe/device_list.h"
#include "probe/download.h"
#include "probe/faults.h"
#include "probe/messages.h"

// What the caller has configured. Stays over Close.
struct PROBE_CONFIG {
  U32 SerialNo = 0;
  int DeviceIndex = -1;
  int TargetIF = VNODE_TIF_SWD;
  int IRPre = 0;
  int DRPre = 0;
  U32 SpeedKHz = 4000;
  U32 CoreIndex = 0;
  int ResetType = 0;
  int ResetDelayMs = 0;
  bool bInitRegsOnReset = true;
  bool bHideDeviceSelection = false;
  U32 RTTAddr = INVALID_ADDR;
  std::string sRTTSearchRanges;
};

// One use of the library: the probe that is open, the board behind it and what was set on it. Everything but Messages
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
  // The present device; false when none is selected.
  bool GetDevice(DEVICE_ROW* pRow) const;
  // The board; only while connected.
  CBoard& Board() { return *m_pBoard; }
  // Takes the board's power away: the next connect finds a fresh one.
  void DropBoard();

  CMessages Messages;
  CDeviceList Devices;

  std::mutex Mutex;
  PROBE_CONFIG Config;
  CFaults Faults;
  CBreakpointList Breakpoints;
  CDataEventList DataEvents;
  CDownload Download;
  bool bSoftBPsEnabled = false;

private:
  std::string CheckDevice(DEVICE_ROW* pRow) const;
  void ReleaseTarget();

  bool m_bOpen = false;
  bool m_bConnected = false;
  bool m_bLost = false;
  std::string m_sOpenError;
  // The board stays powered between two connections to the same device and serial number.
  std::unique_ptr<CBoard> m_pBoard;
  U32 m_BoardSerialNo = 0;
  std::string m_sBoardDevice;
};
