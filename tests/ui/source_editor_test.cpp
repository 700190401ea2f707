#include <QRandomGenerator>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "core/vcore.h"
#include "program/database/elfapi.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/settings_cache.h"
#include "tests/common/write_file.h"
#include "ui/windows/source_editor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int PAGE = 10;  // rows in view
constexpr U32 CORTEX_M4 = 0x0E0000FF;

const QString TEXT =
    u"int main(void) {\n"
    "\tcount_1 += step;\n"
    "\n"
    "}\n"_s;

}  // namespace

// One editor of ten rows.
class CSourceEditorTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    SetSettingsInMemory(true);
    QApplication::setCursorFlashTime(0);
  }
  void cleanupTestCase() { ELFAPI_Unload(); }

  void init() {
    m_pEditor = std::make_unique<CSourceEditor>(nullptr);
    m_pEditor->SetFonts(QFont(u"DejaVu Sans Mono"_s, 10), QFont());
    m_pEditor->SetTabSpacing(4);
    m_pEditor->resize(600, PAGE * m_pEditor->RowHeight());
    m_pEditor->show();
    m_pEditor->setFocus();
  }

  void aTextBecomesRows() {
    const std::pair<QString, int> Rows[] = {
        {QString(), 0}, {u"a\nb\n"_s, 2}, {u"a\nb"_s, 2}, {u"a\n\n"_s, 2}, {u"\n"_s, 1}};
    for (const auto& [sText, NumRows] : Rows) {
      SetText(sText);
      QCOMPARE(m_pEditor->NumRows(), NumRows);
      Key(Qt::Key_End, Qt::ControlModifier);
      Key(Qt::Key_Down);
      Key(Qt::Key_PageUp);
      QCOMPARE(m_pEditor->CursorPos().y(), 0);
    }
  }

  void keysMoveTheCursor() {
    const std::tuple<const char*, QPoint, QKeyCombination, QPoint> Rows[] = {
        {"left to the row before", QPoint(0, 1), Qt::Key_Left, QPoint(16, 0)},
        {"left at the start", QPoint(0, 0), Qt::Key_Left, QPoint(0, 0)},
        {"right to the next row", QPoint(16, 0), Qt::Key_Right, QPoint(0, 1)},
        {"right at the end", QPoint(1, 3), Qt::Key_Right, QPoint(1, 3)},
        {"up at the top", QPoint(5, 0), Qt::Key_Up, QPoint(5, 0)},
        {"down into a shorter row", QPoint(9, 1), Qt::Key_Down, QPoint(0, 2)},
        {"word left", QPoint(8, 1), Qt::CTRL | Qt::Key_Left, QPoint(1, 1)},
        {"word right over a number", QPoint(1, 1), Qt::CTRL | Qt::Key_Right, QPoint(8, 1)},
        {"word right over signs", QPoint(8, 1), Qt::CTRL | Qt::Key_Right, QPoint(16, 1)},
    };
    SetText(TEXT);
    const QSignalSpy Moved(m_pEditor.get(), &CSourceEditor::CursorPositionChanged);
    for (const auto& [sWhat, Start, Code, End] : Rows) {
      m_pEditor->SetCursorPos(Start);
      QCOMPARE(m_pEditor->CursorPos(), Start);
      Key(Code.key(), Code.keyboardModifiers());
      QVERIFY2(m_pEditor->CursorPos() == End && Moved.last().first().toPoint() == End, sWhat);
      QVERIFY2(m_pEditor->SelectedText().isEmpty(), sWhat);
    }
  }

  void shiftSelects() {
    using KEYS = QList<Qt::Key>;
    const KEYS Right(3, Qt::Key_Right), Left(3, Qt::Key_Left);
    const std::tuple<QPoint, KEYS, Qt::KeyboardModifiers, QString> Rows[] = {
        {QPoint(0, 0), Right, {}, u"int"_s},
        {QPoint(3, 0), Left, {}, u"int"_s},
        {QPoint(3, 0), Right + Left, {}, QString()},
        {QPoint(15, 0), KEYS{Qt::Key_Down, Qt::Key_Home}, {}, u"{\n"_s},
        {QPoint(12, 1), KEYS{Qt::Key_Down, Qt::Key_Down}, {}, u"step;\n\n}"_s},
        {QPoint(1, 3), KEYS{Qt::Key_Up}, {}, u"\n}"_s},
        {QPoint(1, 1), KEYS{Qt::Key_Right}, Qt::ControlModifier, u"count_1"_s},
        {QPoint(16, 1), KEYS{Qt::Key_End}, Qt::ControlModifier, u";\n\n}"_s},
    };
    SetText(TEXT);
    for (const auto& [Start, Keys, Modifiers, sSelected] : Rows) {
      m_pEditor->SetCursorPos(Start);
      for (const Qt::Key Code : Keys) Key(Code, Modifiers | Qt::ShiftModifier);
      QCOMPARE(m_pEditor->SelectedText(), sSelected);
      Key(Qt::Key_Right);
      QVERIFY(m_pEditor->SelectedText().isEmpty());
    }
  }

  void pagesAndEndsScrollTheCursorIntoView() {
    SetText(u"line\n"_s.repeated(100));
    Key(Qt::Key_PageDown);
    QCOMPARE(m_pEditor->CursorPos().y(), PAGE);
    QCOMPARE(m_pEditor->TopRow(), 1);
    Key(Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(m_pEditor->TopRow(), 100 - PAGE);
    Key(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(m_pEditor->TopRow(), 0);
    m_pEditor->EnsureRowVisible(50);
    QCOMPARE(m_pEditor->TopRow(), 50 - PAGE / 2);
    m_pEditor->EnsureRowVisible(50 + PAGE / 2 - 1);
    QCOMPARE(m_pEditor->TopRow(), 50 - PAGE / 2);
  }

  void aLongRowScrollsSideways() {
    SetText(u"short\n"_s + QString(500, QLatin1Char('x')));
    m_pEditor->SetCursorPos({0, 1});
    Key(Qt::Key_End);
    const QScrollBar& Bar = *m_pEditor->horizontalScrollBar();
    QVERIFY(Bar.maximum() > 0);
    QCOMPARE(Bar.value(), Bar.maximum());
    Key(Qt::Key_Home);
    QCOMPARE(Bar.value(), 0);
    SetText(u"\t\tx"_s);
    QCOMPARE(Bar.maximum(), 0);
  }

  // A press on the selection may begin a drag: it counts as a click once the button is let go.
  void aPressOnTheSelectionWaits() {
    HideColumns();
    SetText(TEXT);
    m_pEditor->SelectText(1, 4, 4);
    const QSignalSpy Presses(m_pEditor.get(), &CSourceEditor::MousePressed);
    for (const bool bDragged : {true, false}) {
      QTest::mousePress(m_pEditor->viewport(), Qt::LeftButton, {}, PointAt(0, 6));
      QCOMPARE(m_pEditor->WordAt(PointAt(0, 6)), m_pEditor->SelectedText());
      if (bDragged) m_pEditor->CancelClick();
      QTest::mouseRelease(m_pEditor->viewport(), Qt::LeftButton, {}, PointAt(0, 6));
      QCOMPARE(m_pEditor->HasSelection(), bDragged);
    }
    QCOMPARE(Presses.size(), 2);
    QTest::mousePress(m_pEditor->viewport(), Qt::LeftButton, {}, PointAt(0, 4));
    QTest::mouseMove(m_pEditor->viewport(), PointAt(1, 9));
    QTest::mouseRelease(m_pEditor->viewport(), Qt::LeftButton, {}, PointAt(1, 9));
    QCOMPARE(m_pEditor->SelectedText(), u"main(void) {\n\tcount"_s);
    Click(1, 4);  // within the tab
    QCOMPARE(m_pEditor->CursorPos(), QPoint(1, 1));
    Click(1, 4 + 7, Qt::ShiftModifier);
    QCOMPARE(m_pEditor->SelectedText(), u"count_1"_s);
    QTest::mouseDClick(m_pEditor->viewport(), Qt::LeftButton, Qt::NoModifier, PointAt(0, 6));
    QCOMPARE(m_pEditor->SelectedText(), u"main"_s);
    QTest::mouseClick(m_pEditor->viewport(), Qt::RightButton, {}, PointAt(0, 6));
    QVERIFY(m_pEditor->HasSelection());
    QTest::mouseClick(m_pEditor->viewport(), Qt::RightButton, {}, PointAt(1, 12));
    QCOMPARE(m_pEditor->CursorPos().y(), 1);
    QVERIFY(!m_pEditor->HasSelection());
  }

  // Lines 35 (in two places) and 38 of the example.
  void linesAreOpenedByMouse() {
    LoadExample();
    m_pEditor->SetLineNumberFreq(0);
    const CSrcLoc Loc{m_pEditor->GetFileNo(), 38, 0};
    m_pEditor->SetCursorPos({4, 40});
    m_pEditor->verticalScrollBar()->setValue(30);
    const QSignalSpy Toggles(m_pEditor.get(), &CSourceEditor::LineExpansionStateToggled);
    const auto ClickIndicator = [this](int Row) {
      QTest::mouseClick(m_pEditor->viewport(), Qt::LeftButton, {}, {4, PointAt(Row, 0).y()});
    };
    ClickIndicator(37);
    QVERIFY(m_pEditor->Rows().IsExpandedAt(37) && m_pEditor->Rows().IsInstruction(38) &&
            m_pEditor->Rows().ExpandedLocs() == QSrcLocs{Loc});
    // The cursor moves with its text, the view stays.
    QCOMPARE(m_pEditor->CursorPos(), QPoint(4, 42));
    QCOMPARE(m_pEditor->CursorTextPos(), QPoint(4, 40));
    QCOMPARE(m_pEditor->TopRow(), 30);
    ClickIndicator(38);  // an instruction row has none
    ClickIndicator(36);  // nor has an empty line
    QCOMPARE(Toggles.size(), 1);
    m_pEditor->SetCursorPos({20, 39});
    ClickIndicator(37);
    QCOMPARE(Toggles.size(), 2);
    QVERIFY(!m_pEditor->Rows().IsExpandedAt(37) && m_pEditor->CursorPos().y() == 37);
    m_pEditor->ExpandAll();
    QCOMPARE(m_pEditor->Rows().LineOfRow(m_pEditor->TopRow()), 31u);
    m_pEditor->CollapseAll();
    QCOMPARE(m_pEditor->TopRow(), 30);
    QCOMPARE(m_pEditor->NumRows(), m_pEditor->NumLines());
  }

  void instructionsAreSelectedLikeText() {
    LoadExample();
    const U32 Last = static_cast<U32>(m_pEditor->NumLines());
    m_pEditor->Expand({m_pEditor->GetFileNo(), 38, 0});
    m_pEditor->SetCursorPos({0, 37});
    for (int i = 0; i < 2; ++i) Key(Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(m_pEditor->SelectedText(), u"int main(void) {\n0000 0140   B510       PUSH        {R4, LR}\n"_s);
    Key(Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(m_pEditor->Rows().LineOfRow(m_pEditor->CursorPos().y()), Last);
  }

  void thePcHasARow() {
    LoadExample();
    const CSrcLoc Loc{m_pEditor->GetFileNo(), 38, 0};
    m_pEditor->SetPcLoc(Loc, 0x142);
    QCOMPARE(m_pEditor->PcRow(), 37);
    m_pEditor->Expand(Loc);
    QCOMPARE(m_pEditor->PcRow(), 39);
    // The line leaves the strong colour to the instruction.
    m_pEditor->SetLineHighlight(38, COLOR_PC_ACTIVE);
    m_pEditor->SetAddrHighlight(0x142, COLOR_PC_ACTIVE);
    m_pEditor->verticalScrollBar()->setValue(35);
    const QImage Image = m_pEditor->viewport()->grab().toImage();
    const U32 Expected[] = {COLOR_PC_INACTIVE, COLOR_INLINE_ASM_BACKG, COLOR_PC_ACTIVE};
    for (int i = 0; i < 3; ++i) {
      QCOMPARE(Image.pixelColor(Image.width() - 5, PointAt(37 + i, 0).y()), GetColor(Expected[i]));
    }
    m_pEditor->SetText(u"x\n"_s.repeated(60), u"other.c"_s, Loc.File + 1);
    QCOMPARE(m_pEditor->PcRow(), -1);
    m_pEditor->verticalScrollBar()->setValue(35);
    const QImage Other = m_pEditor->viewport()->grab().toImage();
    QVERIFY(Other.pixelColor(Other.width() - 5, PointAt(37, 0).y()) != GetColor(COLOR_PC_ACTIVE));
  }

  // What is scrolled and painted in part is what is painted whole.
  void whatIsPaintedInPartIsWhatIsPaintedWhole() {
    m_pEditor->SetSessionQuery([] { return false; });
    SetText(u"\tint a_\u00FC; // x\nfor (;;) \"s\"\n"_s.repeated(50) + QString(300, u'w'));
    QVERIFY(QTest::qWaitForWindowExposed(m_pEditor.get()));
    const auto Compare = [this](const QString& sWhat) {
      QCoreApplication::processEvents();
      const QImage Seen = m_pEditor->screen()->grabWindow(m_pEditor->winId()).toImage();
      const QImage Fresh = m_pEditor->grab().toImage();
      QVERIFY2(Seen.convertToFormat(QImage::Format_RGB32) == Fresh.convertToFormat(QImage::Format_RGB32),
               qPrintable(sWhat));
    };
    const QPoint Places[] = {{0, 3}, {0, 4}, {0, 40}, {7, 40}, {40, 38}, {33, 38}, {0, 38}, {0, 90}, {500, 90}};
    for (const QPoint& Place : Places) {
      m_pEditor->verticalScrollBar()->setValue(Place.y());
      m_pEditor->horizontalScrollBar()->setValue(Place.x());
      Compare(u"%1 %2"_s.arg(Place.x()).arg(Place.y()));
    }
    QRandomGenerator Random(4);
    const QKeyCombination Keys[] = {Qt::Key_Down,      Qt::Key_Up,    Qt::Key_PageUp,       Qt::Key_Right,
                                    Qt::Key_A,         Qt::Key_Slash, Qt::Key_Asterisk,     Qt::Key_Return,
                                    Qt::Key_Backspace, Qt::Key_Home,  Qt::CTRL | Qt::Key_Z, Qt::CTRL | Qt::Key_A};
    for (int i = 0; i < 200; ++i) {
      const QKeyCombination Code = Keys[Random.bounded(static_cast<int>(std::size(Keys)))];
      const bool bSelect = Code.key() < Qt::Key_Exclam || Random.bounded(3) ? false : true;
      Key(Code.key(), Code.keyboardModifiers() | (bSelect ? Qt::ShiftModifier : Qt::NoModifier));
      Compare(u"%1: %2"_s.arg(i).arg(QKeySequence(Code).toString()));
      if (QTest::currentTestFailed()) return;
    }
  }

private:
  void HideColumns() {
    m_pEditor->SetLineNumberFreq(0);
    m_pEditor->SetExpansionBarShown(false);
  }
  void LoadExample() {
    const QString sExample = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/");
    VCore::Init({CORTEX_M4, 0, 0}, {});
    QCOMPARE(ELFAPI_Load(sExample + u"traffic_light.elf"_s), 0);
    const QString sPath = sExample + u"src/main.c"_s;
    m_pEditor->SetText(QString::fromUtf8(ReadFile(sPath)), sPath, ELFAPI_ParseSrcLoc(u"main.c:38"_s).File);
  }
  void SetText(const QString& sText) { m_pEditor->SetText(sText, u"a.c"_s, INVALID_FILE_ID); }
  void Key(Qt::Key Code, Qt::KeyboardModifiers Modifiers = {}) { QTest::keyClick(m_pEditor.get(), Code, Modifiers); }
  // Middle of a character's left edge in the viewport, with the columns ahead of the text hidden.
  QPoint PointAt(int Row, int Column) const {
    return {Column * QFontMetrics(m_pEditor->font()).horizontalAdvance(QLatin1Char('0')) + 3,
            (Row - m_pEditor->TopRow()) * m_pEditor->RowHeight() + m_pEditor->RowHeight() / 2};
  }
  void Click(int Row, int Column, Qt::KeyboardModifiers Modifiers = {}) {
    QTest::mouseClick(m_pEditor->viewport(), Qt::LeftButton, Modifiers, PointAt(Row, Column));
  }
  std::unique_ptr<CSourceEditor> m_pEditor;
};

QTEST_MAIN(CSourceEditorTest)
#include "source_editor_test.moc"
