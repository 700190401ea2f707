// Breakpoints by mouse and keys: the window "Breakpoints", the dialogs, and keys in the source view.

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QHeaderView>
#include <QMenu>
#include <QTemporaryDir>

#include "device/breakpoints/windows/breakpoint_cells.h"
#include "device/breakpoints/windows/breakpoint_window.h"
#include "project/project.h"
#include "session.h"
#include "shell/settings/color_ids.h"
#include "tests/common/write_file.h"
#include "ui/table/sort_filter.h"
#include "ui/table/tree_view.h"

class CBreakpointWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pWindow = StartWithProgram());
    m_pBreaks = m_pWindow->findChild<CBreakpointWindow*>();
    QVERIFY(m_pBreaks);
    m_pTester =
        new QAbstractItemModelTester(m_pBreaks->Model(), QAbstractItemModelTester::FailureReportingMode::QtTest, this);
    PerformAction(ACTION_WINDOW_SHOW, u"Breakpoints"_s);
  }
  void cleanupTestCase() { m_pWindow->close(); }
  void init() {
    CBreakpointManager::Get().ClearAll();
    Settle();
    TakeConsole(*m_pWindow);
  }

  void showsWhatIsSet() {
    QVERIFY(m_pBreaks->IsEmpty());
    QCOMPARE(m_pBreaks->GetEmptyWindowText(DEBUG_STATE_NONE), u"No breakpoints set"_s);
    SetSome();
    PerformAction(ACTION_BREAK_DISABLE, u"0x7E"_s);
    PerformAction(ACTION_BREAK_EDIT, u"lines.cpp:56"_s, u"pass_count > 3"_s, 1, 1000, u"idle"_s, QString(), QString());
    Settle();
    m_pBreaks->ExpandAll();
    const QString sText = m_pBreaks->DumpText().remove(QChar(0x2008));
    for (const char* const sRow :
         {"State\tLocation\tPermitted Impl.\tActual Impl.\tContext\tTask Filter\tSkip #\tCondition",
          "\nOn\tlines.cpp:56\tAny\t\tmain\tidle\t1000\tpass_count > 3 (on change)",
          "\n  On\tDerived 0x00000158\tAny\t\tmain\tidle\t1000\t",
          "\n<multiple>\tlines.cpp:29\tAny\t\tmix in first, mix in second\t\t\t",
          "\n  Disabled\tDerived 0x0000007E\tAny\t\tmix in second\t\t\t",
          "\nOn\t0x00000100\tSoft\t\tmain, lines.cpp:51\t\t\t"}) {
      QVERIFY2(sText.contains(QLatin1String(sRow)), qPrintable(QLatin1String(sRow) + u"\nis not in\n"_s + sText));
    }
    const QModelIndex Derived = Find(u"Derived 0x0000007E"_s);
    QVERIFY(Derived.data(Qt::ForegroundRole).isValid());
    QVERIFY(!Find(u"Derived 0x00000090"_s).data(Qt::ForegroundRole).isValid());
  }

  // Selection and expansion are those of the user while rows come and go.
  void keepsItsPlaceWhileRowsChange() {
    SetSome();
    m_pBreaks->ExpandAll();
    ClickOn(u"Derived 0x00000090"_s);
    PerformAction(ACTION_BREAK_CLEAR_ON_SRC, u"lines.cpp:56"_s);
    PerformAction(ACTION_BREAK_SET_ON_SRC, u"lines.cpp:43"_s);
    PerformAction(ACTION_BREAK_DISABLE, u"0x90"_s);
    Settle();
    const QModelIndex Current = m_pBreaks->View()->currentIndex();
    QCOMPARE(Current.siblingAtColumn(BREAKPOINT_LOCATION_COLUMN).data().toString(), u"Derived 0x00000090"_s);
    QVERIFY(m_pBreaks->View()->isExpanded(Current.parent()));
  }

  // Row, key, what the console says.
  void keysActOnTheCurrentRow() {
    const std::tuple<const char*, Qt::Key, Qt::KeyboardModifiers, const char*> aSteps[] = {
        {"lines.cpp:29", Qt::Key_F9, Qt::ShiftModifier, "Break.DisableOnSrc (\"lines.cpp:29\");"},
        {"lines.cpp:29", Qt::Key_F9, Qt::ShiftModifier, "Break.EnableOnSrc (\"lines.cpp:29\");"},
        {"Derived 0x0000007E", Qt::Key_F9, Qt::ShiftModifier, "Break.Disable (0x0000007E);"},
        {"Derived 0x0000007E", Qt::Key_F9, Qt::NoModifier, nullptr},  // not alone
        {"Derived 0x0000007E", Qt::Key_Delete, Qt::NoModifier, nullptr},
        {"0x00000100", Qt::Key_Delete, Qt::NoModifier, "Break.Clear (0x00000100);"},
        {"lines.cpp:29", Qt::Key_F9, Qt::NoModifier, "Break.ClearOnSrc (\"lines.cpp:29\");"},
        {"lines.cpp:56", Qt::Key_Delete, Qt::AltModifier, "Break.ClearAll();"},
    };
    SetSome();
    m_pBreaks->ExpandAll();
    for (const auto& [sLocation, Key, Modifiers, sEcho] : aSteps) {
      ClickOn(QLatin1String(sLocation));
      TakeConsole(*m_pWindow);
      QTest::keyClick(m_pBreaks->View(), Key, Modifiers);
      Settle();
      const QString sConsole = TakeConsole(*m_pWindow);
      QVERIFY2(sEcho ? sConsole.contains(QLatin1String(sEcho)) : sConsole.isEmpty(), qPrintable(sConsole));
    }
    QVERIFY(m_pBreaks->IsEmpty());
    QVERIFY(DeviceList().isEmpty());
  }

  void aClickShowsThePlace() {
    SetSome();
    m_pBreaks->ExpandAll();
    for (const auto& [sLocation, Line] : {std::pair{u"lines.cpp:29"_s, 29},
                                          {u"Derived 0x00000158"_s, 56},
                                          {u"0x00000100"_s, 51},
                                          {u"lines.cpp:56"_s, 56}}) {
      ClickOn(sLocation);
      QCOMPARE(m_pWindow->Source().CursorLine(), Line);
    }
    // and the other way round
    Q_EMIT m_pWindow->Source().SrcLocSelected(Line(29), 0);
    QCOMPARE(CurrentLocation(), u"lines.cpp:29"_s);
    Q_EMIT m_pWindow->Source().InstrSelected(0x158);
    QCOMPARE(CurrentLocation(), u"Derived 0x00000158"_s);
  }

  // A click into the cell opens the list.
  void theTypeIsChosenFromAList() {
    SetSome();
    m_pBreaks->ExpandAll();
    for (const auto& [sLocation, sType, sWanted] :
         {std::tuple{u"lines.cpp:56"_s, u"Hard"_s, "158 1 1"}, {u"Derived 0x0000007E"_s, u"Soft"_s, "7e 1 2"}}) {
      WhenPopup([sType = sType](QWidget* pPopup) {
        auto* const pMenu = qobject_cast<QMenu*>(pPopup);
        QVERIFY(pMenu);
        QCOMPARE(pMenu->actions().size(), 3);
        for (QAction* const pAction : pMenu->actions()) {
          if (pAction->text() == sType)
            QTest::mouseClick(pMenu, Qt::LeftButton, {}, pMenu->actionGeometry(pAction).center());
        }
      });
      ClickOn(sLocation, BREAKPOINT_PERMITTED_IMP);
      QVERIFY2(DeviceList().contains(QLatin1String(sWanted)), qPrintable(DeviceList().join(u", "_s)));
    }
    QCOMPARE(Find(u"lines.cpp:29"_s).siblingAtColumn(BREAKPOINT_PERMITTED_IMP).data().toString(), u"<multiple>"_s);
  }

  void itsMenuAndItsDialog() {
    SetSome();
    m_pBreaks->ExpandAll();
    QStringList Entries;
    ClickOn(u"Derived 0x0000007E"_s);
    WhenPopup([&](QWidget* pPopup) {
      for (const QAction* const pAction : pPopup->actions()) {
        if (pAction->isVisible() && !pAction->isSeparator()) Entries << pAction->text().remove('&');
      }
    });
    m_pBreaks->ShowContextMenu(m_pBreaks->View()->viewport()->mapToGlobal(CellOf(u"Derived 0x0000007E"_s).center()));
    QCOMPARE(Entries.mid(0, 6), (QStringList{u"Disable Breakpoint"_s, u"Properties..."_s, u"Permitted Implementation"_s,
                                             u"Show Source"_s, u"Set Breakpoint..."_s, u"Clear All Breakpoints"_s}));
    WhenModal([](QWidget* pDialog) {
      QCOMPARE(pDialog->windowTitle(), u"Derived Breakpoint"_s);
      QTest::keyClicks(pDialog->findChild<QComboBox*>("PopupMessage")->lineEdit(), "one of three");
      QTest::keyClick(pDialog, Qt::Key_Return);
    });
    QTest::keyClick(m_pBreaks->View(), Qt::Key_F8);
    Settle();
    QVERIFY(TakeConsole(*m_pWindow).contains(u"Break.Edit (\"0x0000007E\", \"\", "_s));
    CBreakpointProps Props;
    QVERIFY(CBreakpointManager::Get().GetProps({{}, 0x7E}, Props) && Props.ExtraActionMsgBoxText == u"one of three"_s);
    QVERIFY(CBreakpointManager::Get().GetProps({{}, 0x90}, Props) && Props.ExtraActionMsgBoxText.isEmpty());
  }

  // A line with one of its addresses off shows a partial tick: what is chosen, and what else is shown, is what becomes
  // of all of them.
  void theDialogAppliesWhatIsChosen() {
    for (const Qt::CheckState Wanted : {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked}) {
      SetSome();
      PerformAction(ACTION_BREAK_DISABLE, u"0x0000007E"_s);
      const CBreakpointProps Rare = {{}, {}, false, 3'000'000'000, {}, {}, {}};
      CBreakpointManager::Get().Edit({Line(29), INVALID_ADDR}, Rare);
      CBreakpointManager::Get().Edit({{}, 0x90}, {});
      Settle();
      ClickOn(u"lines.cpp:29"_s);
      TakeConsole(*m_pWindow);
      WhenModal([Wanted](QWidget* pDialog) {
        auto* const pEnabled = pDialog->findChild<QCheckBox*>("Enabled");
        QCOMPARE(pEnabled->checkState(), Qt::PartiallyChecked);
        pEnabled->setCheckState(Wanted);
        QTest::keyClick(pDialog, Qt::Key_Return);
      });
      QTest::keyClick(m_pBreaks->View(), Qt::Key_F8);
      Settle();
      const QString sConsole = TakeConsole(*m_pWindow);
      QCOMPARE(sConsole.contains(u"Break.DisableOnSrc ("_s), Wanted == Qt::Unchecked);
      QCOMPARE(sConsole.contains(u"Break.EnableOnSrc ("_s), Wanted == Qt::Checked);
      CBreakpointProps Props;
      QVERIFY(CBreakpointManager::Get().GetProps({{}, 0x90}, Props) && Props.IsSame(Rare));
      PerformAction(ACTION_BREAK_CLEAR_ALL);
      Settle();
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
        {"lines.cpp:3", "Setting breakpoint on next code line lines.cpp:12 instead."},
        {"add", "Break.ClearOnSrc (\"lines.cpp:12\");"},  // a function, though its name is a number
        {"0xadd", "Break.Set (0x00000ADC);"},
        {"adc", "Break.Clear (0x00000ADC);"},
        {"main", "Break.SetOnSrc (\"lines.cpp:47\");"},
        {"lines.cpp", "invalid parameter: \"lines.cpp\""},
        {"nobody", "invalid parameter: \"nobody\""},
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

  // What the probe has made of them; the simulated core has six comparators.
  void tellsTheImplementationInASession() {
    SetSome();
    PerformAction(ACTION_BREAK_SET_EX, u"0x20000100"_s, u"BP_TYPE_SOFT"_s);
    PerformAction(ACTION_BREAK_DISABLE_ON_SRC, u"lines.cpp:56"_s);
    const auto Implementation = [&](const char* sLocation) {
      return Find(QLatin1String(sLocation)).siblingAtColumn(BREAKPOINT_ACTUAL_IMP).data().toString();
    };
    PerformAction(ACTION_DEBUG_START);
    QVERIFY2(Halts(), qPrintable(ConsoleText(*m_pWindow)));
    QTRY_COMPARE(Implementation("lines.cpp:29"), u"Hard"_s);
    QCOMPARE(Implementation("0x20000100"), u"Soft (RAM)"_s);
    QCOMPARE(Implementation("0x00000100"), u"Soft (Flash)"_s);
    QCOMPARE(Implementation("lines.cpp:56"), QString());
    PerformAction(ACTION_BREAK_SET_TYPE, u"0x4C"_s, u"BP_TYPE_SOFT"_s);
    m_pBreaks->ExpandAll();
    QTRY_COMPARE(Implementation("lines.cpp:29"), u"<multiple>"_s);
    QCOMPARE(Implementation("Derived 0x0000004C"), u"Soft (Flash)"_s);
    PerformAction(ACTION_DEBUG_STOP);
    QTRY_COMPARE(Implementation("lines.cpp:29"), QString());
  }

  // The loop takes all six comparators.
  void whatCouldNotBeSetSaysSoAndCanBeTriedAgain() {
    PerformAction(ACTION_DEBUG_START);
    QVERIFY2(Halts(), qPrintable(ConsoleText(*m_pWindow)));
    for (const QString& sLine : {u"lines.cpp:43"_s, u"lines.cpp:56"_s})
      PerformAction(ACTION_BREAK_SET_ON_SRC_EX, sLine, u"BP_TYPE_HARD"_s);
    const auto State = [&] { return Find(u"lines.cpp:56"_s).siblingAtColumn(BREAKPOINT_STATE).data().toString(); };
    QTRY_COMPARE(State(), u"Off"_s);
    PerformAction(ACTION_BREAK_CLEAR_ON_SRC, u"lines.cpp:43"_s);
    ClickOn(u"lines.cpp:56"_s);
    QTest::keyClick(m_pBreaks->View(), Qt::Key_F9, Qt::ShiftModifier);
    QTRY_COMPARE(State(), u"On"_s);
    QCOMPARE(DeviceList(), QStringList{u"158 1 1"_s});
    PerformAction(ACTION_DEBUG_STOP);
    Settle();
  }

  // The last: it opens other projects.
  void theUserFileKeepsThem() {
    QTemporaryDir Dir;
    qputenv("XDG_CONFIG_HOME", Dir.path().toUtf8());
    SetSettingsInMemory(false);
    const auto Open = [&](const QString& sName) {
      WriteFile(Dir.filePath(sName),
                "void OnProjectLoad (void) {\n  Project.SetDevice (\"CMSDK_CM4\");\n"
                "  File.Open (\"" VEXOR_SOURCE_DIR "/tests/breakpoints/data/lines_O0.elf\");\n}\n");
      PerformAction(ACTION_FILE_OPEN, Dir.filePath(sName));
      QVERIFY(QTest::qWaitFor([&] { return m_pWindow->IsIdle() && CProject::Get().GetFileName().endsWith(sName); }));
      Settle();
    };
    Open(u"one.vdebug"_s);
    QVERIFY(m_pBreaks->IsEmpty());
    SetSome();
    PerformAction(ACTION_BREAK_DISABLE, u"0x7E"_s);
    const QString sHard = QString::fromUtf8("a == \"x,y\" // #% =\\t\n[\\] ü€");
    const CBreakpointProps Hard = {sHard, u"t"_s, true, 7, sHard, u"c, d"_s, {}};
    QVERIFY(CBreakpointManager::Get().Edit({Line(56), INVALID_ADDR}, Hard));
    PerformAction(ACTION_BREAK_EDIT, u"0x90"_s, QString(), 0, 3, QString(), QString(), QString());
    Settle();
    const QString sBefore = m_pBreaks->DumpText();
    Open(u"other.vdebug"_s);
    QVERIFY2(m_pBreaks->IsEmpty(), qPrintable(m_pBreaks->DumpText()));
    QVERIFY(DeviceList().isEmpty());
    Open(u"one.vdebug"_s);
    QCOMPARE(m_pBreaks->DumpText(), sBefore);
    CBreakpointProps Props;
    QVERIFY(CBreakpointManager::Get().GetProps({Line(56), INVALID_ADDR}, Props) && Props.IsSame(Hard));
    SetSettingsInMemory(true);
  }

private:
  // On a line with one address, on one with three, at an address; the model tester looks on.
  static void SetSome() {
    PerformAction(ACTION_BREAK_SET_ON_SRC, u"lines.cpp:56"_s);
    PerformAction(ACTION_BREAK_SET_ON_SRC, u"lines.cpp:29"_s);
    PerformAction(ACTION_BREAK_SET_EX, u"0x100"_s, u"BP_TYPE_SOFT"_s);
    Settle();
  }
  void Press(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) {
    m_pWindow->activateWindow();  // a dialog was in front
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    m_pWindow->Source().setFocus();
    QVERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Key, Modifiers);
    Settle();
  }
  QModelIndex Find(const QString& sLocation) const {
    const QAbstractItemModel* const pModel = m_pBreaks->Proxy();
    return pModel
        ->match(pModel->index(0, BREAKPOINT_LOCATION_COLUMN), Qt::DisplayRole, sLocation, 1,
                Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
  }
  QRect CellOf(const QString& sLocation, int Column = BREAKPOINT_LOCATION_COLUMN) const {
    const QModelIndex Index = Find(sLocation).siblingAtColumn(Column);
    m_pBreaks->View()->scrollTo(Index);
    return m_pBreaks->View()->visualRect(Index);
  }
  void ClickOn(const QString& sLocation, int Column = BREAKPOINT_LOCATION_COLUMN) {
    m_pWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    m_pBreaks->View()->setFocus();
    const QRect Cell = CellOf(sLocation, Column);
    QVERIFY2(Cell.isValid(), qPrintable(sLocation));
    QTest::mouseClick(m_pBreaks->View()->viewport(), Qt::LeftButton, {}, Cell.center());
    QCOMPARE(CurrentLocation(), sLocation);
  }
  QString CurrentLocation() const {
    return m_pBreaks->View()->currentIndex().siblingAtColumn(BREAKPOINT_LOCATION_COLUMN).data().toString();
  }

  CMainWindow* m_pWindow = nullptr;
  CBreakpointWindow* m_pBreaks = nullptr;
  QAbstractItemModelTester* m_pTester = nullptr;
};

QTEST_MAIN(CBreakpointWindowTest)
#include "breakpoint_window_test.moc"
