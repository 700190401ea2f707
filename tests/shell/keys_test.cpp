// Hot keys, by key events.

#include <QLineEdit>
#include <QMenuBar>

#include "frame.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_enable.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/action_link.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

namespace {

const ACTION_STATE IDLE = {};
const ACTION_STATE RUNNING = {.Connected = true};
// Everything that a rule may ask for; the session's rows have states of their own.
const ACTION_STATE BUSY = {.Connected = true,
                           .Halted = true,
                           .ProjectOpen = true,
                           .ProjectModified = true,
                           .DocumentOpen = true,
                           .ActiveDocumentModified = true,
                           .AnyDocumentModified = true,
                           .HasBreakpoint = true,
                           .HasDataBreakpoint = true};

// Rows that only an argument enables, which a window offers.
bool NeedsArgument(U32 ID) {
  const ACTION_STATE State;
  return HasEnableRule(ID) && !EvaluateEnableRule(ID, State, false).GuiEnabled &&
         EvaluateEnableRule(ID, State, true).GuiEnabled;
}

}  // namespace

class CKeysTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  // Rows only note that they were reached: what they do is tested elsewhere.
  void initTestCase() {
    QVERIFY(m_pWindow = StartFrame());
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
      if (IsServedByHandler(ID)) RecordRow(ID);
    }
  }

  void init() {
    QApplication::setActiveWindow(m_pWindow);
    m_pWindow->Source().setFocus();
    m_Hits.clear();
  }

  void everyGlobalKeyReachesItsRow() {
    QMap<QString, QList<U32>> Rows;
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
      if (IsServedByHandler(ID)) Rows[GetHotkey(ID)] << ID;
    }
    for (const auto& [sKey, IDs] : Rows.asKeyValueRange()) {
      if (sKey.isEmpty() || IDs.size() > 1 || QKeySequence(sKey) == QKeySequence(u"Shift+Alt+S"_s)) continue;
      init();
      if (NeedsArgument(IDs[0])) SetActionArgs(IDs[0], QStringList{u"main"_s});
      for (const ACTION_STATE& State : {BUSY, IDLE, RUNNING}) {
        ::UpdateActions(State);
        if (IsActionEnabled(IDs[0], true)) break;
      }
      // The others are their window's business, which has nothing to show here.
      if (!HasEnableRule(IDs[0])) GetAction(IDs[0])->setEnabled(true);
      Press(sKey);
      QVERIFY2(m_Hits == IDs, qPrintable(sKey));
    }
  }

  void alternatesReachTheSameRows() {
    const std::pair<QString, U32> Rows[] = {{u"Ctrl+="_s, ACTION_SRC_EXPAND_LINE},
                                            {u"Alt+="_s, ACTION_SRC_EXPAND_ALL_LINES},
                                            {u"="_s, ACTION_TIMELINE_ZOOM_IN},
                                            {u"F6"_s, ACTION_DEBUG_HALT}};
    QList<U32> Expected;
    for (const auto& [sKey, ID] : Rows) {
      RecordRow(ID);
      ::UpdateActions(RUNNING);
      if (!HasEnableRule(ID)) GetAction(ID)->setEnabled(true);
      Press(sKey);
      QCOMPARE(m_Hits, Expected << ID);
      if (ID == ACTION_TIMELINE_ZOOM_IN) UnregisterActionHandler(ID);
    }
  }

  // Of the actions that every window has, the focused window's own; the row itself belongs to one window only.
  void anAlternateOfAWindowActsInThatWindow() {
    const CWindow& Console = m_pWindow->Console();
    const CWindow& Web = *m_pWindow->FindWindow(u"V-Node Web Control"_s, false);
    QSignalSpy OfConsole(OwnAction(Console, ACTION_WIN_ADD), &QAction::triggered);
    QSignalSpy OfWeb(OwnAction(Web, ACTION_WIN_ADD), &QAction::triggered);
    Press(u"Alt+="_s);
    QCOMPARE(OfConsole.count() + OfWeb.count(), 0);
    m_pWindow->Console().FocusInput();
    Press(u"Alt+="_s);
    QCOMPARE(OfConsole.count(), 1);
    QCOMPARE(OfWeb.count(), 0);
  }

  void keysGoToTheSource() {
    for (const QString& sKey : {u"Shift+Alt+S"_s, u"Esc"_s}) {
      m_pWindow->Console().FocusInput();
      QVERIFY(m_pWindow->Console().HasFocus());
      m_pWindow->Source().SetActive(false);
      Press(sKey);
      QVERIFY2(m_pWindow->Source().HasFocus(), qPrintable(sKey));
      QCOMPARE(m_pWindow->Source().IsActive(), sKey != u"Esc"_s);
    }
  }

  void escapeStaysWhereItIsNeeded() {
    QMenu Menu(m_pWindow);
    Menu.addAction(u"Entry"_s);
    QDialog Modal(m_pWindow), Other(m_pWindow);
    Modal.setModal(true);
    QLineEdit Limited(&m_pWindow->Console());
    Limited.setMaxLength(8);
    for (QWidget* const pTarget : std::initializer_list<QWidget*>{&Menu, &Modal, &Other, &Limited}) {
      m_pWindow->Console().FocusInput();
      pTarget->show();
      pTarget->setFocus();
      QTRY_VERIFY(pTarget->isVisible());
      QTest::keyClick(pTarget, Qt::Key_Escape);
      QApplication::setActiveWindow(m_pWindow);
      QVERIFY2(!m_pWindow->Source().HasFocus(), pTarget->metaObject()->className());
      pTarget->hide();
    }
  }

  void cleanupTestCase() { m_pWindow->close(); }

private:
  void Press(const QString& sKey) {
    const QKeyCombination Key = QKeySequence(sKey)[0];
    QTest::keyClick(QApplication::focusWidget(), Key.key(), Key.keyboardModifiers());
  }
  static QAction* OwnAction(const CWindow& Window, U32 ID) {
    return Window.findChild<QAction*>(GetActionInfo(ID).sObjectName, Qt::FindDirectChildrenOnly);
  }
  void RecordRow(U32 ID) {
    RegisterActionHandler(ID, [this, ID] { m_Hits << ID; });
  }

  CMainWindow* m_pWindow = nullptr;
  QList<U32> m_Hits;
};

QTEST_MAIN(CKeysTest)
#include "keys_test.moc"
