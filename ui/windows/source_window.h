#pragma once

#include <functional>
#include <optional>

#include <QHash>
#include <QPoint>

#include "ui/window.h"
#include "ui/windows/observation_points.h"
#include "ui/windows/pc_highlights.h"
#include "ui/windows/side_bar.h"
#include "ui/windows/source_tips.h"
#include "ui/windows/source_types.h"
#include "ui/windows/source_view.h"

class CPopupMenu;

// What a row of the source window stands for.
struct CODE_PLACE {
  CSrcLoc Loc;              // the line; invalid for one that is not the program's
  U32 Addr = INVALID_ADDR;  // of an instruction, or the first of a line with code
  bool bInstruction = false;

  bool IsValid() const { return Loc.IsValid() || bInstruction; }
  bool HasCode() const { return Addr != INVALID_ADDR; }
};

// The central code view: the program's source files as tabs over one editor, and the line where the target stands. Most
// requests to show a place in the program end here. One instance, main thread.
class CSourceWindow : public CWindow {
  Q_OBJECT

public:
  explicit CSourceWindow(QWidget* pParent);
  ~CSourceWindow() override;

  // --- Documents
  // Opens a file, or brings its tab to the front. The path may be one that the program file names; it is resolved by
  // the file finder. A file that can't be found gets a tab that says so. In the background the active tab stays.
  // SliderPos and CursorPos (column, line from 0) restore a view; -1 for none. False when the path is empty.
  bool Open(const QString& sPath, bool bInBackground = false, int SliderPos = -1,
            const QPoint& CursorPos = QPoint(-1, -1));
  // Opens the file of a location and puts the line into view; false when it has none.
  bool SelectLocation(const CSrcLoc& Loc, bool bSetFocus);
  bool ShowLocation(const CSrcLoc& Loc) { return SelectLocation(Loc, false); }
  // Puts a line of the active document into view, from 1; false when it has no such line.
  bool ShowLine(U32 Line);
  // Selects a text of a line of the active document, or of a file that is opened for it; column from 0.
  bool SelectText(int LineNo, int Col, int Len);
  bool SelectTextIn(const QString& sPath, int LineNo, int Col, int Len);
  // Selects the next match of a text in the active document; false without one. FindNext repeats the last search.
  bool Find(const QString& sText);
  bool FindNext();
  bool FindNextUnderCursor();
  // The tab to the right, behind the last one the first.
  void ShowNextDocument();
  // Close without a question: see NotifyUserClose.
  void Close(const QString& sPath);
  void CloseAll();
  // All but the active document.
  void CloseAllButThis();
  void CloseFiles(const QStringList& Paths);
  // All open files but the active one.
  QStringList OtherFiles() const;
  bool IsOpen(const QString& sPath) const { return m_pView->Documents().IndexOf(sPath) >= 0; }
  QStringList OpenFiles() const { return m_pView->Documents().Paths(); }
  QString ActiveFile() const;
  // Of the active document: its number of lines, 0 for a file that is missing, and the line of the cursor, from 1.
  int NumLines() const;
  int CursorLine() const;
  // Reads the open documents again, after the program was built anew; those with unsaved changes stay as they are.
  void ReloadDocuments();
  // Looks for the files of the open documents again, after a rule for finding them was added.
  void ResolveDocuments();

  // --- Changes of the documents
  bool IsActiveDocumentChanged() const { return m_pView->Saver().HasUnsavedChanges(m_pView->Shown()); }
  bool HasDocumentWithUnsavedChanges() const { return !m_pView->Saver().NamesWithUnsavedChanges().isEmpty(); }
  // A file was saved, or changed by another program, since the program was built, or has unsaved changes.
  bool HasModifiedDocument() const;
  bool IsDocumentModified(const QString& sPath) const;
  // The text of an open document that has unsaved changes; nothing for any other file.
  std::optional<QString> UnsavedText(const QString& sPath) const;
  void ResetFileSaveStates() { m_pView->Documents().ResetModified(); }
  // While it is on, a modified document that comes to the front is told of, once.
  void SetShowDocOutOfDateNotifications(bool bOn) { m_pView->Documents().SetNotices(bOn); }
  // False when the file can't be written; the console says why.
  bool Save(const QString& sPath);
  bool SaveAll() { return m_pView->Saver().SaveAll(); }
  // Ask what is to become of unsaved changes, before documents are closed; false when they are to stay.
  bool NotifyUserClose(const QString& sPath);
  bool NotifyUserClose(const QStringList& Paths);
  // Offers to read those files again that another program has changed; the user has come back from there.
  void CheckOutsideChanges();

  // --- Places
  CODE_PLACE PlaceOfRow(int Row) const;
  // While a menu is open, the place that it was opened for.
  CODE_PLACE CursorPlace() const;
  // SIDE_BAR_MARKS that the margin shows beside a row.
  unsigned MarksOfRow(int Row) const;
  // The places that the user has clicked, one back or forward.
  void SelectPrevObsvPoint() { ShowObsvPoint(m_ObsvPoints.Prev()); }
  void SelectNextObsvPoint() { ShowObsvPoint(m_ObsvPoints.Next()); }

  // --- Lines and their instructions
  void ExpandLine() { ShowInstructions(true); }
  void CollapseLine() { ShowInstructions(false); }
  void ExpandAll() override;
  void CollapseAll() override { CollapseAll(true); }
  // With bUpdateHistory they stay closed when the document is shown again.
  void CollapseAll(bool bUpdateHistory);
  void ClearLineExpansionHistory() { m_pView->Expansions().Clear(); }
  // The line where the target halts is opened by itself.
  void SetAutoExpandPcLine(bool bOn) { m_bAutoExpandPcLine = bOn; }

  // --- The PC line
  // Shows the line of the address and marks it; without a source location the mark goes. False then.
  bool ShowPC(U32 PC);
  void ClearPC();
  const CSrcLoc& GetPcLoc() const { return m_pView->Pc().PcLoc(); }

  // --- What others know
  void SetTipEvaluator(const CSourceTips::EVALUATE& Evaluate) { m_pTips->SetEvaluator(Evaluate); }
  void SetReturnAddrs(const CPcHighlights::RETURN_ADDRS& ReturnAddrs);
  void SetCounters(const std::function<std::optional<ROW_COUNTERS>(const CODE_PLACE&)>& CountersOf);

  void SetHeaderBarVisible(bool bVisible);
  CSourceEditor& GetTextEditor() const { return m_pView->Editor(); }
  CSideBar& GetSideBar() const { return m_pView->SideBar(); }

  // --- CWindow
  void Clear() override;  // closes all documents
  void Repaint() override;
  void Update(U32 NewPC) override;
  bool IsEmpty() const override;
  QString GetEmptyWindowText(DEBUG_STATES State) const override;
  void SetFont(int FontID, const QFont& Font) override;
  void SetColor(int ColorID, const QColor& Color) override;
  void SetPreference(int VarID, int Value) override;
  // Whether execution counters are shown.
  QString GetUserConfigStr() const override;
  void SetUserConfigStr(const QString& sConfig) override;
  // The open documents of a program.
  void BackupState(int StateID) override;
  void RestoreState(int StateID, U32 DoNotRestoreFlags) override;
  void ClearStateBackup() override { m_States.clear(); }
  QString GetStatusText() const override;
  // The visible document: a line "file:line" where the PC stands, then the text.
  QString DumpText() const override;
  void ShowContextMenu(const QPoint& GlobalPos) override;

  void OnDeviceDisconnectDone() override;
  // The session shows each halt here, by ShowPC, whether the window can be seen or not: once is enough.
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override;
  void OnDeviceStepped(U32 PC) override;
  void OnDeviceResumeDone(RESUME_MODES Mode) override;
  void OnActivationChanged(bool bActive) override;
  void OnTooltipRequested(const QPoint& Pos) override;

Q_SIGNALS:
  // The text of a document is no longer the one on the disk, or is again.
  void DocumentStateChanged(U32 FileNo, bool bHasUnsavedChanges);
  void DocumentEdited(EDIT_EVENT Event);
  // Commands that act on a word have another argument now.
  void ArgumentOffered();
  // The user wants to know what an expression means, at a point of the screen, in the font with that identifier.
  void SymbolTooltipRequest(const QPoint& GlobalPos, const QString& sExpression, int FontID);
  void ResetExecCounters();
  // The margin beside a place was clicked: its breakpoint is to be set, cleared, enabled or disabled.
  void BreakpointToggleRequested(const CODE_PLACE& Place);
  // A menu is about to be shown for a place: the time to say what breakpoints can be done with there, and the time when
  // that is over.
  void MenuOpening(const CODE_PLACE& Place);
  void MenuClosed();

protected:
  void UpdateActions() override;

private:
  void ConnectView();
  QList<int> AllIndices() const;
  void ExpandPcLine();
  // Of the line of CursorPlace.
  void ShowInstructions(bool bOn);
  void ShowObsvPoint(const OBSERVATION_POINT& Point);
  void OnEditorClicked(const QPoint& Pos);
  void OnSidebarClicked(int Row, int Button);
  void OnDocumentShown();
  void OnHeaderBarUpdate();
  void ShowOutOfDateNotice();
  void ShowTabMenu(int Index, const QPoint& GlobalPos);
  void RunMenu(const CODE_PLACE& Place, const QPoint& GlobalPos, const std::function<void(CPopupMenu&)>& AddEntries);

  CSourceView* m_pView;
  CSourceTips* m_pTips;
  CObservationPoints m_ObsvPoints;
  QHash<int, SOURCE_VIEW_STATE> m_States;
  QString m_sFindWhat;
  std::optional<CODE_PLACE> m_MenuPlace;  // of the menu that is open
  bool m_bAutoExpandPcLine = false;
};
