#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "program/database/elfapi.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "ui/windows/source_editor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int PAGE = 10;  // rows in view

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
  void init() {
    m_pEditor = std::make_unique<CSourceEditor>(nullptr);
    m_pEditor->SetFonts(QFont(u"DejaVu Sans Mono"_s, 10), QFont());
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

  void theMouseSelects() {
    m_pEditor->SetLineNumberFreq(0);
    m_pEditor->SetExpansionBarShown(false);
    m_pEditor->SetTabSpacing(4);
    SetText(TEXT);
    Click(0, 4);
    QCOMPARE(m_pEditor->CursorPos(), QPoint(4, 0));
    Click(1, 4);
    QCOMPARE(m_pEditor->CursorPos(), QPoint(1, 1));
    Click(1, 4 + 7, Qt::ShiftModifier);
    QCOMPARE(m_pEditor->SelectedText(), u"count_1"_s);
    QTest::mouseDClick(m_pEditor->viewport(), Qt::LeftButton, Qt::NoModifier, PointAt(0, 6));
    QCOMPARE(m_pEditor->SelectedText(), u"main"_s);
    Click(8, 50);
    QCOMPARE(m_pEditor->CursorPos(), QPoint(1, 3));
  }

  void selectAllAndCopyByKey() {
    SetText(TEXT);
    QApplication::clipboard()->setText(u"before"_s);
    Key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"before"_s);
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), TEXT.chopped(1));
  }

  // Instruction rows and more than one colour: see the tests of the rows and of the highlights.
  void aMarkedRowIsPaintedInItsColour() {
    SetText(u"line\n"_s.repeated(30));
    m_pEditor->SetLineHighlight(4, COLOR_PC_ACTIVE);
    const auto ColorAt = [this](int y) {
      const QImage Image = m_pEditor->viewport()->grab().toImage();
      return Image.pixelColor(Image.width() - 5, y * m_pEditor->RowHeight() + m_pEditor->RowHeight() / 2);
    };
    QCOMPARE(ColorAt(3), GetColor(COLOR_PC_ACTIVE));
    QVERIFY(ColorAt(2) != GetColor(COLOR_PC_ACTIVE));
    m_pEditor->verticalScrollBar()->setValue(2);
    QCOMPARE(ColorAt(1), GetColor(COLOR_PC_ACTIVE));
    SetText(u"line\n"_s.repeated(30));
    QVERIFY(ColorAt(3) != GetColor(COLOR_PC_ACTIVE));
  }

private:
  void SetText(const QString& sText) { m_pEditor->SetText(sText, u"a.c"_s, INVALID_FILE_ID); }
  void Key(Qt::Key Code, Qt::KeyboardModifiers Modifiers = {}) { QTest::keyClick(m_pEditor.get(), Code, Modifiers); }
  // Middle of a character's left edge in the viewport, with line numbers off.
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
