// Breakpoints by keys in the source view, and the dialogs.

#include "session.h"

class CBreakpointKeysTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { QVERIFY(m_pWindow = StartWithProgram()); }
  void cleanupTestCase() { m_pWindow->close(); }
  void init() {
    CBreakpointManager::Get().ClearAll();
    Settle();
    m_pWindow->Source().setFocus();
    TakeConsole(*m_pWindow);
  }

  void keysActOnTheLineOfTheCursor() {
    const struct {
      int Line;
      Qt::KeyboardModifiers Modifiers;
      QString sEcho;
      int NumEntries;
    } aSteps[] = {
        {LINE_INLINE, Qt::NoModifier, u"Break.SetOnSrc (\"lines.cpp:29\");"_s, 3},
        {LINE_PASS, Qt::ShiftModifier, {}, 3},  // nothing to disable
        {LINE_PASS, Qt::NoModifier, u"Break.SetOnSrc (\"lines.cpp:56\");"_s, 4},
        {LINE_PASS, Qt::ShiftModifier, u"Break.DisableOnSrc (\"lines.cpp:56\");"_s, 4},
        {LINE_PASS, Qt::ShiftModifier, u"Break.EnableOnSrc (\"lines.cpp:56\");"_s, 4},
        {LINE_PASS, Qt::NoModifier, u"Break.ClearOnSrc (\"lines.cpp:56\");"_s, 3},
        {1, Qt::NoModifier, u"Setting breakpoint on next code line lines.cpp:12 instead"_s, 5},
        {1, Qt::NoModifier, u"Break.ClearOnSrc (\"lines.cpp:12\");"_s, 3},
    };
    for (const auto& Step : aSteps) {
      QVERIFY(m_pWindow->Source().ShowLine(static_cast<U32>(Step.Line)));
      Press(Qt::Key_F9, Step.Modifiers);
      QCOMPARE(DeviceList().size(), Step.NumEntries);
      const QString sConsole = TakeConsole(*m_pWindow);
      QVERIFY2(Step.sEcho.isEmpty() ? sConsole.isEmpty() : sConsole.contains(Step.sEcho), qPrintable(sConsole));
    }
  }

  void theDialogEditsProperties() {
    m_pWindow->Source().ShowLine(LINE_INLINE);
    Press(Qt::Key_F9);
    WhenModal([](QWidget* pDialog) {
      QCOMPARE(pDialog->windowTitle(), u"Breakpoint Properties"_s);
      auto* const pHint = pDialog->findChild<QLabel*>("ConditionHint");
      QVERIFY(!pHint->isVisible());
      QVERIFY(!pDialog->findChild<QRadioButton*>("OnChange")->isEnabled());
      auto* const pCondition = pDialog->findChild<QComboBox*>("Condition");
      QTest::keyClicks(pCondition->lineEdit(), "pass_count > 3");
      QVERIFY(pHint->isVisible() && pHint->text().contains("every halt counts"));
      QTest::mouseClick(pDialog->findChild<QRadioButton*>("OnChange"), Qt::LeftButton, {}, QPoint(8, 8));
      auto* const pSkip = pDialog->findChild<QSpinBox*>("Skip");
      pSkip->setFocus();
      pSkip->selectAll();
      QTest::keyClicks(pSkip, "1000");
      QTest::keyClicks(pDialog->findChild<QComboBox*>("ConsoleMessage")->lineEdit(), "one, two");
      QTest::mouseClick(pDialog->findChild<QCheckBox*>("Enabled"), Qt::LeftButton, {}, QPoint(8, 8));
      QTest::keyClick(pDialog, Qt::Key_Return);
    });
    Press(Qt::Key_F8);
    const QString sConsole = TakeConsole(*m_pWindow);
    QVERIFY2(
        sConsole.contains(u"Break.Edit (\"lines.cpp:29\", \"pass_count > 3\", 1, 1000, \"\", \"one, two\", \"\");"_s) &&
            sConsole.contains(u"Break.DisableOnSrc (\"lines.cpp:29\");"_s),
        qPrintable(sConsole));
    QCOMPARE(DeviceList(), (QStringList{u"4c 3 0"_s, u"7e 3 0"_s, u"90 3 0"_s}));
    BP Entry;
    QVERIFY(CDevice::Get().Context().Breakpoints.GetAt(0x90, Entry) && Entry.bConditional);

    // Another breakpoint: what was entered last is offered, and not taken unasked.
    m_pWindow->Source().ShowLine(LINE_PASS);
    Press(Qt::Key_F9);
    TakeConsole(*m_pWindow);
    WhenModal([](QWidget* pDialog) {
      auto* const pCondition = pDialog->findChild<QComboBox*>("Condition");
      QCOMPARE(pCondition->currentText(), QString());
      QCOMPARE(pCondition->itemText(0), u"pass_count > 3"_s);
      QVERIFY(pDialog->findChild<QRadioButton*>("OnChange")->isChecked());
      QCOMPARE(pDialog->findChild<QComboBox*>("ConsoleMessage")->itemText(0), u"one, two"_s);
      QTest::keyClick(pDialog, Qt::Key_Return);
    });
    Press(Qt::Key_F8);
    QCOMPARE(TakeConsole(*m_pWindow), QString());
  }

  // The text, what it does, and what the dialog offers the next time.
  void theInputDialogSetsAndClears() {
    const std::pair<const char*, const char*> aSteps[] = {
        {"lines.cpp:56", "Break.SetOnSrc (\"lines.cpp:56\");"},
        {"lines.cpp:56", "Break.ClearOnSrc (\"lines.cpp:56\");"},
        {"loop", "Break.SetOnSrc (\"lines.cpp:41\");"},
        {"0x158", "Break.Set (0x00000158);"},
        {"158", "Break.Clear (0x00000158);"},
        {"nobody", "invalid parameter: \"nobody\""},
        {"lines.cpp:3", "Setting breakpoint on next code line lines.cpp:12 instead."},
    };
    QString sLast;
    for (const auto& [sText, sWanted] : aSteps) {
      WhenModal([&, sText = sText](QWidget* pDialog) {
        QCOMPARE(pDialog->windowTitle(), u"Set/Clear Breakpoint"_s);
        auto* const pLine = pDialog->findChild<QLineEdit*>();
        if (!sLast.isEmpty()) QCOMPARE(pLine->text(), sLast);
        TypeOver(pLine, QLatin1String(sText));
      });
      Press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
      const QString sConsole = TakeConsole(*m_pWindow);
      QVERIFY2(sConsole.contains(QLatin1String(sWanted)), qPrintable(sConsole));
      sLast = QLatin1String(sText);
      Settle();
    }
  }

  void aHaltShowsTheTextsOfItsBreakpoint() {
    m_pWindow->Source().ShowLine(LINE_PASS);
    Press(Qt::Key_F9);
    PerformAction(ACTION_BREAK_EDIT, u"lines.cpp:56"_s, QString(), 0, 1, QString(), u"passed"_s, u"look here"_s);
    PerformAction(ACTION_DEBUG_START);
    QVERIFY2(Halts(), qPrintable(ConsoleText(*m_pWindow)));
    TakeConsole(*m_pWindow);
    const QStringList Titles = BoxesOf(
        [] {
          PerformAction(ACTION_DEBUG_CONTINUE);
          QVERIFY(HaltsWith([] { return CDevice::Get().GetPC() == ADDR_PASS; }));
          QTest::qWait(50);
        },
        {QDialogButtonBox::Ok});
    QCOMPARE(Titles, QStringList{u"Breakpoint Triggered"_s});
    QVERIFY(TakeConsole(*m_pWindow).contains(u"passed"_s));
    PerformAction(ACTION_DEBUG_STOP);
    Settle();
  }

private:
  void Press(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) {
    m_pWindow->activateWindow();  // a dialog was in front
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    m_pWindow->Source().setFocus();
    QVERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Key, Modifiers);
    Settle();
  }

  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CBreakpointKeysTest)
#include "breakpoint_keys_test.moc"
