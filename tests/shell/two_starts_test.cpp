// What one start of the program leaves, the next one finds. Each start is a process of its own with the same settings.

#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

#include "frame.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "tests/common/write_file.h"
#include "ui/dock_window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char* FILES_VARIABLE = "VEXOR_TEST_FILES";
constexpr int PROCESS_LIMIT_MS = 30'000;
constexpr QRgb COLOR = 0xFF123456;
constexpr int FONT_POINTS = 13;
const QRect GEOMETRY(40, 30, 700, 500);
const QRect FLOATING(300, 200, 320, 240);

QString Files() {
  return qEnvironmentVariable(FILES_VARIABLE);
}

}  // namespace

// The starts. Each process runs the one that its command line names.
class CStart : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
    CDeviceDataProvider::Get();
    m_pWindow = new CMainWindow;
    // The welcome screen would wait for a choice.
    SetVarValue(GetVarInfo(PREF_START_WITH_MOST_RECENT_PROJ), 1, 0);
    QSignalSpy Started(m_pWindow, &CMainWindow::Started);
    m_pWindow->show();
    QVERIFY(Started.wait(FRAME_WAIT_MS));
    QTRY_VERIFY(m_pWindow->IsIdle());
  }

  void cleanupTestCase() {
    m_pWindow->close();
    QCOMPARE(SaveSettings(), 0);
  }

  void first() {
    QVERIFY(m_pWindow->Projects().RecentProjects().Paths().isEmpty());
    m_pWindow->setGeometry(GEOMETRY);
    m_pWindow->FindToolBar(u"File"_s)->show();
    m_pWindow->FindToolBar(u"Debug"_s)->hide();
    m_pWindow->addDockWidget(Qt::LeftDockWidgetArea, m_pWindow->Console().GetDock());
    PerformAction(ACTION_FILE_OPEN, Files() + u"/one.vdebug"_s);
    QTRY_COMPARE(m_pWindow->Projects().RecentProjects().Paths().size(), 1);
    m_pWindow->Projects().sDefaultDirSave = Files();
    PerformAction(ACTION_EDIT_PREFERENCE, u"PREF_SHOW_TIMESTAMPS_CONSOLE"_s, 0, 1);
    SetColorRgb(COLOR_PC_ACTIVE, COLOR, true);
    QFont Font = ::GetFont(FONT_CONSOLE);
    Font.setPointSize(FONT_POINTS);
    SetFont(FONT_CONSOLE, Font, true, true);
  }

  void second() {
    QCOMPARE(m_pWindow->geometry(), GEOMETRY);
    QVERIFY(m_pWindow->FindToolBar(u"File"_s)->isVisible() && GetAction(ACTION_TOOLBAR_SHOW_FILE)->isChecked());
    QVERIFY(!m_pWindow->FindToolBar(u"Debug"_s)->isVisible() && !GetAction(ACTION_TOOLBAR_SHOW_DEBUG)->isChecked());
    QCOMPARE(m_pWindow->dockWidgetArea(m_pWindow->Console().GetDock()), Qt::LeftDockWidgetArea);
    QCOMPARE(m_pWindow->Projects().RecentProjects().Paths(), QStringList{Files() + u"/one.vdebug"_s});
    QCOMPARE(m_pWindow->Projects().sDefaultDirSave, Files());
    QCOMPARE(GetVarValue(PREF_SHOW_TIMESTAMPS_CONSOLE), 0U);
    QCOMPARE(GetColorRgb(COLOR_PC_ACTIVE), COLOR);
    QCOMPARE(::GetFont(FONT_CONSOLE).pointSize(), FONT_POINTS);
    CDockWindow* const pDock = m_pWindow->Console().GetDock();
    pDock->setFloating(true);
    pDock->setGeometry(FLOATING);
    m_pWindow->FindToolBar(u"Debug"_s)->show();
  }

  void third() {
    const CDockWindow* const pDock = m_pWindow->Console().GetDock();
    QVERIFY(pDock->isFloating() && pDock->isVisible());
    QCOMPARE(pDock->size(), FLOATING.size());
    QVERIFY(m_pWindow->FindToolBar(u"Debug"_s)->isVisible());
    QCOMPARE(GetVarValue(PREF_SHOW_TIMESTAMPS_CONSOLE), 0U);
    PerformAction(ACTION_WINDOW_CLOSE, u"Console"_s);
  }

  // The project's own layout goes before that of the last session.
  void arranged() {
    const CDockWindow* const pDock = m_pWindow->Console().GetDock();
    QCOMPARE(m_pWindow->dockWidgetArea(m_pWindow->Console().GetDock()), Qt::RightDockWidgetArea);
    QVERIFY(pDock->isVisible() && !pDock->isFloating());
    QTRY_COMPARE(pDock->width(), 260);  // the sizes come with the next layout
    QCOMPARE(GetVarValue(PREF_SHOW_SRC_CODE_PROFILE), 1U);
  }

  void sealed() {
    QVERIFY2(ConsoleText(*m_pWindow).contains(u"one.vdebug.user\" can't be read"_s),
             qPrintable(ConsoleText(*m_pWindow)));
  }

  void broken() {
    QVERIFY2(ConsoleText(*m_pWindow).contains(u"Error in project file"_s), qPrintable(ConsoleText(*m_pWindow)));
    QVERIFY(m_pWindow->Console().isAncestorOf(m_pWindow->focusWidget()));
  }

  // All defaults, and a word about it where the user sees it.
  void damaged() {
    QVERIFY2(ConsoleText(*m_pWindow).contains(u".damaged"_s), qPrintable(ConsoleText(*m_pWindow)));
    QVERIFY(m_pWindow->Console().IsVisible());
    QVERIFY(!m_pWindow->Console().GetDock()->isFloating());
    QVERIFY(m_pWindow->Projects().RecentProjects().Paths().isEmpty());
    QVERIFY(GetColorRgb(COLOR_PC_ACTIVE) != COLOR);
  }

private:
  CMainWindow* m_pWindow = nullptr;
};

// The starts, one after the other.
class CTwoStartsTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void whatIsLeftIsFoundAgain() {
    WriteFile(m_Home.filePath(u"one.vdebug"_s), "void OnProjectLoad (void) {\n}\n");
    for (const char* const sStart : {"first", "second", "third"}) RunStart(sStart);
    const QString sLayout = m_Home.filePath(u"one.vdebug.user"_s);
    const QByteArray Closed = ReadFile(sLayout);
    QVERIFY2(Closed.contains("OpenToolbar=\"ToolbarFile\"") && !Closed.contains("Console"), Closed.constData());
    WriteFile(sLayout,
              "OpenWindow=\"Console\", DockArea=RIGHT, x=0, y=0, w=260, h=300\n"
              "OpenWindow=\"Source\", ExecCountersShown=1\n");
    RunStart("arranged");
  }

  void aLayoutThatIsNotUsedIsLeftAsItIs() {
    const QString sLayout = m_Home.filePath(u"one.vdebug.user"_s);
    const QString sProject = m_Home.filePath(u"one.vdebug"_s);
    WriteFile(sLayout, "kept, too");
    WriteFile(sProject, "void OnProjectLoad (void) {\n");
    RunStart("broken");
    WriteFile(sProject, "void OnProjectLoad (void) {\n}\n");
    QCOMPARE(ReadFile(sLayout), QByteArray("kept, too"));
    WriteFile(sLayout, "kept");
    QVERIFY(QFile::setPermissions(sLayout, QFile::WriteOwner));
    RunStart("sealed");
    QVERIFY(QFile::setPermissions(sLayout, QFile::ReadOwner));
    QCOMPARE(ReadFile(sLayout), QByteArray("kept"));
  }

  void damagedSettingsArePutAside() {
    const QString sFile = m_Home.filePath(u"Morvek/Vexor.conf"_s);
    QVERIFY(QFile::exists(sFile));
    WriteFile(sFile, "[AppData\n\x01\x02garbage\n\xFF");
    RunStart("damaged");
    QVERIFY(QFile::exists(sFile + u".damaged"_s));
  }

private:
  void RunStart(const char* sStart) {
    QProcessEnvironment Environment = QProcessEnvironment::systemEnvironment();
    Environment.insert(QLatin1String(FILES_VARIABLE), m_Home.path());
    for (const QString& sName : {u"XDG_CONFIG_HOME"_s, u"HOME"_s}) Environment.insert(sName, m_Home.path());
    QProcess Process;
    Process.setProcessEnvironment(Environment);
    Process.setProcessChannelMode(QProcess::MergedChannels);
    // The super-user may read everything, unless that is taken from him.
    QStringList Command = {u"setpriv"_s, u"--bounding-set=-dac_override,-dac_read_search"_s};
    if (geteuid() != 0) Command.clear();
    Command << QCoreApplication::applicationFilePath() << QLatin1String(sStart) << u"-maxwarnings"_s << u"0"_s;
    Process.start(Command.takeFirst(), Command);
    QVERIFY(Process.waitForFinished(PROCESS_LIMIT_MS));
    const QByteArray Output = Process.readAll();
    QVERIFY2(Process.exitStatus() == QProcess::NormalExit && Process.exitCode() == 0, Output.constData());
  }

  QTemporaryDir m_Home;
};

int main(int argc, char** argv) {
  QApplication Application(argc, argv);
  QCoreApplication::setOrganizationName(u"Morvek"_s);
  QCoreApplication::setApplicationName(u"Vexor"_s);
  CStart Start;
  CTwoStartsTest Test;
  QObject* const pTest = qEnvironmentVariableIsSet(FILES_VARIABLE) ? static_cast<QObject*>(&Start) : &Test;
  return QTest::qExec(pTest, argc, argv);
}
#include "two_starts_test.moc"
