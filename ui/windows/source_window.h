#pragma once

#include <memory>

#include <QPoint>

#include "ui/window.h"

struct SOURCE_WINDOW_STATE;

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
  // Opens the file of a location and puts the line into view.
  bool ShowLocation(const CSrcLoc& Loc);
  // Puts a line of the active document into view, from 1; false when it has no such line.
  bool ShowLine(U32 Line);
  // The tab to the right, behind the last one the first.
  void ShowNextDocument();
  void Close(const QString& sPath);
  void CloseAll();
  // All but the active document.
  void CloseAllButThis();
  bool IsOpen(const QString& sPath) const;
  QStringList OpenFiles() const;
  QString ActiveFile() const;
  // Of the active document: its number of lines, 0 for a file that is missing, and the line of the cursor, from 1.
  int NumLines() const;
  int CursorLine() const;
  // Reads the open documents again, after the program was built anew.
  void ReloadDocuments();
  // Looks for the files of the open documents again, after a rule for finding them was added.
  void ResolveDocuments();

  // --- The PC line
  // Shows the line of the address and marks it; without a source location the mark goes. False then.
  bool ShowPC(U32 PC);
  void ClearPC();

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
  QString GetStatusText() const override;
  // The visible document: a line "file:line" where the PC stands, then the text.
  QString DumpText() const override;

  void OnDeviceDisconnectDone() override;
  void OnDeviceResumeDone(RESUME_MODES Mode) override;
  void OnActivationChanged(bool bActive) override;
  void OnTooltipRequested(const QPoint& Pos) override;

private:
  std::unique_ptr<SOURCE_WINDOW_STATE> m_pState;
};
