#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"
#include "ui/dock_window.h"
#include "ui/message_box.h"
#include "ui/windows/source_editor.h"
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
  void thePcRowIsMarkedWhileTheTargetStands();
  void windowsAreFoundByName_data();
  void windowsAreFoundByName();
  void aDocksCloseButtonIsACommand();
  void windowCloseNeedsAFocusedDock();
  void theStatusIsThatOfTheWindowWithTheFocus();
  void filesAndLinesAreShownByCommand();
  void shiftF5Stops();
  void openingAProjectDuringASessionAsksFirst();
  void aCancelledCloseChangesNothing();
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
  QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
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

void CMainWindowTest::thePcRowIsMarkedWhileTheTargetStands() {
  CSourceEditor& Editor = *m_pWindow->Source().findChild<CSourceEditor*>();
  const auto RowColor = [&Editor](int Row) {
    const QImage Image = Editor.viewport()->grab().toImage();
    return Image.pixelColor(Image.width() - 3, (Row - Editor.TopRow()) * Editor.RowHeight() + Editor.RowHeight() / 2);
  };
  const int Row = static_cast<int>(ELFAPI_GetLastSrcLoc(static_cast<U32>(CDevice::Get().GetPC())).Line) - 1;
  QCOMPARE(RowColor(Row), GetColor(COLOR_PC_ACTIVE));
  QVERIFY(RowColor(Row + 1) != GetColor(COLOR_PC_ACTIVE));
  m_pWindow->Source().SetActive(false);
  QCOMPARE(RowColor(Row), GetColor(COLOR_PC_INACTIVE));
  m_pWindow->Source().SetActive(true);
  PerformAction(ACTION_DEBUG_CONTINUE);
  QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsHalted() && RowColor(Row) != GetColor(COLOR_PC_ACTIVE), WAIT_MS);
  PerformAction(ACTION_DEBUG_HALT);
  QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
}

void CMainWindowTest::windowsAreFoundByName_data() {
  QTest::addColumn<QString>("Name");
  QTest::addColumn<bool>("VisibleOnly");
  QTest::addColumn<QString>("Found");
  QTest::newRow("by name") << QStringLiteral("Console") << false << QStringLiteral("Console");
  QTest::newRow("in any case") << QStringLiteral("cONSOLE") << false << QStringLiteral("Console");
  QTest::newRow("quoted") << QStringLiteral("\"Source\"") << true << QStringLiteral("Source");
  QTest::newRow("closed") << QStringLiteral("Console") << false << QStringLiteral("Console");
  QTest::newRow("closed, visible ones only") << QStringLiteral("Console") << true << QString();
  QTest::newRow("part of a name") << QStringLiteral("Cons") << false << QString();
  QTest::newRow("empty") << QString() << false << QString();
}

void CMainWindowTest::windowsAreFoundByName() {
  QFETCH(QString, Name);
  QFETCH(bool, VisibleOnly);
  QFETCH(QString, Found);
  CDockWindow* const pDock = m_pWindow->Console().GetDock();
  pDock->setVisible(!QString::fromLatin1(QTest::currentDataTag()).startsWith(QStringLiteral("closed")));
  const CWindow* const pWindow = m_pWindow->FindWindow(Name, VisibleOnly);
  QCOMPARE(pWindow ? pWindow->GetName() : QString(), Found);
  pDock->show();
}

void CMainWindowTest::windowCloseNeedsAFocusedDock() {
  // Offscreen, a window that was hidden in between is not made active again.
  QApplication::setActiveWindow(m_pWindow);
  m_pWindow->Source().setFocus();
  ConsoleText();
  m_pWindow->Console().Clear();
  QTest::keyClick(m_pWindow, Qt::Key_X, Qt::AltModifier);
  QCOMPARE(ConsoleText(), QString());
  m_pWindow->Console().FocusInput();
  QTest::keyClick(m_pWindow, Qt::Key_X, Qt::AltModifier);
  QVERIFY(m_pWindow->Console().GetDock()->isHidden());
  PerformAction(ACTION_WINDOW_CLOSE, QStringLiteral("Console"));
  QVERIFY(ConsoleText().contains(QStringLiteral("Window.Close (\"Console\"): unknown window: \"Console\"")));
  PerformAction(ACTION_WINDOW_CLOSE, QStringLiteral("Source"));
  QVERIFY(ConsoleText().endsWith(QStringLiteral("Window.Close (\"Source\"): invalid parameter")));
  GetAction(ACTION_WINDOW_SHOW_CONSOLE)->trigger();
  QVERIFY(m_pWindow->Console().IsVisible() && m_pWindow->Console().HasFocus());
}

void CMainWindowTest::theStatusIsThatOfTheWindowWithTheFocus() {
  const auto* const pStatus = m_pWindow->findChild<QLabel*>(QStringLiteral("WindowStatus"));
  m_pWindow->Source().setFocus();
  QVERIFY(m_pWindow->Source().ShowLine(5));
  QTRY_COMPARE(pStatus->text(), QStringLiteral("Ln 5  Ch 1"));
  m_pWindow->Console().FocusInput();
  QVERIFY(m_pWindow->Source().ShowLine(7));
  QTRY_COMPARE(pStatus->text(), m_pWindow->Console().GetStatusText());
  m_pWindow->Source().setFocus();
  QTRY_COMPARE(pStatus->text(), QStringLiteral("Ln 7  Ch 1"));
}

void CMainWindowTest::filesAndLinesAreShownByCommand() {
  CSourceWindow& Source = m_pWindow->Source();
  const QString sMain = Source.ActiveFile();
  m_pWindow->Console().Clear();
  PerformAction(ACTION_VIEW_SOURCE, QStringLiteral("traffic_tick"));
  QVERIFY(Source.ActiveFile().endsWith(QStringLiteral("traffic.c")));
  const QString sTraffic = Source.ActiveFile();
  QCOMPARE(Source.CursorLine(), 24);
  PerformAction(ACTION_VIEW_LINE, 3);
  QCOMPARE(Source.CursorLine(), 3);
  QTest::keyClick(m_pWindow, Qt::Key_Tab, Qt::ControlModifier);
  QCOMPARE(Source.ActiveFile(), sMain);
  QTest::keyClick(m_pWindow, Qt::Key_F4, Qt::ControlModifier | Qt::ShiftModifier);
  QCOMPARE(Source.OpenFiles(), QStringList{sMain});
  PerformAction(ACTION_FILE_CLOSE, sTraffic);
  QTest::keyClick(m_pWindow, Qt::Key_F4, Qt::ControlModifier);
  QVERIFY(Source.IsEmpty());
  QTest::keyClick(m_pWindow, Qt::Key_F4, Qt::ControlModifier);
  PerformAction(ACTION_VIEW_LINE, 3);
  Source.setFocus();
  QTest::keyClick(&Source, Qt::Key_P, Qt::ControlModifier);
  QCOMPARE(Source.ActiveFile(), sMain);
  const QStringList Expected = {
      QStringLiteral("View.Source (\"traffic_tick\");"),
      QStringLiteral("View.Line (3);"),
      QStringLiteral("File.CloseAllButThis();"),
      QStringLiteral("File.Close (\"%1\");").arg(sTraffic),
      QStringLiteral("File.Close (\"%1\"): file is not open").arg(sTraffic),
      QStringLiteral("File.Close (\"%1\");").arg(sMain),
      QStringLiteral("View.Line (3);"),
      QStringLiteral("View.Line (3): invalid parameter"),
      QStringLiteral("View.PCLine();"),
  };
  QCOMPARE(ConsoleText().split(QLatin1Char('\n')), Expected);
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

// A project that has never been saved is a modified one.
void CMainWindowTest::aCancelledCloseChangesNothing() {
  m_pWindow->Projects().CreateProject(
      QString(),
      {QStringLiteral("Project.SetDevice (\"nRF52840_xxAA\");"), QStringLiteral("Project.SetHostIF (\"USB\", \"\");"),
       QStringLiteral("Project.SetTargetIF (\"SWD\");"),
       QStringLiteral("File.Open (\"" VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf\");")});
  QVERIFY(CProject::Get().IsModified());
  QTest::keyClick(m_pWindow, Qt::Key_F5);
  QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
  PerformAction(ACTION_DEBUG_CONTINUE);
  QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsHalted(), WAIT_MS);
  QStringList Asked;
  int Answer = CMessageBox::OTHER;
  CMessageBox::SetResponder([&](const QString& sTitle, const QString&, int) {
    Asked << sTitle;
    return Answer;
  });
  QVERIFY(!m_pWindow->close());
  QCOMPARE(Asked, QStringList{QStringLiteral("Save Project Changes?")});
  QVERIFY(!CMainWindow::IsShuttingDown() && m_pWindow->isVisible() && CDevice::Get().IsConnected());
  QTRY_VERIFY_WITH_TIMEOUT(GetAction(ACTION_DEBUG_HALT)->isVisible(), WAIT_MS);
  PerformAction(ACTION_DEBUG_HALT);
  QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
  PerformAction(ACTION_DEBUG_STOP);
  QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsConnected(), WAIT_MS);
  Answer = CMessageBox::DECLINED;
  PerformAction(ACTION_FILE_OPEN, PROJECT);
  QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && !CProject::Get().IsModified(), WAIT_MS);
  CMessageBox::SetResponder(nullptr);
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
