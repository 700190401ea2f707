#include <QFile>
#include <QHelpEvent>
#include <QLabel>
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
#include "ui/tool_tip.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr U32 CORTEX_M4 = 0x0E0000FF;
const QString EXAMPLE = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/");

}  // namespace

// A source window of its own over the files of a temporary folder, or over the example program.
class CSourceWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    SetSettingsInMemory(true);
    VCore::Init({CORTEX_M4, 0, 0}, {});
  }

  void init() {
    m_sA = Write("a.c", u"text of a\n"_s);
    m_sB = Write("b.c", u"text of b\r\nline 2\r\n"_s);
    m_sC = Write("c.c", u"text of c\n"_s);
    m_pWindow = std::make_unique<CSourceWindow>(nullptr);
    m_pWindow->resize(600, 300);
    m_pWindow->show();
    m_pWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get()));
  }

  void cleanup() {
    m_pWindow.reset();
    CFileFinder::Get()->Clear();
    ELFAPI_Unload();
  }

  void filesOpenInFront() {
    QVERIFY(m_pWindow->IsEmpty());
    QCOMPARE(m_pWindow->GetStatusText(), u"Ln 0  Ch 0"_s);
    QVERIFY(!m_pWindow->Open(QString()));
    m_pWindow->Open(m_sA);
    m_pWindow->Open(m_sB);
    QCOMPARE(TabTexts(), (QStringList{u"b.c"_s, u"a.c"_s}));
    const QPoint OnTab = Tabs().tabRect(0).center();
    QHelpEvent Pointer(QEvent::ToolTip, OnTab, Tabs().mapToGlobal(OnTab));
    QCoreApplication::sendEvent(&Tabs(), &Pointer);
    QTRY_VERIFY(CToolTip::_GetSingleton()->isVisible());
    QCOMPARE(CToolTip::_GetSingleton()->findChild<QLabel*>()->text(), m_sB);
    QCOMPARE(m_pWindow->ActiveFile(), m_sB);
    QCOMPARE(Shown(), u"text of b\nline 2"_s);
    Tabs().setCurrentIndex(1);
    QCOMPARE(Shown(), u"text of a"_s);
    Editor().SetCursorPos({5, 0});
    QCOMPARE(m_pWindow->GetStatusText(), u"Ln 1  Ch 6"_s);
    m_pWindow->ShowNextDocument();
    QCOMPARE(m_pWindow->ActiveFile(), m_sB);
  }

  void aFileHasOneTab_data() {
    QTest::addColumn<QString>("Path");
    QTest::addColumn<QString>("Again");
    QTest::addColumn<int>("Tabs");
    const QString sA = m_Dir.filePath(u"a.c"_s);
    QTest::newRow("the same path") << sA << sA << 2;
    QTest::newRow("where the finder finds it") << u"a.c"_s << sA << 2;
    QTest::newRow("by its name, when open by its place") << sA << u"a.c"_s << 2;
    QTest::newRow("missing, the same path") << u"/none/x.c"_s << u"/none/x.c"_s << 2;
    QTest::newRow("two that are missing") << u"none_1.c"_s << u"none_2.c"_s << 3;
  }

  void aFileHasOneTab() {
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

  void theBackgroundLeavesTheActiveTab() {
    m_pWindow->Open(m_sA);
    Editor().SetCursorPos({3, 0});
    m_pWindow->Open(m_sB, true);
    QCOMPARE(m_pWindow->ActiveFile(), m_sA);
    QCOMPARE(Editor().CursorPos(), QPoint(3, 0));
    QCOMPARE(Shown(), u"text of a"_s);
    m_pWindow->Open(m_sB, true);
    QCOMPARE(m_pWindow->ActiveFile(), m_sA);
    QCOMPARE(TabTexts(), (QStringList{u"b.c"_s, u"a.c"_s}));
  }

  void aTabKeepsItsView() {
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

  void aMissingFileSaysSo() {
    m_pWindow->Open(u"/none/of/them.c"_s);
    QCOMPARE(TabTexts(), QStringList{u"them.c"_s});
    QCOMPARE(Shown(),
             u"File not found:\n\n/none/of/them.c\n\n"
             "Please use the source files window to locate the file manually"_s);
    QVERIFY(!m_pWindow->ShowLine(1));
  }

  void closingShowsTheNeighbour() {
    for (const QString& sPath : {m_sA, m_sB, m_sC}) m_pWindow->Open(sPath);
    m_pWindow->Open(m_sB);
    m_pWindow->Close(m_sB);
    QCOMPARE(TabTexts(), (QStringList{u"c.c"_s, u"a.c"_s}));
    QCOMPARE(m_pWindow->OpenFiles(), (QStringList{m_sC, m_sA}));
    QCOMPARE(Shown(), m_pWindow->ActiveFile() == m_sA ? u"text of a"_s : u"text of c"_s);
    m_pWindow->Close(u"/not/open.c"_s);
    QCOMPARE(Tabs().count(), 2);
    m_pWindow->CloseAll();
    QVERIFY(m_pWindow->IsEmpty());
    QVERIFY(!m_pWindow->centralWidget()->isVisible());
    QCOMPARE(m_pWindow->ActiveFile(), QString());
  }

  void closingAnotherTabLeavesTheViewAlone() {
    for (const QString& sPath : {m_sA, m_sB, m_sC}) m_pWindow->Open(sPath);
    m_pWindow->Open(m_sB);
    QTest::keyClick(&Editor(), Qt::Key_End, Qt::ShiftModifier);
    for (const QString& sPath : {m_sC, m_sA}) {
      m_pWindow->Close(sPath);
      QCOMPARE(m_pWindow->ActiveFile(), m_sB);
      QCOMPARE(Editor().SelectedText(), u"text of b"_s);
    }
  }

  void allButTheActiveOne() {
    for (const QString& sPath : {m_sA, m_sB, m_sC}) m_pWindow->Open(sPath);
    m_pWindow->Open(m_sB);
    m_pWindow->CloseAllButThis();
    QCOMPARE(m_pWindow->OpenFiles(), QStringList{m_sB});
    QCOMPARE(Shown(), u"text of b\nline 2"_s);
  }

  void theCloseButtonIsACommand() {
    QStringList Args;
    RegisterActionHandler(ACTION_FILE_CLOSE, [&Args] { Args = GetActionArgs(ACTION_FILE_CLOSE); });
    m_pWindow->Open(m_sA);
    m_pWindow->Open(m_sB);
    Q_EMIT Tabs().tabCloseRequested(1);
    QCOMPARE(Args, QStringList{m_sA});
    QCOMPARE(Tabs().count(), 2);
    UnregisterActionHandler(ACTION_FILE_CLOSE);
  }

  void theKeyboardComesBackWithTheNextFile() {
    m_pWindow->Open(m_sA);
    m_pWindow->setFocus();
    QVERIFY(Editor().hasFocus());
    m_pWindow->Close(m_sA);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(m_pWindow.get()));
    m_pWindow->Open(m_sB);
    QVERIFY(Editor().hasFocus());
  }

  void linesAreShownByNumber() {
    m_pWindow->Open(Long("long.c"));
    QVERIFY(m_pWindow->ShowLine(150));
    QCOMPARE(Editor().CursorPos(), QPoint(0, 149));
    QVERIFY(Editor().TopRow() < 149 && Editor().TopRow() > 100);
    for (const U32 Line : {0u, 201u, 0xFFFFFFFFu}) QVERIFY(!m_pWindow->ShowLine(Line));
    QCOMPARE(m_pWindow->CursorLine(), 150);
  }

  void thePcLineIsFollowedFromFileToFile() {
    CFileFinder::Get()->SetProjectPath(EXAMPLE + u"traffic_light.vdebug"_s);
    QCOMPARE(ELFAPI_Load(EXAMPLE + u"traffic_light.elf"_s), 0);
    for (const char* const sPlace : {"traffic.c:29", "main.c:38", "traffic.c:12"}) {
      const CSrcLoc Loc = ELFAPI_ParseSrcLoc(QLatin1String(sPlace));
      QVERIFY(m_pWindow->ShowPC(ELFAPI_GetAddrOfLoc(Loc)));
      QVERIFY2(m_pWindow->ActiveFile().endsWith(QString::fromLatin1(sPlace).section(QLatin1Char(':'), 0, 0)), sPlace);
      QCOMPARE(m_pWindow->CursorLine(), static_cast<int>(Loc.Line));
      QVERIFY(Editor().TopRow() < static_cast<int>(Loc.Line));
    }
    QCOMPARE(Tabs().count(), 2);
  }

  void aPlaceWithoutSourceLeavesTheView() {
    m_pWindow->Open(m_sB);
    Editor().SetCursorPos({0, 1});
    QVERIFY(!m_pWindow->ShowPC(0xFFFF0000));
    QCOMPARE(m_pWindow->ActiveFile(), m_sB);
    QCOMPARE(Editor().CursorPos(), QPoint(0, 1));
  }

  void reloadingReadsTheFileAgain() {
    m_pWindow->Open(m_sA);
    m_pWindow->Open(m_sB);
    Editor().SetCursorPos({2, 1});
    Write("b.c", u"new\nlines\nhere\n"_s);
    m_pWindow->ReloadDocuments();
    QCOMPARE(Editor().CursorPos(), QPoint(2, 1));
    QCOMPARE(Shown(), u"new\nlines\nhere"_s);
    QFile::remove(m_sB);
    m_pWindow->ReloadDocuments();
    QVERIFY(Shown().startsWith(u"File not found:"_s));
  }

private:
  QString Write(const char* sName, const QString& sText) {
    const QString sPath = m_Dir.filePath(QLatin1String(sName));
    QFile File(sPath);
    if (!File.open(QIODevice::WriteOnly) || File.write(sText.toUtf8()) < 0) qFatal("cannot write");
    return sPath;
  }
  QString Long(const char* sName) { return Write(sName, u"x\n"_s.repeated(200)); }
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

QTEST_MAIN(CSourceWindowTest)
#include "source_window_test.moc"
