#include "ui/table/filter_header_view.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>

#include "shell/look/look.h"
#include "ui/popup_menu.h"
#include "ui/table/filter_header_dialog.h"
#include "ui/table/sort_filter.h"
#include "ui/table/table_header.h"

namespace {

constexpr int MAX_FILTER_TEXT = 1024;  // characters; a limited input keeps Escape for itself
constexpr int ROW_MARGIN = 6;          // pixels
// The style's own frame can't be seen on a dark ground.
constexpr char CELL_STYLE[] =
    "QLineEdit { border: 1px solid palette(mid); border-radius: 2px; padding: 0 1px; }"
    "QLineEdit:focus { border-color: palette(highlight); }";

}  // namespace

CFilterHeaderView::CFilterHeaderView(QTreeView* pView, CTableHeader* pHeader, CSortFilter* pProxy, QWidget* pParent)
    : QWidget(pParent), m_pView(pView), m_pHeader(pHeader), m_pProxy(pProxy) {
  m_LayoutTimer.setSingleShot(true);
  m_LayoutTimer.setInterval(0);
  connect(&m_LayoutTimer, &QTimer::timeout, this, &CFilterHeaderView::LayOut);
  connect(pHeader, &QHeaderView::sectionCountChanged, this, &CFilterHeaderView::MakeCells);
  connect(pHeader, &QHeaderView::sectionResized, this, &CFilterHeaderView::LayOutSoon);
  connect(pHeader, &QHeaderView::sectionMoved, this, &CFilterHeaderView::LayOutSoon);
  connect(pHeader, &QHeaderView::geometriesChanged, this, &CFilterHeaderView::LayOutSoon);
  connect(pHeader, &CTableHeader::SectionVisibilityChanged, this, [this](int Column, bool bVisible) {
    // What hides rows has to be seen.
    if (!bVisible) m_pProxy->SetFilter(Column, QString());
    LayOutSoon();
  });
  connect(pView->horizontalScrollBar(), &QScrollBar::valueChanged, this, &CFilterHeaderView::LayOut);
  connect(pProxy, &CSortFilter::FiltersChanged, this, &CFilterHeaderView::ShowFilters);
  hide();
  setStyleSheet(QLatin1String(CELL_STYLE));
  MakeCells();
  SetFont(font());
}

void CFilterHeaderView::SetFont(const QFont& Font) {
  for (QLineEdit* const pCell : std::as_const(m_Cells)) pCell->setFont(Font);
  setFont(Font);
  setFixedHeight(QFontMetrics(Font).height() + ROW_MARGIN);
}

void CFilterHeaderView::MakeCells() {
  qDeleteAll(m_Cells);
  m_Cells.clear();
  for (int Column = 0; Column < m_pHeader->count(); ++Column) {
    const U32 Flags = m_pProxy->headerData(Column, Qt::Horizontal, ROLE_COLUMN_FLAGS).toUInt();
    if (Flags & COLUMN_NO_FILTER) continue;
    auto* const pCell = new QLineEdit(this);
    pCell->setObjectName(QStringLiteral("Filter%1").arg(Column));
    pCell->setMaxLength(MAX_FILTER_TEXT);
    pCell->setPlaceholderText(QString(NO_FILTER));
    pCell->setFont(font());
    pCell->setContextMenuPolicy(Qt::CustomContextMenu);
    pCell->setAccessibleName(QStringLiteral("Filter of ") + m_pHeader->TitleOf(Column));
    pCell->installEventFilter(this);
    connect(pCell, &QLineEdit::editingFinished, this, [this, Column] { OnFilterCellEditComplete(Column); });
    connect(pCell, &QWidget::customContextMenuRequested, this,
            [this, Column, pCell](const QPoint& Pos) { ShowMenu(Column, pCell->mapToGlobal(Pos)); });
    if (m_bLive) connect(pCell, &QLineEdit::textEdited, this, [this, Column] { OnFilterCellEditComplete(Column); });
    m_Cells.insert(Column, pCell);
  }
  ShowFilters();
  LayOutSoon();
}

void CFilterHeaderView::SetLive() {
  m_bLive = true;
  MakeCells();
}

void CFilterHeaderView::LayOutSoon() {
  m_LayoutTimer.start();
}

void CFilterHeaderView::LayOut() {
  m_LayoutTimer.stop();
  const int Left = m_pHeader->mapTo(m_pView, QPoint(0, 0)).x();
  QWidget* pBefore = nullptr;
  for (int Visual = 0; Visual < m_pHeader->count(); ++Visual) {
    const int Column = m_pHeader->logicalIndex(Visual);
    QLineEdit* const pCell = m_Cells.value(Column);
    if (pCell == nullptr) continue;
    pCell->setGeometry(Left + m_pHeader->sectionViewportPosition(Column), 0, m_pHeader->sectionSize(Column), height());
    pCell->setVisible(!m_pHeader->isSectionHidden(Column));
    if (pBefore) setTabOrder(pBefore, pCell);
    pBefore = pCell;
  }
}

void CFilterHeaderView::resizeEvent(QResizeEvent* pEvent) {
  QWidget::resizeEvent(pEvent);
  LayOutSoon();
}

void CFilterHeaderView::showEvent(QShowEvent* pEvent) {
  QWidget::showEvent(pEvent);
  LayOutSoon();
}

QString CFilterHeaderView::TextOf(int Column) const {
  const QString sFilter = m_pProxy->GetFilter(Column);
  return sFilter == NO_FILTER ? QString() : sFilter;
}

void CFilterHeaderView::ShowFilters() {
  for (auto it = m_Cells.cbegin(); it != m_Cells.cend(); ++it) {
    if (it.value()->text() != TextOf(it.key())) it.value()->setText(TextOf(it.key()));
  }
}

void CFilterHeaderView::OnFilterCellEditComplete(int Column) {
  if (QLineEdit* const pCell = m_Cells.value(Column)) m_pProxy->SetFilter(Column, pCell->text());
}

void CFilterHeaderView::SetShown(bool bShown) {
  if (bShown == !isHidden()) return;
  m_pProxy->ClearFilters();
  const bool bFocus = !bShown && isAncestorOf(QApplication::focusWidget());
  setVisible(bShown);
  if (bFocus) m_pView->setFocus();
}

bool CFilterHeaderView::EditFilter(int Column) {
  QLineEdit* const pCell = m_Cells.value(Column);
  if (isHidden() || pCell == nullptr || m_pHeader->isSectionHidden(Column)) return false;
  pCell->setFocus(Qt::ShortcutFocusReason);
  pCell->selectAll();
  return true;
}

void CFilterHeaderView::OnSetFilter(int Column) {
  const U32 Kind = m_pProxy->GetFilterKind(Column);
  if (IsTextColumn(Kind)) {
    EditFilter(Column);
    return;
  }
  CFilterHeaderDialog Dialog(this, m_pHeader->TitleOf(Column), Kind);
  Dialog.SetFilter(m_pProxy->GetFilter(Column));
  if (Dialog.exec() == QDialog::Accepted) m_pProxy->SetFilter(Column, Dialog.GetFilter());
}

void CFilterHeaderView::OnActionClearAllFiltersTriggered() {
  m_pProxy->ClearFilters();
  ShowFilters();
}

void CFilterHeaderView::AddFilterEntries(QMenu* pMenu, int Column) {
  if (isHidden()) return;
  if (m_Cells.contains(Column)) {
    QAction* const pSet = pMenu->addAction(GetIcon(QStringLiteral("funnel-small.png")), QStringLiteral("Set Filter"));
    connect(pSet, &QAction::triggered, this, [this, Column] { OnSetFilter(Column); });
  }
  QAction* const pClear = pMenu->addAction(QStringLiteral("Clear All Filters"));
  pClear->setEnabled(m_pProxy->HasFilters());
  connect(pClear, &QAction::triggered, this, &CFilterHeaderView::OnActionClearAllFiltersTriggered);
}

void CFilterHeaderView::ShowMenu(int Column, const QPoint& GlobalPos) {
  CPopupMenu Menu(this);
  AddFilterEntries(&Menu, Column);
  Menu.Run(GlobalPos);
}

bool CFilterHeaderView::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pEvent->type() != QEvent::KeyPress) return QWidget::eventFilter(pWatched, pEvent);
  const int Key = static_cast<QKeyEvent*>(pEvent)->key();
  const int Column = m_Cells.key(static_cast<QLineEdit*>(pWatched), -1);
  if (Column < 0) return false;
  // A dialog's own.
  if (Key == Qt::Key_Escape && m_bLive) return false;
  if (Key == Qt::Key_Escape) {
    m_Cells[Column]->setText(TextOf(Column));
    Q_EMIT Left(Column);
    return true;
  }
  const bool bReturn = Key == Qt::Key_Return || Key == Qt::Key_Enter;
  if (!bReturn && Key != Qt::Key_Down) return false;
  OnFilterCellEditComplete(Column);
  if (!bReturn || m_bLive) Q_EMIT Left(Column);
  return true;
}
