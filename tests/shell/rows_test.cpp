// Every row of the action table in the running main window.

#include <QMenuBar>

#include "frame.h"
#include "rows_to_come.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_info.h"
#include "shell/actions/command_console.h"

using namespace Qt::StringLiterals;

namespace {

// Commands that ask for what is missing, take what is active instead, or can do without.
constexpr U32 ARGUMENTS_OPTIONAL[] = {
    ACTION_FILE_OPEN,  ACTION_FILE_OPEN_RECENT_PROGRAM, ACTION_FILE_LOAD,
    ACTION_FILE_CLOSE, ACTION_FILE_SAVE_PROJ_AS,        ACTION_WINDOW_CLOSE,
};

bool IsToCome(U32 ID) {
  return std::ranges::any_of(ROWS_TO_COME_TABLE,
                             [ID](const auto& Row) { return ID >= Row.FirstID && ID <= Row.LastID; });
}

void CollectMenu(const QList<QAction*>& Actions, QSet<const QAction*>* pFound) {
  for (const QAction* const pAction : Actions) {
    pFound->insert(pAction);
    if (pAction->menu()) CollectMenu(pAction->menu()->actions(), pFound);
  }
}

}  // namespace

class CRowsTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    m_pWindow = StartFrame();
    QVERIFY(m_pWindow);
  }

  void everyRowIsServedOrListed_data() {
    QTest::addColumn<U32>("ID");
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) QTest::addRow("%s", qPrintable(GetActionInfo(ID).sObjectName)) << ID;
  }

  void everyRowIsServedOrListed() {
    QFETCH(U32, ID);
    QVERIFY2(!GetAction(ID) || !IsToCome(ID), "the row is served now: take it from the list");
    QVERIFY2(GetAction(ID) || IsToCome(ID), "nothing serves this row");
  }

  void everyServedRowHasItsTexts() {
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
      const QAction* const pAction = GetAction(ID);
      if (pAction == nullptr) continue;
      const ACTION_INFO Info = GetActionInfo(ID);
      QVERIFY2(!pAction->statusTip().isEmpty(), qPrintable(Info.sObjectName));
      QVERIFY2(!pAction->toolTip().isEmpty(), qPrintable(Info.sObjectName));
      QVERIFY2(pAction->shortcut().isEmpty() || pAction->toolTip().contains(pAction->shortcut().toString()),
               qPrintable(pAction->toolTip()));
      QVERIFY2(Info.sHotkey.isEmpty() || pAction->shortcut() == QKeySequence(Info.sHotkey),
               qPrintable(Info.sObjectName + u' ' + pAction->shortcut().toString()));
    }
  }

  // By a menu entry, by a key, or from a menu of its own window.
  void everyServedRowWithoutCommandIsReachable() {
    QSet<const QAction*> InMenus;
    CollectMenu(m_pWindow->menuBar()->actions(), &InMenus);
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
      const QAction* const pAction = GetAction(ID);
      if (pAction == nullptr || !GetPrototype(ID).isEmpty()) continue;
      const bool bOfWindow = qobject_cast<const CWindow*>(pAction->parent()) != nullptr;
      QVERIFY2(InMenus.contains(pAction) || !pAction->shortcut().isEmpty() || bOfWindow,
               qPrintable(pAction->objectName()));
    }
  }

  void commandsCountTheirArguments_data() {
    QTest::addColumn<U32>("ID");
    for (const U32 ID : GetCommandIDs()) {
      if (GetAction(ID)) QTest::addRow("%s", qPrintable(GetCommandName(ID))) << ID;
    }
  }

  void commandsCountTheirArguments() {
    QFETCH(U32, ID);
    const QString sName = GetCommandName(ID);
    // The rules of the present state may refuse a command before its handler sees the arguments.
    SetActionAccepted(ID, true);
    const bool bOptional = std::ranges::find(ARGUMENTS_OPTIONAL, ID) != std::end(ARGUMENTS_OPTIONAL);
    // Windows add an argument of their own that no prototype tells of.
    QList<int> Counts = {GetParamCount(ID) + (ID == ACTION_EDIT_PREFERENCE ? 2 : 1)};
    if (GetParamCount(ID) > 0 && !bOptional) Counts << 0;
    for (const int NumArgs : Counts) {
      const QStringList Args(NumArgs, u"1"_s);
      QCOMPARE(ExecuteCommand(sName + u'(' + Args.join(u',') + u')'), COMMAND_RAN);
      QCOMPARE(GetLastCommand().ActionID, ID);
      QCOMPARE(GetLastCommand().sError, u"wrong parameter count"_s);
    }
  }

  void cleanupTestCase() { m_pWindow->close(); }

private:
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CRowsTest)
#include "rows_test.moc"
