#include <QElapsedTimer>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "program/database/elfapi.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/main_window.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"
#include "ui/dock_window.h"
#include "ui/message_box.h"
#include "ui/windows/source_window.h"

namespace {

constexpr int WAIT_MS = 10'000;
constexpr int CLOSE_LIMIT_MS = 2000;
const QString PROJECT = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.vdebug");

bool IsHalted() {
  const CDevice& Device = CDevice::Get();
  return Device.IsConnected() && Device.IsAccessible() && Device.IsSessionReady() && !Device.HasEvents() &&
         !Device.IsJobPending(JT_ANY);
}

QString WriteProject(const QTemporaryDir& Dir, const char* sBody) {
  const QString sPath = Dir.filePath(QStringLiteral("test.vdebug"));
  QFile File(sPath);
  if (File.open(QIODevice::WriteOnly)) File.write(QByteArray("void OnProjectLoad (void) {") + sBody + "}\n");
  return sPath;
}

}  // namespace

// One main window for the whole program, as in real life: the device and the other singletons cannot be made twice. The
// last test closes it.
class CMainWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase();
  void startsWithTheDefaultLayout();
  void aTypedCommandRunsAndIsKeptInTheHistory();
  void f5StartsASessionThatHaltsInMain();
  void theKeysFollowTheState();
  void aDocksCloseButtonIsACommand();
  void shiftF5Stops();
  void openingAProjectDuringASessionAsksFirst();
  void closingEndsAnEndlessScript();

private:
  QLineEdit& Input() { return *m_pWindow->findChild<QLineEdit*>(QStringLiteral("ConsoleInput")); }
  QString ConsoleText() {
    m_pWindow->Console().Drain();
    return m_pWindow->Console().DumpText();
  }
  void Type(const char* sCommand) {
    QTest::keyClicks(&Input(), QLatin1String(sCommand));
    QTest::keyClick(&Input(), Qt::Key_Return);
  }

  CMainWindow* m_pWindow = nullptr;
};

void CMainWindowTest::initTestCase() {
  SetSettingsInMemory(true);
  CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
  CDeviceDataProvider::Get();
  m_pWindow = new CMainWindow;
  QSignalSpy Started(m_pWindow, &CMainWindow::Started);
  m_pWindow->show();
  QVERIFY(Started.wait(WAIT_MS));
  m_pWindow->hide();
  m_pWindow->show();
  QTest::qWait(50);
  QCOMPARE(Started.count(), 1);
}

void CMainWindowTest::startsWithTheDefaultLayout() {
  QVERIFY(m_pWindow->Console().IsVisible());
  QVERIFY(m_pWindow->FindToolBar(QStringLiteral("ToolbarDebug"))->isVisible());
  QVERIFY(!m_pWindow->FindToolBar(QStringLiteral("ToolbarFile"))->isVisible());
  QVERIFY(m_pWindow->windowTitle().startsWith(QStringLiteral("Vexor")));
  QCOMPARE(m_pWindow->FindWindow(QStringLiteral("\"console\""), false), static_cast<CWindow*>(&m_pWindow->Console()));
  QVERIFY(m_pWindow->FindWindow(QStringLiteral("Registers"), false) == nullptr);
}

void CMainWindowTest::aTypedCommandRunsAndIsKeptInTheHistory() {
  Type("Util.Log (\"a, b\")");
  Type("Nonsense 1");
  QVERIFY(ConsoleText().contains(QStringLiteral("a, b")));
  QVERIFY(ConsoleText().contains(
      QStringLiteral("Nonsense 1: unknown command. Type ? or help for a list of available commands.")));
  QTest::keyClick(&Input(), Qt::Key_Up);
  QCOMPARE(Input().text(), QStringLiteral("Nonsense 1"));
  QTest::keyClick(&Input(), Qt::Key_Up);
  QCOMPARE(Input().text(), QStringLiteral("Util.Log (\"a, b\")"));
  Input().clear();
}

void CMainWindowTest::f5StartsASessionThatHaltsInMain() {
  PerformAction(ACTION_FILE_OPEN, PROJECT);
  QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), WAIT_MS);
  QVERIFY2(!VScript::HasError(), qPrintable(VScript::GetErrorText()));
  QTest::keyClick(m_pWindow, Qt::Key_F5);
  QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
  const U32 Main = ELFAPI_GetAddr(ELFAPI_GetEntryFunc());
  QCOMPARE(static_cast<U32>(CDevice::Get().GetPC()), Main);
  QVERIFY(m_pWindow->Source().ActiveFile().endsWith(QStringLiteral("main.c")));
  QVERIFY(m_pWindow->Source().DumpText().startsWith(QStringLiteral("main.c\tmain.c:38")));
  QVERIFY(ConsoleText().contains(QStringLiteral("Debug.Start();")));
  QVERIFY(m_pWindow->windowTitle().endsWith(QStringLiteral("traffic_light.elf")));
}

void CMainWindowTest::theKeysFollowTheState() {
  QVERIFY(!GetAction(ACTION_DEBUG_START)->isEnabled());
  QVERIFY(GetAction(ACTION_DEBUG_CONTINUE)->isVisible());
  QTest::keyClick(m_pWindow, Qt::Key_F11);
  QTRY_VERIFY_WITH_TIMEOUT(
      IsHalted() && static_cast<U32>(CDevice::Get().GetPC()) == ELFAPI_GetAddr(ELFAPI_GetEntryFunc()) + 2, WAIT_MS);
  QTest::keyClick(m_pWindow, Qt::Key_F5);
  QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsHalted(), WAIT_MS);
  QTRY_VERIFY_WITH_TIMEOUT(GetAction(ACTION_DEBUG_HALT)->isVisible() && !GetAction(ACTION_DEBUG_CONTINUE)->isVisible(),
                           WAIT_MS);
  QTest::keyClick(m_pWindow, Qt::Key_F6);
  QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
  QVERIFY(ConsoleText().contains(QStringLiteral("Debug.Halt();")));
}

void CMainWindowTest::aDocksCloseButtonIsACommand() {
  m_pWindow->Console().GetDock()->close();
  QVERIFY(m_pWindow->Console().GetDock()->isHidden());
  QVERIFY(ConsoleText().contains(QStringLiteral("Window.Close (\"Console\");")));
  PerformAction(ACTION_WINDOW_SHOW, QStringLiteral("Console"));
  QVERIFY(m_pWindow->Console().IsVisible());
}

void CMainWindowTest::openingAProjectDuringASessionAsksFirst() {
  QTest::keyClick(m_pWindow, Qt::Key_F5);
  QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
  QStringList Asked;
  CMessageBox::SetResponder([&Asked](const QString& sTitle, const QString&, int) {
    Asked << sTitle;
    return static_cast<int>(CMessageBox::DECLINED);
  });
  PerformAction(ACTION_FILE_OPEN, PROJECT);
  QCOMPARE(Asked, QStringList{QStringLiteral("Stop Debugging")});
  QVERIFY(CDevice::Get().IsConnected());
  CMessageBox::SetResponder(nullptr);
  QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier);
  QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsConnected(), WAIT_MS);
}

void CMainWindowTest::shiftF5Stops() {
  QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier);
  QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsConnected(), WAIT_MS);
  QTRY_VERIFY_WITH_TIMEOUT(GetAction(ACTION_DEBUG_START)->isEnabled(), WAIT_MS);
  QVERIFY(m_pWindow->windowTitle().endsWith(QStringLiteral("traffic_light.vdebug")));
}

void CMainWindowTest::closingEndsAnEndlessScript() {
  QTemporaryDir Dir;
  const QString sProject = WriteProject(Dir, " int i; i = 0; while (1) { i += 1; } ");
  QElapsedTimer Closing;
  QTimer::singleShot(1000, m_pWindow, [this, &Closing] {
    QVERIFY(VScript::CallLevel() > 0);
    Closing.start();
    m_pWindow->close();
  });
  PerformAction(ACTION_FILE_OPEN, sProject);
  QTRY_VERIFY_WITH_TIMEOUT(Closing.isValid() && VScript::CallLevel() == 0, WAIT_MS);
  QVERIFY(Closing.elapsed() < CLOSE_LIMIT_MS);
  QVERIFY(CDevice::Get().isFinished());
  QVERIFY(HasSetting({QStringLiteral("AppData"), QStringLiteral("MainWindow")}, QStringLiteral("Geometry")));
  QVERIFY(GetSetting({QStringLiteral("AppData"), QStringLiteral("MainWindow")}, QStringLiteral("RecentProjects"),
                     QStringList())
              .toStringList()
              .contains(PROJECT));
}

QTEST_MAIN(CMainWindowTest)
#include "main_window_test.moc"
