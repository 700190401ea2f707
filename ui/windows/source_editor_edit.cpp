// The source editor's edits.

#include <algorithm>

#include "program/database/elfapi.h"
#include "ui/windows/source_editor_parts.h"

void CSourceEditor::SetEditingAllowed(bool bAllowed) {
  m_pParts->bEditingAllowed = bAllowed;
}

bool CSourceEditor::IsEditable() const {
  return !IsMessage() && !m_pParts->sFilePath.isEmpty() && m_pParts->bEditingAllowed &&
         m_pParts->Permission.IsPossible();
}

void CSourceEditor::SetSessionQuery(std::function<bool()> IsInSession) {
  m_pParts->Permission.SetSessionQuery(std::move(IsInSession));
}

bool CSourceEditor::HasUnsavedChanges(const QString& sFilePath) const {
  return m_pParts->Edits.IsModified(sFilePath);
}

std::optional<QString> CSourceEditor::EditedText(const QString& sFilePath) const {
  return m_pParts->Edits.Text(sFilePath);
}

void CSourceEditor::SetSaved(const QString& sFilePath) {
  m_pParts->Edits.SetSaved(sFilePath);
  // The number tells nothing of a document in the background; its listeners look at all of them.
  Q_EMIT DocumentStateChanged(sFilePath == m_pParts->sFilePath ? GetFileNo() : INVALID_FILE_ID, false);
}

void CSourceEditor::DropEdits(const QString& sFilePath) {
  // Whoever has followed the lines follows them back.
  for (const EDIT_EVENT& Move : m_pParts->Edits.Drop(sFilePath)) {
    const U32 FirstLine = Move.FirstLine + static_cast<U32>(Move.NumLines);
    Q_EMIT DocumentEdited({ELFAPI_FileId(sFilePath), FirstLine, -Move.NumLines});
  }
}

bool CSourceEditor::CanUndo() const {
  return m_pParts->Edits.CanUndo(m_pParts->sFilePath);
}

bool CSourceEditor::CanRedo() const {
  return m_pParts->Edits.CanRedo(m_pParts->sFilePath);
}

// Instructions can't be edited, nor what a selection holds of them.
bool SOURCE_EDITOR_PARTS::BeginEdit() {
  const TEXT_RANGE Range = Cursor.Selection();
  if (!Editor.IsEditable()) return false;
  for (int Row = Range.Start.y(); Row <= Range.End.y(); ++Row) {
    if (Rows.InstructionAt(Row)) return false;
  }
  // While the question stands, another document may come to the front, or a line be opened.
  const QString sAsked = sFilePath;
  const int NumRows = Rows.NumRows();
  if (!Permission.IsGiven(sAsked) || sFilePath != sAsked || Rows.NumRows() != NumRows) return false;
  if (Edits.Has(sFilePath)) return true;
  Edits.Open(sFilePath, Rows.Text().Text());
  Rows.OpenEnd();
  Colors.Update(Rows.Text(), {Rows.Text().NumLines(), 0, 0});
  UpdateScrollBars();
  return true;
}

EDIT_SELECTION SOURCE_EDITOR_PARTS::EditSelection() const {
  return {Rows.PositionOf(Cursor.Anchor()), Rows.PositionOf(Cursor.Pos())};
}

void SOURCE_EDITOR_PARTS::EndEdit(const EDIT_SELECTION& Selection) {
  MoveCursor([&] { Cursor.Select(Rows.PosOf(Selection.Anchor), Rows.PosOf(Selection.Pos)); });
  // While it changes, the field does not know yet whether that leads it back to what was saved.
  if (std::exchange(bChanged, false)) Q_EMIT Editor.DocumentStateChanged(Rows.FileNo(), Edits.IsModified(sFilePath));
}

void SOURCE_EDITOR_PARTS::Press(const QKeyEvent& Event) {
  if (!BeginEdit()) return;
  const bool bTab = Event.key() == Qt::Key_Tab || Event.key() == Qt::Key_Backtab;
  const bool bBack = Event.key() == Qt::Key_Backtab || (Event.modifiers() & Qt::ShiftModifier);
  const bool bBlock = Cursor.Pos().y() != Cursor.Anchor().y() || bBack;
  if (bTab && bBlock) {
    EndEdit(Edits.Indent(sFilePath, EditSelection(), bBack, Metrics.TabSpacing()));
  } else {
    EndEdit(Edits.Press(sFilePath, Event, EditSelection()));
  }
}

void SOURCE_EDITOR_PARTS::OnChanged(const QString& sPath, int Position, int NumRemoved, const QString& sAdded) {
  if (sPath != sFilePath) return;
  const LINE_CHANGE Change = Rows.Replace(Position, NumRemoved, sAdded);
  const U32 FirstMoved = static_cast<U32>(Change.First + Change.NumOld) + 1;
  const int NumLines = Change.NumNew - Change.NumOld;
  const int EndLine = Colors.Update(Rows.Text(), Change);
  Layout.InvalidateLines(Change);
  if (NumLines == 0) {
    UpdateRanges();
    UpdateRows(Rows.RowOf({Change.First}), Rows.RowOf({EndLine}));
  } else {
    Highlights.MoveLines(FirstMoved, NumLines);
    UpdateScrollBars();
    Q_EMIT Editor.Scrolled();
  }
  bChanged = true;
  const EDIT_EVENT Event = {Rows.FileNo(), FirstMoved, NumLines};
  if (NumLines != 0) Edits.NoteMove(sPath, Event);
  Q_EMIT Editor.DocumentEdited(Event);
}

namespace {

QKeyEvent KeyOf(QKeySequence::StandardKey Key) {
  const QKeyCombination Combination = QKeySequence(Key)[0];
  return {QEvent::KeyPress, Combination.key(), Combination.keyboardModifiers()};
}

}  // namespace

void CSourceEditor::Cut() {
  m_pParts->Press(KeyOf(QKeySequence::Cut));
}

void CSourceEditor::Paste() {
  m_pParts->Press(KeyOf(QKeySequence::Paste));
}

void CSourceEditor::Undo() {
  if (CanUndo()) m_pParts->Press(KeyOf(QKeySequence::Undo));
}

void CSourceEditor::Redo() {
  if (CanRedo()) m_pParts->Press(KeyOf(QKeySequence::Redo));
}
