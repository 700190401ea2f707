#pragma once
// The program's main window, which carries out the commands of the dialogs, and its console.

#include <QSignalSpy>
#include <QTest>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "drive.h"
#include "shell/main_window.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"

class CSession {
public:
  // One in a process; it stays until the process ends.
  void Start() {
    SetSettingsInMemory(true);
    CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
    CDeviceDataProvider::Get();
    m_pWindow = new CMainWindow;
    QSignalSpy Started(m_pWindow, &CMainWindow::Started);
    m_pWindow->show();
    QVERIFY(Started.wait(10'000));
  }
  void End() { m_pWindow->close(); }
  // Presses a key that opens a dialog, and returns once that is closed.
  void RunDialog(Qt::Key Key, const std::function<void(QWidget*)>& Drive) {
    m_pWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    bool bDriven = false;
    WhenModal([&](QWidget* pDialog) {
      bDriven = true;
      Drive(pDialog);
    });
    QTest::keyClick(m_pWindow, Key, Qt::ControlModifier | Qt::AltModifier);
    QVERIFY2(bDriven, "the key opens no dialog");
  }

  CMainWindow* Window() const { return m_pWindow; }
  void ClearConsole() { m_pWindow->Console().Clear(); }
  QString Console() const {
    m_pWindow->Console().Drain();
    return m_pWindow->Console().DumpText();
  }
  // The latest line of the console, without its time stamp.
  QString LastLine() const {
    const QString sLine = Console().trimmed().section(QLatin1Char('\n'), -1);
    return sLine.mid(sLine.indexOf(QLatin1String("Edit.")));
  }

private:
  CMainWindow* m_pWindow = nullptr;
};
