#include "probe/session.h"

#include "probe/text.h"

namespace {

sim::BOARD_SPEC BoardSpecOf(const DEVICE_ROW& Device) {
  sim::BOARD_SPEC Spec;
  Spec.Arch = *Device.pCore->SimArch;
  Spec.Flash = Device.Flash;
  Spec.RAM[0] = Device.RAM[0];
  Spec.RAM[1] = Device.RAM[1];
  Spec.NumCodeBreakpoints = Device.pCore->NumCodeBreakpoints;
  Spec.NumDataWatches = Device.pCore->NumDataWatches;
  Spec.NumIRQs = Device.NumIRQs;
  Spec.ClockHz = Device.ClockHz;
  return Spec;
}

}  // namespace

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
  return nullptr;
}

void CSession::ReleaseTarget() {
  if (!m_pBoard) return;
  Breakpoints.ClearAll(*m_pBoard);
  DataEvents.ClearAll(*m_pBoard);
  Download.Abandon(VNODE_DOWNLOAD_OK);
}

void CSession::Close() {
  ReleaseTarget();
  m_bOpen = false;
  m_bConnected = false;
  m_bLost = false;
  bSoftBPsEnabled = false;
}

bool CSession::GetDevice(DEVICE_ROW* pRow) const {
  return Config.DeviceIndex > 0 && Devices.Get(Config.DeviceIndex, pRow);
}

std::string CSession::CheckDevice(DEVICE_ROW* pRow) const {
  if (!GetDevice(pRow)) return "No device is selected";
  if (!pRow->pCore->SimArch) {
    return FormatText("%s cannot be simulated: the simulator does not have the core %s", pRow->sName,
                      pRow->pCore->sName);
  }
  if (Config.CoreIndex != 0) return FormatText("%s has no core with index %u", pRow->sName, Config.CoreIndex);
  return {};
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
  const std::string sError = CheckDevice(&Device);
  if (!sError.empty()) {
    Messages.Add(MSG_KIND::ERROR, sError);
    return -1;
  }
  ReleaseTarget();
  if (!m_pBoard || m_BoardSerialNo != Config.SerialNo || m_sBoardDevice != Device.sName) {
    m_pBoard = std::make_unique<CBoard>(BoardSpecOf(Device), Messages);
    m_BoardSerialNo = Config.SerialNo;
    m_sBoardDevice = Device.sName;
  }
  m_bConnected = true;
  m_bLost = false;
  Messages.Add(MSG_KIND::LOG, FormatText("Found simulated %s with core %s", Device.sName, Device.pCore->sName));
  return 0;
}

void CSession::LoseConnection() {
  if (!IsConnected()) return;
  m_bLost = true;
  Messages.Add(MSG_KIND::ERROR, "The connection to the target was lost");
}

void CSession::DropBoard() {
  LoseConnection();
  Breakpoints = {};
  DataEvents = {};
  Download.Abandon(VNODE_DOWNLOAD_UNSPECIFIED);
  m_pBoard.reset();
}
