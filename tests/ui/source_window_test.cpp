#include <QFile>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>

#include "core/vcore.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/settings/settings_cache.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_window.h"

namespace {

constexpr U32 CORTEX_M4 = 0x0E0000FF;
const QString EXAMPLE = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/");

}  // namespace

// A source window of its own over the files of a temporary folder, or over the example program.
class CSourceWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();
  void filesOpenInFront();
  void aFileHasOneTab_data();
  void aFileHasOneTab();
  void theBackgroundLeavesTheActiveTab();
  void aTabKeepsItsView();
  void aMissingFileSaysSo();
  void closingShowsTheNeighbour();
  void closingAnotherTabLeavesTheViewAlone();
  void allButTheActiveOne();
  void theCloseButtonIsACommand();
  void theKeyboardComesBackWithTheNextFile();
  void linesAreShownByNumber();
  void thePcLineIsFollowedFromFileToFile();
  void aPlaceWithoutSourceLeavesTheView();
  void reloadingReadsTheFileAgain();

private:
  QString Write(const char* sName, const QString& sText) {
    const QString sPath = m_Dir.filePath(QLatin1String(sName));
    QFile File(sPath);
    if (!File.open(QIODevice::WriteOnly) || File.write(sText.toUtf8()) < 0) qFatal("cannot write");
    return sPath;
  }
  QString Long(const char* sName) { return Write(sName, QStringLiteral("x\n").repeated(200)); }
  CSourceEditor& Editor() { return *m_pWindow->findChild<CSourceEditor*>(); }
  QTabBar& Tabs() { return *m_pWindow->findChild<QTabBar*>(); }
  QStringList TabTexts() {
    QStringList Texts;
    for (int i = 0; i < Tabs().count(); ++i) Texts << Tabs().tabText(i);
    return Texts;
  }
  QString Shown() {
    QTest::keyClick(&Editor(), Qt::Key_A, Qt::ControlModifier);
    return Editor().SelectedText();
  }

  QTemporaryDir m_Dir;
  QString m_sA, m_sB, m_sC;
  std::unique_ptr<CSourceWindow> m_pWindow;
};

void CSourceWindowTest::initTestCase() {
  SetSettingsInMemory(true);
  VCore::Init({CORTEX_M4, 0, 0}, {});
}

void CSourceWindowTest::init() {
  m_sA = Write("a.c", QStringLiteral("text of a\n"));
  m_sB = Write("b.c", QStringLiteral("text of b\r\nline 2\r\n"));
  m_sC = Write("c.c", QStringLiteral("text of c\n"));
  m_pWindow = std::make_unique<CSourceWindow>(nullptr);
  m_pWindow->resize(600, 300);
  m_pWindow->show();
  m_pWindow->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get()));
}

void CSourceWindowTest::cleanup() {
  m_pWindow.reset();
  CFileFinder::Get()->Clear();
  ELFAPI_Unload();
}

void CSourceWindowTest::filesOpenInFront() {
  QVERIFY(m_pWindow->IsEmpty());
  QCOMPARE(m_pWindow->GetStatusText(), QStringLiteral("Ln 0  Ch 0"));
  QVERIFY(!m_pWindow->Open(QString()));
  m_pWindow->Open(m_sA);
  m_pWindow->Open(m_sB);
  QCOMPARE(TabTexts(), (QStringList{QStringLiteral("b.c"), QStringLiteral("a.c")}));
  QCOMPARE(Tabs().tabToolTip(0), m_sB);
  QCOMPARE(m_pWindow->ActiveFile(), m_sB);
  QCOMPARE(Shown(), QStringLiteral("text of b\nline 2"));
  Tabs().setCurrentIndex(1);
  QCOMPARE(Shown(), QStringLiteral("text of a"));
  Editor().SetCursorPos({5, 0});
  QCOMPARE(m_pWindow->GetStatusText(), QStringLiteral("Ln 1  Ch 6"));
  m_pWindow->ShowNextDocument();
  QCOMPARE(m_pWindow->ActiveFile(), m_sB);
}

void CSourceWindowTest::aFileHasOneTab_data() {
  QTest::addColumn<QString>("Path");
  QTest::addColumn<QString>("Again");
  QTest::addColumn<int>("Tabs");
  const QString sA = m_Dir.filePath(QStringLiteral("a.c"));
  QTest::newRow("the same path") << sA << sA << 2;
  QTest::newRow("where the finder finds it") << QStringLiteral("a.c") << sA << 2;
  QTest::newRow("by its name, when open by its place") << sA << QStringLiteral("a.c") << 2;
  QTest::newRow("missing, the same path") << QStringLiteral("/none/x.c") << QStringLiteral("/none/x.c") << 2;
  QTest::newRow("two that are missing") << QStringLiteral("none_1.c") << QStringLiteral("none_2.c") << 3;
}

void CSourceWindowTest::aFileHasOneTab() {
  QFETCH(QString, Path);
  QFETCH(QString, Again);
  QFETCH(int, Tabs);
  CFileFinder::Get()->AddSearchPath(m_Dir.path());
  m_pWindow->Open(Path);
  m_pWindow->Open(m_sB);
  QVERIFY(m_pWindow->Open(Again));
  QCOMPARE(this->Tabs().count(), Tabs);
  QVERIFY(m_pWindow->IsOpen(Again));
  QVERIFY(m_pWindow->ActiveFile() != m_sB);
}

void CSourceWindowTest::theBackgroundLeavesTheActiveTab() {
  m_pWindow->Open(m_sA);
  Editor().SetCursorPos({3, 0});
  m_pWindow->Open(m_sB, true);
  QCOMPARE(m_pWindow->ActiveFile(), m_sA);
  QCOMPARE(Editor().CursorPos(), QPoint(3, 0));
  QCOMPARE(Shown(), QStringLiteral("text of a"));
  m_pWindow->Open(m_sB, true);
  QCOMPARE(m_pWindow->ActiveFile(), m_sA);
  QCOMPARE(TabTexts(), (QStringList{QStringLiteral("b.c"), QStringLiteral("a.c")}));
}

void CSourceWindowTest::aTabKeepsItsView() {
  const QString sLong = Long("long.c");
  m_pWindow->Open(sLong, false, 90, {1, 95});
  QCOMPARE(Editor().TopRow(), 90);
  QCOMPARE(Editor().CursorPos(), QPoint(1, 95));
  m_pWindow->Open(m_sA);
  QCOMPARE(Editor().TopRow(), 0);
  m_pWindow->Open(sLong);
  QCOMPARE(Editor().TopRow(), 90);
  QCOMPARE(Editor().CursorPos(), QPoint(1, 95));
}

void CSourceWindowTest::aMissingFileSaysSo() {
  m_pWindow->Open(QStringLiteral("/none/of/them.c"));
  QCOMPARE(TabTexts(), QStringList{QStringLiteral("them.c")});
  QCOMPARE(Shown(), QStringLiteral("File not found:\n\n/none/of/them.c\n\n"
                                   "Please use the source files window to locate the file manually"));
  QVERIFY(!m_pWindow->ShowLine(1));
}

void CSourceWindowTest::closingShowsTheNeighbour() {
  for (const QString& sPath : {m_sA, m_sB, m_sC}) m_pWindow->Open(sPath);
  m_pWindow->Open(m_sB);
  m_pWindow->Close(m_sB);
  QCOMPARE(TabTexts(), (QStringList{QStringLiteral("c.c"), QStringLiteral("a.c")}));
  QCOMPARE(m_pWindow->OpenFiles(), (QStringList{m_sC, m_sA}));
  QCOMPARE(Shown(), m_pWindow->ActiveFile() == m_sA ? QStringLiteral("text of a") : QStringLiteral("text of c"));
  m_pWindow->Close(QStringLiteral("/not/open.c"));
  QCOMPARE(Tabs().count(), 2);
  m_pWindow->CloseAll();
  QVERIFY(m_pWindow->IsEmpty());
  QVERIFY(!m_pWindow->centralWidget()->isVisible());
  QCOMPARE(m_pWindow->ActiveFile(), QString());
}

void CSourceWindowTest::closingAnotherTabLeavesTheViewAlone() {
  for (const QString& sPath : {m_sA, m_sB, m_sC}) m_pWindow->Open(sPath);
  m_pWindow->Open(m_sB);
  QTest::keyClick(&Editor(), Qt::Key_End, Qt::ShiftModifier);
  for (const QString& sPath : {m_sC, m_sA}) {
    m_pWindow->Close(sPath);
    QCOMPARE(m_pWindow->ActiveFile(), m_sB);
    QCOMPARE(Editor().SelectedText(), QStringLiteral("text of b"));
  }
}

void CSourceWindowTest::allButTheActiveOne() {
  for (const QString& sPath : {m_sA, m_sB, m_sC}) m_pWindow->Open(sPath);
  m_pWindow->Open(m_sB);
  m_pWindow->CloseAllButThis();
  QCOMPARE(m_pWindow->OpenFiles(), QStringList{m_sB});
  QCOMPARE(Shown(), QStringLiteral("text of b\nline 2"));
}

void CSourceWindowTest::theCloseButtonIsACommand() {
  QStringList Args;
  RegisterActionHandler(ACTION_FILE_CLOSE, [&Args] { Args = GetActionArgs(ACTION_FILE_CLOSE); });
  m_pWindow->Open(m_sA);
  m_pWindow->Open(m_sB);
  Q_EMIT Tabs().tabCloseRequested(1);
  QCOMPARE(Args, QStringList{m_sA});
  QCOMPARE(Tabs().count(), 2);
  UnregisterActionHandler(ACTION_FILE_CLOSE);
}

void CSourceWindowTest::theKeyboardComesBackWithTheNextFile() {
  m_pWindow->Open(m_sA);
  m_pWindow->setFocus();
  QVERIFY(Editor().hasFocus());
  m_pWindow->Close(m_sA);
  QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(m_pWindow.get()));
  m_pWindow->Open(m_sB);
  QVERIFY(Editor().hasFocus());
}

void CSourceWindowTest::linesAreShownByNumber() {
  m_pWindow->Open(Long("long.c"));
  QVERIFY(m_pWindow->ShowLine(150));
  QCOMPARE(Editor().CursorPos(), QPoint(0, 149));
  QVERIFY(Editor().TopRow() < 149 && Editor().TopRow() > 100);
  for (const U32 Line : {0u, 201u, 0xFFFFFFFFu}) QVERIFY(!m_pWindow->ShowLine(Line));
  QCOMPARE(m_pWindow->CursorLine(), 150);
}

void CSourceWindowTest::thePcLineIsFollowedFromFileToFile() {
  CFileFinder::Get()->SetProjectPath(EXAMPLE + QStringLiteral("traffic_light.vdebug"));
  QCOMPARE(ELFAPI_Load(EXAMPLE + QStringLiteral("traffic_light.elf")), 0);
  for (const char* const sPlace : {"traffic.c:29", "main.c:38", "traffic.c:12"}) {
    const CSrcLoc Loc = ELFAPI_ParseSrcLoc(QLatin1String(sPlace));
    QVERIFY(m_pWindow->ShowPC(ELFAPI_GetAddrOfLoc(Loc)));
    QVERIFY2(m_pWindow->ActiveFile().endsWith(QString::fromLatin1(sPlace).section(QLatin1Char(':'), 0, 0)), sPlace);
    QCOMPARE(m_pWindow->CursorLine(), static_cast<int>(Loc.Line));
    QVERIFY(Editor().TopRow() < static_cast<int>(Loc.Line));
  }
  QCOMPARE(Tabs().count(), 2);
}

void CSourceWindowTest::aPlaceWithoutSourceLeavesTheView() {
  m_pWindow->Open(m_sB);
  Editor().SetCursorPos({0, 1});
  QVERIFY(!m_pWindow->ShowPC(0xFFFF0000));
  QCOMPARE(m_pWindow->ActiveFile(), m_sB);
  QCOMPARE(Editor().CursorPos(), QPoint(0, 1));
}

void CSourceWindowTest::reloadingReadsTheFileAgain() {
  m_pWindow->Open(m_sA);
  m_pWindow->Open(m_sB);
  Editor().SetCursorPos({2, 1});
  Write("b.c", QStringLiteral("new\nlines\nhere\n"));
  m_pWindow->ReloadDocuments();
  QCOMPARE(Editor().CursorPos(), QPoint(2, 1));
  QCOMPARE(Shown(), QStringLiteral("new\nlines\nhere"));
  QFile::remove(m_sB);
  m_pWindow->ReloadDocuments();
  QVERIFY(Shown().startsWith(QStringLiteral("File not found:")));
}

QTEST_MAIN(CSourceWindowTest)
#include "source_window_test.moc"
