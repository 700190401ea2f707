#include "ui/table/table_header.h"

#include <QMenu>

#include "base/text.h"
#include "ui/table/table_model.h"

namespace {

constexpr int MIN_WIDTH = 20;       // pixels
constexpr int MAX_WIDTH = 4000;     // pixels
constexpr int SECTION_MARGIN = 14;  // pixels beside the text of an item
const QString NOT_SORTED = QStringLiteral("None");

}  // namespace

CTableHeader::CTableHeader(QWidget* pParent) : QHeaderView(Qt::Horizontal, pParent) {
  setSectionsMovable(true);
  setFirstSectionMovable(true);
  setSectionsClickable(true);
  setHighlightSections(false);
  setStretchLastSection(true);
  setMinimumSectionSize(MIN_WIDTH);
  setMaximumSectionSize(MAX_WIDTH);
  setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  setContextMenuPolicy(Qt::CustomContextMenu);
  setSortIndicatorShown(true);
  setSortIndicator(-1, Qt::AscendingOrder);
}

U32 CTableHeader::FlagsOf(int LogicalIdx) const {
  return model() ? model()->headerData(LogicalIdx, Qt::Horizontal, ROLE_COLUMN_FLAGS).toUInt() : 0;
}

QString CTableHeader::TitleOf(int LogicalIdx) const {
  return model() ? model()->headerData(LogicalIdx, Qt::Horizontal).toString() : QString();
}

int CTableHeader::FindTitle(const QString& sTitle) const {
  for (int Column = 0; Column < count(); ++Column) {
    if (TitleOf(Column) == sTitle) return Column;
  }
  return -1;
}

void CTableHeader::ApplyDefaults() {
  const int Digit = fontMetrics().horizontalAdvance(u'0');
  for (int Column = 0; Column < count(); ++Column) {
    const int Width = model()->headerData(Column, Qt::Horizontal, ROLE_COLUMN_WIDTH).toInt();
    if (Width > 0) resizeSection(Column, Width * Digit + SECTION_MARGIN);
    SetSectionVisible(Column, !(FlagsOf(Column) & COLUMN_HIDDEN));
  }
}

void CTableHeader::SetSectionVisible(int LogicalIdx, bool bVisible) {
  if (isSectionHidden(LogicalIdx) != bVisible) return;
  if (!bVisible && (count() - hiddenSectionCount() <= 1 || (FlagsOf(LogicalIdx) & COLUMN_FIXED))) return;
  setSectionHidden(LogicalIdx, !bVisible);
  Q_EMIT SectionVisibilityChanged(LogicalIdx, bVisible);
}

void CTableHeader::AddColumnEntries(QMenu* pMenu) {
  for (int Column = 0; Column < count(); ++Column) {
    if (FlagsOf(Column) & COLUMN_FIXED) continue;
    QAction* const pEntry = pMenu->addAction(MenuText(TitleOf(Column)));
    pEntry->setCheckable(true);
    pEntry->setChecked(!isSectionHidden(Column));
    // What can't be hidden is no choice.
    pEntry->setEnabled(isSectionHidden(Column) || count() - hiddenSectionCount() > 1);
    connect(pEntry, &QAction::toggled, this, [this, Column](bool bOn) { SetSectionVisible(Column, bOn); });
  }
}

TABLE_HEADER_RECORD CTableHeader::ToRecord() const {
  TABLE_HEADER_RECORD Record;
  const int Sorted = sortIndicatorSection();
  Record.sSortCol = Sorted >= 0 && Sorted < count() ? TitleOf(Sorted) : NOT_SORTED;
  Record.bDescending = sortIndicatorOrder() == Qt::DescendingOrder;
  for (int Visual = 0; Visual < count(); ++Visual) {
    const int Column = logicalIndex(Visual);
    if (isSectionHidden(Column)) continue;
    Record.VisibleCols << TitleOf(Column);
    Record.ColWidths << sectionSize(Column);
  }
  return Record;
}

void CTableHeader::FromRecord(const TABLE_HEADER_RECORD& Record) {
  QList<int> Columns;
  for (const QString& sTitle : Record.VisibleCols) {
    const int Column = FindTitle(sTitle);
    if (Column >= 0 && !Columns.contains(Column)) Columns << Column;
  }
  if (!Columns.isEmpty()) {
    for (const int Column : std::as_const(Columns)) SetSectionVisible(Column, true);
    for (int Column = 0; Column < count(); ++Column) {
      if (!Columns.contains(Column)) SetSectionVisible(Column, false);
    }
  }
  for (qsizetype i = 0; i < Columns.size(); ++i) moveSection(visualIndex(Columns[i]), static_cast<int>(i));
  for (qsizetype i = 0; i < std::min(Record.VisibleCols.size(), Record.ColWidths.size()); ++i) {
    const int Column = FindTitle(Record.VisibleCols[i]);
    if (Column >= 0 && Record.ColWidths[i] > 0)
      resizeSection(Column, std::clamp(Record.ColWidths[i], MIN_WIDTH, MAX_WIDTH));
  }
  setSortIndicator(FindTitle(Record.sSortCol), Record.bDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
}
