// The window of the probe's page: with the program that shows web pages, and without one.

#include <QDesktopServices>
#include <QFileInfo>
#include <QTcpSocket>
#include <QTemporaryDir>

#include "device/windows/vnode_web_control_window.h"
#include "device/windows/web_view_process.h"
#include "frame.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/command_console.h"
#include "tests/common/write_file.h"

using namespace Qt::StringLiterals;

namespace {

const QString HELPER = QStringLiteral(VEXOR_BIN_DIR "/vexor-web-view");
constexpr int PAGE_WAIT_MS = 30'000;  // the engine's first start

// What the server at the address answers.
QByteArray Ask(const QUrl& URL) {
  QTcpSocket Socket;
  Socket.connectToHost(URL.host(), static_cast<quint16>(URL.port()));
  Socket.write("GET " + URL.path().toUtf8() + " HTTP/1.0\r\nHost: " + URL.authority().toUtf8() + "\r\n\r\n");
  while (Socket.waitForReadyRead(PAGE_WAIT_MS)) continue;  // it closes behind its answer
  return Socket.readAll();
}

}  // namespace

class CWebControlTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pFrame = StartFrame());
    for (const char* const sCommand : {"Project.SetDevice STM32F407VG", "Project.SetHostIF (\"USB\", \"\")",
                                       "Project.SetTargetIF SWD", "Debug.SetConnectMode CM_ATTACH"}) {
      QCOMPARE(ExecuteCommand(QLatin1String(sCommand)), COMMAND_RAN);
    }
    QTest::keyClick(m_pFrame, Qt::Key_O, Qt::ShiftModifier | Qt::AltModifier);
    m_pWindow = m_pFrame->findChild<CVNodeWebControlWindow*>();
    QVERIFY(m_pWindow && m_pWindow->IsVisible());
    QTRY_COMPARE(Text(), u"No target connection"_s);
    QVERIFY(!Button()->isVisible());
  }

  void cleanup() {
    PerformAction(ACTION_DEBUG_STOP);
    QTRY_VERIFY_WITH_TIMEOUT(
        !CDevice::Get().IsConnected() && !CDevice::Get().IsJobPending(JT_ANY) && !CDevice::Get().HasEvents(),
        FRAME_WAIT_MS);
    QTRY_COMPARE(Text(), u"No target connection"_s);
    QVERIFY(!Button()->isVisible());
    QVERIFY(m_pWindow->DumpText().isEmpty());
  }

  void withoutTheProgramTheBrowserIsOffered() {
    // None, one that ends at once, one whose pages fail, and one that ends in the middle.
    const std::pair<QString, const char*> Rows[] = {
        {u"/none"_s, ""}, {u"/bin/false"_s, ""}, {FakeHelper(), "failed"}, {FakeHelper(), "end"}};
    for (const auto& [sProgram, sAnswer] : Rows) {
      CWebViewProcess::SetProgram(sProgram);
      AnswerWith(sAnswer);
      Connect();
      QTRY_COMPARE_WITH_TIMEOUT(Text(), u"The page can't be shown here"_s, FRAME_WAIT_MS);
      QTRY_COMPARE(Button()->text().trimmed(), u"Open in Browser"_s);
      QDesktopServices::setUrlHandler(u"http"_s, this, "OnURL");
      QTest::mouseClick(Button(), Qt::LeftButton);
      QDesktopServices::unsetUrlHandler(u"http"_s);
      QVERIFY2(Ask(m_Opened).contains("STM32F407VG"), qPrintable(m_Opened.toString()));
      // It is no use to try again in this session.
      PerformAction(ACTION_DEBUG_HALT);
      QVERIFY(HaltsWith([] { return CDevice::Get().IsHalted(); }));
      QCOMPARE(Text(), u"The page can't be shown here"_s);
      cleanup();
    }
  }

  void aHiddenWindowLoadsThePageWhenItIsShown() {
    CWebViewProcess::SetProgram(FakeHelper());
    AnswerWith("loaded");
    PerformAction(ACTION_WINDOW_CLOSE, m_pWindow->GetName());
    Connect();
    QTest::qWait(100);
    QVERIFY(m_pWindow->DumpText().isEmpty());
    QTest::keyClick(m_pFrame, Qt::Key_O, Qt::ShiftModifier | Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!m_pWindow->DumpText().isEmpty(), FRAME_WAIT_MS);
    AnswerWith("end");  // at the blank page behind the session
  }

  void theProgramLoadsThePageOfEachSession() {
    if (!QFileInfo(HELPER).isExecutable()) QSKIP("built without a web engine");
    // The program of the test before ends at the blank page behind its session.
    QTRY_VERIFY_WITH_TIMEOUT(!m_pWindow->findChild<CWebViewProcess*>()->IsRunning(), FRAME_WAIT_MS);
    CWebViewProcess::SetProgram(HELPER);
    for (int i = 0; i < 2; ++i) {
      Connect();
      QTRY_COMPARE_WITH_TIMEOUT(Text(), u"The page is shown in a window of its own"_s, PAGE_WAIT_MS);
      QVERIFY(Ask(QUrl(m_pWindow->DumpText())).contains("STM32F407VG"));
      QVERIFY(!Button()->isVisible());
      if (i == 0) cleanup();
    }
  }

  void cleanupTestCase() { m_pFrame->close(); }

public Q_SLOTS:
  void OnURL(const QUrl& URL) { m_Opened = URL; }

private:
  void Connect() {
    PerformAction(ACTION_DEBUG_START);
    QTRY_VERIFY_WITH_TIMEOUT(CDevice::Get().IsConnected() && !CDevice::Get().HasEvents(), FRAME_WAIT_MS);
  }
  // One that answers each page with the word of AnswerWith, or ends.
  QString FakeHelper() const {
    const QString sPath = m_Dir.filePath(u"helper"_s);
    if (QFile::exists(sPath)) return sPath;
    WriteFile(
        sPath,
        "#!/bin/sh\nwhile read word url; do\n  [ $word = load ] || continue\n  read answer < $(dirname $0)/answer\n"
        "  [ $answer = end ] && exit\n  echo $answer $url\ndone\n");
    QFile::setPermissions(sPath, QFile::ReadOwner | QFile::ExeOwner);
    return sPath;
  }
  void AnswerWith(const char* sWord) const { WriteFile(m_Dir.filePath(u"answer"_s), QByteArray(sWord) + '\n'); }

  QString Text() const { return Overlay()->findChild<QLabel*>()->text(); }
  QPushButton* Button() const { return Overlay()->findChild<QPushButton*>(); }
  QFrame* Overlay() const { return m_pWindow->findChild<QFrame*>(u"buttonFrame"_s); }

  QTemporaryDir m_Dir;
  QUrl m_Opened;
  CMainWindow* m_pFrame = nullptr;
  CVNodeWebControlWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CWebControlTest)
#include "web_control_test.moc"
