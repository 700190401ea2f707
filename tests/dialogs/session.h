#pragma once
// The program's main window, which carries out the commands of the dialogs, and its console.

#include "../shell/frame.h"
#include "drive.h"

class CSession {
public:
  ~CSession() {
    if (m_pWindow) m_pWindow->close();
  }
  // One in a process; it stays until the process ends.
  void Start() { QVERIFY(m_pWindow = StartFrame()); }
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
  // The latest line of the console, without its time stamp.
  QString LastLine() const {
    const QString sLine = ConsoleText(*m_pWindow).trimmed().section('\n', -1);
    return sLine.mid(sLine.indexOf("Edit."));
  }

private:
  CMainWindow* m_pWindow = nullptr;
};
