#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "ui/windows/source_document.h"
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

  void aTextBecomesRows_data() {
    QTest::addColumn<QString>("Text");
    QTest::addColumn<int>("Rows");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("with a final line feed") << u"a\nb\n"_s << 2;
    QTest::newRow("without one") << u"a\nb"_s << 2;
    QTest::newRow("empty last line") << u"a\n\n"_s << 2;
    QTest::newRow("one line feed") << u"\n"_s << 1;
  }

  void aTextBecomesRows() {
    QFETCH(QString, Text);
    QFETCH(int, Rows);
    m_pEditor->SetText(Text);
    QCOMPARE(m_pEditor->NumRows(), Rows);
    QTest::keyClick(m_pEditor.get(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(m_pEditor.get(), Qt::Key_Down);
    QTest::keyClick(m_pEditor.get(), Qt::Key_PageUp);
    QCOMPARE(m_pEditor->CursorPos().y(), 0);
  }

  void keysMoveTheCursor_data() {
    QTest::addColumn<QPoint>("Start");
    QTest::addColumn<int>("Key");
    QTest::addColumn<bool>("Ctrl");
    QTest::addColumn<QPoint>("End");
    QTest::newRow("left") << QPoint(4, 0) << int(Qt::Key_Left) << false << QPoint(3, 0);
    QTest::newRow("left to the row before") << QPoint(0, 1) << int(Qt::Key_Left) << false << QPoint(16, 0);
    QTest::newRow("left at the start") << QPoint(0, 0) << int(Qt::Key_Left) << false << QPoint(0, 0);
    QTest::newRow("right") << QPoint(4, 0) << int(Qt::Key_Right) << false << QPoint(5, 0);
    QTest::newRow("right to the next row") << QPoint(16, 0) << int(Qt::Key_Right) << false << QPoint(0, 1);
    QTest::newRow("right at the end") << QPoint(1, 3) << int(Qt::Key_Right) << false << QPoint(1, 3);
    QTest::newRow("up") << QPoint(1, 3) << int(Qt::Key_Up) << false << QPoint(0, 2);
    QTest::newRow("up at the top") << QPoint(5, 0) << int(Qt::Key_Up) << false << QPoint(5, 0);
    QTest::newRow("down into a shorter row") << QPoint(9, 1) << int(Qt::Key_Down) << false << QPoint(0, 2);
    QTest::newRow("down at the bottom") << QPoint(0, 3) << int(Qt::Key_Down) << false << QPoint(0, 3);
    QTest::newRow("home") << QPoint(9, 1) << int(Qt::Key_Home) << false << QPoint(0, 1);
    QTest::newRow("end") << QPoint(2, 0) << int(Qt::Key_End) << false << QPoint(16, 0);
    QTest::newRow("start of the text") << QPoint(9, 1) << int(Qt::Key_Home) << true << QPoint(0, 0);
    QTest::newRow("end of the text") << QPoint(2, 0) << int(Qt::Key_End) << true << QPoint(1, 3);
    QTest::newRow("word left") << QPoint(8, 1) << int(Qt::Key_Left) << true << QPoint(1, 1);
    QTest::newRow("word right over a number") << QPoint(1, 1) << int(Qt::Key_Right) << true << QPoint(8, 1);
    QTest::newRow("word right over signs") << QPoint(8, 1) << int(Qt::Key_Right) << true << QPoint(16, 1);
    QTest::newRow("page down") << QPoint(0, 0) << int(Qt::Key_PageDown) << false << QPoint(0, 3);
    QTest::newRow("page up") << QPoint(0, 3) << int(Qt::Key_PageUp) << false << QPoint(0, 0);
  }

  void keysMoveTheCursor() {
    QFETCH(QPoint, Start);
    QFETCH(int, Key);
    QFETCH(bool, Ctrl);
    QFETCH(QPoint, End);
    m_pEditor->SetText(TEXT);
    m_pEditor->SetCursorPos(Start);
    QCOMPARE(m_pEditor->CursorPos(), Start);
    const QSignalSpy Moved(m_pEditor.get(), &CSourceEditor::CursorPositionChanged);
    QTest::keyClick(m_pEditor.get(), static_cast<Qt::Key>(Key), Ctrl ? Qt::ControlModifier : Qt::NoModifier);
    QCOMPARE(m_pEditor->CursorPos(), End);
    QCOMPARE(Moved.last().first().toPoint(), End);
    QVERIFY(m_pEditor->SelectedText().isEmpty());
  }

  void shiftSelects_data() {
    QTest::addColumn<QPoint>("Start");
    QTest::addColumn<QList<int>>("Keys");
    QTest::addColumn<bool>("Ctrl");
    QTest::addColumn<QString>("Selected");
    const QList<int> Right(3, Qt::Key_Right), Left(3, Qt::Key_Left);
    QTest::newRow("to the right") << QPoint(0, 0) << Right << false << u"int"_s;
    QTest::newRow("to the left") << QPoint(3, 0) << Left << false << u"int"_s;
    QTest::newRow("there and back") << QPoint(3, 0) << Right + Left << false << QString();
    QTest::newRow("over a line end") << QPoint(15, 0) << QList<int>{Qt::Key_Down, Qt::Key_Home} << false << u"{\n"_s;
    QTest::newRow("over an empty row") << QPoint(12, 1) << QList<int>{Qt::Key_Down, Qt::Key_Down} << false
                                       << u"step;\n\n"_s;
    QTest::newRow("upwards") << QPoint(1, 3) << QList<int>{Qt::Key_Up} << false << u"\n}"_s;
    QTest::newRow("a word") << QPoint(1, 1) << QList<int>{Qt::Key_Right} << true << u"count_1"_s;
    QTest::newRow("to the end of the text") << QPoint(16, 1) << QList<int>{Qt::Key_End} << true << u";\n\n}"_s;
  }

  void shiftSelects() {
    QFETCH(QPoint, Start);
    QFETCH(QList<int>, Keys);
    QFETCH(bool, Ctrl);
    QFETCH(QString, Selected);
    m_pEditor->SetText(TEXT);
    m_pEditor->SetCursorPos(Start);
    const Qt::KeyboardModifiers Modifiers = Qt::ShiftModifier | (Ctrl ? Qt::ControlModifier : Qt::NoModifier);
    for (const int Key : Keys) QTest::keyClick(m_pEditor.get(), static_cast<Qt::Key>(Key), Modifiers);
    QCOMPARE(m_pEditor->SelectedText(), Selected);
    QTest::keyClick(m_pEditor.get(), Qt::Key_Right);
    QVERIFY(m_pEditor->SelectedText().isEmpty());
  }

  void pagesAndEndsScrollTheCursorIntoView() {
    m_pEditor->SetText(Numbered(100));
    QTest::keyClick(m_pEditor.get(), Qt::Key_PageDown);
    QCOMPARE(m_pEditor->CursorPos().y(), PAGE);
    QCOMPARE(m_pEditor->TopRow(), 1);
    QTest::keyClick(m_pEditor.get(), Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(m_pEditor->TopRow(), 100 - PAGE);
    QTest::keyClick(m_pEditor.get(), Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(m_pEditor->TopRow(), 0);
    m_pEditor->EnsureRowVisible(50);
    QCOMPARE(m_pEditor->TopRow(), 50 - PAGE / 2);
    m_pEditor->EnsureRowVisible(50 + PAGE / 2 - 1);
    QCOMPARE(m_pEditor->TopRow(), 50 - PAGE / 2);
    QCOMPARE(m_pEditor->RowAt(m_pEditor->RowHeight()), m_pEditor->TopRow() + 1);
    m_pEditor->SetText(u"a\n"_s);
    QCOMPARE(m_pEditor->RowAt(m_pEditor->RowHeight()), -1);
  }

  void aLongRowScrollsSideways() {
    m_pEditor->SetText(u"short\n"_s + QString(500, QLatin1Char('x')));
    m_pEditor->SetCursorPos({0, 1});
    QTest::keyClick(m_pEditor.get(), Qt::Key_End);
    const QScrollBar& Bar = *m_pEditor->horizontalScrollBar();
    QVERIFY(Bar.maximum() > 0);
    QCOMPARE(Bar.value(), Bar.maximum());
    QTest::keyClick(m_pEditor.get(), Qt::Key_Home);
    QCOMPARE(Bar.value(), 0);
    m_pEditor->SetText(u"\t\tx"_s);
    QCOMPARE(Bar.maximum(), 0);
  }

  void theMouseSelects() {
    m_pEditor->SetLineNumberFreq(0);
    m_pEditor->SetTabSpacing(4);
    m_pEditor->SetText(TEXT);
    QWidget* const pView = m_pEditor->viewport();
    QTest::mouseClick(pView, Qt::LeftButton, Qt::NoModifier, PointAt(0, 4));
    QCOMPARE(m_pEditor->CursorPos(), QPoint(4, 0));
    QTest::mouseClick(pView, Qt::LeftButton, Qt::NoModifier, PointAt(1, 4));
    QCOMPARE(m_pEditor->CursorPos(), QPoint(1, 1));
    QTest::mouseClick(pView, Qt::LeftButton, Qt::ShiftModifier, PointAt(1, 4 + 7));
    QCOMPARE(m_pEditor->SelectedText(), u"count_1"_s);
    QTest::mouseDClick(pView, Qt::LeftButton, Qt::NoModifier, PointAt(0, 6));
    QCOMPARE(m_pEditor->SelectedText(), u"main"_s);
    QTest::mousePress(pView, Qt::LeftButton, Qt::NoModifier, PointAt(0, 0));
    QTest::mouseMove(pView, PointAt(0, 3));
    QTest::mouseRelease(pView, Qt::LeftButton, Qt::NoModifier, PointAt(0, 3));
    QTest::mouseClick(pView, Qt::LeftButton, Qt::NoModifier, PointAt(8, 50));
    QCOMPARE(m_pEditor->CursorPos(), QPoint(1, 3));
  }

  void selectAllAndCopyByKey() {
    m_pEditor->SetText(TEXT);
    QApplication::clipboard()->setText(u"before"_s);
    QTest::keyClick(m_pEditor.get(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"before"_s);
    QTest::keyClick(m_pEditor.get(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_pEditor.get(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), TEXT.chopped(1));
  }

  void otherKeysAreLeftToTheWindow() {
    m_pEditor->SetText(TEXT);
    for (const int Key : {Qt::Key_F5, Qt::Key_Tab, Qt::Key_Escape}) {
      QKeyEvent Event(QEvent::KeyPress, Key, Qt::NoModifier);
      QCoreApplication::sendEvent(m_pEditor.get(), &Event);
      QVERIFY2(Key == Qt::Key_Tab || !Event.isAccepted(), qPrintable(QString::number(Key)));
    }
    QKeyEvent AltRight(QEvent::KeyPress, Qt::Key_Right, Qt::AltModifier);
    QCoreApplication::sendEvent(m_pEditor.get(), &AltRight);
    QVERIFY(!AltRight.isAccepted());
    QCOMPARE(m_pEditor->CursorPos(), QPoint(0, 0));
  }

  void aMarkedRowIsPaintedInItsColour() {
    m_pEditor->SetText(Numbered(30));
    m_pEditor->SetRowColor(3, Qt::green);
    const auto ColorAt = [this](int y) {
      const QImage Image = m_pEditor->viewport()->grab().toImage();
      return Image.pixelColor(Image.width() - 5, y * m_pEditor->RowHeight() + m_pEditor->RowHeight() / 2);
    };
    QCOMPARE(ColorAt(3), QColor(Qt::green));
    QVERIFY(ColorAt(2) != QColor(Qt::green));
    m_pEditor->verticalScrollBar()->setValue(2);
    QCOMPARE(ColorAt(1), QColor(Qt::green));
    m_pEditor->SetText(Numbered(30));
    QVERIFY(ColorAt(3) != QColor(Qt::green));
  }

  void lineEndsAreDetected_data() {
    QTest::addColumn<QString>("Text");
    QTest::addColumn<int>("Format");
    QTest::newRow("unix") << u"a\nb\n"_s << int(EOL_UNIX);
    QTest::newRow("windows") << u"a\r\nb\r\n"_s << int(EOL_WINDOWS);
    QTest::newRow("mac") << u"a\rb\r"_s << int(EOL_MAC);
    QTest::newRow("mixed") << u"a\r\nb\nc\r\n"_s << int(EOL_MIXED);
    QTest::newRow("none") << u"a"_s << int(EOL_MAC);
    QTest::newRow("empty") << QString() << int(EOL_MAC);
    QTest::newRow("a line feed in front does not count") << u"\na\r\nb\r\n"_s << int(EOL_WINDOWS);
    QTest::newRow("the tenth still counts") << u"a\n"_s.repeated(9) + u"a\r\n"_s << int(EOL_MIXED);
    QTest::newRow("the eleventh does not") << u"a\n"_s.repeated(10) + u"a\r\n"_s << int(EOL_UNIX);
  }

  void lineEndsAreDetected() {
    QFETCH(QString, Text);
    QFETCH(int, Format);
    QCOMPARE(int(DetectLineEnding(Text)), Format);
  }

private:
  static QString Numbered(int NumRows) {
    QString sText;
    for (int i = 1; i <= NumRows; ++i) sText += u"line %1\n"_s.arg(i);
    return sText;
  }
  // Middle of a character's left edge in the viewport, with line numbers off.
  QPoint PointAt(int Row, int Column) const {
    return {Column * QFontMetrics(m_pEditor->font()).horizontalAdvance(QLatin1Char('0')) + 3,
            (Row - m_pEditor->TopRow()) * m_pEditor->RowHeight() + m_pEditor->RowHeight() / 2};
  }
  std::unique_ptr<CSourceEditor> m_pEditor;
};

QTEST_MAIN(CSourceEditorTest)
#include "source_editor_test.moc"
