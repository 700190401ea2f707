#include "ui/windows/side_bar.h"

#include <QWheelEvent>

#include "shell/look/look.h"
#include "ui/windows/source_editor.h"

namespace {

constexpr int MARGIN = 3;  // pixels

struct MARK_ICON {
  unsigned Mark;
  const char* sIcon;
};
// The first that applies is painted below, later ones over it.
constexpr MARK_ICON ICONS[] = {
    {SIDE_BAR_CODE, "grey-dot-17.png"},
    {SIDE_BAR_BREAKPOINT_DISABLED, "breakpoint-disabled-17.png"},
    {SIDE_BAR_BREAKPOINT, "breakpoint-17.png"},
    {SIDE_BAR_PC, "arrow-pc-12.png"},
    {SIDE_BAR_PC_INACTIVE, "arrow-pc-yellow-12.png"},
};

}  // namespace

CSideBar::CSideBar(CSourceEditor* pEditor, std::function<unsigned(int Row)> MarksOf, QWidget* pParent)
    : QWidget(pParent), m_pEditor(pEditor), m_MarksOf(std::move(MarksOf)) {
  connect(pEditor, &CSourceEditor::Scrolled, this, qOverload<>(&QWidget::update));
  UpdateWidth();
}

void CSideBar::UpdateWidth() {
  setFixedWidth(m_pEditor->RowHeight() + 2 * MARGIN);
}

void CSideBar::paintEvent(QPaintEvent* pEvent) {
  QPainter Painter(this);
  Painter.fillRect(pEvent->rect(), palette().color(QPalette::Window));
  const int Size = m_pEditor->RowHeight() | 1;
  const int Left = (width() - Size) / 2;
  int y = 0;
  for (int Row = m_pEditor->TopRow(); Row < m_pEditor->NumRows() && y < height(); ++Row, y += m_pEditor->RowHeight()) {
    const unsigned Marks = m_MarksOf(Row);
    for (const MARK_ICON& Icon : ICONS) {
      // A breakpoint or the arrow says that there is code.
      if (!(Marks & Icon.Mark) || (Icon.Mark == SIDE_BAR_CODE && Marks != SIDE_BAR_CODE)) continue;
      const int IconSize = Icon.Mark >= SIDE_BAR_PC ? Size - 4 : Size;
      GetIcon(QLatin1String(Icon.sIcon))
          .paint(&Painter,
                 QRect(Left + (Size - IconSize) / 2, y + (m_pEditor->RowHeight() - IconSize) / 2, IconSize, IconSize));
    }
  }
}

void CSideBar::wheelEvent(QWheelEvent* pEvent) {
  QCoreApplication::sendEvent(m_pEditor->viewport(), pEvent);
}
