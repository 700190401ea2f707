#include "ui/windows/source_editor.h"

#include <QFileInfo>
#include <algorithm>

#include "program/database/elfapi.h"
#include "ui/windows/source_editor_parts.h"
#include "ui/windows/source_search.h"

namespace {

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

const CSourceRows& CSourceEditor::Rows() const {
  return m_pParts->Rows;
}

// ---- Instruction rows

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

void CSourceEditor::UpdateInstructions() {
  m_pParts->ChangeRows([this] { m_pParts->Rows.UpdateInstructions(); });
}

void SOURCE_EDITOR_PARTS::ToggleExpansion(int Row) {
  const U32 Line = Rows.LineOfRow(Row);
  const bool bExpanded = Rows.IsExpanded(Line);
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
  return Rows().IsInstruction(Row) ? Row : RowOfLine(m_pParts->PcLoc.Line);
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
