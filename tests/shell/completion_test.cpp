// Completion of commands: what is offered for which line, and what the keys do with it.
#include <QAbstractItemModelTester>
#include <QCompleter>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/actions/builtin_commands.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/command_input.h"
#include "shell/windows/completion_model.h"
#include "tests/common/write_file.h"

using namespace Qt::StringLiterals;

class CCompletionTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    SetSettingsInMemory(true);
    RegisterBuiltinCommands();
    for (const U32 ID : {ACTION_FILE_OPEN, ACTION_FILE_FIND, ACTION_WINDOW_SHOW, ACTION_TOOLBAR_SHOW, ACTION_EDIT_FONT,
                         ACTION_DEBUG_SET_RESET_MODE, ACTION_DEBUG_START, ACTION_DEBUG_STOP,
                         ACTION_PROJ_ADD_SEARCH_PATH, ACTION_BREAK_SET_EX, ACTION_EDIT_FIND}) {
      RegisterActionHandler(ID, [] {});
    }
    QDir Dir(m_Dir.path());
    Dir.mkpath(u"sources"_s);
    for (const char* sName : {"main.c", "Make file", "sources/uart.c", ".hidden"}) {
      WriteFile(Dir.filePath(QLatin1String(sName)));
    }
  }

  void init() {
    m_Entered.clear();
    m_pInput = std::make_unique<CCommandInput>(nullptr);
    m_pInput->SetSources(Sources());
    new QAbstractItemModelTester(m_pInput->findChild<QCompleter*>()->model(), m_pInput.get());
    connect(m_pInput.get(), &CCommandInput::CommandEntered, this, [this](const QString& sText) { m_Entered << sText; });
    m_pInput->resize(400, 24);
    m_pInput->show();
    m_pInput->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_pInput.get()));
  }

  void offersFitTheParameter() {
    // The cursor stands at the '|'.
    const std::pair<QString, QStringList> Rows[] = {
        {u"debug.st|"_s, {u"Debug.Start"_s, u"Debug.Stop"_s}},
        {u"  debug.sto|"_s, {u"Debug.Stop"_s}},
        {u"resetm|"_s, {u"Debug.SetResetMode "_s}},
        {u"Debug.SetReset|(2)"_s, {u"Debug.SetResetMode"_s}},
        {u"Debug.SetResetMode |"_s, {u"RM_RESET_HALT"_s, u"RM_BREAK_AT_SYMBOL"_s, u"RM_RESET_AND_RUN"_s}},
        {u"Debug.Start |"_s, {}},
        {u"Edit.Preference PREF_SHOW_TIMESTAMPS_C|"_s, {u"PREF_SHOW_TIMESTAMPS_CONSOLE"_s}},
        {u"Edit.Preference PREF_SHOW_TIMESTAMPS_CONSOLE |"_s, {u"no"_s, u"yes"_s}},
        {u"Edit.SysVar PREF_|"_s, {}},
        {u"Edit.Color (COLOR_PC_B|"_s, {u"COLOR_PC_BACKTRACE"_s}},
        {u"Edit.Font FONT_CONS|"_s, {u"FONT_CONSOLE"_s}},
        {u"Window.Show c|"_s, {u"\"Call Stack\""_s, u"Console"_s}},
        {u"Window.Show \"call s|"_s, {u"\"Call Stack\""_s}},
        {u"Window.Show \"Call Stack\"|"_s, {}},
        {u"Toolbar.Show D|"_s, {u"\"Debug Toolbar\""_s}},
        {u"File.Open |"_s, {u"sources/"_s, u"main.c"_s, u"\"Make file\""_s}},
        {u"File.Open M|"_s, {u"main.c"_s, u"\"Make file\""_s}},
        {u"File.Open sources/|"_s, {u"sources/uart.c"_s}},
        {u"File.Open (\"sou|"_s, {u"\"sources/"_s}},
        {u"File.Open .|"_s, {u".hidden"_s}},
        {u"Project.AddSearchPath |"_s, {u"sources/"_s}},
        {u"File.Find ma|"_s, {}},
        {u"Break.SetEx (0x100, BP_TYPE_S|"_s, {u"BP_TYPE_SOFT"_s}},
    };
    for (auto [sLine, Inserts] : Rows) {
      const int Cursor = static_cast<int>(sLine.indexOf(u'|'));
      QStringList Found;
      for (const COMPLETION_ITEM& Item : FindCompletions(FindCommandPart(sLine.remove(u'|'), Cursor), Sources())) {
        Found << Item.sInsert;
      }
      QCOMPARE(Found, Inserts);
    }
  }

  void tabCompletes() {
    const std::tuple<QString, int, QString> Rows[] = {
        {u"debug.sto"_s, 1, u"Debug.Stop"_s},
        {u"debug.st"_s, 1, u"debug.st"_s},
        {u"window.s"_s, 1, u"Window.Show "_s},
        {u"window.show call"_s, 1, u"window.show \"Call Stack\""_s},
        {u"file.open so"_s, 2, u"file.open sources/uart.c"_s},
        {u"edit.pref"_s, 1, u"Edit.Preference "_s},
        {u"debug.setresetmode "_s, 1, u"debug.setresetmode RM_"_s},
        {u"nothing like this"_s, 1, u"nothing like this"_s},
    };
    for (const auto& [sTyped, NumTabs, sLine] : Rows) {
      init();
      Type(sTyped);
      for (int i = 0; i < NumTabs; ++i) Key(Qt::Key_Tab);
      QCOMPARE(m_pInput->text(), sLine);
      QVERIFY(m_pInput->hasFocus());
    }
  }

  void theOpenListHasTheKeys() {
    Type(u"debug.st"_s);
    QVERIFY(Popup());
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    QCOMPARE(m_pInput->text(), u"Debug.Stop"_s);
    QVERIFY(m_Entered.isEmpty() && !Popup());
    Key(Qt::Key_Return);
    QCOMPARE(m_Entered, QStringList{u"Debug.Stop"_s});
    Type(u"debug.st"_s);
    QVERIFY(Popup());
    Key(Qt::Key_Return);
    QCOMPARE(m_Entered.last(), u"debug.st"_s);
    Type(u"debug.st"_s);
    Key(Qt::Key_Escape);
    QVERIFY(!Popup());
    QCOMPARE(m_pInput->text(), u"debug.st"_s);
    Type(u"op"_s);
    QVERIFY(!Popup());
  }

  void theSynopsisMarksTheParameter() {
    const std::pair<QString, QString> Rows[] = {
        {u"Break.Set"_s, QString()},
        {u"Break.SetEx "_s, u"Break.SetEx (<unsigned int Addr>, int Type): "_s},
        {u"Break.SetEx 0 "_s, u"Break.SetEx (unsigned int Addr, <int Type>): "_s},
        {u"Debug.Start "_s, u"Debug.Start (): "_s},
        {u"No.Such "_s, QString()},
    };
    for (const auto& [sTyped, sTip] : Rows) {
      m_pInput->clear();
      Type(sTyped);
      QCOMPARE(m_pInput->Synopsis().left(sTip.isEmpty() ? -1 : sTip.size()), sTip);
    }
  }

private:
  COMPLETION_SOURCES Sources() const {
    return {[] {
              return QStringList{u"Call Stack"_s, u"Console"_s, u"Source"_s};
            },
            [] { return QStringList{u"Debug Toolbar"_s}; }, [this] { return m_Dir.path(); },
            [](const QString& sPath) { return sPath; }};
  }
  QAbstractItemView* Popup() {
    for (QWidget* const pWidget : QApplication::topLevelWidgets()) {
      if (auto* const pView = qobject_cast<QTreeView*>(pWidget); pView && pView->isVisible()) return pView;
    }
    return nullptr;
  }
  // The list takes the keys while it is open.
  QWidget* Target() { return Popup() ? static_cast<QWidget*>(Popup()) : m_pInput.get(); }
  void Key(Qt::Key Code) { QTest::keyClick(Target(), Code); }
  void Type(const QString& sText) {
    for (const QChar Char : sText) QTest::keyClick(Target(), Char.toLatin1());
  }

  QTemporaryDir m_Dir;
  std::unique_ptr<CCommandInput> m_pInput;
  QStringList m_Entered;
};

QTEST_MAIN(CCompletionTest)
#include "completion_test.moc"
