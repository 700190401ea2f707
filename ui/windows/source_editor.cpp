#include "ui/windows/source_editor.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QScrollBar>

#include "shell/look/look.h"
#include "shell/settings/colors.h"

namespace {

constexpr int LEFT_MARGIN = 2;             // pixels
constexpr int MARKED_NUMBER_DARKER = 180;  // percent, of a line number on a light row
constexpr int NUMBER_MARGIN = 6;           // pixels on each side of a line number
constexpr int SCROLL_AHEAD = 10;           // columns
constexpr int CURSOR_WIDTH = 1;            // pixels
constexpr int LIGHT_GROUND = 140;          // lightness above which a row's colour needs dark text

bool IsWordChar(QChar c) {
  return c.isLetterOrNumber() || c == QLatin1Char('_');
}

bool IsLight(const QColor& Ground) {
  return Ground.isValid() && Ground.lightness() > LIGHT_GROUND;
}

}  // namespace

CSourceEditor::CSourceEditor(QWidget* pParent) : CRowView(pParent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setCursor(Qt::IBeamCursor);
  viewport()->setAutoFillBackground(false);
  verticalScrollBar()->setSingleStep(1);
  connect(&m_BlinkTimer, &QTimer::timeout, this, [this] {
    m_bCursorShown = !m_bCursorShown;
    viewport()->update(CursorRect());
  });
  SetFonts(font(), font());
}

void CSourceEditor::SetText(const QString& sText, bool bMessage, SYNTAX_LANGUAGE Language) {
  m_Rows = sText.isEmpty() ? QStringList() : sText.split(QLatin1Char('\n'));
  if (!m_Rows.isEmpty() && m_Rows.last().isEmpty()) m_Rows.removeLast();
  m_bMessage = bMessage;
  m_Colors.SetText(m_Rows, Language);
  m_RowColors.clear();
  m_Cursor = m_Anchor = TEXT_POS(0, 0);
  MeasureRows();
  UpdateScrollBars();
  verticalScrollBar()->setValue(0);
  horizontalScrollBar()->setValue(0);
  viewport()->update();
}

void CSourceEditor::SetRowColor(int Row, const QColor& Color) {
  if (Color.isValid()) {
    m_RowColors[Row] = Color;
  } else {
    m_RowColors.remove(Row);
  }
  viewport()->update();
}

void CSourceEditor::ClearRowColors() {
  m_RowColors.clear();
  viewport()->update();
}

void CSourceEditor::SetFonts(const QFont& TextFont, const QFont& LineNumberFont) {
  setFont(TextFont);
  viewport()->setFont(TextFont);
  m_LineNumberFont = LineNumberFont;
  const QFontMetrics Metrics(TextFont);
  m_RowHeight = Metrics.height();
  m_CharWidth = std::max(1, Metrics.horizontalAdvance(QLatin1Char('0')));
  UpdateScrollBars();
  viewport()->update();
}

void CSourceEditor::SetTabSpacing(int Columns) {
  m_TabSpacing = std::max(1, Columns);
  MeasureRows();
  UpdateScrollBars();
  viewport()->update();
}

void CSourceEditor::SetLineNumberFreq(int Freq) {
  m_LineNumberFreq = Freq;
  viewport()->update();
}

// ---- Geometry

int CSourceEditor::NumRows() const {
  return static_cast<int>(m_Rows.size());
}

int CSourceEditor::RowHeight() const {
  return m_RowHeight;
}

TEXT_POS CSourceEditor::CursorPos() const {
  return m_Cursor;
}

bool CSourceEditor::HasSelection() const {
  return m_Cursor != m_Anchor;
}

int CSourceEditor::TopRow() const {
  return verticalScrollBar()->value();
}

int CSourceEditor::VisibleRows() const {
  return std::max(1, viewport()->height() / m_RowHeight);
}

int CSourceEditor::LineNumberWidth() const {
  if (m_LineNumberFreq == 0 || m_bMessage) return 0;
  const QString sWidest = QString::number(std::max(NumRows(), 999));
  return QFontMetrics(m_LineNumberFont).horizontalAdvance(sWidest) + 2 * NUMBER_MARGIN;
}

bool CSourceEditor::ShowsLineNumber(int Row) const {
  switch (m_LineNumberFreq) {
    case 1:
      return Row == m_Cursor.y();
    case 2:
      return true;
    case 3:
      return (Row + 1) % 5 == 0 || Row == 0;
    case 4:
      return (Row + 1) % 10 == 0 || Row == 0;
    default:
      return false;
  }
}

QString CSourceEditor::Expanded(const QString& sText) const {
  return ExpandTabs(sText, m_TabSpacing);
}

int CSourceEditor::PixelOf(int Row, int Column) const {
  return QFontMetrics(font()).horizontalAdvance(Expanded(m_Rows.value(Row).left(Column)));
}

int CSourceEditor::ColumnOf(int Row, int x) const {
  const QString& sText = m_Rows.value(Row);
  int First = 0, Last = static_cast<int>(sText.size());
  while (First < Last) {
    const int Column = (First + Last) / 2;
    if ((PixelOf(Row, Column) + PixelOf(Row, Column + 1)) / 2 < x) {
      First = Column + 1;
    } else {
      Last = Column;
    }
  }
  return First;
}

TEXT_POS CSourceEditor::PosAt(const QPoint& Point) const {
  const int Row = std::clamp(TopRow() + (Point.y() < 0 ? -1 : Point.y() / m_RowHeight), 0, std::max(0, NumRows() - 1));
  return {ColumnOf(Row, Point.x() - LineNumberWidth() - LEFT_MARGIN + horizontalScrollBar()->value()), Row};
}

TEXT_POS CSourceEditor::Clamped(TEXT_POS Pos) const {
  const int Row = std::clamp(Pos.y(), 0, std::max(0, NumRows() - 1));
  return {std::clamp(Pos.x(), 0, static_cast<int>(m_Rows.value(Row).size())), Row};
}

void CSourceEditor::MeasureRows() {
  qsizetype Widest = 0;
  m_WidestRow = 0;
  for (int Row = 0; Row < NumRows(); ++Row) {
    const qsizetype Width = Expanded(m_Rows[Row]).size();
    if (Width > Widest) m_WidestRow = Row;
    Widest = std::max(Widest, Width);
  }
}

void CSourceEditor::UpdateScrollBars() {
  const int RowLength = static_cast<int>(m_Rows.value(m_WidestRow).size());
  const int TextWidth = PixelOf(m_WidestRow, RowLength) + LineNumberWidth() + 2 * LEFT_MARGIN;
  horizontalScrollBar()->setSingleStep(m_CharWidth);
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setRange(0, std::max(0, TextWidth - viewport()->width()));
  verticalScrollBar()->setPageStep(VisibleRows());
  verticalScrollBar()->setRange(0, std::max(0, NumRows() - VisibleRows()));
}

// ---- Cursor and selection

CSourceEditor::RANGE CSourceEditor::Selection() const {
  const bool bForward = m_Anchor.y() < m_Cursor.y() || (m_Anchor.y() == m_Cursor.y() && m_Anchor.x() <= m_Cursor.x());
  return bForward ? RANGE{m_Anchor, m_Cursor} : RANGE{m_Cursor, m_Anchor};
}

QString CSourceEditor::SelectedText() const {
  const RANGE Range = Selection();
  if (Range.Start.y() == Range.End.y())
    return m_Rows.value(Range.Start.y()).mid(Range.Start.x(), Range.End.x() - Range.Start.x());
  QStringList Parts = m_Rows.mid(Range.Start.y(), Range.End.y() - Range.Start.y() + 1);
  Parts.first() = Parts.first().mid(Range.Start.x());
  Parts.last() = Parts.last().left(Range.End.x());
  return Parts.join(QLatin1Char('\n'));
}

void CSourceEditor::MoveTo(TEXT_POS Pos, bool bSelect) {
  m_Cursor = Clamped(Pos);
  if (!bSelect) m_Anchor = m_Cursor;
  const int Row = m_Cursor.y();
  if (Row < TopRow()) verticalScrollBar()->setValue(Row);
  if (Row >= TopRow() + VisibleRows()) verticalScrollBar()->setValue(Row - VisibleRows() + 1);
  const int x = PixelOf(Row, m_Cursor.x());
  const int Width = viewport()->width() - LineNumberWidth() - 2 * LEFT_MARGIN;
  if (x < horizontalScrollBar()->value()) horizontalScrollBar()->setValue(std::max(0, x - m_CharWidth));
  if (x > horizontalScrollBar()->value() + Width)
    horizontalScrollBar()->setValue(x - Width + SCROLL_AHEAD * m_CharWidth);
  RestartBlink();
  viewport()->update();
  Q_EMIT CursorPositionChanged(m_Cursor);
}

void CSourceEditor::RestartBlink() {
  m_bCursorShown = true;
  const int FlashTime = QApplication::cursorFlashTime();
  if (hasFocus() && FlashTime > 0) {
    m_BlinkTimer.start(FlashTime / 2);
  } else {
    m_BlinkTimer.stop();
  }
}

QRect CSourceEditor::CursorRect() const {
  const int x = LineNumberWidth() + LEFT_MARGIN + PixelOf(m_Cursor.y(), m_Cursor.x()) - horizontalScrollBar()->value();
  return {x, (m_Cursor.y() - TopRow()) * m_RowHeight, CURSOR_WIDTH, m_RowHeight};
}

void CSourceEditor::SetCursorPos(TEXT_POS Pos) {
  MoveTo(Pos, false);
}

void CSourceEditor::EnsureRowVisible(int Row) {
  if (Row >= TopRow() && Row < TopRow() + VisibleRows()) return;
  verticalScrollBar()->setValue(Row - VisibleRows() / 2);
}

void CSourceEditor::SelectAll() {
  m_Anchor = TEXT_POS(0, 0);
  m_Cursor = Clamped(TEXT_POS(static_cast<int>(m_Rows.value(NumRows() - 1).size()), NumRows() - 1));
  viewport()->update();
  Q_EMIT CursorPositionChanged(m_Cursor);
}

void CSourceEditor::Copy() {
  if (HasSelection()) QApplication::clipboard()->setText(SelectedText());
}

TEXT_POS CSourceEditor::WordBoundary(TEXT_POS Pos, int Direction) const {
  const QString& sText = m_Rows.value(Pos.y());
  int Column = Pos.x();
  const auto At = [&](int Index) { return Direction > 0 ? sText[Index] : sText[Index - 1]; };
  const auto Inside = [&](int Index) { return Direction > 0 ? Index < sText.size() : Index > 0; };
  while (Inside(Column) && !IsWordChar(At(Column))) Column += Direction;
  while (Inside(Column) && IsWordChar(At(Column))) Column += Direction;
  return {Column, Pos.y()};
}

TEXT_POS CSourceEditor::MovedCursor(const QKeyEvent* pEvent) const {
  const bool bCtrl = pEvent->modifiers() & Qt::ControlModifier;
  const int Column = m_Cursor.x(), Row = m_Cursor.y();
  switch (pEvent->key()) {
    case Qt::Key_Left:
      if (Column == 0 && Row > 0) return {static_cast<int>(m_Rows[Row - 1].size()), Row - 1};
      return bCtrl ? WordBoundary(m_Cursor, -1) : TEXT_POS(Column - 1, Row);
    case Qt::Key_Right:
      if (Column == m_Rows.value(Row).size() && Row + 1 < NumRows()) return {0, Row + 1};
      return bCtrl ? WordBoundary(m_Cursor, 1) : TEXT_POS(Column + 1, Row);
    case Qt::Key_Up:
      return {Column, Row - 1};
    case Qt::Key_Down:
      return {Column, Row + 1};
    case Qt::Key_PageUp:
      return {Column, Row - VisibleRows()};
    case Qt::Key_PageDown:
      return {Column, Row + VisibleRows()};
    case Qt::Key_Home:
      return bCtrl ? TEXT_POS(0, 0) : TEXT_POS(0, Row);
    case Qt::Key_End:
      return bCtrl ? TEXT_POS(static_cast<int>(m_Rows.value(NumRows() - 1).size()), NumRows() - 1)
                   : TEXT_POS(static_cast<int>(m_Rows.value(Row).size()), Row);
    default:
      return {-1, -1};
  }
}

void CSourceEditor::keyPressEvent(QKeyEvent* pEvent) {
  if (pEvent->matches(QKeySequence::Copy)) return Copy();
  if (pEvent->matches(QKeySequence::SelectAll)) return SelectAll();
  const bool bPlain = !(pEvent->modifiers() & (Qt::AltModifier | Qt::MetaModifier));
  const bool bMoves = pEvent->key() >= Qt::Key_Home && pEvent->key() <= Qt::Key_PageDown;
  if (bPlain && bMoves && NumRows() > 0) {
    MoveTo(MovedCursor(pEvent), pEvent->modifiers() & Qt::ShiftModifier);
    return;
  }
  pEvent->ignore();
}

void CSourceEditor::mousePressEvent(QMouseEvent* pEvent) {
  if (pEvent->button() == Qt::LeftButton) MoveTo(PosAt(pEvent->pos()), pEvent->modifiers() & Qt::ShiftModifier);
}

void CSourceEditor::mouseMoveEvent(QMouseEvent* pEvent) {
  if (pEvent->buttons() & Qt::LeftButton) MoveTo(PosAt(pEvent->pos()), true);
}

void CSourceEditor::mouseDoubleClickEvent(QMouseEvent* pEvent) {
  const TEXT_POS Pos = PosAt(pEvent->pos());
  const QString& sText = m_Rows.value(Pos.y());
  int Start = Pos.x(), End = Pos.x();
  while (Start > 0 && IsWordChar(sText[Start - 1])) --Start;
  while (End < sText.size() && IsWordChar(sText[End])) ++End;
  m_Anchor = {Start, Pos.y()};
  MoveTo({End, Pos.y()}, true);
}

void CSourceEditor::contextMenuEvent(QContextMenuEvent* pEvent) {
  QMenu Menu(this);
  Menu.addAction(QStringLiteral("&Copy"), QKeySequence(QKeySequence::Copy), this, &CSourceEditor::Copy)
      ->setEnabled(HasSelection());
  Menu.addAction(QStringLiteral("Select &All"), QKeySequence(QKeySequence::SelectAll), this, &CSourceEditor::SelectAll);
  Q_EMIT MenuRequested(&Menu);
  Menu.exec(pEvent->globalPos());
}

// ---- Painting

QColor CSourceEditor::RowBackground(int Row) const {
  if (m_RowColors.contains(Row)) return m_RowColors[Row];
  if (Row == m_Cursor.y() && hasFocus() && !HasSelection() && !m_bMessage) return GetColor(COLOR_HIGHLIGHT_LIGHT);
  return {};
}

void CSourceEditor::PaintSelection(QPainter& Painter, int Row, int y) {
  const RANGE Range = Selection();
  if (!HasSelection() || Row < Range.Start.y() || Row > Range.End.y()) return;
  const int Origin = LineNumberWidth() + LEFT_MARGIN - horizontalScrollBar()->value();
  const int Left = Row == Range.Start.y() ? PixelOf(Row, Range.Start.x()) : 0;
  const int EndColumn = Row == Range.End.y() ? Range.End.x() : static_cast<int>(m_Rows[Row].size());
  const int Right = PixelOf(Row, EndColumn) + (Row == Range.End.y() ? 0 : m_CharWidth);
  QColor Color = palette().color(QPalette::Highlight);
  Color.setAlpha(hasFocus() ? 110 : 70);
  Painter.fillRect(Origin + Left, y, Right - Left, m_RowHeight, Color);
}

void CSourceEditor::PaintRow(QPainter& Painter, int Row, int y) {
  const int NumberWidth = LineNumberWidth();
  const QColor Background = RowBackground(Row);
  if (Background.isValid()) Painter.fillRect(0, y, viewport()->width(), m_RowHeight, Background);
  Painter.setClipRect(NumberWidth, 0, viewport()->width() - NumberWidth, viewport()->height());
  PaintSelection(Painter, Row, y);
  // Marked rows have colours of their own for a light ground; dark text stays readable on them in every palette.
  const bool bLightGround = IsLight(Background);
  QTextLayout Layout(Expanded(m_Rows[Row]), font());
  Layout.setFormats(m_Colors.FormatsOf(Row, m_Rows[Row], m_TabSpacing, bLightGround));
  Layout.beginLayout();
  Layout.createLine();
  Layout.endLayout();
  Layout.draw(&Painter, QPointF(NumberWidth + LEFT_MARGIN - horizontalScrollBar()->value(), y));
  Painter.setClipping(false);
  if (NumberWidth > 0 && ShowsLineNumber(Row)) {
    Painter.setFont(m_LineNumberFont);
    Painter.setPen(bLightGround ? GetColor(COLOR_LINE_NUMBERS).darker(MARKED_NUMBER_DARKER)
                                : GetTextColor(COLOR_LINE_NUMBERS));
    Painter.drawText(QRect(0, y, NumberWidth - NUMBER_MARGIN, m_RowHeight), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(Row + 1));
  }
}

void CSourceEditor::paintEvent(QPaintEvent* pEvent) {
  QPainter Painter(viewport());
  Painter.fillRect(pEvent->rect(), palette().color(QPalette::Base));
  const int NumberWidth = LineNumberWidth();
  for (int Row = TopRow(), y = 0; Row < NumRows() && y < viewport()->height(); ++Row, y += m_RowHeight) {
    if (y + m_RowHeight > pEvent->rect().top() && y <= pEvent->rect().bottom()) PaintRow(Painter, Row, y);
  }
  if (NumberWidth > 0) {
    // The default is made for a light ground; on a dark one it would be the brightest line of the window.
    const bool bOwnColor = IsDarkPalette() && !IsColorModified(COLOR_LINE_NUMBER_SEPARATOR);
    Painter.setPen(bOwnColor ? palette().color(QPalette::Button) : GetColor(COLOR_LINE_NUMBER_SEPARATOR));
    Painter.drawLine(NumberWidth - 2, 0, NumberWidth - 2, viewport()->height());
  }
  if (hasFocus() && m_bCursorShown && !m_bMessage && NumRows() > 0 && CursorRect().x() >= NumberWidth) {
    const QColor Ground = RowBackground(m_Cursor.y());
    Painter.fillRect(CursorRect(), IsLight(Ground) ? QColor(Qt::black) : palette().color(QPalette::Text));
  }
}

void CSourceEditor::resizeEvent(QResizeEvent* pEvent) {
  QAbstractScrollArea::resizeEvent(pEvent);
  UpdateScrollBars();
  Q_EMIT Scrolled();
}

void CSourceEditor::scrollContentsBy(int, int) {
  viewport()->update();
  Q_EMIT Scrolled();
}

void CSourceEditor::focusInEvent(QFocusEvent* pEvent) {
  QAbstractScrollArea::focusInEvent(pEvent);
  RestartBlink();
  viewport()->update();
}

void CSourceEditor::focusOutEvent(QFocusEvent* pEvent) {
  QAbstractScrollArea::focusOutEvent(pEvent);
  m_BlinkTimer.stop();
  viewport()->update();
}
