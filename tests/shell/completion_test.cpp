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
      QFile File(Dir.filePath(QLatin1String(sName)));
      QVERIFY(File.open(QIODevice::WriteOnly));
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
    const auto Q = [](const char* sText) { return QString::fromLatin1(sText); };
    Row("debug.st|", {Q("Debug.Start"), Q("Debug.Stop")});
    Row("  debug.sto|", {Q("Debug.Stop")});
    Row("resetm|", {Q("Debug.SetResetMode ")});
    Row("Debug.SetReset|(2)", {Q("Debug.SetResetMode")});
    Row("Debug.SetResetMode |", {Q("RM_RESET_HALT"), Q("RM_BREAK_AT_SYMBOL"), Q("RM_RESET_AND_RUN")});
    Row("Debug.SetResetMode (rm_b|", {Q("RM_BREAK_AT_SYMBOL")});
    Row("Debug.Start |", {});
    Row("No.Such |", {});
    Row("Edit.Preference PREF_SHOW_TIMESTAMPS_C|", {Q("PREF_SHOW_TIMESTAMPS_CONSOLE")});
    Row("Edit.Preference PREF_SHOW_TIMESTAMPS_CONSOLE |", {Q("no"), Q("yes")});
    Row("Edit.SysVar PREF_|", {});
    Row("Edit.Color (COLOR_PC_B|", {Q("COLOR_PC_BACKTRACE")});
    Row("Edit.Font FONT_CONS|", {Q("FONT_CONSOLE")});
    Row("Window.Show c|", {Q("\"Call Stack\""), Q("Console")});
    Row("Window.Show \"call s|", {Q("\"Call Stack\"")});
    Row("Window.Show \"Call Stack\"|", {});
    Row("Window.Show (\"Sou|", {Q("\"Source\"")});
    Row("Window.Show (\"Source\")|", {});
    Row("Toolbar.Show D|", {Q("\"Debug Toolbar\"")});
    Row("File.Open |", {Q("sources/"), Q("main.c"), Q("\"Make file\"")});
    Row("File.Open M|", {Q("main.c"), Q("\"Make file\"")});
    Row("File.Open sources/|", {Q("sources/uart.c")});
    Row("File.Open (\"sou|", {Q("\"sources/")});
    Row("File.Open .|", {Q(".hidden")});
    Row("Project.AddSearchPath |", {Q("sources/")});
    Row("File.Find ma|", {});
    Row("Break.SetEx 0x100 bp_type_h|", {Q("BP_TYPE_HARD")});
    Row("Break.SetEx (0x100, BP_TYPE_S|", {Q("BP_TYPE_SOFT")});
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

  void theClosedListLeavesTheKeysToTheHistory() {
    for (const char* sCommand : {"first", "second"}) {
      Type(QString::fromLatin1(sCommand));
      Key(Qt::Key_Return);
    }
    QCOMPARE(m_Entered.size(), 2);
    Key(Qt::Key_Up);
    QCOMPARE(m_pInput->text(), u"second"_s);
    Key(Qt::Key_Up);
    QCOMPARE(m_pInput->text(), u"first"_s);
    Key(Qt::Key_Down);
    QCOMPARE(m_pInput->text(), u"second"_s);
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
        {"Break.SetEx (0, ", "Break.SetEx (unsigned int Addr, <int Type>): "},
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

  void theModelKeepsTheRules() {
    CCompletionModel Model;
    const QAbstractItemModelTester Tester(&Model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (const char* sLine : {"", "Edit.Color ", "No.Such "}) {
      Model.SetItems(
          FindCompletions(FindCommandPart(QLatin1String(sLine), static_cast<int>(strlen(sLine))), Sources()));
    }
    QCOMPARE(Model.rowCount(), 0);
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
