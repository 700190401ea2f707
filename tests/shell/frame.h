#pragma once
// The main window of a test program: one in a process, as in real life.

#include <QSignalSpy>
#include <QTest>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "shell/main_window.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"

inline constexpr int FRAME_WAIT_MS = 10'000;

// Null when it does not come up. Settings are neither read nor written.
inline CMainWindow* StartFrame() {
  SetSettingsInMemory(true);
  CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
  CDeviceDataProvider::Get();
  auto* const pWindow = new CMainWindow;
  QSignalSpy Started(pWindow, &CMainWindow::Started);
  pWindow->show();
  return Started.wait(FRAME_WAIT_MS) && QTest::qWaitForWindowActive(pWindow) ? pWindow : nullptr;
}

inline bool IsHalted() {
  const CDevice& Device = CDevice::Get();
  return Device.IsConnected() && Device.IsAccessible() && Device.IsSessionReady() && !Device.HasEvents() &&
         !Device.IsJobPending(JT_ANY);
}
// Waits for a halt, and for what more is said.
template <typename CONDITION>
bool HaltsWith(const CONDITION& Condition) {
  return QTest::qWaitFor([&] { return IsHalted() && Condition(); }, FRAME_WAIT_MS);
}
inline bool Halts() {
  return HaltsWith([] { return true; });
}

// What the console has shown since it was cleared.
inline QString ConsoleText(CMainWindow& Window) {
  Window.Console().Drain();
  return Window.Console().DumpText();
}
