// Reading code in a session: margin, keys and menus of the source view, and what they do to the target.

#include "source_session.h"

namespace {

constexpr U32 LINE_INIT = 40;  // a call
constexpr U32 LINE_SIDE = 41;
constexpr U32 LINE_TIMER = 42;
constexpr U32 LINE_LAST = 44;
constexpr int NUM_STEPS = 50;

QString Set(U32 Addr, QChar State = u'+') {
  return QString::number(Addr, 16) + State;
}

}  // namespace

class CSourceViewTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pWindow = m_S.Start());
    QTest::keyClick(m_pWindow, Qt::Key_F5);
    QVERIFY(Halts());
    QVERIFY(m_S.Source().ActiveFile().endsWith(u"main.c"_s));
    m_Init = m_S.AddrOf("main.c:40");
    m_Side = m_S.AddrOf("main.c:41");
  }
  void init() {
    QApplication::setActiveWindow(m_pWindow);
    m_S.TakeConsole();
  }
  void cleanupTestCase() { m_pWindow->close(); }

  // What the user does, what the console shows of it, and the breakpoints afterwards.
  void breakpointsByMouseAndKeys() {
    const int Row = m_S.Editor().RowOfLine(LINE_INIT);
    const std::tuple<std::function<void()>, QString, QString> aSteps[] = {
        {[&] { m_S.ClickMargin(Row); }, u"Break.SetOnSrc (\"main.c:40\");"_s, Set(m_Init)},
        {[&] { m_S.ClickMargin(Row); }, u"Break.ClearOnSrc (\"main.c:40\");"_s, {}},
        {[&] { m_S.GoTo(LINE_INIT), m_S.Press(Qt::Key_F9); }, u"Break.SetOnSrc (\"main.c:40\");"_s, Set(m_Init)},
        {[&] { m_S.UseMenu(Row + 1, u"side_street"_s, ACTION_BP_SET); }, u"Break.SetOnSrc (\"main.c:41\");"_s,
         Set(m_Init) + u' ' + Set(m_Side)},
        {[&] { m_S.UseMarginMenu(Row, ACTION_BP_DISABLE); }, u"Break.DisableOnSrc (\"main.c:40\");"_s,
         Set(m_Init, u'-') + u' ' + Set(m_Side)},
        {[&] { m_S.UseMarginMenu(Row, ACTION_BP_ENABLE); }, u"Break.EnableOnSrc (\"main.c:40\");"_s,
         Set(m_Init) + u' ' + Set(m_Side)},
        {[&] { m_S.UseMenu(Row + 1, u"side_street"_s, ACTION_BP_CLEAR); }, u"Break.ClearOnSrc (\"main.c:41\");"_s,
         Set(m_Init)},
        {[&] { m_S.Press(Qt::Key_Delete, Qt::AltModifier), PerformAction(ACTION_BREAK_CLEAR_ALL); },
         u"Break.ClearAll();"_s,
         {}},
    };
    for (const auto& [Do, sEcho, sBreakpoints] : aSteps) {
      Do();
      const QString sConsole = m_S.TakeConsole();
      QVERIFY2(sConsole.contains(sEcho), qPrintable(sEcho + u" not in "_s + sConsole));
      QCOMPARE(m_S.Breakpoints(), sBreakpoints);
    }
    // A line without code hands its breakpoint on; the breakpoint is cleared where it stands.
    for (const auto& [Line, sEcho] : {std::pair{7u, "Break.SetOnSrc (\"main.c:7\");"},
                                      {7u, "Break.SetOnSrc (\"main.c:7\");"},
                                      {17u, "Break.ClearOnSrc (\"main.c:17\");"}}) {
      m_S.ClickMargin(m_S.Editor().RowOfLine(Line));
      const QString sConsole = m_S.TakeConsole();
      QVERIFY2(sConsole.contains(QLatin1String(sEcho)), qPrintable(sConsole));
    }
    // The core has six comparators: what could not be set stands there all the same.
    for (U32 Addr = m_Side; Addr < m_Side + 12; Addr += 2)
      PerformAction(ACTION_BREAK_SET_EX, u"0x"_s + QString::number(Addr, 16), u"BP_TYPE_HARD"_s);
    PerformAction(ACTION_BREAK_SET_ON_SRC_EX, u"main.c:40"_s, u"BP_TYPE_HARD"_s);
    m_S.Settle();
    QVERIFY(m_S.TakeConsole().contains(u"could not be set"_s));
    m_S.ClickMargin(Row);
    QVERIFY(m_S.TakeConsole().contains(u"Break.ClearOnSrc (\"main.c:40\");"_s));
    PerformAction(ACTION_BREAK_CLEAR_ALL);
    m_S.Settle();
  }

  void menusOfferWhatIsPossible() {
    const int Row = m_S.Editor().RowOfLine(LINE_INIT);
    const QStringList OnCode = m_S.UseMenu(Row, u"main_street"_s, NUM_ACTIONS);
    const QStringList OnText = m_S.UseMenu(0, u"crossing"_s, NUM_ACTIONS);
    for (const auto& [Texts, sEntry, bThere] :
         {std::tuple<QStringList, QString, bool>{OnCode, u"Set Breakpoint"_s, true},
          {OnCode, u"Clear Breakpoint"_s, false},
          {OnCode, u"Set Next Statement"_s, true},
          {OnCode, u"Set Next PC"_s, false},
          {OnCode, u"Run to Cursor"_s, true},
          {OnCode, u"Expand Line"_s, true},
          {OnCode, u"Collapse Line"_s, false},
          {OnCode, u"Select All"_s, true},
          {OnText, u"-Run to Cursor"_s, true},
          {OnText, u"Expand Line"_s, false}}) {
      QVERIFY2(Texts.contains(sEntry) == bThere, qPrintable(sEntry + u" in "_s + Texts.join(u',')));
    }
    // The window of the breakpoints has its own actions back.
    QVERIFY(!GetAction(ACTION_BP_SET)->isEnabled());
  }

  void anOpenedLineHasBreakpointsOfItsOwn() {
    m_S.GoTo(LINE_SIDE);
    const int NumRows = m_S.Editor().NumRows();
    m_S.Press(Qt::Key_Plus, Qt::ControlModifier);
    const int Row = m_S.Editor().RowOfLine(LINE_SIDE);
    QVERIFY(m_S.Editor().Rows().IsExpandedAt(Row) && m_S.Editor().Rows().IsInstruction(Row + 2));
    const U32 Second = m_S.Editor().Rows().AddrOfRow(Row + 2);
    const std::tuple<int, QString, QString> aClicks[] = {
        {Row + 2, u"Break.Set (0x%1);"_s.arg(Second, 8, 16, QLatin1Char('0')), Set(Second)},
        {Row, u"Break.SetOnSrc (\"main.c:41\");"_s, Set(m_Side) + u' ' + Set(Second)},
        {Row + 1, u"Break.Disable (0x%1);"_s.arg(m_Side, 8, 16, QLatin1Char('0')),
         Set(m_Side, u'-') + u' ' + Set(Second)},
        {Row + 1, u"Break.Enable (0x%1);"_s.arg(m_Side, 8, 16, QLatin1Char('0')), Set(m_Side) + u' ' + Set(Second)},
        {Row + 2, u"Break.Clear (0x%1);"_s.arg(Second, 8, 16, QLatin1Char('0')), Set(m_Side)},
        {Row, u"Break.ClearOnSrc (\"main.c:41\");"_s, {}},
    };
    for (const auto& [ClickedRow, sEcho, sBreakpoints] : aClicks) {
      m_S.ClickMargin(ClickedRow);
      const QString sConsole = m_S.TakeConsole();
      QVERIFY2(sConsole.contains(sEcho, Qt::CaseInsensitive), qPrintable(sConsole));
      QCOMPARE(m_S.Breakpoints(), sBreakpoints);
    }
    // The line stays open over another document, and closes again.
    m_S.Source().Open(m_S.Path("traffic.c"));
    m_S.Source().Open(m_S.Path("main.c"));
    QVERIFY(m_S.Editor().Rows().IsExpandedAt(Row));
    m_S.GoTo(LINE_SIDE);
    m_S.Press(Qt::Key_Minus, Qt::ControlModifier);
    QCOMPARE(m_S.Editor().NumRows(), NumRows);
    m_S.Press(Qt::Key_Plus, Qt::AltModifier);
    QVERIFY(m_S.Editor().NumRows() > NumRows + 100);
    m_S.Press(Qt::Key_Minus, Qt::AltModifier);
    QCOMPARE(m_S.Editor().NumRows(), NumRows);
  }

  void theTargetGoesWhereTheCursorIs() {
    m_S.GoTo(LINE_TIMER);
    m_S.Press(Qt::Key_F10, Qt::ControlModifier);
    QVERIFY(HaltsWith([this] { return m_S.Pc() == m_S.AddrOf("main.c:42"); }));
    QVERIFY(m_S.TakeConsole().contains(u"Debug.RunTo (\"main.c:42\");"_s));
    m_S.GoTo(LINE_INIT);
    m_S.Press(Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(HaltsWith([this] { return m_S.Pc() == m_Init; }));
    QVERIFY(m_S.TakeConsole().contains(u"Debug.SetNextStatement (\"main.c:40\");"_s));
    QTRY_VERIFY(m_S.Source().MarksOfRow(m_S.Editor().RowOfLine(LINE_INIT)) & SIDE_BAR_PC);
    // The same of an instruction.
    m_S.GoTo(LINE_SIDE);
    m_S.Press(Qt::Key_Plus, Qt::ControlModifier);
    const int Row = m_S.Editor().RowOfLine(LINE_SIDE) + 2;
    const U32 Addr = m_S.Editor().Rows().AddrOfRow(Row);
    m_S.Editor().SetCursorPos({0, Row});
    m_S.Press(Qt::Key_F10, Qt::ControlModifier);
    QVERIFY(HaltsWith([&] { return m_S.Pc() == Addr; }));
    QTRY_VERIFY(m_S.Source().MarksOfRow(Row) & SIDE_BAR_PC);
    m_S.Editor().SetCursorPos({0, Row - 1});
    m_S.UseMenu(Row - 1, QString(), NUM_ACTIONS);
    m_S.Press(Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(HaltsWith([this] { return m_S.Pc() == m_Side; }));
    QVERIFY(m_S.TakeConsole().contains(u"Debug.SetNextPC (0x"_s));
    m_S.Press(Qt::Key_Minus, Qt::AltModifier);
  }

  void theCursorFindsItsWay() {
    m_S.Source().CloseAll();
    m_S.Source().Open(m_S.Path("traffic.c"));
    m_S.Press(Qt::Key_P, Qt::ControlModifier);
    QVERIFY(m_S.Source().ActiveFile().endsWith(u"main.c"_s));
    QCOMPARE(static_cast<U32>(m_S.Source().CursorLine()), ELFAPI_GetLastSrcLoc(m_S.Pc()).Line);
    WhenModal([](QWidget* pDialog) { TypeOver(pDialog->findChild<QLineEdit*>(), u"12"_s); });
    m_S.Press(Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(m_S.Source().CursorLine(), 12);
    m_S.ClickWord(m_S.Editor().RowOfLine(LINE_INIT), u"main_street"_s);
    for (int i = 0; i < 2; ++i) m_S.ClickWord(m_S.Editor().RowOfLine(LINE_LAST), u"last"_s);
    m_S.Press(Qt::Key_Tab, Qt::ControlModifier);
    QVERIFY(m_S.Source().ActiveFile().endsWith(u"traffic.c"_s));
    m_S.ClickWord(m_S.Editor().RowOfLine(17), u"traffic_init"_s);
    const std::pair<Qt::Key, const char*> Ways[] = {{Qt::Key_Left, "main.c:44"},
                                                    {Qt::Key_Left, "main.c:40"},
                                                    {Qt::Key_Left, "traffic.c:17"},
                                                    {Qt::Key_Right, "main.c:40"}};
    for (const auto& [Key, sPlace] : Ways) {
      m_S.Press(Key, Qt::AltModifier);
      QCOMPARE(QFileInfo(m_S.Source().ActiveFile()).fileName() + u':' + QString::number(m_S.Source().CursorLine()),
               QLatin1String(sPlace));
    }
    // A word that was clicked is what View.Source looks for; the search under the cursor goes around.
    m_S.ClickWord(m_S.Editor().RowOfLine(LINE_INIT), u"traffic_init"_s);
    m_S.Press(Qt::Key_F3, Qt::ControlModifier);
    QCOMPARE(m_S.Source().CursorLine(), 41);
    m_S.Press(Qt::Key_U, Qt::ControlModifier);
    QVERIFY(m_S.TakeConsole().contains(u"View.Source (\"traffic_init\");"_s));
    QVERIFY(m_S.Source().ActiveFile().endsWith(u"traffic.c"_s));
    QCOMPARE(m_S.Source().CursorLine(), 17);
  }

  // F11 is held down. Each halt that is told is drawn once, and a step that another one has overtaken is not told.
  void aHeldKeyStepsSmoothly() {
    struct CHaltCounter : public CDeviceEventListener {
      void OnDeviceStepped(U32) override { ++NumHalts; }
      int NumHalts = 0;
    } Counter;
    const auto pNumDrawn = std::make_shared<int>(0);
    m_S.Source().SetReturnAddrs([pNumDrawn] {
      ++*pNumDrawn;
      return QAddrList();
    });
    U32 End = 0;
    for (const bool bHeld : {false, true}) {
      m_S.Source().Open(m_S.Path("traffic.c"));
      PerformAction(ACTION_DEBUG_RESET);
      QVERIFY(HaltsWith([this] { return m_S.Pc() == m_S.AddrOf("main.c:38"); }));
      QVERIFY(m_S.Source().ActiveFile().endsWith(u"main.c"_s));
      *pNumDrawn = Counter.NumHalts = 0;
      for (int i = 0; i < NUM_STEPS; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F11);
        if (!bHeld) QTRY_COMPARE_WITH_TIMEOUT(Counter.NumHalts, i + 1, FRAME_WAIT_MS);
      }
      m_S.Settle();
      QVERIFY(Counter.NumHalts > 0 && Counter.NumHalts <= NUM_STEPS);
      QCOMPARE(*pNumDrawn, Counter.NumHalts);
      QCOMPARE(static_cast<U32>(m_S.Source().CursorLine()), ELFAPI_GetLastSrcLoc(m_S.Pc()).Line);
      if (!bHeld) End = m_S.Pc();
      QCOMPARE(m_S.Pc(), End);
    }
    m_S.Source().SetReturnAddrs({});
  }

  void preferencesByTheirRows() {
    const bool bLocked = GetAction(ACTION_SRC_LOCK_HEADER_BAR)->isChecked();
    PerformAction(ACTION_SRC_LOCK_HEADER_BAR);
    QCOMPARE(GetAction(ACTION_SRC_LOCK_HEADER_BAR)->isChecked(), !bLocked);
    m_S.Press(Qt::Key_E, Qt::ControlModifier);
    QVERIFY(m_S.Source().GetSideBar().AreCountersShown() && GetAction(ACTION_SRC_SHOW_CODE_PROFILE)->isChecked());
    QVERIFY(m_S.Source().GetUserConfigStr().contains(u"ExecCountersShown=1"_s));
    m_S.Press(Qt::Key_E, Qt::ControlModifier);
    QVERIFY(!m_S.Source().GetSideBar().AreCountersShown());
    const int Row = m_S.Editor().RowOfLine(LINE_SIDE) + 1;
    m_S.GoTo(LINE_SIDE);
    m_S.Press(Qt::Key_Plus, Qt::ControlModifier);
    for (const int NumBlanks : {0, 1}) {
      PerformAction(ACTION_EDIT_PREFERENCE, u"PREF_SHOW_HEX_BLOCKS"_s, NumBlanks);
      QCOMPARE(m_S.Editor().Rows().RowText(Row).indexOf(u' '), NumBlanks ? 4 : 8);
    }
    m_S.Press(Qt::Key_Minus, Qt::AltModifier);
  }

  void allCanBeClosed() {
    m_S.Press(Qt::Key_F4, Qt::ControlModifier | Qt::AltModifier);
    QVERIFY(m_S.Source().IsEmpty() && m_S.TakeConsole().contains(u"File.CloseAll();"_s));
    QCOMPARE(m_S.Breakpoints(), QString());
  }

private:
  CSourceSession m_S;
  CMainWindow* m_pWindow = nullptr;
  U32 m_Init = 0, m_Side = 0;
};

QTEST_MAIN(CSourceViewTest)
#include "source_view_test.moc"
