#include <QHelpEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/settings_cache.h"
#include "ui/tool_tip.h"
#include "ui/windows/side_bar.h"
#include "ui/windows/source_editor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int ROW_OF_COUNTERS = 22;

std::optional<ROW_COUNTERS> CountersOf(int Row) {
  if (Row == ROW_OF_COUNTERS) return ROW_COUNTERS{u"main.c:23"_s, 12'345, 345, 49'380, ROW_PARTLY_COVERED};
  if (Row == ROW_OF_COUNTERS + 1) return ROW_COUNTERS{u"main.c:24"_s, 1, 0, 49'380, ROW_COVERED};
  if (Row == ROW_OF_COUNTERS + 2) return ROW_COUNTERS{u"main.c:25"_s, 0, 0, 49'380, ROW_NOT_FETCHED};
  return std::nullopt;
}

}  // namespace

// A side bar beside an editor that is scrolled by twenty rows.
class CSideBarTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { SetSettingsInMemory(true); }

  void init() {
    m_pWindow = std::make_unique<QWidget>();
    m_pEditor = new CSourceEditor(m_pWindow.get());
    m_pBar = new CSideBar(
        m_pEditor, [this](int Row) { return m_Marks.value(Row, SIDE_BAR_NONE); }, m_pWindow.get());
    m_pEditor->SetText(u"x\n"_s.repeated(100), u"a.c"_s, 1);
    m_pWindow->resize(600, 400);
    m_pEditor->setGeometry(200, 0, 400, 400);
    m_pBar->setGeometry(0, 0, m_pBar->width(), 400);
    m_pWindow->show();
    m_pEditor->verticalScrollBar()->setValue(20);
    m_Marks.clear();
  }

  // Marks that look the same would leave the user in the dark; those that are the same to him look the same.
  void marksDiffer() {
    const unsigned Marks[] = {SIDE_BAR_NONE,
                              SIDE_BAR_CODE,
                              SIDE_BAR_CODE | SIDE_BAR_EXECUTED,
                              SIDE_BAR_BREAKPOINT,
                              SIDE_BAR_BREAKPOINT | SIDE_BAR_SMALL,
                              SIDE_BAR_BREAKPOINT_DISABLED,
                              SIDE_BAR_BREAKPOINT_DISABLED | SIDE_BAR_SMALL,
                              SIDE_BAR_PC,
                              SIDE_BAR_PC_INACTIVE,
                              SIDE_BAR_PC | SIDE_BAR_BREAKPOINT,
                              SIDE_BAR_PC_INACTIVE | SIDE_BAR_BREAKPOINT};
    for (int i = 0; i < static_cast<int>(std::size(Marks)); ++i) m_Marks[20 + i] = Marks[i];
    for (int i = 0; i < static_cast<int>(std::size(Marks)); ++i) {
      for (int j = 0; j < i; ++j)
        QVERIFY2(PictureOf(20 + i) != PictureOf(20 + j), qPrintable(u"%1 %2"_s.arg(i).arg(j)));
    }
    m_Marks[32] = SIDE_BAR_CODE | SIDE_BAR_BREAKPOINT;
    m_Marks[33] = SIDE_BAR_CODE | SIDE_BAR_PC | SIDE_BAR_EXECUTED;
    QCOMPARE(PictureOf(32), PictureOf(23));
    QCOMPARE(PictureOf(33), PictureOf(27));
  }

  void countersAreColumns() {
    const int Width = m_pBar->width();
    m_pBar->SetCounters(CountersOf);
    QCOMPARE(m_pBar->width(), Width);
    m_pBar->SetCountersShown(true);
    QVERIFY(m_pBar->width() > Width + 10 * QFontMetrics(m_pEditor->font()).horizontalAdvance(u'0'));
    const QImage Image = m_pBar->grab().toImage();
    const auto Ground = [&](int Row) { return Image.pixelColor(Width + 1, YOf(Row)); };
    QCOMPARE(Ground(ROW_OF_COUNTERS), GetColor(COLOR_EXEC_PROFILE_BAD_INSTR));
    QCOMPARE(Ground(ROW_OF_COUNTERS + 1), GetColor(COLOR_EXEC_PROFILE_GOOD_INSTR));
    QCOMPARE(Ground(ROW_OF_COUNTERS + 2), Ground(ROW_OF_COUNTERS + 3));
    // What was fetched has a dot of its own.
    const auto Dot = [&](int Row, unsigned Marks) {
      m_Marks[Row] = Marks;
      return PictureOf(Row).copy(0, 0, Width, m_pEditor->RowHeight());
    };
    const QImage Executed = Dot(ROW_OF_COUNTERS + 4, SIDE_BAR_CODE | SIDE_BAR_EXECUTED);
    QVERIFY(Dot(ROW_OF_COUNTERS, SIDE_BAR_CODE) == Executed && Dot(ROW_OF_COUNTERS + 2, SIDE_BAR_CODE) != Executed);
    // A zero is shown, none is not.
    QVERIFY(PictureOf(ROW_OF_COUNTERS + 2) != PictureOf(ROW_OF_COUNTERS + 3));
    m_pBar->SetCountersShown(false);
    QCOMPARE(m_pBar->width(), Width);
  }

  void aTipNamesTheCounters() {
    m_pBar->SetCounters(CountersOf);
    m_pBar->SetCountersShown(true);
    Point(ROW_OF_COUNTERS);
    QTRY_VERIFY(CToolTip::_GetSingleton()->isVisible());
    QStringList Texts;
    for (const QLabel* const pLabel : CToolTip::_GetSingleton()->findChildren<QLabel*>()) Texts << pLabel->text();
    for (const QString& sText : {u"Execution Profile for\n main.c:23"_s, u"Fetched"_s, u"Executed"_s, u"Not-Executed"_s,
                                 u"Load"_s, u"345"_s, u"25.00 %"_s}) {
      QVERIFY2(Texts.contains(sText), qPrintable(sText + u" in "_s + Texts.join(u'|')));
    }
    Point(ROW_OF_COUNTERS + 3);
    QTRY_VERIFY(!CToolTip::_GetSingleton()->isVisible());
  }

private:
  int YOf(int Row) const { return (Row - m_pEditor->TopRow()) * m_pEditor->RowHeight() + m_pEditor->RowHeight() / 2; }
  QImage PictureOf(int Row) {
    const int Height = m_pEditor->RowHeight();
    return m_pBar->grab(QRect(0, (Row - m_pEditor->TopRow()) * Height, m_pBar->width(), Height)).toImage();
  }
  void Point(int Row) {
    const QPoint Pos(m_pBar->width() - 5, YOf(Row));
    QHelpEvent Event(QEvent::ToolTip, Pos, m_pBar->mapToGlobal(Pos));
    QCoreApplication::sendEvent(m_pBar, &Event);
  }

  std::unique_ptr<QWidget> m_pWindow;
  CSourceEditor* m_pEditor = nullptr;
  CSideBar* m_pBar = nullptr;
  QMap<int, unsigned> m_Marks;
};

QTEST_MAIN(CSideBarTest)
#include "side_bar_test.moc"
