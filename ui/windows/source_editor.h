#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QColor>
#include <QMenu>
#include <QPoint>

#include "base/src_loc.h"
#include "base/types.h"
#include "ui/syntax/syntax_highlighter.h"
#include "ui/windows/row_view.h"
#include "ui/windows/source_rows.h"
#include "ui/windows/source_types.h"

struct SOURCE_EDITOR_PARTS;

// The text of one document at a time, row by row, painted by itself: built around reading code. A source row whose line
// has code can be opened, and is followed by its instruction rows then. Rows count from 0 and change with every line
// that is opened or closed; lines count from 1. A row, line or address that there is not is answered with -1, 0,
// INVALID_ADDR or nothing.
//
// Edits run through one hidden text field a document, which brings undo and redo; the editor holds the edits of every
// document, by its path, until they are dropped.
class CSourceEditor : public CRowView {
  Q_OBJECT

public:
  explicit CSourceEditor(QWidget* pParent);
  ~CSourceEditor() override;

  // --- Document
  // Shows a document: its text with line feeds, its path, which names the language and the edits, and its number in
  // the program database. If the document has been edited, the edited text is shown in place of sText. Cursor,
  // selection, highlights and instruction rows of the former document go.
  void SetText(const QString& sText, const QString& sFilePath, U32 FileNo);
  // Shows a text that is no document: it has neither line numbers nor code and can't be edited.
  void SetMessage(const QString& sText);
  bool IsMessage() const;
  U32 GetFileNo() const;
  QString GetFilePath() const;
  // The text as it is shown, edits included.
  QString GetText() const;
  int NumLines() const;
  QString LineText(U32 Line) const;

  // --- Rows
  int NumRows() const override;
  int RowHeight() const override;
  int TopRow() const override;
  // Which lines, instructions and addresses the rows stand for.
  const CSourceRows& Rows() const;
  int RowOfLine(U32 Line) const { return Rows().RowOfLine(Line); }

  // --- Instruction rows
  // False when nothing changes: the line has no code, or is open (closed) already. The cursor stays at its text, the
  // view where it is.
  bool Expand(const CSrcLoc& Loc);
  bool Collapse(const CSrcLoc& Loc);
  void ExpandAll();
  void CollapseAll();
  // The program, its memory or the way in which instructions are shown has changed: makes their texts anew.
  void UpdateInstructions();

  // --- Highlights
  // COLOR_ID of a line's or an address's row; a later one replaces it.
  void SetLineHighlight(U32 Line, U32 ColorID);
  void SetAddrHighlight(U32 Addr, U32 ColorID);
  void ClearHighlights(U32 ColorID);
  void ClearHighlights();
  // An instruction of the past is selected in the program's trace: the cursor's row gets the colour for that.
  void SetBacktraceActive(bool bActive);
  // Where the target stands.
  void SetPcLoc(const CSrcLoc& Loc, U32 Addr);
  // The PC's row in this document.
  int PcRow() const;

  // --- Cursor and selection
  TEXT_POS CursorPos() const;
  // Puts the cursor there, selects nothing, and scrolls as little as needed.
  void SetCursorPos(TEXT_POS Pos);
  // Column and line from 0, which instruction rows don't move; of an instruction row its line's end.
  QPoint CursorTextPos() const;
  void SetCursorTextPos(const QPoint& Pos);
  // Selects a part of a line (column from 0) and puts the cursor behind it; out of view, the line comes to the middle.
  bool SelectText(U32 Line, int Column, int Length);
  void SelectRow(int Row);
  void UnselectAll();
  // The whole document, instruction rows included.
  void SelectAll();
  bool HasSelection() const;
  QString SelectedText() const;
  // At a point of the viewport: the nearest position, and the word under the point, empty where there is none. pPos
  // gets where the word begins.
  TEXT_POS PosAt(const QPoint& Point) const;
  QString WordAt(const QPoint& Point, TEXT_POS* pPos = nullptr) const;
  QString WordUnderCursor() const;
  // A point on the text of a row, neither on line numbers nor on indicators nor behind the last row.
  bool IsOnText(const QPoint& Point) const;
  // Selects the next match behind the cursor, or ahead of it, around the ends of the document; source rows only.
  bool FindNext(const QString& sText, SEARCH_FLAGS Flags = SEARCH_DEFAULT);
  // The same for the selection, or the word under the cursor.
  bool FindNextUnderCursor();
  // The position at which a press on the selection was made is not a click after all: a drag has begun.
  void CancelClick();

  // --- View
  // Scrolls a row into view, to the middle when it was out of view.
  void EnsureRowVisible(int Row);
  void CenterRow(int Row);
  int VisibleRows() const;
  void SetFonts(const QFont& TextFont, const QFont& LineNumberFont);
  // Values of the preferences of the same names.
  void SetTabSpacing(int Columns);
  void SetLineNumberFreq(int Freq);
  void SetExpansionBarShown(bool bShown);
  void SetInlineAssemblyIndented(bool bIndented);
  void SetEncodingsShown(bool bShown);

  // --- Editing
  // On top of the preference that restricts edits: whether this document may be edited at all.
  void SetEditingAllowed(bool bAllowed);
  // The document's text may be changed now, as far as that can be said without asking the user.
  bool IsEditable() const;
  // Whether a session is connected, in which the first edit of a document has to be confirmed; the device is asked
  // where none is given.
  void SetSessionQuery(std::function<bool()> IsInSession);
  bool HasUnsavedChanges(const QString& sFilePath) const;
  // Of a document with edits; nothing for another.
  std::optional<QString> EditedText(const QString& sFilePath) const;
  // The text that the document has now is the one on the disk.
  void SetSaved(const QString& sFilePath);
  // The document is closed or read again from the disk: its edits and their history go. It is shown anew by SetText.
  void DropEdits(const QString& sFilePath);
  bool CanUndo() const;
  bool CanRedo() const;

  // --- Clipboard and history, as the keys for them do
  void Copy();
  void Cut();
  void Paste();
  void Undo();
  void Redo();

Q_SIGNALS:
  void CursorPositionChanged(QPoint TextPos);
  // A point of the screen. If nobody listens, the editor shows a menu of its own.
  void CustomContextMenuRequested(QPoint GlobalPos);
  // The user has opened or closed a line.
  void LineExpansionStateToggled(int DocLine);
  // The text is no longer the one on the disk, or is again.
  void DocumentStateChanged(U32 FileNo, bool bHasUnsavedChanges);
  // Edits that are dropped are told backwards.
  void DocumentEdited(EDIT_EVENT Event);
  // Ahead of what the editor itself does with the event; points of the viewport.
  void MousePressed(QPoint Pos, Qt::MouseButton Button, Qt::KeyboardModifiers Modifiers);
  void MouseDoubleClicked(QPoint Pos, Qt::MouseButton Button);
  void MouseMoved(QPoint Pos, Qt::MouseButtons Buttons);
  void MouseLeft();

public:
  // The entries of the editor's menu, for the menu of its window: "Copy" and "Select All", and with bExpansion "Expand
  // All" and "Collapse All" too.
  void AddMenuEntries(QMenu* pMenu, bool bExpansion);

protected:
  bool event(QEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;
  void resizeEvent(QResizeEvent* pEvent) override;
  void mousePressEvent(QMouseEvent* pEvent) override;
  void mouseReleaseEvent(QMouseEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
  void keyPressEvent(QKeyEvent* pEvent) override;
  void inputMethodEvent(QInputMethodEvent* pEvent) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery Query) const override;
  void contextMenuEvent(QContextMenuEvent* pEvent) override;
  void leaveEvent(QEvent* pEvent) override;
  void scrollContentsBy(int dx, int dy) override;
  void focusInEvent(QFocusEvent* pEvent) override;
  void focusOutEvent(QFocusEvent* pEvent) override;

private:
  std::unique_ptr<SOURCE_EDITOR_PARTS> m_pParts;
};
