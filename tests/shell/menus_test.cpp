// Menu bar, tool bars and the list of windows.

#include "shell/menus.h"

#include <QMenuBar>
#include <QToolButton>

#include "../look/icon_names.h"
#include "frame.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/action_link.h"
#include "shell/actions/command_console.h"
#include "shell/menu_table.h"
#include "shell/window_table.h"
#include "ui/dock_window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int TOOL_BAR_HEIGHT = 26;

QChar MnemonicOf(QString sText) {
  sText.remove(QLatin1String("&&"));
  const qsizetype Pos = sText.indexOf(QLatin1Char('&'));
  return Pos < 0 ? QChar() : sText[Pos + 1].toLower();
}

void CheckMnemonics(const QString& sMenu, const QStringList& Texts) {
  QMap<QChar, QString> Taken;
  for (const QString& sText : Texts) {
    const QChar Key = MnemonicOf(sText);
    if (Key.isNull()) continue;
    QVERIFY2(!Taken.contains(Key), qPrintable(u"%1: %2, %3"_s.arg(sMenu, Taken[Key], sText)));
    Taken[Key] = sText;
  }
}

// Of every entry that the finished program has, not only of those that are served today.
void CheckTable(const QString& sTitle, std::span<const MENU_ITEM> Items, QMap<U32, QString>* pEntries) {
  QStringList Texts;
  for (const MENU_ITEM& Item : Items) {
    if (Item.sText) Texts << QLatin1String(Item.sText);
    if (Item.Kind == MENU_SUBMENU) CheckTable(sTitle + QLatin1String(Item.sText), Item.pSub->Items, pEntries);
    if (Item.sIcon) {
      const QByteArray Name = QByteArray(Item.sIcon).chopped(4);
      QVERIFY2(std::ranges::any_of(ICON_NAMES, [&](const char* sIcon) { return Name == sIcon; }), Item.sIcon);
    }
    if (Item.Kind != MENU_ACTION) continue;
    QVERIFY2(!pEntries->contains(Item.ActionID), Item.sText);
    (*pEntries)[Item.ActionID] = sTitle;
  }
  CheckMnemonics(sTitle, Texts);
}

QMap<U32, QString> AllEntries() {
  QMap<U32, QString> Entries;
  for (const MENU_TABLE& Table : GetMenuTables()) CheckTable(QLatin1String(Table.sTitle), Table.Items, &Entries);
  return Entries;
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

}  // namespace

class CMenusTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    m_pWindow = StartFrame();
    QVERIFY(m_pWindow);
  }

  void tablesHaveUniqueMnemonicsAndKnownIcons() {
    QVERIFY(AllEntries().size() > 60);
    QStringList Titles;
    for (const MENU_TABLE& Table : GetMenuTables()) Titles << QLatin1String(Table.sTitle);
    CheckMnemonics(u"menu bar"_s, Titles);
    for (const std::span<const MENU_ITEM> Modes : {GetStartModeItems(), GetResetModeItems()}) {
      QCOMPARE(Modes.size(), size_t{3});
    }
  }

  void everyWindowHasAnEntry() {
    const QMap<U32, QString> Entries = AllEntries();
    QSet<QString> Names;
    for (const WINDOW_ROW& Row : GetWindowTable()) {
      QVERIFY2(!Names.contains(QLatin1String(Row.sName)), Row.sName);
      Names << QLatin1String(Row.sName);
      if (Row.ShowID != NUM_ACTIONS) QVERIFY2(Entries.value(Row.ShowID) == QLatin1String("&View"), Row.sName);
      QVERIFY2(!Row.Create || m_pWindow->FindWindow(QLatin1String(Row.sName), false), Row.sName);
    }
    for (U32 ID = ACTION_WINDOW_SHOW_REGISTERS; ID <= ACTION_WINDOW_SHOW_VNODE_WEB_CONTROL; ++ID) {
      QVERIFY2(std::ranges::any_of(GetWindowTable(), [ID](const WINDOW_ROW& Row) { return Row.ShowID == ID; }),
               qPrintable(GetActionInfo(ID).sObjectName));
    }
  }

  void entriesFollowTheTableAndNothingElse() {
    for (const QAction* const pTop : m_pWindow->menuBar()->actions()) {
      const QList<QAction*> Actions = pTop->menu()->actions();
      CheckSeparators(Actions, pTop->text());
      QCOMPARE(pTop->isVisible(), !Actions.isEmpty());
      for (const QAction* const pAction : Actions) {
        QVERIFY2(pAction->isSeparator() || !pAction->text().isEmpty(), qPrintable(pTop->text()));
        QVERIFY2(!pAction->menu() || !pAction->menu()->title().isEmpty(), qPrintable(pTop->text()));
      }
    }
    QVERIFY(Menu(u"File"_s)->actions().contains(GetAction(ACTION_FILE_EXIT)));
    QVERIFY(Menu(u"View"_s)->actions().contains(GetAction(ACTION_WINDOW_SHOW_CONSOLE)));
  }

  void toolBarsAreSwitchedByTheirEntries_data() {
    QTest::addColumn<int>("Index");
    for (int i = 0; i < static_cast<int>(GetToolBarTables().size()); ++i) {
      QTest::addRow("%s", GetToolBarTables()[static_cast<size_t>(i)].sTitle) << i;
    }
  }

  void toolBarsAreSwitchedByTheirEntries() {
    QFETCH(int, Index);
    const TOOL_BAR_TABLE& Row = GetToolBarTables()[static_cast<size_t>(Index)];
    QToolBar* const pBar = m_pWindow->FindToolBar(QLatin1String(Row.sTitle));
    QVERIFY(pBar);
    QCOMPARE(pBar->objectName(), QLatin1String(Row.sName));
    QCOMPARE(pBar->isVisible(), Row.ShownFirst);
    QCOMPARE(pBar->height(), TOOL_BAR_HEIGHT);
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
    for (const QAction* const pAction : pBar->actions()) {
      QVERIFY2(pAction->isSeparator() || !pAction->icon().isNull(), qPrintable(pAction->objectName()));
    }
    PerformAction(ACTION_TOOLBAR_CLOSE, QLatin1String(Row.sTitle));
    QVERIFY(!pBar->isVisible() && !pToggle->isChecked());
    pBar->setVisible(Row.ShownFirst);
  }

  void someButtonsActOnPress_data() {
    QTest::addColumn<U32>("ID");
    QTest::addColumn<bool>("OnPress");
    QTest::newRow("halt") << U32{ACTION_DEBUG_HALT} << true;
    QTest::newRow("step into") << U32{ACTION_DEBUG_STEP_INTO} << true;
    QTest::newRow("start") << U32{ACTION_DEBUG_START} << false;
  }

  void someButtonsActOnPress() {
    QFETCH(U32, ID);
    QFETCH(bool, OnPress);
    RegisterActionHandler(ID, [] {});
    GetAction(ID)->setEnabled(true);
    GetAction(ID)->setVisible(true);
    const QToolBar* const pBar = m_pWindow->FindToolBar(u"Debug"_s);
    auto* const pButton = qobject_cast<QToolButton*>(pBar->widgetForAction(GetAction(ID)));
    QVERIFY(pButton);
    QTRY_VERIFY(pButton->isVisible());
    const QPoint Pos(4, pButton->height() / 2);
    QSignalSpy Triggered(GetAction(ID), &QAction::triggered);
    QTest::mousePress(pButton, Qt::LeftButton, {}, Pos);
    QCOMPARE(Triggered.count(), OnPress ? 1 : 0);
    QVERIFY(pButton->isDown());
    QTest::mouseRelease(pButton, Qt::LeftButton, {}, Pos);
    QCOMPARE(Triggered.count(), 1);
    QVERIFY(!pButton->isDown());
    GetAction(ID)->setEnabled(false);
    QTest::mouseClick(pButton, Qt::LeftButton, {}, Pos);
    QCOMPARE(Triggered.count(), 1);
  }

  void modeButtonsFollowTheModes() {
    const QAction* const pStart = GetAction(ACTION_DEBUG_START);
    PerformAction(ACTION_DEBUG_SET_CONNECT_MODE, u"CM_ATTACH"_s);
    QCOMPARE(pStart->icon().cacheKey(), GetAction(ACTION_DEBUG_ATTACH)->icon().cacheKey());
    QCOMPARE(pStart->toolTip(), u"Attach to running program (F5)"_s);
    PerformAction(ACTION_DEBUG_SET_CONNECT_MODE, u"CM_DOWNLOAD_RESET"_s);
    QCOMPARE(pStart->toolTip(), u"Download and reset program (F5)"_s);
    PerformAction(ACTION_DEBUG_SET_RESET_MODE, u"RM_RESET_HALT"_s);
    QCOMPARE(GetAction(ACTION_DEBUG_RESET)->icon().cacheKey(), GetAction(ACTION_DEBUG_RESET_HALT)->icon().cacheKey());
    m_pWindow->Console().Clear();
    PerformAction(ACTION_DEBUG_SET_RESET_MODE, u"3"_s);
    QVERIFY(ConsoleText(*m_pWindow).endsWith(u"invalid parameter"_s));
    QCOMPARE(GetAction(ACTION_DEBUG_RESET)->toolTip(), u"Reset and halt (F4)"_s);
  }

  void theWindowMenuFollowsTheDocks() {
    QMenu& Window = *Menu(u"Window"_s);
    const auto Entry = [&Window] {
      Q_EMIT Window.aboutToShow();
      return EntryNamed(Window, u"Console"_s);
    };
    QVERIFY(Entry()->isChecked());
    m_pWindow->Console().Clear();
    Entry()->trigger();
    QVERIFY(m_pWindow->Console().GetDock()->isHidden() && !Entry()->isChecked());
    Entry()->trigger();
    QVERIFY(m_pWindow->Console().IsVisible() && Entry()->isChecked());
    QCOMPARE(ConsoleText(*m_pWindow), u"Window.Close (\"Console\");\nWindow.Show (\"Console\");"_s);
    CheckSeparators(Window.actions(), Window.title());
  }

  void theContextMenuOffersWindowsAndToolBars() {
    const std::unique_ptr<QMenu> pMenu(m_pWindow->createPopupMenu());
    QVERIFY(EntryNamed(*pMenu, u"Console"_s)->isChecked());
    for (const TOOL_BAR_TABLE& Row : GetToolBarTables()) QVERIFY(pMenu->actions().contains(GetAction(Row.ToggleID)));
  }

  void entriesFollowTheState() {
    const QAction* const pClearAll = GetAction(ACTION_BREAK_CLEAR_ALL);
    QVERIFY(!pClearAll->isEnabled());
    PerformAction(ACTION_BREAK_SET, u"0x100"_s);
    QTRY_VERIFY(pClearAll->isEnabled());
    PerformAction(ACTION_BREAK_CLEAR_ALL);
    QTRY_VERIFY(!pClearAll->isEnabled());
    QCOMPARE(ExecuteCommand(u"Break.ClearAll"_s), COMMAND_DISABLED);
  }

  void commandsToWindowsAreRefused_data() {
    QTest::addColumn<QString>("Command");
    QTest::addColumn<QString>("Error");
    const auto Row = [](const char* sCommand, const char* sError) {
      QTest::newRow(sCommand) << QString::fromLatin1(sCommand) << QString::fromLatin1(sError);
    };
    Row("Window.Show Nothing", "unknown window: \"Nothing\"");
    Row("Window.Close Nothing", "unknown window: \"Nothing\"");
    Row("Window.Add (\"Nothing\", \"x\")", "unknown window: \"Nothing\"");
    Row("Window.Add (\"Console\", \"x\")", "invalid parameter");
    Row("Window.Remove (\"Source\", \"x\")", "invalid parameter");
    Row("Window.Clear Source", "invalid parameter");
    Row("Window.SetNumberBase (\"Console\", 3)", "invalid parameter");
    Row("Window.SetDisplayFormat (\"Console\", DISPLAY_FORMAT_HEX)", "");
    Row("Toolbar.Show Nothing", "unknown toolbar: \"Nothing\"");
    Row("Window.ExpandAll console", "");
  }

  void commandsToWindowsAreRefused() {
    QFETCH(QString, Command);
    QFETCH(QString, Error);
    QCOMPARE(ExecuteCommand(Command), COMMAND_RAN);
    QCOMPARE(GetLastCommand().sError, Error);
  }

  void recentEntriesAreNumberedAndShowAmpersands() {
    QTemporaryDir Dir;
    const QString sPath = Dir.filePath(u"a&b.elf"_s);
    QFile File(sPath);
    QVERIFY(File.open(QIODevice::WriteOnly));
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
