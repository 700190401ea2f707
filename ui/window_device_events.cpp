// When windows follow the target.

#include "base/msg_flags.h"
#include "core/vcore.h"
#include "device/device.h"
#include "shell/log/log.h"
#include "ui/window.h"

namespace {

// The window that has heard of the reset ahead of a download. What stands there is about to be written over.
const CWindow* pBeforeDownload = nullptr;

}  // namespace

DEBUG_STATES GetDebugState() {
  if (!CDevice::Exists() || !CDevice::Get().IsConnected()) return DEBUG_STATE_NO_CONNECTION;
  return CDevice::Get().IsHalted() ? DEBUG_STATE_HALTED : DEBUG_STATE_RUNNING;
}

bool IsStandingStill() {
  const CDevice& Device = CDevice::Get();
  // In the order in which each leads to the next: the device thread goes on meanwhile.
  for (const U32 Type : {JT_RUN_TO, JT_CONTINUE}) {
    if (Device.IsJobPending(Type)) return false;
  }
  return Device.IsHalted();
}

bool IsCurrentPC(U32 PC) {
  const U32 Mask = ~(VCore::GetInfo().InstAlign - 1);
  return PC != INVALID_ADDR && (PC & Mask) == (static_cast<U32>(CDevice::Get().GetPC()) & Mask);
}

void CWindow::OnDeviceConnectDone(CONNECT_MODES) {
  Repaint();
  UpdateActions();
}

void CWindow::OnDeviceDisconnectDone() {
  if (TestFlag(WF_CLEAR_ON_DISCONNECT)) Clear();
  // What the title told about the target holds no longer.
  if (GetDock()) SetWindowTitle(GetName());
  Repaint();
  UpdateActions();
}

void CWindow::OnDeviceResumeDone(RESUME_MODES) {
  if (IsEmpty()) Repaint();
  UpdateActions();
}

// The halt of a reset is told right behind it, to one window after the other.
void CWindow::OnDeviceHaltDone(U32 PC, HALT_REASONS) {
  if (std::exchange(pBeforeDownload, nullptr) != this) HaltUpdate(PC);
}
void CWindow::OnDeviceResetDone(U32 PC, RESET_MODES Mode) {
  pBeforeDownload = Mode == RM_BEFORE_DOWNLOAD ? this : nullptr;
  if (pBeforeDownload == nullptr) HaltUpdate(PC);
}

void CWindow::HaltUpdate(U32 PC) {
  if (!IsCurrentPC(PC)) {
    LogMsg("Not updating window as PC is superseeded", MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
    return;
  }
  if (UpdateMode == WIN_UPDATE_VISIBLE && !IsVisible()) return;
  if (UpdateMode == WIN_UPDATE_OPEN && !IsOpen()) return;
  Update(PC);
  if (IsEmpty()) Repaint();
  UpdateActions();
}

void CWindow::OnDeviceStepped(U32 PC) {
  if (!IsCurrentPC(PC)) return;
  if (UpdateMode == WIN_UPDATE_VISIBLE && !IsVisible()) return;
  if (UpdateMode == WIN_UPDATE_OPEN && !IsOpen()) return;
  Update(PC);
  if (IsEmpty()) Repaint();
}
