#include <QElapsedTimer>
#include <QLabel>
#include <QTemporaryDir>

#include "frame.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "tests/common/write_file.h"
#include "ui/dock_window.h"
#include "ui/message_box.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int CLOSE_LIMIT_MS = 2000;
constexpr QSize WIDE_WINDOW(1280, 800);
const QString PROJECT = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.vdebug");

bool Runs() {
  return QTest::qWaitFor([] { return !CDevice::Get().IsHalted(); }, FRAME_WAIT_MS);
}
bool Disconnects() {
  return QTest::qWaitFor([] { return !CDevice::Get().IsConnected(); }, FRAME_WAIT_MS);
}

}  // namespace

// One main window for the whole program, as in real life: the device and the other singletons cannot be made twice. The
// last test closes it.
class CMainWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pWindow = StartFrame());
    const QSignalSpy StartedAgain(m_pWindow, &CMainWindow::Started);
    m_pWindow->hide();
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    QTest::qWait(50);
    QCOMPARE(StartedAgain.count(), 0);
  }

  void theKeysFollowTheState() {
    PerformAction(ACTION_FILE_OPEN, PROJECT);
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), FRAME_WAIT_MS);
    QVERIFY2(!VScript::HasError(), qPrintable(VScript::GetErrorText()));
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Halts());
    const U32 Main = ELFAPI_GetAddr(ELFAPI_GetEntryFunc());
    QCOMPARE(static_cast<U32>(CDevice::Get().GetPC()), Main);
    QVERIFY(m_pWindow->Source().DumpText().startsWith(u"main.c\tmain.c:38"_s));
    QVERIFY(m_pWindow->windowTitle().endsWith(u"traffic_light.elf"_s));
    QVERIFY(!GetAction(ACTION_DEBUG_START)->isEnabled());
    QVERIFY(GetAction(ACTION_DEBUG_CONTINUE)->isVisible());
    QTest::keyClick(m_pWindow, Qt::Key_F11);
    QVERIFY(HaltsWith([=] { return CDevice::Get().GetPC() == Main + 2; }));
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Runs());
    QTRY_VERIFY(GetAction(ACTION_DEBUG_HALT)->isVisible() && !GetAction(ACTION_DEBUG_CONTINUE)->isVisible());
    QTest::keyClick(m_pWindow, Qt::Key_F6);
    QVERIFY(Halts());
  }

  // In a window where the text leaves room behind it.
  void thePcRowIsMarkedWhileTheTargetStands() {
    m_pWindow->resize(WIDE_WINDOW);
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
    QTRY_VERIFY(!CDevice::Get().IsHalted() && RowColor(Row) != GetColor(COLOR_PC_ACTIVE));
    PerformAction(ACTION_DEBUG_HALT);
    QVERIFY(Halts());
  }

  void windowCloseNeedsAFocusedDock() {
    // Offscreen, a window that was hidden in between is not made active again.
    QApplication::setActiveWindow(m_pWindow);
    m_pWindow->Source().setFocus();
    m_pWindow->Console().Clear();
    QTest::keyClick(m_pWindow, Qt::Key_X, Qt::AltModifier);
    QCOMPARE(ConsoleText(*m_pWindow), QString());
    m_pWindow->Console().FocusInput();
    QTest::keyClick(m_pWindow, Qt::Key_X, Qt::AltModifier);
    QVERIFY(m_pWindow->Console().GetDock()->isHidden());
    PerformAction(ACTION_WINDOW_CLOSE, u"Console"_s);
    QVERIFY(ConsoleText(*m_pWindow).endsWith(u"Window.Close (\"Console\"): unknown window: \"Console\""_s));
    PerformAction(ACTION_WINDOW_CLOSE, u"Source"_s);
    QVERIFY(ConsoleText(*m_pWindow).endsWith(u"Window.Close (\"Source\"): invalid parameter"_s));
    GetAction(ACTION_WINDOW_SHOW_CONSOLE)->trigger();
    QVERIFY(m_pWindow->Console().IsVisible() && m_pWindow->Console().HasFocus());
  }

  void theStatusIsThatOfTheWindowWithTheFocus() {
    QTRY_COMPARE(m_pWindow->findChild<QLabel*>(u"ConnectionInfo"_s)->text(), u"Connected @ 4 MHz"_s);
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
    QCOMPARE(ConsoleText(*m_pWindow).split(QLatin1Char('\n')), Expected);
  }

  void shiftF5StopsWithoutTheQuestionThatAnotherProjectAsks() {
    const auto Open = [] { PerformAction(ACTION_FILE_OPEN, PROJECT); };
    QCOMPARE(BoxesOf(Open, {QDialogButtonBox::No}), QStringList{u"Stop Debugging"_s});
    QVERIFY(CDevice::Get().IsConnected());
    QApplication::setActiveWindow(m_pWindow);
    const auto Stop = [this] { QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier); };
    QCOMPARE(BoxesOf(Stop, {}), QStringList());
    QVERIFY(Disconnects());
    QTRY_VERIFY(GetAction(ACTION_DEBUG_START)->isEnabled());
    QVERIFY(m_pWindow->windowTitle().endsWith(u"traffic_light.vdebug"_s));
  }

  // A project that has never been saved is a modified one.
  void aCancelledCloseChangesNothing() {
    m_pWindow->Projects().CreateProject(
        QString(), {u"Project.SetDevice (\"nRF52840_xxAA\");"_s, u"Project.SetHostIF (\"USB\", \"\");"_s,
                    u"Project.SetTargetIF (\"SWD\");"_s,
                    QStringLiteral("File.Open (\"" VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf\");")});
    QVERIFY(CProject::Get().IsModified());
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Halts());
    PerformAction(ACTION_DEBUG_CONTINUE);
    QVERIFY(Runs());
    const auto Close = [this] { QVERIFY(!m_pWindow->close()); };
    QCOMPARE(BoxesOf(Close, {QDialogButtonBox::Cancel}), QStringList{u"Save Project Changes?"_s});
    QVERIFY(!CMainWindow::IsShuttingDown() && m_pWindow->isVisible() && CDevice::Get().IsConnected());
    QTRY_VERIFY(GetAction(ACTION_DEBUG_HALT)->isVisible());
    PerformAction(ACTION_DEBUG_HALT);
    QVERIFY(Halts());
    // Another project ends the session and drops this one, if both are wanted.
    const auto Open = [] { PerformAction(ACTION_FILE_OPEN, PROJECT); };
    const QStringList Both = {u"Stop Debugging"_s, u"Save Project Changes?"_s};
    QCOMPARE(BoxesOf(Open, {QDialogButtonBox::Yes, QDialogButtonBox::Cancel}), Both);
    QVERIFY(Disconnects());
    QVERIFY(CProject::Get().IsModified());
    QCOMPARE(BoxesOf(Open, {QDialogButtonBox::No}), Both.last(1));
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && !CProject::Get().IsModified(), FRAME_WAIT_MS);
  }

  void closingEndsAnEndlessScript() {
    QTemporaryDir Dir;
    const QString sProject = WriteFile(Dir.filePath(u"test.vdebug"_s), "void OnProjectLoad (void) { while (1) { } }");
    QElapsedTimer Closing;
    QTimer::singleShot(1000, m_pWindow, [this, &Closing] {
      QVERIFY(VScript::CallLevel() > 0);
      Closing.start();
      m_pWindow->close();
    });
    PerformAction(ACTION_FILE_OPEN, sProject);
    QTRY_VERIFY_WITH_TIMEOUT(Closing.isValid() && VScript::CallLevel() == 0, FRAME_WAIT_MS);
    QVERIFY(Closing.elapsed() < CLOSE_LIMIT_MS);
    QVERIFY(CDevice::Get().isFinished());
  }

private:
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CMainWindowTest)
#include "main_window_test.moc"
