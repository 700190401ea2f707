#pragma once
// The main window of a test program: one in a process, as in real life.

#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <functional>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "shell/main_window.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"
#include "ui/message_box.h"

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

// The titles of the message boxes that come up meanwhile, each answered by a click.
inline QStringList BoxesOf(const std::function<void()>& Do, QList<QDialogButtonBox::StandardButton> Answers) {
  QStringList Titles;
  QTimer Timer;
  QObject::connect(&Timer, &QTimer::timeout, [&] {
    auto* const pBox = qobject_cast<CMessageBox*>(QApplication::activeModalWidget());
    if (!pBox || !pBox->isVisible()) return;
    Titles << pBox->windowTitle().trimmed();
    if (Answers.isEmpty()) {
      pBox->close();
    } else {
      QTest::mouseClick(pBox->Button(Answers.takeFirst()), Qt::LeftButton);
    }
  });
  Timer.start(1);
  Do();
  QCoreApplication::processEvents();
  return Titles;
}

// What the console has shown since it was cleared.
inline QString ConsoleText(CMainWindow& Window) {
  Window.Console().Drain();
  return Window.Console().DumpText();
}
