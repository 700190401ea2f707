// Completion of commands: what is offered for which line, and what the keys do with it.
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
    connect(m_pInput.get(), &CCommandInput::CommandEntered, this, [this](const QString& sText) { m_Entered << sText; });
    m_pInput->resize(400, 24);
    m_pInput->show();
    m_pInput->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_pInput.get()));
  }

  void offersFitTheParameter_data() {
    QTest::addColumn<QString>("Line");  // the cursor stands at the '|'
    QTest::addColumn<QStringList>("Inserts");
    const auto Row = [](const char* sLine, const QStringList& Inserts) {
      QTest::newRow(sLine) << QString::fromLatin1(sLine) << Inserts;
    };
    Row("debug.st|", {u"Debug.Start"_s, u"Debug.Stop"_s});
    Row("  debug.sto|", {u"Debug.Stop"_s});
    Row("resetm|", {u"Debug.SetResetMode "_s});
    Row("Debug.SetReset|(2)", {u"Debug.SetResetMode"_s});
    Row("Debug.SetResetMode |", {u"RM_RESET_HALT"_s, u"RM_BREAK_AT_SYMBOL"_s, u"RM_RESET_AND_RUN"_s});
    Row("Debug.SetResetMode (rm_b|", {u"RM_BREAK_AT_SYMBOL"_s});
    Row("Debug.Start |", {});
    Row("No.Such |", {});
    Row("Edit.Preference PREF_SHOW_TIMESTAMPS_C|", {u"PREF_SHOW_TIMESTAMPS_CONSOLE"_s});
    Row("Edit.Preference PREF_SHOW_TIMESTAMPS_CONSOLE |", {u"no"_s, u"yes"_s});
    Row("Edit.SysVar PREF_|", {});
    Row("Edit.Color (COLOR_PC_B|", {u"COLOR_PC_BACKTRACE"_s});
    Row("Edit.Font FONT_CONS|", {u"FONT_CONSOLE"_s});
    Row("Window.Show c|", {u"\"Call Stack\""_s, u"Console"_s});
    Row("Window.Show \"call s|", {u"\"Call Stack\""_s});
    Row("Window.Show \"Call Stack\"|", {});
    Row("Window.Show (\"Sou|", {u"\"Source\""_s});
    Row("Window.Show (\"Source\")|", {});
    Row("Toolbar.Show D|", {u"\"Debug Toolbar\""_s});
    Row("File.Open |", {u"sources/"_s, u"main.c"_s, u"\"Make file\""_s});
    Row("File.Open M|", {u"main.c"_s, u"\"Make file\""_s});
    Row("File.Open sources/|", {u"sources/uart.c"_s});
    Row("File.Open (\"sou|", {u"\"sources/"_s});
    Row("File.Open .|", {u".hidden"_s});
    Row("Project.AddSearchPath |", {u"sources/"_s});
    Row("File.Find ma|", {});
    Row("Break.SetEx 0x100 bp_type_h|", {u"BP_TYPE_HARD"_s});
    Row("Break.SetEx (0x100, BP_TYPE_S|", {u"BP_TYPE_SOFT"_s});
  }

  void offersFitTheParameter() {
    QFETCH(QString, Line);
    QFETCH(QStringList, Inserts);
    const int Cursor = static_cast<int>(Line.indexOf(u'|'));
    QStringList Found;
    for (const COMPLETION_ITEM& Item : FindCompletions(FindCommandPart(Line.remove(u'|'), Cursor), Sources())) {
      Found << Item.sInsert;
    }
    QCOMPARE(Found, Inserts);
  }

  void tabCompletes_data() {
    QTest::addColumn<QString>("Typed");
    QTest::addColumn<int>("NumTabs");
    QTest::addColumn<QString>("Line");
    const auto Row = [](const char* sTyped, int NumTabs, const char* sLine) {
      QTest::newRow(sTyped) << QString::fromLatin1(sTyped) << NumTabs << QString::fromLatin1(sLine);
    };
    Row("debug.sto", 1, "Debug.Stop");
    Row("debug.s", 1, "debug.s");
    Row("debug.st", 1, "debug.st");
    Row("window.s", 1, "Window.Show ");
    Row("window.show call", 1, "window.show \"Call Stack\"");
    Row("file.open so", 2, "file.open sources/uart.c");
    Row("edit.pref", 1, "Edit.Preference ");
    Row("debug.setresetmode ", 1, "debug.setresetmode RM_");
    Row("nothing like this", 1, "nothing like this");
  }

  void tabCompletes() {
    QFETCH(QString, Typed);
    QFETCH(int, NumTabs);
    QFETCH(QString, Line);
    Type(Typed);
    for (int i = 0; i < NumTabs; ++i) Key(Qt::Key_Tab);
    QCOMPARE(m_pInput->text(), Line);
    QVERIFY(m_pInput->hasFocus());
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
    const struct {
      const char* sTyped;
      const char* sTip;
    } Cases[] = {
        {"Break.Set", ""},
        {"Break.SetEx ", "Break.SetEx (<unsigned int Addr>, int Type): "},
        {"Break.SetEx 0 ", "Break.SetEx (unsigned int Addr, <int Type>): "},
        {"Debug.Start ", "Debug.Start (): "},
        {"No.Such ", ""},
    };
    for (const auto& Case : Cases) {
      m_pInput->clear();
      Type(QString::fromLatin1(Case.sTyped));
      QCOMPARE(m_pInput->Synopsis().left(static_cast<int>(strlen(Case.sTip))), QString::fromLatin1(Case.sTip));
      QCOMPARE(m_pInput->Synopsis().isEmpty(), *Case.sTip == '\0');
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
  void Key(Qt::Key Code) { QTest::keyClick(Popup() ? static_cast<QWidget*>(Popup()) : m_pInput.get(), Code); }
  void Type(const QString& sText) {
    for (const QChar Char : sText) {
      QTest::keyClick(Popup() ? static_cast<QWidget*>(Popup()) : m_pInput.get(), Char.toLatin1());
    }
  }

  QTemporaryDir m_Dir;
  std::unique_ptr<CCommandInput> m_pInput;
  QStringList m_Entered;
};

QTEST_MAIN(CCompletionTest)
#include "completion_test.moc"
