// The source editor's view: preferences, scrolling and painting.

#include <algorithm>

#include "ui/windows/source_editor_parts.h"

namespace {

constexpr int SCROLL_AHEAD = 10;  // columns

}  // namespace

void CSourceEditor::EnsureRowVisible(int Row) {
  if (Row < TopRow() || Row >= TopRow() + VisibleRows()) CenterRow(Row);
}

void CSourceEditor::CenterRow(int Row) {
  verticalScrollBar()->setValue(Row - VisibleRows() / 2);
}

int CSourceEditor::VisibleRows() const {
  return std::max(1, viewport()->height() / RowHeight());
}

void CSourceEditor::SetFonts(const QFont& TextFont, const QFont& LineNumberFont) {
  setFont(TextFont);
  viewport()->setFont(TextFont);
  m_pParts->Metrics.SetFont(TextFont);
  m_pParts->Layout.SetLineNumberFont(LineNumberFont);
  m_pParts->UpdateScrollBars();
}

void CSourceEditor::SetTabSpacing(int Columns) {
  m_pParts->Metrics.SetTabSpacing(Columns);
  m_pParts->Layout.Invalidate();
  m_pParts->UpdateScrollBars();
}

void CSourceEditor::SetLineNumberFreq(int Freq) {
  m_pParts->Layout.Options.LineNumberFreq = Freq;
  m_pParts->UpdateScrollBars();
}

void CSourceEditor::SetExpansionBarShown(bool bShown) {
  m_pParts->Layout.Options.bExpansionBar = bShown;
  m_pParts->UpdateScrollBars();
}

void CSourceEditor::SetInlineAssemblyIndented(bool bIndented) {
  m_pParts->Layout.Options.bIndentInstructions = bIndented;
  m_pParts->UpdateScrollBars();
}

void CSourceEditor::SetEncodingsShown(bool bShown) {
  m_pParts->Rows.SetEncodingsShown(bShown);
  UpdateInstructions();
}

void SOURCE_EDITOR_PARTS::UpdateScrollBars() {
  UpdateRanges();
  Editor.viewport()->update();
}

void SOURCE_EDITOR_PARTS::UpdateRanges() {
  const QSize Size = Editor.viewport()->size();
  QScrollBar& Horizontal = *Editor.horizontalScrollBar();
  Horizontal.setSingleStep(static_cast<int>(Metrics.CharWidth()));
  Horizontal.setPageStep(Size.width());
  Horizontal.setRange(0, std::max(0, Layout.Width() - Size.width()));
  Editor.verticalScrollBar()->setPageStep(Editor.VisibleRows());
  Editor.verticalScrollBar()->setRange(0, std::max(0, Rows.NumRows() - Editor.VisibleRows()));
}

void SOURCE_EDITOR_PARTS::UpdateRows(int First, int Last) {
  const int Top = Editor.TopRow();
  First = std::max(First, Top);
  Last = std::min(Last, Top + Editor.VisibleRows());
  if (First > Last) return;
  const int RowHeight = Metrics.RowHeight();
  Editor.viewport()->update(0, (First - Top) * RowHeight, Editor.viewport()->width(), (Last - First + 1) * RowHeight);
}

void SOURCE_EDITOR_PARTS::UpdateAfterMove(TEXT_POS OldPos, TEXT_POS OldAnchor) {
  constexpr int CURRENT_LINE_ONLY = 1;
  if (Layout.Options.LineNumberFreq == CURRENT_LINE_ONLY) return Editor.viewport()->update();
  if (OldPos == OldAnchor && !Cursor.HasSelection()) {
    UpdateRows(OldPos.y(), OldPos.y());
    UpdateRows(Cursor.Pos().y(), Cursor.Pos().y());
    return;
  }
  const auto [First, Last] = std::minmax({OldPos.y(), OldAnchor.y(), Cursor.Pos().y(), Cursor.Anchor().y()});
  UpdateRows(First, Last);
}

void SOURCE_EDITOR_PARTS::ShowCursor() {
  const int Row = Cursor.Pos().y();
  QScrollBar& Vertical = *Editor.verticalScrollBar();
  if (Row < Vertical.value()) Vertical.setValue(Row);
  if (Row >= Vertical.value() + Editor.VisibleRows()) Vertical.setValue(Row - Editor.VisibleRows() + 1);
  const int CharWidth = static_cast<int>(Metrics.CharWidth());
  const int x = static_cast<int>(Layout.XOf(Cursor.Pos())) - Layout.TextLeft();
  const int Width = Editor.viewport()->width() - Layout.TextLeft();
  QScrollBar& Horizontal = *Editor.horizontalScrollBar();
  if (x < Horizontal.value() + CharWidth) Horizontal.setValue(std::max(0, x - CharWidth));
  if (x > Horizontal.value() + Width - CharWidth) Horizontal.setValue(x - Width + SCROLL_AHEAD * CharWidth);
}

void SOURCE_EDITOR_PARTS::RestartBlink() {
  bCursorShown = true;
  const int FlashTime = QApplication::cursorFlashTime();
  if (Editor.hasFocus() && FlashTime > 0) {
    BlinkTimer.start(FlashTime / 2);
  } else {
    BlinkTimer.stop();
  }
}

SOURCE_SCENE SOURCE_EDITOR_PARTS::Scene() const {
  return {Rows,
          Metrics,
          Layout,
          Cursor,
          Highlights,
          const_cast<CSourceColors&>(Colors),
          Editor.palette(),
          Editor.viewport()->size(),
          Editor.TopRow(),
          Editor.horizontalScrollBar()->value(),
          Editor.hasFocus(),
          bCursorShown};
}

void CSourceEditor::paintEvent(QPaintEvent* pEvent) {
  QPainter Painter(viewport());
  const SOURCE_SCENE Scene = m_pParts->Scene();
  CSourcePainter(Painter, Scene).Paint(pEvent->rect());
}

void CSourceEditor::resizeEvent(QResizeEvent* pEvent) {
  CRowView::resizeEvent(pEvent);
  m_pParts->UpdateScrollBars();
  Q_EMIT Scrolled();
}

// What stays in view is moved and not painted again; line numbers and indicators don't move sideways.
void CSourceEditor::scrollContentsBy(int dx, int dy) {
  if (dx == 0 && std::abs(dy) < VisibleRows()) {
    viewport()->scroll(0, dy * RowHeight());
  } else if (dy == 0 && std::abs(dx) < viewport()->width()) {
    const int Left = m_pParts->Layout.BarEnd();
    viewport()->scroll(dx, 0, QRect(Left, 0, viewport()->width() - Left, viewport()->height()));
  } else {
    viewport()->update();
  }
  Q_EMIT Scrolled();
}

void CSourceEditor::focusInEvent(QFocusEvent* pEvent) {
  CRowView::focusInEvent(pEvent);
  m_pParts->RestartBlink();
  viewport()->update();
}

void CSourceEditor::focusOutEvent(QFocusEvent* pEvent) {
  CRowView::focusOutEvent(pEvent);
  m_pParts->BlinkTimer.stop();
  viewport()->update();
}
