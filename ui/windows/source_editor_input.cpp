// The source editor's keys, mouse and menu.

#include <QClipboard>
#include <QContextMenuEvent>
#include <QMetaMethod>
#include <algorithm>

#include "ui/popup_menu.h"
#include "ui/windows/source_editor_parts.h"

// ---- Keys

bool CSourceEditor::event(QEvent* pEvent) {
  if (pEvent->type() != QEvent::ShortcutOverride && pEvent->type() != QEvent::KeyPress) return CRowView::event(pEvent);
  auto* const pKey = static_cast<QKeyEvent*>(pEvent);
  const bool bEdit = CSourceEdits::IsEdit(*pKey) && IsEditable();
  if (pEvent->type() == QEvent::ShortcutOverride) {
    // What works here is no command of the program.
    if (bEdit || CSourceCursor::IsMove(*pKey) || pKey->matches(QKeySequence::Copy) ||
        pKey->matches(QKeySequence::SelectAll)) {
      pEvent->accept();
      return true;
    }
    return CRowView::event(pEvent);
  }
  // The toolkit takes Tab for a move to the next widget.
  if (bEdit && (pKey->key() == Qt::Key_Tab || pKey->key() == Qt::Key_Backtab)) {
    keyPressEvent(pKey);
    return true;
  }
  return CRowView::event(pEvent);
}

void CSourceEditor::keyPressEvent(QKeyEvent* pEvent) {
  if (pEvent->matches(QKeySequence::Copy)) return Copy();
  if (pEvent->matches(QKeySequence::SelectAll)) return SelectAll();
  if (CSourceCursor::IsMove(*pEvent)) {
    m_pParts->MoveCursor([&] { m_pParts->Cursor.Move(*pEvent, VisibleRows()); });
    return;
  }
  if (CSourceEdits::IsEdit(*pEvent) && !IsMessage()) return m_pParts->Press(*pEvent);
  pEvent->ignore();
}

void CSourceEditor::inputMethodEvent(QInputMethodEvent* pEvent) {
  SOURCE_EDITOR_PARTS& P = *m_pParts;
  if (!pEvent->commitString().isEmpty() && P.BeginEdit()) {
    P.EndEdit(P.Edits.Insert(P.sFilePath, pEvent->commitString(), P.EditSelection()));
  }
  pEvent->accept();
}

QVariant CSourceEditor::inputMethodQuery(Qt::InputMethodQuery Query) const {
  switch (Query) {
    case Qt::ImCursorRectangle:
      return CSourcePainter::CursorRect(m_pParts->Scene()).translated(viewport()->pos());
    case Qt::ImEnabled:
      return IsEditable();
    default:
      return CRowView::inputMethodQuery(Query);
  }
}

// ---- Points

TEXT_POS CSourceEditor::PosAt(const QPoint& Point) const {
  const int y = Point.y() < 0 ? -1 : Point.y() / RowHeight();
  const int Row = std::clamp(TopRow() + y, 0, std::max(0, NumRows() - 1));
  return {m_pParts->Layout.NearestColumn(Row, Point.x() + horizontalScrollBar()->value()), Row};
}

bool CSourceEditor::IsOnText(const QPoint& Point) const {
  return RowAt(Point.y()) >= 0 && Point.x() >= m_pParts->Layout.BarEnd();
}

QString CSourceEditor::WordAt(const QPoint& Point, TEXT_POS* pPos) const {
  if (!IsOnText(Point)) return {};
  const int Row = RowAt(Point.y());
  const QStringView sRow = m_pParts->Rows.RowText(Row);
  const qreal x = Point.x() + horizontalScrollBar()->value();
  const int Column = m_pParts->Layout.ColumnAt(Row, x);
  const bool bAhead = x < m_pParts->Layout.XOf({0, Row});
  if (bAhead || Column >= sRow.size() || !IsWordChar(sRow[Column])) return {};
  const auto [Start, End] = WordRange(sRow, Column);
  if (pPos) *pPos = {Start, Row};
  return sRow.mid(Start, End - Start).toString();
}

QString CSourceEditor::WordUnderCursor() const {
  const QStringView sRow = m_pParts->Rows.RowText(CursorPos().y());
  const auto [Start, End] = WordRange(sRow, CursorPos().x());
  return sRow.mid(Start, End - Start).toString();
}

// ---- Mouse

void CSourceEditor::mousePressEvent(QMouseEvent* pEvent) {
  SOURCE_EDITOR_PARTS& P = *m_pParts;
  const QPoint Point = pEvent->pos();
  const TEXT_POS Pos = PosAt(Point);
  Q_EMIT MousePressed(Point, pEvent->button(), pEvent->modifiers());
  const int Row = RowAt(Point.y());
  const bool bOnBar = Point.x() >= P.Layout.NumberWidth() && Point.x() < P.Layout.BarEnd();
  if (pEvent->button() == Qt::LeftButton && bOnBar && Rows().IsSource(Row) && Rows().HasCodeAt(Row))
    return P.ToggleExpansion(Row);
  const bool bOnSelection = P.Cursor.HasSelection() && IsOnText(Point) && P.Cursor.IsSelected(Pos);
  if (pEvent->button() == Qt::RightButton && !bOnSelection) SetCursorPos(Pos);
  if (pEvent->button() != Qt::LeftButton) return;
  const bool bShift = pEvent->modifiers() & Qt::ShiftModifier;
  P.bClickPending = bOnSelection && !bShift;
  P.bSelecting = !P.bClickPending;
  if (P.bSelecting) P.MoveCursor([&] { P.Cursor.MoveTo(Pos, bShift); });
}

void CSourceEditor::mouseReleaseEvent(QMouseEvent* pEvent) {
  SOURCE_EDITOR_PARTS& P = *m_pParts;
  if (pEvent->button() != Qt::LeftButton) return;
  if (P.bClickPending) SetCursorPos(PosAt(pEvent->pos()));
  CancelClick();
}

void CSourceEditor::CancelClick() {
  m_pParts->bClickPending = m_pParts->bSelecting = false;
  m_pParts->DragTimer.stop();
}

void SOURCE_EDITOR_PARTS::SelectTo(const QPoint& Point) {
  const TEXT_POS Pos = Editor.PosAt(Point);
  MoveCursor([&] { Cursor.MoveTo(Pos, true); });
}

void SOURCE_EDITOR_PARTS::OnDragTimer() {
  const QPoint Point = Editor.viewport()->mapFromGlobal(QCursor::pos());
  const int Distance = Point.y() < 0 ? Point.y() : std::max(0, Point.y() - Editor.viewport()->height());
  // The further outside, the faster.
  const int Step = Distance / Editor.RowHeight() + (Distance > 0) - (Distance < 0);
  Editor.verticalScrollBar()->setValue(Editor.TopRow() + Step);
  SelectTo(Point);
}

void CSourceEditor::mouseMoveEvent(QMouseEvent* pEvent) {
  SOURCE_EDITOR_PARTS& P = *m_pParts;
  Q_EMIT MouseMoved(pEvent->pos(), pEvent->buttons());
  viewport()->setCursor(IsOnText(pEvent->pos()) || P.bSelecting ? Qt::IBeamCursor : Qt::ArrowCursor);
  if (!P.bSelecting || !(pEvent->buttons() & Qt::LeftButton)) return;
  P.SelectTo(pEvent->pos());
  const bool bOutside = !viewport()->rect().contains(pEvent->pos());
  if (!bOutside) {
    P.DragTimer.stop();
  } else if (!P.DragTimer.isActive()) {
    P.DragTimer.start();
  }
}

void CSourceEditor::mouseDoubleClickEvent(QMouseEvent* pEvent) {
  if (pEvent->button() != Qt::LeftButton) return;
  const TEXT_POS Pos = PosAt(pEvent->pos());
  const auto [Start, End] = WordRange(m_pParts->Rows.RowText(Pos.y()), Pos.x());
  if (IsOnText(pEvent->pos())) {
    m_pParts->MoveCursor([&] { m_pParts->Cursor.Select({Start, Pos.y()}, {End, Pos.y()}); });
  }
  Q_EMIT MouseDoubleClicked(pEvent->pos(), pEvent->button());
}

void CSourceEditor::leaveEvent(QEvent* pEvent) {
  CRowView::leaveEvent(pEvent);
  Q_EMIT MouseLeft();
}

// ---- Menu

void CSourceEditor::AddMenuEntries(QMenu* pMenu, bool bExpansion) {
  pMenu->addAction(QStringLiteral("&Copy"), QKeySequence(QKeySequence::Copy), this, &CSourceEditor::Copy)
      ->setEnabled(HasSelection());
  pMenu->addAction(QStringLiteral("Select &All"), QKeySequence(QKeySequence::SelectAll), this,
                   &CSourceEditor::SelectAll);
  if (!bExpansion || IsMessage()) return;
  pMenu->addAction(QStringLiteral("&Expand All"), this, &CSourceEditor::ExpandAll);
  pMenu->addAction(QStringLiteral("C&ollapse All"), this, &CSourceEditor::CollapseAll)
      ->setEnabled(!m_pParts->Rows.ExpandedLocs().isEmpty());
}

void CSourceEditor::contextMenuEvent(QContextMenuEvent* pEvent) {
  // By its key, the menu belongs to the cursor.
  const bool bByKey = pEvent->reason() == QContextMenuEvent::Keyboard;
  const QPoint Pos = bByKey ? viewport()->mapToGlobal(CSourcePainter::CursorRect(m_pParts->Scene()).bottomLeft())
                            : pEvent->globalPos();
  CancelClick();
  if (isSignalConnected(QMetaMethod::fromSignal(&CSourceEditor::CustomContextMenuRequested))) {
    Q_EMIT CustomContextMenuRequested(Pos);
    return;
  }
  CPopupMenu Menu(this);
  AddMenuEntries(&Menu, true);
  Menu.Run(Pos);
}

void CSourceEditor::Copy() {
  if (HasSelection()) QApplication::clipboard()->setText(SelectedText());
}
