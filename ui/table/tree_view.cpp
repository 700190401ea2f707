#include "ui/table/tree_view.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/colors.h"

namespace {

constexpr int SIGN_SIZE = 9;  // pixels

// The default is made for a light ground and would outshine the texts of a dark one.
QColor GridColor(const QPalette& Palette) {
  if (IsDarkPalette() && !IsColorModified(COLOR_TABLE_GRID_LINES)) return Palette.color(QPalette::Mid);
  return GetColor(COLOR_TABLE_GRID_LINES);
}

}  // namespace

// Items are expanded here alone, so that nobody is expanded unannounced.
CTreeView::CTreeView(QWidget* pParent) : QTreeView(pParent) {
  setItemsExpandable(false);
  setExpandsOnDoubleClick(false);
  setUniformRowHeights(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setFrameShape(QFrame::NoFrame);
  setMouseTracking(true);
  setTabKeyNavigation(false);
  setAllColumnsShowFocus(true);
}

void CTreeView::SetFlat(bool bFlat) {
  setRootIsDecorated(!bFlat);
}

QModelIndexList CTreeView::VisibleRows() const {
  QModelIndexList Rows;
  for (QModelIndex Index = indexAt(QPoint(0, 0)); Index.isValid(); Index = indexBelow(Index)) {
    const QRect Rect = visualRect(Index.siblingAtColumn(header()->logicalIndex(0)));
    if (Rect.top() >= viewport()->height()) break;
    Rows << Index.siblingAtColumn(0);
  }
  return Rows;
}

void CTreeView::expand(const QModelIndex& Index) {
  if (!Index.isValid() || isExpanded(Index)) return;
  Q_EMIT AboutToExpand(Index);
  QTreeView::expand(Index);
}

void CTreeView::collapse(const QModelIndex& Index) {
  if (!Index.isValid() || !isExpanded(Index)) return;
  Q_EMIT AboutToCollapse(Index);
  QTreeView::collapse(Index);
}

void CTreeView::Toggle(const QModelIndex& Index) {
  isExpanded(Index) ? collapse(Index) : expand(Index);
}

QModelIndex CTreeView::BranchAt(const QPoint& Pos) const {
  const QModelIndex Index = indexAt(Pos).siblingAtColumn(0);
  if (!Index.isValid() || !model()->hasChildren(Index) || (!rootIsDecorated() && !Index.parent().isValid())) return {};
  const QRect Rect = visualRect(Index);
  return Pos.x() < Rect.left() && Pos.x() >= Rect.left() - indentation() ? Index : QModelIndex();
}

void CTreeView::drawBranches(QPainter* pPainter, const QRect& Rect, const QModelIndex& Index) const {
  if (!model()->hasChildren(Index) || (!rootIsDecorated() && !Index.parent().isValid())) return;
  const QRect Room(Rect.right() + 1 - indentation(), Rect.top(), indentation(), Rect.height());
  const QIcon Icon = GetIcon(QLatin1String(isExpanded(Index) ? "node-collapse.png" : "node-expand.png"));
  Icon.paint(pPainter, QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(SIGN_SIZE, SIGN_SIZE), Room));
}

void CTreeView::drawRow(QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const {
  QTreeView::drawRow(pPainter, Option, Index);
  pPainter->save();
  pPainter->setPen(GridColor(palette()));
  pPainter->drawLine(Option.rect.bottomLeft(), Option.rect.bottomRight());
  const QHeaderView& Header = *header();
  for (int Column = 0; Column < Header.count(); ++Column) {
    if (Header.isSectionHidden(Column)) continue;
    const int Right = Header.sectionViewportPosition(Column) + Header.sectionSize(Column) - 1;
    pPainter->drawLine(Right, Option.rect.top(), Right, Option.rect.bottom());
  }
  pPainter->restore();
}

// The keys of a tree: into an item and out of it.
bool CTreeView::MoveInTree(int Key) {
  const QModelIndex Index = currentIndex().siblingAtColumn(0);
  if (!Index.isValid() || !rootIsDecorated()) return false;
  if (Key == Qt::Key_Right && model()->hasChildren(Index)) {
    if (isExpanded(Index)) {
      setCurrentIndex(model()->index(0, currentIndex().column(), Index));
    } else {
      expand(Index);
    }
    return true;
  }
  if (Key == Qt::Key_Left && isExpanded(Index)) return collapse(Index), true;
  if (Key == Qt::Key_Left && Index.parent().isValid()) {
    return setCurrentIndex(Index.parent().siblingAtColumn(currentIndex().column())), true;
  }
  return false;
}

void CTreeView::keyPressEvent(QKeyEvent* pEvent) {
  bool bHandled = false;
  Q_EMIT KeyPressed(pEvent, &bHandled);
  const bool bPlain = !(pEvent->modifiers() & ~Qt::KeypadModifier);
  if (!bHandled && bPlain && (pEvent->key() == Qt::Key_Left || pEvent->key() == Qt::Key_Right)) {
    bHandled = MoveInTree(pEvent->key());
  }
  if (!bHandled) QTreeView::keyPressEvent(pEvent);
}

void CTreeView::mousePressEvent(QMouseEvent* pEvent) {
  const QModelIndex Branch =
      pEvent->button() == Qt::LeftButton ? BranchAt(pEvent->position().toPoint()) : QModelIndex();
  if (Branch.isValid()) {
    setFocus(Qt::MouseFocusReason);
    Toggle(Branch);
    pEvent->accept();
    return;
  }
  QTreeView::mousePressEvent(pEvent);
  Q_EMIT ContentAreaClicked(pEvent);
}

void CTreeView::mouseDoubleClickEvent(QMouseEvent* pEvent) {
  if (pEvent->button() == Qt::LeftButton && BranchAt(pEvent->position().toPoint()).isValid()) {
    return mousePressEvent(pEvent);
  }
  QTreeView::mouseDoubleClickEvent(pEvent);
  Q_EMIT ContentAreaDoubleClicked(pEvent);
}

void CTreeView::mouseMoveEvent(QMouseEvent* pEvent) {
  QTreeView::mouseMoveEvent(pEvent);
  Q_EMIT MouseMoved(pEvent);
}
