#include "probe/session.h"

#include "probe/gdb/gdb_target.h"
#include "probe/sim_target.h"
#include "probe/text.h"

CSession& CSession::Get() {
  static CSession Session;
  return Session;
}

const char* CSession::Open() {
  if (Faults.Take(FAULT_POINT::Open)) {
    m_sOpenError = "Cannot open the probe (injected fault)";
    return m_sOpenError.c_str();
  }
  m_bOpen = true;
  if (!m_pWeb) m_pWeb = std::make_unique<CWebControl>(*this);
  return nullptr;
}

void CSession::ReleaseTarget() {
  if (!m_pTarget) return;
  Rtt.Stop();
  Breakpoints.ClearAll(*m_pTarget);
  DataEvents.ClearAll(*m_pTarget);
  m_pTarget->AbandonDownload(VNODE_DOWNLOAD_OK);
  m_pTarget->Release();
  if (m_sTargetKey.empty()) m_pTarget.reset();
}

void CSession::Close() {
  m_pWeb.reset();
  ReleaseTarget();
  m_bOpen = false;
  m_bConnected = false;
  m_bLost = false;
  bSoftBPsEnabled = false;
}

bool CSession::GetDevice(DEVICE_ROW* pRow) const {
  return Config.DeviceIndex > 0 && Devices.Get(Config.DeviceIndex, pRow);
}

int CSession::ConnectSimulator(const DEVICE_ROW& Device) {
  const std::string sError = CSimTarget::WhyNot(Device, Config);
  if (!sError.empty()) {
    Messages.Add(MSG_KIND::ERROR, sError);
    return -1;
  }
  ReleaseTarget();
  const std::string sKey = FormatText("%u %s", Config.SerialNo, Device.sName);
  if (!m_pTarget || m_sTargetKey != sKey) {
    m_pTarget = std::make_unique<CSimTarget>(Device, Messages);
    m_sTargetKey = sKey;
  }
  Messages.Add(MSG_KIND::LOG, FormatText("Found simulated %s with core %s", Device.sName, Device.pCore->sName));
  return 0;
}

int CSession::ConnectServer(const DEVICE_ROW& Device) {
  ReleaseTarget();
  m_sTargetKey.clear();
  std::string sError;
  m_pTarget = CGdbTarget::Connect(Device, Config, Messages, &sError);
  if (!m_pTarget) {
    Messages.Add(MSG_KIND::ERROR, sError);
    return -1;
  }
  const std::string sServer = Config.Server->Text();
  Messages.Add(MSG_KIND::LOG, FormatText("Connected to the GDB server %s as %s with core %s", sServer.c_str(),
                                         Device.sName, Device.pCore->sName));
  return 0;
}

int CSession::Connect() {
  if (!m_bOpen) {
    Messages.Add(MSG_KIND::ERROR, "Connect: the probe is not open");
    return -1;
  }
  if (IsConnected()) return 0;
  if (Faults.Take(FAULT_POINT::Connect)) {
    Messages.Add(MSG_KIND::ERROR, "The target does not answer (injected fault)");
    return -1;
  }
  DEVICE_ROW Device;
  if (!GetDevice(&Device)) {
    Messages.Add(MSG_KIND::ERROR, "No device is selected");
    return -1;
  }
  if ((Config.Server ? ConnectServer(Device) : ConnectSimulator(Device)) < 0) return -1;
  m_bConnected = true;
  m_bLost = false;
  return 0;
}

void CSession::LoseConnection() {
  if (!IsConnected()) return;
  m_bLost = true;
  Messages.Add(MSG_KIND::ERROR, "The connection to the target was lost");
}

void CSession::AbandonDownload(int Result) {
  if (m_pTarget) m_pTarget->AbandonDownload(Result);
}

void CSession::DropBoard() {
  LoseConnection();
  Breakpoints = {};
  DataEvents = {};
  m_pTarget.reset();
}
