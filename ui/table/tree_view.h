#pragma once

#include <QTreeView>

// The view of a table window: rows of one height with grid lines, as a tree or, flat, as a plain table. Whoever expands
// an item is told before it happens, because the children may have to be read first.
class CTreeView : public QTreeView {
  Q_OBJECT

public:
  explicit CTreeView(QWidget* pParent);

  // No branches, and no room for them.
  void SetFlat(bool bFlat);
  // Rows that are seen at least in part, from the top.
  QModelIndexList VisibleRows() const;
  // Carries out a layout that waits for the next paint.
  void LayOutNow() { executeDelayedItemsLayout(); }

public Q_SLOTS:
  void expand(const QModelIndex& Index);
  void collapse(const QModelIndex& Index);

Q_SIGNALS:
  void AboutToExpand(const QModelIndex& Index);
  void AboutToCollapse(const QModelIndex& Index);
  // Ahead of the view's own handling; pHandled ends it.
  void KeyPressed(QKeyEvent* pEvent, bool* pHandled);
  void MouseMoved(QMouseEvent* pEvent);
  void ContentAreaClicked(QMouseEvent* pEvent);
  void ContentAreaDoubleClicked(QMouseEvent* pEvent);

protected:
  void drawBranches(QPainter* pPainter, const QRect& Rect, const QModelIndex& Index) const override;
  void drawRow(QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;
  void keyPressEvent(QKeyEvent* pEvent) override;
  void mousePressEvent(QMouseEvent* pEvent) override;
  void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;

private:
  // The item whose branch sign stands at a point.
  QModelIndex BranchAt(const QPoint& Pos) const;
  void Toggle(const QModelIndex& Index);
  bool MoveInTree(int Key);
};
