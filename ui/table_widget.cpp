#include "ui/table_widget.h"

#include <QEvent>
#include <QHeaderView>

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"

namespace {
constexpr int ROW_MARGIN = 5;  // pixels
}

CTableWidget::CTableWidget(int Rows, int Columns, QWidget* pParent) : QTableWidget(Rows, Columns, pParent) {
  setFont(GetFont(FONT_APP));
  horizontalHeader()->setFont(GetFont(FONT_TABLE_HEADER));
  horizontalHeader()->setHighlightSections(false);
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(GetFontHeight(FONT_APP) + ROW_MARGIN);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  setTabKeyNavigation(false);
  UpdateStyle();
}

void CTableWidget::UpdateStyle() {
  QColor Grid = GetColor(COLOR_TABLE_GRID_LINES);
  // The default is made for a light ground and would outshine the texts of a dark one.
  if (IsDarkPalette() && !IsColorModified(COLOR_TABLE_GRID_LINES)) Grid = palette().color(QPalette::Mid);
  const QString sStyle = QStringLiteral("QTableView { gridline-color: %1; }").arg(Grid.name());
  // Setting a style sheet, even the same one, changes the palette, which leads here again.
  if (sStyle != styleSheet()) setStyleSheet(sStyle);
}

void CTableWidget::changeEvent(QEvent* pEvent) {
  QTableWidget::changeEvent(pEvent);
  if (pEvent->type() == QEvent::PaletteChange)
    QMetaObject::invokeMethod(this, &CTableWidget::UpdateStyle, Qt::QueuedConnection);
}
