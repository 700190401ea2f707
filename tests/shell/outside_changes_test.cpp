// Program and project files that another program changes while a session stands, noticed when the user comes back.

#include <QDateTime>
#include <QTemporaryDir>

#include "device/device_context.h"
#include "frame.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "tests/common/write_file.h"
#include "ui/message_box.h"

using namespace Qt::StringLiterals;

namespace {

const QString PROGRAM = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf");
const QByteArray LOAD =
    "void OnProjectLoad (void) {\n  Project.SetDevice (\"nRF52840_xxAA\");\n  Project.SetTargetIF (\"SWD\");\n"
    "  File.Open (\"$(ProjectDir)/a.elf\");\n}\n";
const QByteArray OTHER_DEVICE = "void OnProjectLoad (void) {\n  Project.SetDevice (\"Cortex-M0\");\n}\n";
const QByteArray HOOK = "void AfterTargetHalt (void) {\n  Util.Log (\"the new hook\");\n}\n";

bool IsHalted() {
  const CDevice& Device = CDevice::Get();
  return Device.IsConnected() && Device.IsAccessible() && Device.IsSessionReady() && !Device.HasEvents() &&
         !Device.IsJobPending(JT_ANY);
}

U32 Pc() {
  return static_cast<U32>(CDevice::Get().GetPC());
}

}  // namespace

class COutsideChangesTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(QFile::copy(PROGRAM, m_Dir.filePath(u"a.elf"_s)));
    WriteFile(m_Dir.filePath(u"a.vdebug"_s), LOAD);
    m_pWindow = StartFrame();
    QVERIFY(m_pWindow);
    PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(u"a.vdebug"_s));
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), FRAME_WAIT_MS);
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted(), FRAME_WAIT_MS);
    m_Main = Pc();
  }

  void aChangedProgramIsOfferedOnce() {
    PerformAction(ACTION_BREAK_SET, u"SysTick_Handler"_s);
    ChangeProgram(10);
    QCOMPARE(ComeBack(QDialogButtonBox::No), u"Reload Program File"_s);
    QCOMPARE(ComeBack(QDialogButtonBox::No), QString());
  }

  void aReloadedProgramGoesToTheTarget() {
    QTest::keyClick(m_pWindow, Qt::Key_F11);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted() && Pc() != m_Main, FRAME_WAIT_MS);
    ChangeProgram(20);
    m_pWindow->Console().Clear();
    QCOMPARE(ComeBack(QDialogButtonBox::Yes), u"Reload Program File"_s);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted() && Pc() == m_Main, FRAME_WAIT_MS);
    const QString sConsole = ConsoleText(*m_pWindow);
    QVERIFY2(sConsole.contains(u"File.Open (\"%1\");"_s.arg(m_Dir.filePath(u"a.elf"_s))), qPrintable(sConsole));
    QVERIFY2(sConsole.contains(u"Programmed"_s), qPrintable(sConsole));
    const U32 Handler = ELFAPI_GetAddr(ELFAPI_FindSymbol(u"SysTick_Handler"_s, true, false, false, false));
    BP Kept;
    QVERIFY(CDevice::Get().Context().Breakpoints.GetAt(Handler & ~1U, Kept));
  }

  void aChangedProjectChangesItsFunctionsOnly() {
    m_pWindow->Console().Clear();
    WriteFile(m_Dir.filePath(u"a.vdebug"_s), OTHER_DEVICE + HOOK);
    QCOMPARE(ComeBack(QDialogButtonBox::No), QString());
    QVERIFY(!ConsoleText(*m_pWindow).contains(u"Project.SetDevice"_s));
    QTest::keyClick(m_pWindow, Qt::Key_F11);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted() && ConsoleText(*m_pWindow).contains(u"the new hook"_s), FRAME_WAIT_MS);
  }

  void aProjectWithAnErrorLeavesTheSession() {
    m_pWindow->Console().Clear();
    WriteFile(m_Dir.filePath(u"a.vdebug"_s), LOAD + "nonsense;\n");
    ComeBack(QDialogButtonBox::No);
    const QString sConsole = ConsoleText(*m_pWindow);
    QVERIFY2(sConsole.contains(u"Error in project file"_s) && sConsole.contains(u"nonsense;"_s), qPrintable(sConsole));
    QVERIFY(IsHalted());
    WriteFile(m_Dir.filePath(u"a.vdebug"_s), LOAD + HOOK);
    ComeBack(QDialogButtonBox::No);
    QTest::keyClick(m_pWindow, Qt::Key_F11);
    QTRY_VERIFY_WITH_TIMEOUT(IsHalted() && ConsoleText(*m_pWindow).contains(u"the new hook"_s), FRAME_WAIT_MS);
  }

private:
  // As a build would: another constant, another time.
  void ChangeProgram(int Seconds) {
    QFile File(m_Dir.filePath(u"a.elf"_s));
    QVERIFY(File.open(QIODevice::ReadWrite));
    const qsizetype Factor = File.readAll().indexOf("\x4E\xC6\x41");  // the upper bytes of 1103515245
    QVERIFY(Factor > 0 && File.seek(Factor - 1) && File.putChar(static_cast<char>(Seconds)) && File.flush());
    QVERIFY(File.setFileTime(QDateTime::currentDateTime().addSecs(Seconds), QFileDevice::FileModificationTime));
  }

  // The title of the box that came up, empty for none.
  QString ComeBack(QDialogButtonBox::StandardButton Answer) {
    QString sTitle;
    QTimer::singleShot(0, qApp, [&sTitle, Answer] {
      auto* const pBox = qobject_cast<CMessageBox*>(QApplication::activeModalWidget());
      if (!pBox) return;
      sTitle = pBox->windowTitle().trimmed();
      QTest::mouseClick(pBox->Button(Answer), Qt::LeftButton);
    });
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    QCoreApplication::processEvents();
    QApplication::setActiveWindow(m_pWindow);
    return sTitle;
  }

  QTemporaryDir m_Dir;
  CMainWindow* m_pWindow = nullptr;
  U32 m_Main = 0;
};

QTEST_MAIN(COutsideChangesTest)
#include "outside_changes_test.moc"
