#pragma once
// The source editor's own parts, shared by its implementation files alone.

#include <QScrollBar>
#include <QTimer>

#include "ui/windows/edit_permission.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_edits.h"
#include "ui/windows/source_painter.h"

struct SOURCE_EDITOR_PARTS {
  explicit SOURCE_EDITOR_PARTS(CSourceEditor* pEditor) : Editor(*pEditor), Edits(pEditor) {}

  CSourceEditor& Editor;
  CSourceRows Rows;
  CTextMetrics Metrics;
  CSourceLayout Layout{Rows, Metrics};
  CSourceCursor Cursor{Rows, Metrics};
  CSourceColors Colors;
  CSourceHighlights Highlights;
  CSourceEdits Edits;
  CEditPermission Permission;
  QString sFilePath;
  CSrcLoc PcLoc;
  U32 PcAddr = INVALID_ADDR;
  bool bEditingAllowed = true;
  bool bChanged = false;     // by the edit that is being made
  bool bCursorShown = true;  // at this moment of its blinking
  QTimer BlinkTimer;
  QTimer DragTimer;            // scrolls while the mouse selects beyond the view
  bool bSelecting = false;     // the mouse was pressed on the text and is held
  bool bClickPending = false;  // it was pressed on the selection: a click or the begin of a drag

  void Load(const QString& sText, const QString& sPath, U32 FileNo, bool bMessage, SYNTAX_LANGUAGE Language);
  SOURCE_SCENE Scene() const;
  void UpdateRanges();  // of the scroll bars
  void UpdateScrollBars();
  // Has rows painted again, those that are in view.
  void UpdateRows(int First, int Last);
  // Runs a change of the cursor or the selection; with bShow the cursor is scrolled into view.
  template <typename CHANGE>
  void MoveCursor(CHANGE Change, bool bShow = true);
  // Runs a change of the rows: the cursor stays at its text, the first row in view at its place.
  template <typename CHANGE>
  void ChangeRows(CHANGE Change);
  void ShowCursor();
  void UpdateAfterMove(TEXT_POS OldPos, TEXT_POS OldAnchor);
  // Shows the cursor, and blinks it from now on while the editor has the focus.
  void RestartBlink();
  void ToggleExpansion(int Row);
  void SelectTo(const QPoint& Point);
  void OnDragTimer();
  // The document may be edited where the cursor is; asks the user where that is due.
  bool BeginEdit();
  EDIT_SELECTION EditSelection() const;
  void EndEdit(const EDIT_SELECTION& Selection);
  void Press(const QKeyEvent& Event);
  void OnChanged(const QString& sPath, int Position, int NumRemoved, const QString& sAdded);
};

template <typename CHANGE>
void SOURCE_EDITOR_PARTS::MoveCursor(CHANGE Change, bool bShow) {
  const TEXT_POS Pos = Cursor.Pos(), Anchor = Cursor.Anchor();
  Change();
  if (bShow) ShowCursor();
  RestartBlink();
  UpdateAfterMove(Pos, Anchor);
  if (Cursor.Pos() != Pos) Q_EMIT Editor.CursorPositionChanged(Cursor.Pos());
}

template <typename CHANGE>
void SOURCE_EDITOR_PARTS::ChangeRows(CHANGE Change) {
  struct PLACE {
    ROW_ORIGIN Origin;
    int Column;
  };
  const auto PlaceOf = [this](const TEXT_POS& Pos) { return PLACE{Rows.OriginOf(Pos.y()), Pos.x()}; };
  const PLACE Pos = PlaceOf(Cursor.Pos()), Anchor = PlaceOf(Cursor.Anchor());
  const ROW_ORIGIN Top = Rows.OriginOf(Editor.TopRow());
  Change();
  UpdateScrollBars();
  Editor.verticalScrollBar()->setValue(Rows.RowOf(Top));
  const auto PosOf = [this](const PLACE& Place) { return TEXT_POS(Place.Column, Rows.RowOf(Place.Origin)); };
  MoveCursor([&] { Cursor.Select(PosOf(Anchor), PosOf(Pos)); }, false);
  Q_EMIT Editor.Scrolled();
}
