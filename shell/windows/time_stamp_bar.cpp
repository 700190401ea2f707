#include "shell/windows/time_stamp_bar.h"

#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include "shell/log/console_print.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/fonts.h"
#include "shell/windows/console_view.h"

namespace {

constexpr int MARGIN = 10;  // pixels, both sides together

}  // namespace

CTimeStampBar::CTimeStampBar(QWidget* pParent, CConsoleView* pView) : QWidget(pParent), m_pView(pView) {
  setContextMenuPolicy(Qt::CustomContextMenu);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  connect(pView, &QPlainTextEdit::updateRequest, this, qOverload<>(&QWidget::update));
  connect(pView->verticalScrollBar(), &QScrollBar::valueChanged, this, &CTimeStampBar::ResizeToOptWidth);
}

QString CTimeStampBar::TextOf(int Line) const {
  return m_pView->HasTimeStamp(Line) ? TimeStampText(m_pView->GetTimeStamp(Line)) : QString();
}

void CTimeStampBar::ResizeToOptWidth() {
  if (isHidden()) return;
  int Width = 0;
  m_pView->VisitVisibleLines([&](int Line, const QRectF&) {
    if (m_pView->HasTimeStamp(Line)) Width = std::max(Width, GetTextWidth(FONT_CONSOLE, TextOf(Line)));
  });
  // A message that fills the whole view leaves its stamp out of sight.
  if (Width > 0 || !m_pView->HasText()) setFixedWidth(m_pView->HasText() ? Width + MARGIN : 0);
}

void CTimeStampBar::paintEvent(QPaintEvent*) {
  QPainter Painter(this);
  Painter.setFont(GetFont(FONT_CONSOLE));
  Painter.setPen(GetTextColor(COLOR_LINE_NUMBERS));
  m_pView->VisitVisibleLines([&](int Line, const QRectF& Rect) {
    const QRectF Place(0, Rect.top(), width() - MARGIN / 2, Rect.height());
    Painter.drawText(Place, Qt::AlignRight | Qt::AlignVCenter, TextOf(Line));
  });
}

void CTimeStampBar::wheelEvent(QWheelEvent* pEvent) {
  QCoreApplication::sendEvent(m_pView->verticalScrollBar(), pEvent);
}
