#include "ui/windows/source_editor.h"

#include <QFileInfo>
#include <algorithm>

#include "program/database/elfapi.h"
#include "shell/settings/color_ids.h"
#include "ui/windows/source_editor_parts.h"
#include "ui/windows/source_search.h"

namespace {

constexpr int SCROLL_AHEAD = 10;   // columns
constexpr int DRAG_INTERVAL = 40;  // milliseconds

}  // namespace

CSourceEditor::CSourceEditor(QWidget* pParent)
    : CRowView(pParent), m_pParts(std::make_unique<SOURCE_EDITOR_PARTS>(this)) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  viewport()->setCursor(Qt::IBeamCursor);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  viewport()->setMouseTracking(true);
  verticalScrollBar()->setSingleStep(1);
  SOURCE_EDITOR_PARTS& P = *m_pParts;
  connect(&P.BlinkTimer, &QTimer::timeout, this, [&P] {
    P.bCursorShown = !P.bCursorShown;
    P.Editor.viewport()->update(CSourcePainter::CursorRect(P.Scene()));
  });
  P.DragTimer.setInterval(DRAG_INTERVAL);
  connect(&P.DragTimer, &QTimer::timeout, this, [&P] { P.OnDragTimer(); });
  connect(&P.Edits, &CSourceEdits::Changed, this,
          [&P](const QString& sPath, int Position, int NumRemoved, const QString& sAdded) {
            P.OnChanged(sPath, Position, NumRemoved, sAdded);
          });
  SetFonts(font(), font());
}

CSourceEditor::~CSourceEditor() = default;

// ---- Document

void SOURCE_EDITOR_PARTS::Load(const QString& sText, const QString& sPath, U32 FileNo, bool bMessage,
                               SYNTAX_LANGUAGE Language) {
  const std::optional<QString> Edited = bMessage ? std::nullopt : Edits.Text(sPath);
  sFilePath = sPath;
  bSelecting = bClickPending = false;
  Layout.Options.bMessage = bMessage;
  MoveCursor(
      [&] {
        Rows.SetText(Edited.value_or(sText), FileNo, Edited.has_value());
        Colors.SetText(Rows.Text(), Language);
        Highlights.Clear();
        Layout.Invalidate();
        Cursor.MoveTo({0, 0}, false);
      },
      false);
  UpdateScrollBars();
  Editor.verticalScrollBar()->setValue(0);
  Editor.horizontalScrollBar()->setValue(0);
  Q_EMIT Editor.Scrolled();
}

void CSourceEditor::SetText(const QString& sText, const QString& sFilePath, U32 FileNo) {
  m_pParts->Load(sText, sFilePath, FileNo, false, CSyntaxHighlighter::GetLanguage(QFileInfo(sFilePath).suffix()));
}

void CSourceEditor::SetMessage(const QString& sText) {
  m_pParts->Load(sText, QString(), INVALID_FILE_ID, true, SYNTAX_PLAIN);
}

bool CSourceEditor::IsMessage() const {
  return m_pParts->Layout.Options.bMessage;
}

U32 CSourceEditor::GetFileNo() const {
  return m_pParts->Rows.FileNo();
}

QString CSourceEditor::GetFilePath() const {
  return m_pParts->sFilePath;
}

QString CSourceEditor::GetText() const {
  return m_pParts->Rows.Text().Text();
}

int CSourceEditor::NumLines() const {
  return m_pParts->Rows.Text().NumLines();
}

QString CSourceEditor::LineText(U32 Line) const {
  return m_pParts->Rows.Text().Line(static_cast<int>(Line) - 1).toString();
}

// ---- Rows

int CSourceEditor::NumRows() const {
  return m_pParts->Rows.NumRows();
}

int CSourceEditor::RowHeight() const {
  return m_pParts->Metrics.RowHeight();
}

int CSourceEditor::TopRow() const {
  return verticalScrollBar()->value();
}

bool CSourceEditor::IsSourceRow(int Row) const {
  return m_pParts->Rows.IsSource(Row);
}

bool CSourceEditor::IsInstructionRow(int Row) const {
  return m_pParts->Rows.InstructionAt(Row) != nullptr;
}

QString CSourceEditor::RowText(int Row) const {
  return m_pParts->Rows.RowText(Row).toString();
}

int CSourceEditor::RowOfLine(U32 Line) const {
  return m_pParts->Rows.RowOfLine(Line);
}

U32 CSourceEditor::LineOfRow(int Row) const {
  return m_pParts->Rows.LineOfRow(Row);
}

CSrcLoc CSourceEditor::LocOfRow(int Row) const {
  return m_pParts->Rows.LocOfRow(Row);
}

U32 CSourceEditor::AddrOfRow(int Row) const {
  return m_pParts->Rows.AddrOfRow(Row);
}

int CSourceEditor::RowOfAddr(U32 Addr) const {
  return m_pParts->Rows.RowOfAddr(Addr);
}

int CSourceEditor::RowOfCode(U32 Addr) const {
  return m_pParts->Rows.RowOfCode(Addr);
}

QAddrRanges CSourceEditor::RangesOfRow(int Row) const {
  return m_pParts->Rows.RangesOfRow(Row);
}

// ---- Instruction rows

bool CSourceEditor::HasCode(int Row) const {
  return m_pParts->Rows.HasCode(LineOfRow(Row));
}

bool CSourceEditor::IsExpanded(int Row) const {
  return m_pParts->Rows.IsExpanded(LineOfRow(Row));
}

bool CSourceEditor::Expand(const CSrcLoc& Loc) {
  bool bDone = false;
  if (Loc.File == GetFileNo()) m_pParts->ChangeRows([&] { bDone = m_pParts->Rows.Expand(Loc.Line); });
  return bDone;
}

bool CSourceEditor::Collapse(const CSrcLoc& Loc) {
  bool bDone = false;
  if (Loc.File == GetFileNo()) m_pParts->ChangeRows([&] { bDone = m_pParts->Rows.Collapse(Loc.Line); });
  return bDone;
}

void CSourceEditor::ExpandAll() {
  m_pParts->ChangeRows([this] { m_pParts->Rows.ExpandAll(); });
}

void CSourceEditor::CollapseAll() {
  m_pParts->ChangeRows([this] { m_pParts->Rows.CollapseAll(); });
}

QSrcLocs CSourceEditor::ExpandedLocs() const {
  return m_pParts->Rows.ExpandedLocs();
}

void CSourceEditor::UpdateInstructions() {
  m_pParts->ChangeRows([this] { m_pParts->Rows.UpdateInstructions(); });
}

void SOURCE_EDITOR_PARTS::ToggleExpansion(int Row) {
  const U32 Line = Rows.LineOfRow(Row);
  const bool bExpanded = Rows.IsExpanded(Line);
  if (!bExpanded) Q_EMIT Editor.LineExpansionRequested(static_cast<int>(Line));
  const CSrcLoc Loc = Rows.LocOfRow(Row);
  if (bExpanded ? Editor.Collapse(Loc) : Editor.Expand(Loc)) {
    Q_EMIT Editor.LineExpansionStateToggled(static_cast<int>(Line));
  }
}

// ---- Highlights

void CSourceEditor::SetLineHighlight(U32 Line, U32 ColorID) {
  m_pParts->Highlights.SetLine(Line, ColorID);
  viewport()->update();
}

void CSourceEditor::SetAddrHighlight(U32 Addr, U32 ColorID) {
  m_pParts->Highlights.SetAddr(Addr, ColorID);
  viewport()->update();
}

void CSourceEditor::ClearHighlights(U32 ColorID) {
  m_pParts->Highlights.Remove(ColorID);
  viewport()->update();
}

void CSourceEditor::ClearHighlights() {
  m_pParts->Highlights.Clear();
  viewport()->update();
}

void CSourceEditor::SetBacktraceActive(bool bActive) {
  m_pParts->Highlights.SetBacktraceActive(bActive);
  viewport()->update();
}

void CSourceEditor::SetPcLoc(const CSrcLoc& Loc, U32 Addr) {
  m_pParts->PcLoc = Loc;
  m_pParts->PcAddr = Addr;
}

int CSourceEditor::PcRow() const {
  if (!m_pParts->PcLoc.IsValid() || m_pParts->PcLoc.File != GetFileNo()) return -1;
  const int Row = m_pParts->Rows.RowOfAddr(m_pParts->PcAddr);
  return Row >= 0 && IsInstructionRow(Row) ? Row : RowOfLine(m_pParts->PcLoc.Line);
}

// ---- Cursor and selection

TEXT_POS CSourceEditor::CursorPos() const {
  return m_pParts->Cursor.Pos();
}

void CSourceEditor::SetCursorPos(TEXT_POS Pos) {
  m_pParts->MoveCursor([&] { m_pParts->Cursor.MoveTo(Pos, false); });
}

QPoint CSourceEditor::CursorTextPos() const {
  const CSourceRows& Rows = m_pParts->Rows;
  const int Position = Rows.PositionOf(CursorPos());
  const int Line = std::max(0, Rows.Text().LineAt(Position));
  return {Position - Rows.Text().StartOf(Line), Line};
}

void CSourceEditor::SetCursorTextPos(const QPoint& Pos) {
  const int LastLine = std::max(1, NumLines());
  SetCursorPos({Pos.x(), RowOfLine(static_cast<U32>(std::clamp(Pos.y() + 1, 1, LastLine)))});
}

bool CSourceEditor::SelectText(U32 Line, int Column, int Length) {
  const int Row = RowOfLine(Line);
  if (Row < 0) return false;
  EnsureRowVisible(Row);
  m_pParts->MoveCursor([&] { m_pParts->Cursor.Select({Column, Row}, {Column + Length, Row}); });
  return true;
}

void CSourceEditor::SelectRow(int Row) {
  if (Row < 0 || Row >= NumRows()) return;
  m_pParts->MoveCursor([&] { m_pParts->Cursor.MoveTo({0, Row}, false); }, false);
}

void CSourceEditor::UnselectAll() {
  m_pParts->MoveCursor([this] { m_pParts->Cursor.MoveTo(m_pParts->Cursor.Pos(), false); }, false);
}

void CSourceEditor::SelectAll() {
  m_pParts->MoveCursor([this] { m_pParts->Cursor.Select({0, 0}, m_pParts->Cursor.End()); }, false);
}

bool CSourceEditor::HasSelection() const {
  return m_pParts->Cursor.HasSelection();
}

QString CSourceEditor::SelectedText() const {
  return m_pParts->Cursor.SelectedText();
}

bool CSourceEditor::FindNext(const QString& sText, SEARCH_FLAGS Flags) {
  SOURCE_EDITOR_PARTS& P = *m_pParts;
  const TEXT_RANGE Selection = P.Cursor.Selection();
  const int From = P.Rows.PositionOf(Flags & SEARCH_BACKWARD ? Selection.Start : Selection.End);
  const std::optional<int> Match = FindText(GetText(), sText, From, Flags);
  if (!Match || IsMessage()) return false;
  const TEXT_POS Start = P.Rows.PosOf(*Match);
  EnsureRowVisible(Start.y());
  P.MoveCursor([&] { P.Cursor.Select(Start, P.Rows.PosOf(*Match + static_cast<int>(sText.size()))); });
  return true;
}

bool CSourceEditor::FindNextUnderCursor() {
  const QString sText = HasSelection() ? SelectedText() : WordUnderCursor();
  // The word that the cursor is in is no next one.
  if (!HasSelection() && !sText.isEmpty()) {
    const int End = WordRange(m_pParts->Rows.RowText(CursorPos().y()), CursorPos().x()).second;
    SetCursorPos({End, CursorPos().y()});
  }
  return FindNext(sText);
}

// ---- View

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
