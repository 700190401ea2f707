#include <QComboBox>
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
#include "shell/settings/var_ids.h"
#include "tests/common/write_file.h"
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
    m_sA = WriteFile(m_Dir.filePath(u"a.c"_s), "text of a\n");
    m_sB = WriteFile(m_Dir.filePath(u"b.c"_s), "text of b\r\nline 2\r\n");
    m_sC = WriteFile(m_Dir.filePath(u"c.c"_s), "text of c\n");
    m_sLong = WriteFile(m_Dir.filePath(u"long.c"_s), QByteArray("x\n").repeated(200));
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
    QVERIFY(m_pWindow->IsEmpty() && !m_pWindow->Open(QString()));
    Open({m_sA, m_sB});
    const QPoint OnTab = Tabs().tabRect(0).center();
    QHelpEvent Pointer(QEvent::ToolTip, OnTab, Tabs().mapToGlobal(OnTab));
    QCoreApplication::sendEvent(&Tabs(), &Pointer);
    QTRY_VERIFY(CToolTip::_GetSingleton()->isVisible());
    QCOMPARE(CToolTip::_GetSingleton()->findChild<QLabel*>()->text(), m_sB);
    QCOMPARE(State(), u"[b.c] a.c: text of b\nline 2"_s);
    Tabs().setCurrentIndex(1);
    QCOMPARE(State(), u"b.c [a.c]: text of a"_s);
  }

  void aFileHasOneTab() {
    CFileFinder::Get()->AddSearchPath(m_Dir.path());
    const std::tuple<QString, QString, int> Rows[] = {{m_sA, m_sA, 2},
                                                      {u"a.c"_s, m_sA, 2},
                                                      {m_sA, u"a.c"_s, 2},
                                                      {m_Dir.filePath(u"./a.c"_s), m_sA, 2},
                                                      {u"/none/x.c"_s, u"/none/x.c"_s, 2},
                                                      {u"/none/a/../x.c"_s, u"/none/x.c"_s, 2},
                                                      {u"none_1.c"_s, u"none_2.c"_s, 3}};
    for (const auto& [sPath, sAgain, NumTabs] : Rows) {
      Open({sPath, m_sB, sAgain});
      QCOMPARE(Tabs().count(), NumTabs);
      QVERIFY(m_pWindow->IsOpen(sAgain) && m_pWindow->ActiveFile() != m_sB);
      m_pWindow->CloseAll();
    }
  }

  void aTabKeepsItsView() {
    m_pWindow->Open(m_sLong, false, 90, {1, 95});
    m_pWindow->Open(m_sA, true);
    QCOMPARE(Editor().TopRow(), 90);
    m_pWindow->Open(m_sA);
    QCOMPARE(Editor().TopRow(), 0);
    m_pWindow->Open(m_sLong);
    QCOMPARE(Editor().TopRow(), 90);
    QCOMPARE(Editor().CursorPos(), QPoint(1, 95));
  }

  void aMissingFileSaysSo() {
    m_pWindow->Open(u"/none/of/them.c"_s);
    QCOMPARE(State(),
             u"[them.c]: File not found:\n\n/none/of/them.c\n\n"
             "Please use the source files window to locate the file manually"_s);
    QVERIFY(!m_pWindow->ShowLine(1));
  }

  void closingAnotherTabLeavesTheViewAlone() {
    Open({m_sA, m_sB, m_sC, m_sB});
    QTest::keyClick(&Editor(), Qt::Key_End, Qt::ShiftModifier);
    for (const QString& sPath : {m_sC, m_sA}) {
      m_pWindow->Close(sPath);
      QCOMPARE(m_pWindow->ActiveFile(), m_sB);
      QCOMPARE(Editor().SelectedText(), u"text of b"_s);
    }
  }

  void theCloseButtonIsACommand() {
    QStringList Args;
    RegisterActionHandler(ACTION_FILE_CLOSE, [&Args] { Args = GetActionArgs(ACTION_FILE_CLOSE); });
    Open({m_sA, m_sB});
    Q_EMIT Tabs().tabCloseRequested(1);
    QCOMPARE(Args, QStringList{m_sA});
    QCOMPARE(Tabs().count(), 2);
    UnregisterActionHandler(ACTION_FILE_CLOSE);
  }

  void theKeyboardComesBackWithTheNextFile() {
    m_pWindow->Open(m_sA);
    m_pWindow->setFocus();
    m_pWindow->Close(m_sA);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(m_pWindow.get()));
    m_pWindow->Open(m_sB);
    QVERIFY(Editor().hasFocus());
  }

  // Where the pointer rests, and the expression whose value is asked for.
  void tipsAreForCodeAlone() {
    m_pWindow->Open(WriteFile(m_Dir.filePath(u"tips.c"_s), "count; // count\n/* count */ \"count\" total; none\n"));
    m_pWindow->SetTipEvaluator([](const QString& sExpression) {
      if (sExpression == u"total"_s) return u"<outofscope>"_s;
      return sExpression == u"count"_s || sExpression == u"this->total"_s ? u"1"_s : QString();
    });
    const std::tuple<QPoint, QString> Rows[] = {{{2, 0}, u"count"_s},        {{10, 0}, QString()},
                                                {{4, 1}, QString()},         {{14, 1}, QString()},
                                                {{22, 1}, u"this->total"_s}, {{28, 1}, QString()}};
    QString sAsked;
    connect(m_pWindow.get(), &CSourceWindow::SymbolTooltipRequest, m_pWindow.get(),
            [&sAsked](const QPoint&, const QString& sExpression) { sAsked = sExpression; });
    for (const auto& [Pos, sExpected] : Rows) {
      sAsked.clear();
      QTest::mouseMove(Editor().viewport(), PointOf(Pos));
      LetTimersFire();
      QCOMPARE(sAsked, sExpected);
    }
    m_pWindow->SetPreference(PREF_SHOW_TOOLTIPS, 0);
    QTest::mouseMove(Editor().viewport(), PointOf({2, 0}));
    LetTimersFire();
    QCOMPARE(sAsked, QString());
  }

  void theHeaderBarLeadsToFunctionsAndFollows() {
    CFileFinder::Get()->SetProjectPath(EXAMPLE + u"traffic_light.vdebug"_s);
    QCOMPARE(ELFAPI_Load(EXAMPLE + u"traffic_light.elf"_s), 0);
    m_pWindow->SetPreference(PREF_LOCK_HEADER_BAR, 0);
    m_pWindow->ShowLocation(ELFAPI_ParseSrcLoc(u"traffic.c:29"_s));
    auto* const pScopes = m_pWindow->findChild<QComboBox*>(u"comboBoxScope"_s);
    auto* const pSymbols = m_pWindow->findChild<QComboBox*>(u"comboBoxSymbols"_s);
    QCOMPARE(pScopes->itemText(0), u"File Scope"_s);
    QTRY_COMPARE(pScopes->currentText(), u"traffic_tick"_s);
    QVERIFY(!m_pWindow->ShowPC(0xFFFF0000) && m_pWindow->CursorLine() == 29);
    Editor().SetCursorPos({0, 35});
    QTRY_COMPARE(pScopes->currentText(), u"traffic_request"_s);
    pScopes->setCurrentIndex(0);
    Q_EMIT pScopes->activated(0);
    const int Index = pSymbols->findText(u"traffic_init"_s);
    QVERIFY(Index >= 0 && pSymbols->findText(u"phases"_s) >= 0);
    Q_EMIT pSymbols->activated(Index);
    QCOMPARE(m_pWindow->CursorLine(), 17);
    m_pWindow->SetPreference(PREF_LOCK_HEADER_BAR, 1);
    const QString sBefore = pScopes->currentText();
    Editor().SetCursorPos({0, 28});
    LetTimersFire();
    QCOMPARE(pScopes->currentText(), sBefore);
  }

  // Opened by its place, and known to be the program's once there is a rule for that; edits stay.
  void aRuleMakesAFileTheProgramsOwn() {
    QCOMPARE(ELFAPI_Load(EXAMPLE + u"traffic_light.elf"_s), 0);
    m_pWindow->Open(WriteFile(m_Dir.filePath(u"main.c"_s), "int x;\n"));
    QCOMPARE(Editor().GetFileNo(), INVALID_FILE_ID);
    Editor().setFocus();
    QTest::keyClick(&Editor(), Qt::Key_A);
    CFileFinder::Get()->AddFileAlias(ELFAPI_GetFilePathOf(ELFAPI_ParseSrcLoc(u"main.c:38"_s).File),
                                     m_Dir.filePath(u"main.c"_s));
    m_pWindow->ResolveDocuments();
    QCOMPARE(Editor().GetFileNo(), ELFAPI_ParseSrcLoc(u"main.c:38"_s).File);
    QCOMPARE(Editor().GetText(), u"aint x;\n"_s);
  }

  void reloadingReadsTheFileAgain() {
    Open({m_sA, m_sB});
    WriteFile(m_sB, "new\nlines\nhere\n");
    m_pWindow->ReloadDocuments();
    QCOMPARE(State(), u"[b.c] a.c: new\nlines\nhere"_s);
    QFile::remove(m_sB);
    m_pWindow->ReloadDocuments();
    QVERIFY(State().startsWith(u"[b.c] a.c: File not found:"_s));
  }

private:
  // The last one in front.
  void Open(const QStringList& Paths) {
    for (const QString& sPath : Paths) m_pWindow->Open(sPath);
  }
  void LetTimersFire() {
    const auto IsWaiting = [](const QTimer* pTimer) { return pTimer->isSingleShot() && pTimer->isActive(); };
    QTRY_VERIFY(std::ranges::none_of(m_pWindow->findChildren<QTimer*>(), IsWaiting));
  }
  // A point on a character of the text: column, row.
  QPoint PointOf(const QPoint& Pos) {
    const int y = Pos.y() * Editor().RowHeight() + Editor().RowHeight() / 2;
    int x = 0;
    while (x < Editor().viewport()->width() && Editor().PosAt({x, y}) != Pos) ++x;
    return {x, y};
  }
  CSourceEditor& Editor() { return *m_pWindow->findChild<CSourceEditor*>(); }
  QTabBar& Tabs() { return *m_pWindow->findChild<QTabBar*>(); }
  // The tabs, the active one in brackets, and the text.
  QString State() {
    QStringList Texts;
    for (int i = 0; i < Tabs().count(); ++i) Texts << Tabs().tabText(i);
    const int Active = Tabs().currentIndex();
    if (m_pWindow->ActiveFile().endsWith(Texts[Active])) Texts[Active] = u'[' + Texts[Active] + u']';
    QTest::keyClick(&Editor(), Qt::Key_A, Qt::ControlModifier);
    return Texts.join(u' ') + u": "_s + Editor().SelectedText();
  }

  QTemporaryDir m_Dir;
  QString m_sA, m_sB, m_sC, m_sLong;
  std::unique_ptr<CSourceWindow> m_pWindow;
};

QTEST_MAIN(CSourceWindowTest)
#include "source_window_test.moc"
