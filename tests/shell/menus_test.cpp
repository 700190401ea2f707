// The rows of the action table in the running main window: menu bar, tool bars, commands and the list of windows.

#include "shell/menus.h"

#include <QMenuBar>
#include <QToolButton>

#include "frame.h"
#include "rows_to_come.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/action_link.h"
#include "shell/actions/command_console.h"
#include "shell/look/look.h"
#include "shell/menu_table.h"
#include "tests/common/write_file.h"
#include "ui/dock_window.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

namespace {

void CheckMnemonics(const QString& sMenu, const QStringList& Texts) {
  QMap<QChar, QString> Taken;
  for (const QString& sText : Texts) {
    const qsizetype Pos = QString(sText).replace(u"&&"_s, u"++"_s).indexOf(u'&');
    if (Pos < 0) continue;
    const QString sOther = std::exchange(Taken[sText[Pos + 1].toLower()], sText);
    QVERIFY2(sOther.isNull(), qPrintable(u"%1: %2, %3"_s.arg(sMenu, sOther, sText)));
  }
}

// Of every entry that the finished program has, not only of those that are served today.
void CheckTable(const QString& sTitle, std::span<const MENU_ITEM> Items, QSet<U32>* pEntries) {
  QStringList Texts;
  for (const MENU_ITEM& Item : Items) {
    if (Item.sText) Texts << QLatin1String(Item.sText);
    if (Item.Kind == MENU_SUBMENU) CheckTable(sTitle + QLatin1String(Item.sText), Item.pSub->Items, pEntries);
    QVERIFY2(!Item.sIcon || !GetIcon(QLatin1String(Item.sIcon)).isNull(), Item.sIcon);
    if (Item.Kind != MENU_ACTION) continue;
    QVERIFY2(!pEntries->contains(Item.ActionID), Item.sText);
    *pEntries << Item.ActionID;
  }
  CheckMnemonics(sTitle, Texts);
}

void CheckSeparators(const QList<QAction*>& Actions, const QString& sWhere) {
  bool bBefore = true;
  for (const QAction* const pAction : Actions) {
    QVERIFY2(!(pAction->isSeparator() && bBefore), qPrintable(sWhere));
    bBefore = pAction->isSeparator();
  }
  QVERIFY2(Actions.isEmpty() || !bBefore, qPrintable(sWhere));
}

QAction* EntryNamed(const QMenu& Menu, const QString& sText) {
  for (QAction* const pAction : Menu.actions()) {
    if (QString(pAction->text()).remove(QLatin1Char('&')) == sText) return pAction;
  }
  return nullptr;
}

// Commands that ask for what is missing, take what is active instead, or can do without.
constexpr U32 ARGUMENTS_OPTIONAL[] = {
    ACTION_FILE_OPEN, ACTION_FILE_OPEN_RECENT_PROGRAM, ACTION_FILE_LOAD,    ACTION_FILE_CLOSE,
    ACTION_FILE_SAVE, ACTION_FILE_SAVE_PROJ_AS,        ACTION_WINDOW_CLOSE,
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

class CMenusTest : public QObject {
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

  void tablesHaveUniqueMnemonicsAndKnownIcons() {
    QSet<U32> Entries;
    QStringList Titles;
    for (const MENU_TABLE& Table : GetMenuTables()) {
      Titles << QLatin1String(Table.sTitle);
      CheckTable(Titles.last(), Table.Items, &Entries);
    }
    CheckMnemonics(u"menu bar"_s, Titles);
    for (U32 ID = ACTION_WINDOW_SHOW_REGISTERS; ID <= ACTION_WINDOW_SHOW_VNODE_WEB_CONTROL; ++ID) {
      QVERIFY2(Entries.contains(ID), qPrintable(QString::number(ID)));
    }
  }

  void menusHaveNoEmptyEntries() {
    for (const QAction* const pTop : m_pWindow->menuBar()->actions()) {
      const QList<QAction*> Actions = pTop->menu()->actions();
      CheckSeparators(Actions, pTop->text());
      QCOMPARE(pTop->isVisible(), !Actions.isEmpty());
      for (const QAction* const pAction : Actions) {
        QVERIFY2(pAction->isSeparator() || !pAction->text().isEmpty(), qPrintable(pTop->text()));
      }
    }
  }

  void toolBarsAreSwitchedByTheirEntries() {
    for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) {
      QToolBar* const pBar = m_pWindow->FindToolBar(QLatin1String(Row.sTitle));
      QVERIFY(pBar);
      QCOMPARE(pBar->isVisible(), Row.ShownFirst);
      QCOMPARE(pBar->height(), 26);
      CheckSeparators(pBar->actions(), pBar->windowTitle());
      QAction* const pToggle = GetAction(Row.ToggleID);
      for (const bool bShown : {!Row.ShownFirst, Row.ShownFirst}) {
        m_pWindow->Console().Clear();
        pToggle->trigger();
        QCOMPARE(pBar->isVisible(), bShown);
        QCOMPARE(pToggle->isChecked(), bShown);
        QCOMPARE(ConsoleText(*m_pWindow),
                 u"Toolbar.%1 (\"%2\");"_s.arg(bShown ? u"Show"_s : u"Close"_s, QLatin1String(Row.sTitle)));
      }
      PerformAction(ACTION_TOOLBAR_SHOW, QLatin1String(Row.sName));
      QVERIFY(pBar->isVisible() && pToggle->isChecked());
      PerformAction(ACTION_TOOLBAR_CLOSE, QLatin1String(Row.sTitle));
      QVERIFY(!pBar->isVisible() && !pToggle->isChecked());
      pBar->setVisible(Row.ShownFirst);
    }
  }

  void someButtonsActOnPress() {
    const QToolBar* const pBar = m_pWindow->FindToolBar(u"Debug"_s);
    for (const U32 ID : {ACTION_DEBUG_HALT, ACTION_DEBUG_STEP_INTO, ACTION_DEBUG_START}) {
      QAction* const pAction = GetAction(ID);
      RegisterActionHandler(ID, [] {});
      pAction->setEnabled(true);
      pAction->setVisible(true);
      auto* const pButton = qobject_cast<QToolButton*>(pBar->widgetForAction(pAction));
      QTRY_VERIFY(pButton && pButton->isVisible());
      const QPoint Pos(4, pButton->height() / 2);
      const QSignalSpy Triggered(pAction, &QAction::triggered);
      QTest::mousePress(pButton, Qt::LeftButton, {}, Pos);
      QCOMPARE(Triggered.count(), ID == ACTION_DEBUG_START ? 0 : 1);
      QVERIFY(pButton->isDown());
      QTest::mouseRelease(pButton, Qt::LeftButton, {}, Pos);
      QVERIFY(!pButton->isDown());
      pAction->setEnabled(false);
      QTest::mouseClick(pButton, Qt::LeftButton, {}, Pos);
      QCOMPARE(Triggered.count(), 1);
    }
  }

  void theWindowMenuFollowsTheDocks() {
    QMenu& Window = *Menu(u"Window"_s);
    const auto Entry = [&Window] {
      Q_EMIT Window.aboutToShow();
      return EntryNamed(Window, u"Console"_s);
    };
    QVERIFY(Entry()->isChecked());
    m_pWindow->Console().Clear();
    // The key is for docks: the source view stays.
    m_pWindow->Source().setFocus();
    QTest::keyClick(m_pWindow, Qt::Key_X, Qt::AltModifier);
    m_pWindow->Console().FocusInput();
    QTest::keyClick(m_pWindow, Qt::Key_X, Qt::AltModifier);
    QVERIFY(m_pWindow->Console().GetDock()->isHidden() && !Entry()->isChecked());
    PerformAction(ACTION_WINDOW_CLOSE, u"Console"_s);
    Entry()->trigger();
    QVERIFY(m_pWindow->Console().IsVisible() && m_pWindow->Console().HasFocus() && Entry()->isChecked());
    QCOMPARE(ConsoleText(*m_pWindow),
             u"Window.Close (\"Console\");\nWindow.Close (\"Console\");\n"
             "Window.Close (\"Console\"): unknown window: \"Console\"\n"
             "Window.Show (\"Console\");"_s);
    CheckSeparators(Window.actions(), Window.title());
  }

  void commandsToWindowsAreRefused() {
    const std::pair<QString, QString> Rows[] = {
        {u"Window.Show Nothing"_s, u"unknown window: \"Nothing\""_s},
        {u"Window.Add (\"Nothing\", \"x\")"_s, u"unknown window: \"Nothing\""_s},
        {u"Window.Add (\"Console\", \"x\")"_s, u"invalid parameter"_s},
        {u"Window.Remove (\"Source\", \"x\")"_s, u"invalid parameter"_s},
        {u"Window.Clear Source"_s, u"invalid parameter"_s},
        {u"Window.Close Source"_s, u"invalid parameter"_s},
        {u"Window.SetNumberBase (\"Console\", 3)"_s, u"invalid parameter"_s},
        {u"Window.SetDisplayFormat (\"Console\", DISPLAY_FORMAT_HEX)"_s, QString()},
        {u"Toolbar.Show Nothing"_s, u"unknown toolbar: \"Nothing\""_s},
        {u"File.Close nothing.c"_s, u"file is not open"_s},
        {u"View.Line 3"_s, u"invalid parameter"_s},
        {u"Window.ExpandAll console"_s, QString()},
    };
    for (const auto& [sCommand, sError] : Rows) {
      QCOMPARE(ExecuteCommand(sCommand), COMMAND_RAN);
      QVERIFY2(GetLastCommand().sError == sError, qPrintable(sCommand + u": "_s + GetLastCommand().sError));
    }
  }

  void recentEntriesAreNumberedAndShowAmpersands() {
    QTemporaryDir Dir;
    const QString sPath = WriteFile(Dir.filePath(u"a&b.elf"_s));
    m_pWindow->Projects().RecentPrograms().Update(QString(), sPath);
    const QMenu* pRecent = EntryNamed(*Menu(u"File"_s), u"Recent Programs"_s)->menu();
    QVERIFY(pRecent->isEnabled());
    QCOMPARE(pRecent->actions().first()->text(),
             u"&1 "_s + QString(sPath).replace(QLatin1Char('&'), QLatin1String("&&")));
    m_pWindow->Console().Clear();
    pRecent->actions().first()->trigger();
    QVERIFY(ConsoleText(*m_pWindow).startsWith(u"File.Open (\"%1\");"_s.arg(sPath)));
  }

  void cleanupTestCase() { m_pWindow->close(); }

private:
  QMenu* Menu(const QString& sTitle) {
    for (const QAction* const pAction : m_pWindow->menuBar()->actions()) {
      if (QString(pAction->text()).remove(QLatin1Char('&')) == sTitle) return pAction->menu();
    }
    return nullptr;
  }
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CMenusTest)
#include "menus_test.moc"
