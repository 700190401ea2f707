// Sources that the user, or another program, changes while a session may stand.

#include "device/breakpoints/breakpoint_manager.h"
#include "source_session.h"

class CSourceEditTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { QVERIFY(m_pWindow = m_S.Start()); }
  void init() {
    m_S.Source().CloseAll();
    m_S.Source().ResetFileSaveStates();
    m_S.TakeConsole();
    QApplication::setActiveWindow(m_pWindow);
  }
  void cleanupTestCase() {
    m_S.Source().CloseAll();
    QCOMPARE(BoxesOf([this] { m_pWindow->close(); }, {}), QStringList());
  }

  void anEditIsSavedByItsCommand() {
    Open("a.c", "one\r\ntwo\r\n");
    QVERIFY(!GetAction(ACTION_FILE_SAVE)->isEnabled());
    Type(u"x"_s);
    QTRY_COMPARE(m_S.TabTexts(), u"a.c*"_s);
    QTRY_COMPARE(GetAction(ACTION_FILE_SAVE)->text(), u"&Save a.c"_s);
    m_S.Press(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(m_S.TakeConsole().contains(u"File.Save (\"%1\");"_s.arg(m_S.Path("a.c"))));
    QCOMPARE(Bytes("a.c"), "xone\r\ntwo\r\n");
    QCOMPARE(m_S.TabTexts(), u"a.c"_s);
    // The same key again, which would join the step before the saving, and undone beyond it, the text differs again.
    Type(u"x"_s);
    QCOMPARE(m_S.TabTexts(), u"a.c*"_s);
    for (const auto& [Key, sTab] : {std::pair{Qt::Key_Z, u"a.c"_s}, {Qt::Key_Z, u"a.c*"_s}, {Qt::Key_Y, u"a.c"_s}}) {
      m_S.Press(Key, Qt::ControlModifier);
      QCOMPARE(m_S.TabTexts(), sTab);
    }
  }

  void mixedLineEndsAreAskedFor() {
    const std::tuple<const char*, int, const char*> Rows[] = {{"one\r\ntwo\n", 0, "xone\r\ntwo\r\n"},
                                                              {"one\r\ntwo\n", 1, "xone\ntwo\n"},
                                                              {"one\r\ntwo\n", -1, "xone\ntwo\n"}};
    for (const auto& [sBytes, Choice, sExpected] : Rows) {
      init();
      Open("mixed.c", sBytes);
      Type(u"x"_s);
      WhenModal([Choice = Choice](QWidget* pDialog) {
        QCOMPARE(pDialog->windowTitle(), u"Save mixed.c"_s);
        auto* const pBox = pDialog->findChild<QComboBox*>();
        QCOMPARE(pBox->itemText(0), u"Windows format (CR+LF)"_s);
        if (Choice < 0) return QTest::keyClick(pDialog, Qt::Key_Escape);
        pBox->setCurrentIndex(Choice);
        QTest::keyClick(pDialog, Qt::Key_Return);
      });
      m_S.Press(Qt::Key_S, Qt::ControlModifier);
      QCOMPARE(Bytes("mixed.c"), sExpected);
    }
  }

  // The answer to the question, what stays open, and what the file has then.
  void closingAsksForUnsavedChanges() {
    const std::tuple<QDialogButtonBox::StandardButton, QString, QByteArray> Rows[] = {
        {QDialogButtonBox::Cancel, u"b.c* a.c*"_s, "one\n"},
        {QDialogButtonBox::No, u""_s, "one\n"},
        {QDialogButtonBox::Yes, u""_s, "xone\n"},
    };
    for (const auto& [Answer, sTabs, Expected] : Rows) {
      init();
      Open("a.c", "one\n");
      Type(u"x"_s);
      Open("b.c", "one\n");
      Type(u"x"_s);
      const QStringList Titles =
          BoxesOf([this] { m_S.Press(Qt::Key_F4, Qt::ControlModifier | Qt::AltModifier); }, {Answer});
      QCOMPARE(Titles, QStringList{u"Save Document Changes?"_s});
      QCOMPARE(m_S.TabTexts(), sTabs);
      QCOMPARE(Bytes("a.c"), Expected);
    }
    Open("a.c", "one\n");
    Type(u"x"_s);
    QCOMPARE(BoxesOf([this] { m_S.Press(Qt::Key_F4, Qt::ControlModifier); }, {QDialogButtonBox::Cancel}).size(), 1);
    QCOMPARE(BoxesOf([this] { m_pWindow->close(); }, {QDialogButtonBox::Cancel}).size(), 1);
    QVERIFY(m_pWindow->isVisible() && !CMainWindow::IsShuttingDown());
    QCOMPARE(m_S.TabTexts(), u"a.c*"_s);
  }

  void aDocumentThatCantBeSavedStaysModified() {
    QDir().mkpath(m_S.Path("gone"));
    Open("gone/a.c", "one\n");
    Type(u"x"_s);
    QVERIFY(QDir(m_S.Path("gone")).removeRecursively());
    m_S.Press(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(m_S.TakeConsole().contains(u"could not be saved: "_s));
    QCOMPARE(m_S.TabTexts(), u"a.c*"_s);
    // It must not be closed as if it had been.
    QCOMPARE(BoxesOf([this] { m_S.Press(Qt::Key_F4, Qt::ControlModifier); }, {QDialogButtonBox::Yes}).size(), 1);
    QCOMPARE(m_S.TabTexts(), u"a.c*"_s);
  }

  void aFileChangedOutsideIsOfferedWithItsPlaceKept() {
    Open("long.c", QByteArray("line\n").repeated(200));
    m_S.Editor().EnsureRowVisible(150);
    m_S.Editor().SetCursorPos({2, 150});
    const int TopRow = m_S.Editor().TopRow();
    int Time = 0;
    for (const auto& [Answer, sFirst] : {std::pair{QDialogButtonBox::No, "line"}, {QDialogButtonBox::Yes, "new2"}}) {
      ++Time;
      Change("long.c", QByteArray("new") + QByteArray::number(Time) + QByteArray("\nline").repeated(199), Time);
      QCOMPARE(ComeBack(Answer), u"Reload Source File"_s);
      QCOMPARE(m_S.Editor().LineText(1), QLatin1String(sFirst));
      QCOMPARE(m_S.Editor().CursorPos(), QPoint(2, 150));
      QCOMPARE(m_S.Editor().TopRow(), TopRow);
      Change("long.c", Bytes("long.c"), Time + 10);  // the same bytes with another time
      QCOMPARE(ComeBack(Answer), QString());
    }
  }

  void aStartWithChangedSourcesAsks() {
    PerformAction(ACTION_FILE_OPEN, m_S.Path("main.c"));
    m_S.Editor().SetCursorPos({0, 0});
    Type(u" "_s);
    const QString sTitle = u"Vexor"_s;
    QStringList Titles = BoxesOf([this] { m_S.Press(Qt::Key_F5); }, {QDialogButtonBox::No});
    QVERIFY2(Titles.size() == 1 && Titles.first().startsWith(sTitle), qPrintable(Titles.join(u',')));
    QVERIFY(!CDevice::Get().IsConnected() && m_S.TakeConsole().contains(u"Connection aborted"_s));
    Titles = BoxesOf(
        [this] {
          m_S.Press(Qt::Key_F5);
          QVERIFY(Halts());
        },
        {QDialogButtonBox::Yes});
    QCOMPARE(Titles.size(), 1);
    PerformAction(ACTION_DEBUG_STOP);
    QTRY_VERIFY(!CDevice::Get().IsConnected());
    m_S.Press(Qt::Key_Z, Qt::ControlModifier);
    // Nothing differs now: no question, but a notice of what is changed from here on, once.
    Titles = BoxesOf(
        [this] {
          m_S.Press(Qt::Key_F5);
          QVERIFY(Halts());
        },
        {});
    QCOMPARE(Titles, QStringList());
    Change("traffic.c", "/* other */\n", 5);
    m_S.Source().Open(m_S.Path("traffic.c"));
    Change("traffic.c", "/* another */\n", 9);
    Titles = BoxesOf([this] { Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive); },
                     {QDialogButtonBox::Yes, QDialogButtonBox::Ok});
    QCOMPARE(Titles, (QStringList{u"Reload Source File"_s, u"traffic.c"_s}));
    Titles = BoxesOf([this] { m_S.Source().ShowNextDocument(), m_S.Source().ShowNextDocument(); }, {});
    QCOMPARE(Titles, QStringList());
    PerformAction(ACTION_DEBUG_STOP);
    QTRY_VERIFY(!CDevice::Get().IsConnected());
  }

  // A key at the end or the begin of a line, and the line of the breakpoint afterwards.
  void editedLinesMoveTheirBreakpoints() {
    PerformAction(ACTION_FILE_OPEN, m_S.Path("statistics.c"));
    PerformAction(ACTION_BREAK_SET_ON_SRC, u"statistics.c:18"_s);
    QCOMPARE(CBreakpointManager::Get().Rows().size(), 1);
    const std::tuple<U32, bool, Qt::Key, QString> Steps[] = {
        {10, true, Qt::Key_Return, u"statistics.c:19"_s},  {11, false, Qt::Key_Backspace, u"statistics.c:18"_s},
        {18, false, Qt::Key_Return, u"statistics.c:19"_s}, {19, false, Qt::Key_Backspace, u"statistics.c:18"_s},
        {18, true, Qt::Key_Return, u"statistics.c:18"_s},  {18, true, Qt::Key_Delete, u"statistics.c:18"_s},
    };
    for (const auto& [Line, bEnd, Key, sExpected] : Steps) {
      const int Column = bEnd ? static_cast<int>(m_S.Editor().LineText(Line).size()) : 0;
      m_S.Editor().SetCursorTextPos({Column, static_cast<int>(Line) - 1});
      m_S.Press(Key);
      QStringList Places;
      for (const CBreakpointRec& Record : CBreakpointManager::Get().Rows()) Places << Record.sLocation;
      QVERIFY2(Places == QStringList{sExpected}, qPrintable(Places.join(u',') + u" for "_s + sExpected));
      const int Row = m_S.Editor().RowOfLine(CBreakpointManager::Get().Rows().first().Loc.Line);
      QVERIFY(m_S.Source().MarksOfRow(Row) & (SIDE_BAR_BREAKPOINT | SIDE_BAR_BREAKPOINT_DISABLED));
    }
    // Edits that are not saved take it back with them.
    m_S.Editor().SetCursorTextPos({0, 2});
    for (int i = 0; i < 2; ++i) m_S.Press(Qt::Key_Return);
    QCOMPARE(CBreakpointManager::Get().Rows().first().sLocation, u"statistics.c:20"_s);
    BoxesOf([this] { m_S.Press(Qt::Key_F4, Qt::ControlModifier); }, {QDialogButtonBox::No});
    QCOMPARE(CBreakpointManager::Get().Rows().first().sLocation, u"statistics.c:18"_s);
    PerformAction(ACTION_BREAK_CLEAR_ALL);
  }

private:
  void Open(const char* sName, const QByteArray& Text) {
    m_S.Source().Open(WriteFile(m_S.Path(sName), Text));
    m_S.Editor().SetCursorPos({0, 0});
  }
  void Type(const QString& sText) {
    m_pWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    m_S.Source().setFocus();
    QTest::keyClicks(QApplication::focusWidget(), sText);
  }
  QByteArray Bytes(const char* sName) { return ReadFile(m_S.Path(sName)); }
  void Change(const char* sName, const QByteArray& Text, int Seconds) {
    WriteFile(m_S.Path(sName), Text);
    QFile File(m_S.Path(sName));
    QVERIFY(File.open(QIODevice::ReadWrite));
    QVERIFY(File.setFileTime(QDateTime::currentDateTime().addSecs(Seconds), QFileDevice::FileModificationTime));
  }
  QString ComeBack(QDialogButtonBox::StandardButton Answer) {
    return BoxesOf([] { Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive); }, {Answer}).join(u',');
  }

  CSourceSession m_S;
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CSourceEditTest)
#include "source_edit_test.moc"
