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
    ACTION_FILE_CLOSE, ACTION_FILE_SAVE,                ACTION_FILE_SAVE_PROJ_AS,
    ACTION_WINDOW_CLOSE,
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
  void initTestCase() { QVERIFY(m_pWindow = StartFrame()); }

  void everyRowIsServedOrListed() {
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
      QVERIFY2(!GetAction(ID) || !IsToCome(ID), qPrintable(GetActionInfo(ID).sObjectName + u" is served now"_s));
      QVERIFY2(GetAction(ID) || IsToCome(ID), qPrintable(u"nothing serves "_s + GetActionInfo(ID).sObjectName));
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

  void commandsCountTheirArguments() {
    for (const U32 ID : GetCommandIDs()) {
      if (GetAction(ID) == nullptr) continue;
      // The rules of the present state may refuse a command before its handler sees the arguments.
      SetActionAccepted(ID, true);
      const bool bOptional = std::ranges::find(ARGUMENTS_OPTIONAL, ID) != std::end(ARGUMENTS_OPTIONAL);
      // Windows add an argument of their own that no prototype tells of.
      QList<int> Counts = {GetParamCount(ID) + (ID == ACTION_EDIT_PREFERENCE ? 2 : 1)};
      if (GetParamCount(ID) > 0 && !bOptional) Counts << 0;
      for (const int NumArgs : Counts) {
        const QString sCommand = GetCommandName(ID) + u'(' + QStringList(NumArgs, u"1"_s).join(u',') + u')';
        QVERIFY2(ExecuteCommand(sCommand) == COMMAND_RAN && GetLastCommand().ActionID == ID, qPrintable(sCommand));
        QVERIFY2(GetLastCommand().sError == u"wrong parameter count"_s, qPrintable(sCommand));
      }
    }
  }

  void cleanupTestCase() { m_pWindow->close(); }

private:
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CRowsTest)
#include "rows_test.moc"
