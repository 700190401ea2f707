#include "ui/windows/side_bar.h"

#include <QHelpEvent>
#include <QWheelEvent>

#include "base/text.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "ui/tool_tip.h"
#include "ui/windows/row_view.h"

namespace {

constexpr int MARGIN = 3;          // pixels beside the icons
constexpr int COUNTER_MARGIN = 4;  // pixels beside a counter
constexpr int COUNTER_DIGITS = 9;  // a counter with more is shown in thousands
constexpr int ICON_ROW = 17;       // row height for which the icons' sizes are meant
constexpr unsigned ANY_BREAKPOINT = SIDE_BAR_BREAKPOINT | SIDE_BAR_BREAKPOINT_DISABLED;
constexpr unsigned ANY_PC = SIDE_BAR_PC | SIDE_BAR_PC_INACTIVE;

struct MARK_ICON {
  unsigned Marks;
  unsigned Among;  // what is looked at of a row's marks
  int Size;
  const char* sIcon;
};
// Each whose marks are all there is painted, later ones over earlier ones. A breakpoint or the arrow says that there is
// code.
constexpr MARK_ICON ICONS[] = {
    {SIDE_BAR_CODE, SIDE_BAR_CODE | SIDE_BAR_EXECUTED | ANY_BREAKPOINT | ANY_PC, 17, "grey-dot-17.png"},
    {SIDE_BAR_CODE | SIDE_BAR_EXECUTED, SIDE_BAR_CODE | SIDE_BAR_EXECUTED | ANY_BREAKPOINT | ANY_PC, 17,
     "green-dot-17.png"},
    {SIDE_BAR_BREAKPOINT_DISABLED, ANY_BREAKPOINT | SIDE_BAR_SMALL, 17, "breakpoint-disabled-17.png"},
    {SIDE_BAR_BREAKPOINT_DISABLED | SIDE_BAR_SMALL, ANY_BREAKPOINT | SIDE_BAR_SMALL, 11, "breakpoint-clear-11.png"},
    {SIDE_BAR_BREAKPOINT, SIDE_BAR_BREAKPOINT | SIDE_BAR_SMALL, 17, "breakpoint-17.png"},
    {SIDE_BAR_BREAKPOINT | SIDE_BAR_SMALL, SIDE_BAR_BREAKPOINT | SIDE_BAR_SMALL, 11, "breakpoint-11.png"},
    {SIDE_BAR_PC, SIDE_BAR_PC, 12, "arrow-pc-12.png"},
    {SIDE_BAR_PC_INACTIVE, ANY_PC, 12, "arrow-pc-yellow-12.png"},
};

int IconSize(int RowHeight, int Size) {
  return (RowHeight * Size / ICON_ROW) | 1;
}

QString CounterText(U64 Count) {
  const QString sText = QString::number(Count);
  return sText.size() <= COUNTER_DIGITS ? sText : QString::number(Count / 1000) + QLatin1Char('k');
}

QColor ProfileColor(ROW_PROFILE Profile) {
  if (Profile == ROW_NOT_FETCHED) return {};
  return GetColor(Profile == ROW_COVERED ? COLOR_EXEC_PROFILE_GOOD_INSTR : COLOR_EXEC_PROFILE_BAD_INSTR);
}

}  // namespace

CSideBar::CSideBar(CRowView* pView, MARKS_OF MarksOf, QWidget* pParent)
    : QWidget(pParent), m_pView(pView), m_MarksOf(std::move(MarksOf)) {
  connect(pView, &CRowView::Scrolled, this, qOverload<>(&QWidget::update));
  UpdateWidth();
}

void CSideBar::SetCounters(COUNTERS_OF CountersOf) {
  m_CountersOf = std::move(CountersOf);
  update();
}

void CSideBar::SetCountersShown(bool bShown) {
  m_bCountersShown = bShown;
  UpdateWidth();
  update();
}

int CSideBar::IconColumnWidth() const {
  return IconSize(m_pView->RowHeight(), ICON_ROW) + 2 * MARGIN;
}

int CSideBar::CounterColumnWidth() const {
  return QFontMetrics(m_pView->font()).horizontalAdvance(QString(COUNTER_DIGITS, QLatin1Char('0'))) +
         2 * COUNTER_MARGIN;
}

void CSideBar::UpdateWidth() {
  setFixedWidth(IconColumnWidth() + (m_bCountersShown ? 2 * CounterColumnWidth() : 0));
}

std::optional<ROW_COUNTERS> CSideBar::CountersAt(int Row) const {
  return m_bCountersShown && m_CountersOf && Row >= 0 ? m_CountersOf(Row) : std::nullopt;
}

void CSideBar::PaintIcons(QPainter& Painter, int Row, int y, bool bFetched) const {
  const int RowHeight = m_pView->RowHeight();
  const unsigned Marks = m_MarksOf(Row) | (bFetched ? SIDE_BAR_EXECUTED : SIDE_BAR_NONE);
  for (const MARK_ICON& Icon : ICONS) {
    if ((Marks & Icon.Among) != Icon.Marks) continue;
    const int Size = IconSize(RowHeight, Icon.Size);
    GetIcon(QLatin1String(Icon.sIcon))
        .paint(&Painter, QRect((IconColumnWidth() - Size) / 2, y + (RowHeight - Size) / 2, Size, Size));
  }
}

void CSideBar::PaintCounters(QPainter& Painter, const ROW_COUNTERS& Counters, int y) const {
  const QColor Ground = ProfileColor(Counters.Profile);
  const int Width = CounterColumnWidth();
  const QRect Columns(IconColumnWidth(), y, 2 * Width, m_pView->RowHeight());
  if (Ground.isValid()) Painter.fillRect(Columns, Ground);
  Painter.setFont(m_pView->font());
  Painter.setPen(Ground.isValid() ? QColor(Qt::black) : palette().color(QPalette::WindowText));
  int Right = IconColumnWidth() + Width;
  for (const U64 Count : {Counters.RunCount(), Counters.FetchCount}) {
    Painter.drawText(QRect(Right - Width, y, Width - COUNTER_MARGIN, m_pView->RowHeight()),
                     Qt::AlignRight | Qt::AlignVCenter, CounterText(Count));
    Right += Width;
  }
}

void CSideBar::paintEvent(QPaintEvent* pEvent) {
  QPainter Painter(this);
  Painter.fillRect(pEvent->rect(), palette().color(QPalette::Window));
  const int RowHeight = m_pView->RowHeight();
  // Not beside the view's scroll bar.
  const int Height = m_pView->viewport()->height();
  for (int Row = m_pView->TopRow(), y = 0; Row < m_pView->NumRows() && y < Height; ++Row, y += RowHeight) {
    const std::optional<ROW_COUNTERS> Counters = CountersAt(Row);
    PaintIcons(Painter, Row, y, Counters && Counters->FetchCount > 0);
    if (Counters) PaintCounters(Painter, *Counters, y);
  }
}

bool CSideBar::ShowCounterTip(const QPoint& Pos, const QPoint& GlobalPos) {
  const std::optional<ROW_COUNTERS> Counters = CountersAt(m_pView->RowAt(Pos.y()));
  if (!Counters || Pos.x() < IconColumnWidth()) return false;
  const double Load = Counters->TotalFetchCount > 0 ? 100.0 * static_cast<double>(Counters->FetchCount) /
                                                          static_cast<double>(Counters->TotalFetchCount)
                                                    : 0.0;
  CToolTip::_GetSingleton()->ShowPairs(this, GlobalPos, QStringLiteral("Execution Profile for\n ") + Counters->sPlace,
                                       {{QStringLiteral("Fetched"), GroupedText(Counters->FetchCount)},
                                        {QStringLiteral("Executed"), GroupedText(Counters->RunCount())},
                                        {QStringLiteral("Not-Executed"), GroupedText(Counters->SkipCount)},
                                        {QStringLiteral("Load"), QStringLiteral("%1 %").arg(Load, 0, 'f', 2)}});
  return true;
}

bool CSideBar::event(QEvent* pEvent) {
  if (pEvent->type() != QEvent::ToolTip) return QWidget::event(pEvent);
  const auto* const pHelp = static_cast<QHelpEvent*>(pEvent);
  if (!ShowCounterTip(pHelp->pos(), pHelp->globalPos())) CToolTip::_GetSingleton()->Hide();
  return true;
}

void CSideBar::mousePressEvent(QMouseEvent* pEvent) {
  const int Row = m_pView->RowAt(pEvent->pos().y());
  if (Row >= 0) Q_EMIT Clicked(Row, pEvent->button());
}

void CSideBar::wheelEvent(QWheelEvent* pEvent) {
  QCoreApplication::sendEvent(m_pView->viewport(), pEvent);
}
