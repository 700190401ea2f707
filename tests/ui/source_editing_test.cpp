// Edits in the source editor, by key.

#include <QClipboard>
#include <QDialogButtonBox>
#include <QInputMethodEvent>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTest>

#include "core/vcore.h"
#include "program/database/elfapi.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"
#include "ui/windows/source_editor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr U32 FILE_NO = 77;
constexpr U32 CORTEX_M4 = 0x0E0000FF;
const QString PATH = u"/src/a.c"_s;
const QString TEXT = u"int a;\n\tint b;\nint c;\n"_s;

struct PRESS {
  PRESS(const char* pText) : sText(QLatin1String(pText)) {}
  PRESS(QKeyCombination Keys = Qt::Key_unknown) : Key(Keys) {}
  PRESS(Qt::Key Only) : Key(Only) {}
  QString sText;
  QKeyCombination Key;
};

}  // namespace

class CSourceEditingTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { SetSettingsInMemory(true); }

  void init() {
    m_bInSession = false;
    m_pEditor = std::make_unique<CSourceEditor>(nullptr);
    m_pEditor->SetTabSpacing(4);
    m_pEditor->resize(600, 300);
    m_pEditor->SetSessionQuery([this] { return m_bInSession; });
    m_pEditor->SetText(TEXT, PATH, FILE_NO);
    m_pEditor->show();
  }

  void cleanup() {
    RemoveSetting(u"AppData/SourceEditor/DoNotShowInfoMsgAgain"_s);
    SetVarValue(GetVarInfo(PREF_RESTRICT_SRC_EDIT), 0, 0);
  }

  // Anchor and cursor as positions of a text with an opened end.
  void keysEdit() {
    const auto Ctrl = [](Qt::Key Key) { return Qt::CTRL | Key; };
    const PRESS Copy = Ctrl(Qt::Key_C), Cut = Ctrl(Qt::Key_X), Paste = Ctrl(Qt::Key_V);
    const struct {
      const char* pWhat;
      QPoint Anchor, Cursor;
      QList<PRESS> Presses;
      QString sText;
      QPoint CursorAfter;
    } Rows[] = {
        {"type", {4, 0}, {4, 0}, {"xy"}, u"int xya;\n\tint b;\nint c;\n"_s, {6, 0}},
        {"type over a selection", {0, 0}, {4, 1}, {"Z"}, u"Z b;\nint c;\n"_s, {1, 0}},
        {"return", {3, 0}, {3, 0}, {Qt::Key_Return}, u"int\n a;\n\tint b;\nint c;\n"_s, {0, 1}},
        {"shift and return", {6, 0}, {6, 0}, {Qt::SHIFT | Qt::Key_Return}, u"int a;\n\n\tint b;\nint c;\n"_s, {0, 1}},
        {"backspace joins", {0, 1}, {0, 1}, {Qt::Key_Backspace}, u"int a;\tint b;\nint c;\n"_s, {6, 0}},
        {"delete at an end", {6, 0}, {6, 0}, {Qt::Key_Delete}, u"int a;\tint b;\nint c;\n"_s, {6, 0}},
        {"a line at the end", {6, 2}, {6, 2}, {Qt::Key_Return, "d"}, TEXT.chopped(1) + u"\nd\n"_s, {1, 3}},
        {"tab", {3, 2}, {3, 2}, {Qt::Key_Tab}, u"int a;\n\tint b;\nint\t c;\n"_s, {4, 2}},
        {"indent lines", {2, 0}, {1, 1}, {Qt::Key_Tab}, u"\tint a;\n\t\tint b;\nint c;\n"_s, {0, 2}},
        {"not the line that only ends", {0, 0}, {0, 1}, {Qt::Key_Tab}, u"\tint a;\n\tint b;\nint c;\n"_s, {0, 1}},
        {"back", {2, 0}, {2, 1}, {Qt::Key_Backtab}, u"int a;\nint b;\nint c;\n"_s, {0, 2}},
        {"back by blanks", {0, 0}, {0, 0}, {"      ", Qt::Key_Backtab}, u"  int a;\n\tint b;\nint c;\n"_s, {0, 1}},
        {"undo", {4, 0}, {4, 0}, {"x", Ctrl(Qt::Key_Z)}, TEXT, {4, 0}},
        {"undo an indent whole", {0, 0}, {1, 2}, {Qt::Key_Tab, Ctrl(Qt::Key_Z)}, TEXT, {0, 0}},
        {"redo", {4, 0}, {4, 0}, {"x", Ctrl(Qt::Key_Z), Ctrl(Qt::Key_Y)}, u"int xa;\n\tint b;\nint c;\n"_s, {5, 0}},
        {"cut, paste", {0, 0}, {0, 1}, {Cut, Paste, Paste}, u"int a;\nint a;\n\tint b;\nint c;\n"_s, {0, 2}},
        {"copy, paste", {0, 0}, {3, 0}, {Copy, Paste, Copy, Paste}, u"intint a;\n\tint b;\nint c;\n"_s, {6, 0}},
        {"select all and type", {3, 1}, {3, 1}, {Ctrl(Qt::Key_A), "q"}, u"q\n"_s, {1, 0}},
    };
    for (const auto& Row : Rows) {
      m_pEditor->DropEdits(PATH);
      m_pEditor->SetText(TEXT, PATH, FILE_NO);
      Select(Row.Anchor, Row.Cursor);
      for (const PRESS& Press : Row.Presses) Type(Press);
      QVERIFY2(m_pEditor->GetText() == Row.sText, Row.pWhat + ("\n" + m_pEditor->GetText().toUtf8()));
      QVERIFY2(m_pEditor->CursorPos() == Row.CursorAfter, Row.pWhat);
      QVERIFY2(m_pEditor->EditedText(PATH) == Row.sText, Row.pWhat);
    }
  }

  void textsFromElsewhere() {
    m_pEditor->SetCursorPos({0, 1});
    QApplication::clipboard()->setText(u"p\r\nq\u00A0\U0001F600\r\n"_s);
    Type(Qt::CTRL | Qt::Key_V);
    const QString sPasted = u"int a;\np\nq\u00A0\U0001F600\n\tint b;\nint c;\n"_s;
    QCOMPARE(m_pEditor->GetText(), sPasted);
    QCOMPARE(m_pEditor->EditedText(PATH), sPasted);
    QInputMethodEvent Composed;
    Composed.setCommitString(u"\u4E2D"_s);
    QCoreApplication::sendEvent(m_pEditor.get(), &Composed);
    QVERIFY(m_pEditor->LineText(4) == u"\u4E2D\tint b;"_s);
    // Half a pair, which the text field does not take.
    QKeyEvent Half(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(QChar(0xD800)));
    QCoreApplication::sendEvent(m_pEditor.get(), &Half);
    // Both halves of a pair go at once.
    m_pEditor->SetCursorPos({4, 2});
    Type(Qt::Key_Backspace);
    QCOMPARE(m_pEditor->LineText(3), u"q\u00A0"_s);
  }

  // Any sequence of edits: the rows show what the text field holds, and undo leads back.
  void rowsFollowTheField() {
    QRandomGenerator Random(3);
    const PRESS Keys[] = {"a",
                          "(",
                          Qt::Key_Return,
                          Qt::Key_Backspace,
                          Qt::Key_Delete,
                          Qt::Key_Tab,
                          Qt::Key_Backtab,
                          Qt::CTRL | Qt::Key_V,
                          Qt::CTRL | Qt::Key_X,
                          Qt::CTRL | Qt::Key_Z,
                          Qt::CTRL | Qt::Key_Y};
    QApplication::clipboard()->setText(u"/* x\n"_s);
    int NumLines = m_pEditor->NumLines() + 1;  // an edited text has an opened end
    connect(m_pEditor.get(), &CSourceEditor::DocumentEdited, this,
            [&](const EDIT_EVENT& Event) { NumLines += Event.NumLines; });
    for (int i = 0; i < 1500; ++i) {
      const auto Place = [&] { return QPoint(Random.bounded(8), Random.bounded(m_pEditor->NumRows() + 1)); };
      const QPoint Anchor = Place();
      Select(Anchor, Random.bounded(3) ? Anchor : Place());
      Type(Keys[Random.bounded(static_cast<int>(std::size(Keys)))]);
      QCOMPARE(m_pEditor->GetText(), *m_pEditor->EditedText(PATH));
      QCOMPARE(m_pEditor->NumLines(), m_pEditor->GetText().count(u'\n') + 1);
      QCOMPARE(NumLines, m_pEditor->NumLines());
      if (i % 20 == 0) m_pEditor->grab();
    }
    while (m_pEditor->CanUndo()) m_pEditor->Undo();
    QCOMPARE(m_pEditor->GetText(), TEXT);
    QVERIFY(!m_pEditor->HasUnsavedChanges(PATH));
  }

  void documentsKeepTheirEdits() {
    Type("x");
    m_pEditor->SetText(u"other\n"_s, u"/src/b.c"_s, FILE_NO + 1);
    Type("y");
    QCOMPARE(m_pEditor->GetText(), u"yother\n"_s);
    m_pEditor->SetText(TEXT, PATH, FILE_NO);
    QCOMPARE(m_pEditor->GetText(), u"x"_s + TEXT);
    QCOMPARE(*m_pEditor->EditedText(u"/src/b.c"_s), u"yother\n"_s);
    Type(Qt::CTRL | Qt::Key_Z);
    QCOMPARE(m_pEditor->GetText(), TEXT);
    QVERIFY(m_pEditor->HasUnsavedChanges(u"/src/b.c"_s));
  }

  // The document, the answer to the question that comes, and whether the key gets through.
  void aSessionAsksOnceADocument() {
    m_bInSession = true;
    const std::tuple<QString, QDialogButtonBox::StandardButton, bool> Rows[] = {
        {PATH, QDialogButtonBox::No, false},
        {PATH, QDialogButtonBox::Yes, true},
        {PATH, QDialogButtonBox::NoButton, true},
        {u"/src/b.c"_s, QDialogButtonBox::YesToAll, true},
        {u"/src/c.c"_s, QDialogButtonBox::NoButton, true},
    };
    for (const auto& [sPath, Button, bEdited] : Rows) {
      QString sText;
      QTimer::singleShot(0, this, [&sText, Button = Button] {
        auto* const pBox = qobject_cast<CMessageBox*>(QApplication::activeModalWidget());
        if (!pBox) return;
        sText = pBox->Button(QDialogButtonBox::YesToAll)->text();
        Button == QDialogButtonBox::NoButton ? pBox->reject() : pBox->Button(Button)->click();
      });
      if (sPath != m_pEditor->GetFilePath()) m_pEditor->SetText(TEXT, sPath, FILE_NO);
      const QString sBefore = m_pEditor->GetText();
      Type("x");
      QCoreApplication::processEvents();
      QCOMPARE(sText, Button == QDialogButtonBox::NoButton ? QString() : u"Yes and do not show again"_s);
      QCOMPARE(m_pEditor->GetText() != sBefore, bEdited);
    }
    QVERIFY(GetSetting({u"AppData"_s, u"SourceEditor"_s}, u"DoNotShowInfoMsgAgain"_s).toBool());
  }

  void editsAreRefused() {
    const std::tuple<const char*, U32, bool, bool, bool> Rows[] = {
        {"restricted, no session", 1, false, true, true},
        {"restricted in a session", 1, true, true, false},
        {"never", 2, false, true, false},
        {"not allowed", 0, false, false, false},
        {"free", 0, false, true, true},
    };
    for (const auto& [pWhat, Restriction, bInSession, bAllowed, bEdited] : Rows) {
      m_pEditor->DropEdits(PATH);
      m_pEditor->SetText(TEXT, PATH, FILE_NO);
      SetVarValue(GetVarInfo(PREF_RESTRICT_SRC_EDIT), Restriction, 0);
      m_bInSession = bInSession;
      m_pEditor->SetEditingAllowed(bAllowed);
      QVERIFY2(m_pEditor->IsEditable() == bEdited, pWhat);
      Type("x");
      Type(Qt::CTRL | Qt::Key_V);
      QVERIFY2((m_pEditor->GetText() != TEXT) == bEdited, pWhat);
    }
    m_pEditor->SetMessage(u"message"_s);
    Type("x");
    QCOMPARE(m_pEditor->GetText(), u"message"_s);
  }

  void instructionRowsAreNotEdited() {
    const QString sExample = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/");
    VCore::Init({CORTEX_M4, 0, 0}, {});
    QCOMPARE(ELFAPI_Load(sExample + u"traffic_light.elf"_s), 0);
    const CSrcLoc Loc = ELFAPI_ParseSrcLoc(u"main.c:38"_s);
    m_pEditor->SetText(u"x\n"_s.repeated(60), u"main.c"_s, Loc.File);
    QVERIFY(m_pEditor->Expand(Loc));
    const QString sBefore = m_pEditor->GetText();
    m_pEditor->SetCursorPos({3, 38});
    QVERIFY(m_pEditor->Rows().IsInstruction(38));
    Type("a");
    Select({0, 37}, {0, 39});
    Type(Qt::Key_Delete);
    QCOMPARE(m_pEditor->GetText(), sBefore);
    // A new line above moves them with their text.
    m_pEditor->SetCursorPos({0, 0});
    Type(Qt::Key_Return);
    QVERIFY(m_pEditor->Rows().IsInstruction(39) && !m_pEditor->Rows().IsInstruction(38));
    ELFAPI_Unload();
  }

private:
  void Type(const PRESS& Press) {
    if (!Press.sText.isEmpty()) return QTest::keyClicks(m_pEditor.get(), Press.sText);
    QTest::keyClick(m_pEditor.get(), Press.Key.key(), Press.Key.keyboardModifiers());
  }
  void Select(const QPoint& Anchor, const QPoint& Cursor) {
    m_pEditor->SetCursorPos(Anchor);
    if (Anchor == Cursor) return;
    const int Row = std::min(Cursor.y(), m_pEditor->NumRows() - 1);
    while (m_pEditor->CursorPos().y() < Row) Type(Qt::SHIFT | Qt::Key_Down);
    while (m_pEditor->CursorPos().y() > Row) Type(Qt::SHIFT | Qt::Key_Up);
    Type(Qt::SHIFT | Qt::Key_Home);
    const qsizetype Column = std::min<qsizetype>(Cursor.x(), m_pEditor->Rows().RowText(Row).size());
    while (m_pEditor->CursorPos().x() < Column) Type(Qt::SHIFT | Qt::Key_Right);
  }

  std::unique_ptr<CSourceEditor> m_pEditor;
  bool m_bInSession = false;
};

QTEST_MAIN(CSourceEditingTest)
#include "source_editing_test.moc"
