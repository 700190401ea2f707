#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QTemporaryDir>

#include "frame.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/action_link.h"
#include "tests/common/write_file.h"
#include "ui/message_box.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int LATER_MS = 150;  // the script has begun to poll
constexpr int LIMIT_MS = 20'000;
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
  void initTestCase() { QVERIFY(m_pWindow = StartFrame()); }

  // Offscreen, a window behind a dialog is not made active again.
  void init() { QApplication::setActiveWindow(m_pWindow); }

  void theKeysFollowTheState() {
    PerformAction(ACTION_FILE_OPEN, PROJECT);
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), FRAME_WAIT_MS);
    QVERIFY2(!VScript::HasError(), qPrintable(VScript::GetErrorText()));
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Halts());
    QCOMPARE(static_cast<U32>(CDevice::Get().GetPC()), ELFAPI_GetAddr(ELFAPI_GetEntryFunc()));
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Runs());
    QTRY_VERIFY(GetAction(ACTION_DEBUG_HALT)->isVisible());
    QTest::keyClick(m_pWindow, Qt::Key_F6);
    QVERIFY(Halts());
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

  void theStopKeyEndsAScript() {
    RegisterActionHandler(ACTION_FILE_NEW_PROJECT, [this] { ++m_NumHits; });
    PressOther();
    QCOMPARE(std::exchange(m_NumHits, 0), 1);
    for (const char* const s : {"while (1) { }", "while (1) { Elf.GetBaseAddr(); }", "Util.Sleep (300000);"}) {
      QElapsedTimer Timer;
      Timer.start();
      QCOMPARE(Run(QLatin1String(s), [this] { PressOther(); }), -1);
      QVERIFY2(Timer.elapsed() < LIMIT_MS, s);
      QCOMPARE(VScript::GetErrorText(), u"Script stopped by the user at line 2"_s);
      QCOMPARE(m_NumHits, 0);
    }
  }

  void aDialogThatOpensMeanwhileGetsItsInput() {
    int Answer = 0;
    Run(u"while (1) { }"_s, [&] {
      QMessageBox Box(QMessageBox::Question, {}, u"Go on?"_s, QMessageBox::Yes | QMessageBox::No);
      QTimer::singleShot(LATER_MS, &Box, [&] { QTest::keyClick(&Box, Qt::Key_Escape); });
      QTimer::singleShot(LIMIT_MS, &Box, [&] { Box.done(-1); });
      Answer = Box.exec();
    });
    QCOMPARE(Answer, static_cast<int>(QMessageBox::No));
    m_NumHits = 0;
    init();
    PressOther();
    QCOMPARE(m_NumHits, 1);
  }

  void closingEndsAnEndlessScript() {
    QTemporaryDir Dir;
    const QString sProject = WriteFile(Dir.filePath(u"test.vdebug"_s), "void OnProjectLoad (void) { while (1) { } }");
    QElapsedTimer Closing;
    QTimer Timer;
    connect(&Timer, &QTimer::timeout, m_pWindow, [this, &Closing] {
      if (Closing.isValid() || VScript::CallLevel() == 0) return;
      Closing.start();
      m_pWindow->close();
    });
    Timer.start(LATER_MS);
    PerformAction(ACTION_FILE_OPEN, sProject);
    QTRY_VERIFY_WITH_TIMEOUT(Closing.isValid() && VScript::CallLevel() == 0, FRAME_WAIT_MS);
    QVERIFY(Closing.elapsed() < LIMIT_MS);
    QVERIFY(CDevice::Get().isFinished());
  }

private:
  // Runs a text as the project's load routine; Input is called while it runs, and the stop key pressed last.
  int Run(const QString& sStatements, const std::function<void()>& Input) {
    if (VScript::LoadText(u"void OnProjectLoad (void) {\n"_s + sStatements + u"\n}\n"_s) != 0) return 1;
    QTimer::singleShot(LATER_MS, m_pWindow, [this, Input] {
      Input();
      QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier);
    });
    return VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
  }

  // A key that is always good for something: File.NewProject.
  void PressOther() { QTest::keyClick(m_pWindow, Qt::Key_N, Qt::ControlModifier); }

  CMainWindow* m_pWindow = nullptr;
  int m_NumHits = 0;
};

QTEST_MAIN(CMainWindowTest)
#include "main_window_test.moc"
