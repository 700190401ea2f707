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
    QVERIFY(m_pWindow = StartFrame());
    PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(u"a.vdebug"_s));
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), FRAME_WAIT_MS);
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Halts());
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
    QVERIFY(HaltsWith([this] { return Pc() != m_Main; }));
    ChangeProgram(20);
    m_pWindow->Console().Clear();
    QCOMPARE(ComeBack(QDialogButtonBox::Yes), u"Reload Program File"_s);
    QVERIFY(HaltsWith([this] { return Pc() == m_Main; }));
    SeeInConsole({u"File.Open (\"%1\");"_s.arg(m_Dir.filePath(u"a.elf"_s)), u"Programmed"_s});
    const U32 Handler = ELFAPI_GetAddr(ELFAPI_FindSymbol(u"SysTick_Handler"_s, true, false, false, false));
    BP Kept;
    QVERIFY(CDevice::Get().Context().Breakpoints.GetAt(Handler & ~1U, Kept));
  }

  void aChangedProjectChangesItsFunctionsOnly() {
    ChangeProject(OTHER_DEVICE + HOOK);
    QVERIFY(!ConsoleText(*m_pWindow).contains(u"Project.SetDevice"_s));
    StepIntoHook();
  }

  void aProjectWithAnErrorLeavesTheSession() {
    ChangeProject(LOAD + "nonsense;\n");
    SeeInConsole({u"Error in project file"_s, u"nonsense;"_s});
    QVERIFY(IsHalted());
    ChangeProject(LOAD + HOOK);
    StepIntoHook();
  }

private:
  void SeeInConsole(const QStringList& Texts) {
    const QString sConsole = ConsoleText(*m_pWindow);
    for (const QString& sText : Texts) QVERIFY2(sConsole.contains(sText), qPrintable(sConsole));
  }

  void ChangeProject(const QByteArray& Text) {
    m_pWindow->Console().Clear();
    WriteFile(m_Dir.filePath(u"a.vdebug"_s), Text);
    QCOMPARE(ComeBack(QDialogButtonBox::No), QString());
  }

  void StepIntoHook() {
    QTest::keyClick(m_pWindow, Qt::Key_F11);
    QVERIFY(HaltsWith([this] { return ConsoleText(*m_pWindow).contains(u"the new hook"_s); }));
  }

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
    const QStringList Titles = BoxesOf([] { Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive); }, {Answer});
    QApplication::setActiveWindow(m_pWindow);
    return Titles.join(u',');
  }

  QTemporaryDir m_Dir;
  CMainWindow* m_pWindow = nullptr;
  U32 m_Main = 0;
};

QTEST_MAIN(COutsideChangesTest)
#include "outside_changes_test.moc"
