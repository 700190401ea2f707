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

using namespace Qt::StringLiterals;

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
  const QString sPath = Dir.filePath(u"test.vdebug"_s);
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
  void initTestCase() {
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

  void startsWithTheDefaultLayout() {
    QVERIFY(m_pWindow->Console().IsVisible());
    QVERIFY(m_pWindow->FindToolBar(u"ToolbarDebug"_s)->isVisible());
    QVERIFY(!m_pWindow->FindToolBar(u"ToolbarFile"_s)->isVisible());
    QVERIFY(m_pWindow->windowTitle().startsWith(u"Vexor"_s));
    QCOMPARE(m_pWindow->FindWindow(u"\"console\""_s, false), static_cast<CWindow*>(&m_pWindow->Console()));
    QVERIFY(m_pWindow->FindWindow(u"Registers"_s, false) == nullptr);
  }

  void aTypedCommandRunsAndIsKeptInTheHistory() {
    Type("Util.Log (\"a, b\")");
    Type("Nonsense 1");
    QVERIFY(ConsoleText().contains(u"a, b"_s));
    QVERIFY(ConsoleText().contains(u"Nonsense 1: unknown command. Type ? or help for a list of available commands."_s));
    QTest::keyClick(&Input(), Qt::Key_Up);
    QCOMPARE(Input().text(), u"Nonsense 1"_s);
    QTest::keyClick(&Input(), Qt::Key_Up);
    QCOMPARE(Input().text(), u"Util.Log (\"a, b\")"_s);
    Input().clear();
  }

  void f5StartsASessionThatHaltsInMain() {
    PerformAction(ACTION_FILE_OPEN, PROJECT);
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), WAIT_MS);
    QVERIFY2(!VScript::HasError(), qPrintable(VScript::GetErrorText()));
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
    const U32 Main = ELFAPI_GetAddr(ELFAPI_GetEntryFunc());
    QCOMPARE(static_cast<U32>(CDevice::Get().GetPC()), Main);
    QVERIFY(m_pWindow->Source().ActiveFile().endsWith(u"main.c"_s));
    QVERIFY(m_pWindow->Source().DumpText().startsWith(u"main.c\tmain.c:38"_s));
    QVERIFY(ConsoleText().contains(u"Debug.Start();"_s));
    QVERIFY(m_pWindow->windowTitle().endsWith(u"traffic_light.elf"_s));
  }

  void theKeysFollowTheState() {
    QVERIFY(!GetAction(ACTION_DEBUG_START)->isEnabled());
    QVERIFY(GetAction(ACTION_DEBUG_CONTINUE)->isVisible());
    QTest::keyClick(m_pWindow, Qt::Key_F11);
    QTRY_VERIFY_WITH_TIMEOUT(
        IsHalted() && static_cast<U32>(CDevice::Get().GetPC()) == ELFAPI_GetAddr(ELFAPI_GetEntryFunc()) + 2, WAIT_MS);
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsHalted(), WAIT_MS);
    QTRY_VERIFY_WITH_TIMEOUT(
        GetAction(ACTION_DEBUG_HALT)->isVisible() && !GetAction(ACTION_DEBUG_CONTINUE)->isVisible(), WAIT_MS);
    QTest::keyClick(m_pWindow, Qt::Key_F6);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
    QVERIFY(ConsoleText().contains(u"Debug.Halt();"_s));
  }

  void thePcRowIsMarkedWhileTheTargetStands() {
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

  void windowsAreFoundByName_data() {
    QTest::addColumn<QString>("Name");
    QTest::addColumn<bool>("VisibleOnly");
    QTest::addColumn<QString>("Found");
    QTest::newRow("by name") << u"Console"_s << false << u"Console"_s;
    QTest::newRow("in any case") << u"cONSOLE"_s << false << u"Console"_s;
    QTest::newRow("quoted") << u"\"Source\""_s << true << u"Source"_s;
    QTest::newRow("closed") << u"Console"_s << false << u"Console"_s;
    QTest::newRow("closed, visible ones only") << u"Console"_s << true << QString();
    QTest::newRow("part of a name") << u"Cons"_s << false << QString();
    QTest::newRow("empty") << QString() << false << QString();
  }

  void windowsAreFoundByName() {
    QFETCH(QString, Name);
    QFETCH(bool, VisibleOnly);
    QFETCH(QString, Found);
    CDockWindow* const pDock = m_pWindow->Console().GetDock();
    pDock->setVisible(!QString::fromLatin1(QTest::currentDataTag()).startsWith(u"closed"_s));
    const CWindow* const pWindow = m_pWindow->FindWindow(Name, VisibleOnly);
    QCOMPARE(pWindow ? pWindow->GetName() : QString(), Found);
    pDock->show();
  }

  void aDocksCloseButtonIsACommand() {
    m_pWindow->Console().GetDock()->close();
    QVERIFY(m_pWindow->Console().GetDock()->isHidden());
    QVERIFY(ConsoleText().contains(u"Window.Close (\"Console\");"_s));
    PerformAction(ACTION_WINDOW_SHOW, u"Console"_s);
    QVERIFY(m_pWindow->Console().IsVisible());
  }

  void windowCloseNeedsAFocusedDock() {
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
    PerformAction(ACTION_WINDOW_CLOSE, u"Console"_s);
    QVERIFY(ConsoleText().contains(u"Window.Close (\"Console\"): unknown window: \"Console\""_s));
    PerformAction(ACTION_WINDOW_CLOSE, u"Source"_s);
    QVERIFY(ConsoleText().endsWith(u"Window.Close (\"Source\"): invalid parameter"_s));
    GetAction(ACTION_WINDOW_SHOW_CONSOLE)->trigger();
    QVERIFY(m_pWindow->Console().IsVisible() && m_pWindow->Console().HasFocus());
  }

  void theStatusIsThatOfTheWindowWithTheFocus() {
    const auto* const pStatus = m_pWindow->findChild<QLabel*>(u"WindowStatus"_s);
    m_pWindow->Source().setFocus();
    QVERIFY(m_pWindow->Source().ShowLine(5));
    QTRY_COMPARE(pStatus->text(), u"Ln 5  Ch 1"_s);
    m_pWindow->Console().FocusInput();
    QVERIFY(m_pWindow->Source().ShowLine(7));
    QTRY_COMPARE(pStatus->text(), m_pWindow->Console().GetStatusText());
    m_pWindow->Source().setFocus();
    QTRY_COMPARE(pStatus->text(), u"Ln 7  Ch 1"_s);
  }

  void filesAndLinesAreShownByCommand() {
    CSourceWindow& Source = m_pWindow->Source();
    const QString sMain = Source.ActiveFile();
    m_pWindow->Console().Clear();
    PerformAction(ACTION_VIEW_SOURCE, u"traffic_tick"_s);
    QVERIFY(Source.ActiveFile().endsWith(u"traffic.c"_s));
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
        u"View.Source (\"traffic_tick\");"_s,
        u"View.Line (3);"_s,
        u"File.CloseAllButThis();"_s,
        u"File.Close (\"%1\");"_s.arg(sTraffic),
        u"File.Close (\"%1\"): file is not open"_s.arg(sTraffic),
        u"File.Close (\"%1\");"_s.arg(sMain),
        u"View.Line (3);"_s,
        u"View.Line (3): invalid parameter"_s,
        u"View.PCLine();"_s,
    };
    QCOMPARE(ConsoleText().split(QLatin1Char('\n')), Expected);
  }

  void shiftF5Stops() {
    QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsConnected(), WAIT_MS);
    QTRY_VERIFY_WITH_TIMEOUT(GetAction(ACTION_DEBUG_START)->isEnabled(), WAIT_MS);
    QVERIFY(m_pWindow->windowTitle().endsWith(u"traffic_light.vdebug"_s));
  }

  void openingAProjectDuringASessionAsksFirst() {
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), WAIT_MS);
    QStringList Asked;
    CMessageBox::SetResponder([&Asked](const QString& sTitle, const QString&, int) {
      Asked << sTitle;
      return static_cast<int>(CMessageBox::DECLINED);
    });
    PerformAction(ACTION_FILE_OPEN, PROJECT);
    QCOMPARE(Asked, QStringList{u"Stop Debugging"_s});
    QVERIFY(CDevice::Get().IsConnected());
    CMessageBox::SetResponder(nullptr);
    QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!CDevice::Get().IsConnected(), WAIT_MS);
  }

  // A project that has never been saved is a modified one.
  void aCancelledCloseChangesNothing() {
    m_pWindow->Projects().CreateProject(
        QString(), {u"Project.SetDevice (\"nRF52840_xxAA\");"_s, u"Project.SetHostIF (\"USB\", \"\");"_s,
                    u"Project.SetTargetIF (\"SWD\");"_s,
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
    QCOMPARE(Asked, QStringList{u"Save Project Changes?"_s});
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

  void closingEndsAnEndlessScript() {
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
    QVERIFY(HasSetting({u"AppData"_s, u"MainWindow"_s}, u"Geometry"_s));
    QVERIFY(GetSetting({u"AppData"_s, u"MainWindow"_s}, u"RecentProjects"_s, QStringList())
                .toStringList()
                .contains(PROJECT));
  }

private:
  QLineEdit& Input() { return *m_pWindow->findChild<QLineEdit*>(u"ConsoleInput"_s); }
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

QTEST_MAIN(CMainWindowTest)
#include "main_window_test.moc"
