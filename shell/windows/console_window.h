#pragma once

#include <QAction>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextEdit>
#include <QTimer>

#include "shell/actions/command_console.h"
#include "shell/actions/command_history.h"
#include "ui/window.h"

struct CONSOLE_MSG;

// The command line and journal: shows every message, echoes what the user does as commands, takes typed commands. One
// instance, main thread; other threads print through shell/log/console_print.h.
class CConsoleWindow : public CWindow {
  Q_OBJECT

public:
  explicit CConsoleWindow(QWidget* pParent);
  // The one console, null before the main window has made it.
  static CConsoleWindow* Get();

  void Clear() override;
  void SetFont(int FontID, const QFont& Font) override;
  void SetPreference(int VarID, int Value) override;
  bool IsEmpty() const override { return false; }
  QString DumpText() const override;

  void SetSidebarVisible(bool bVisible);
  // Echoes the actions of a window from now on; a window is in the list once.
  void AddCommandListener(CWindow* pWindow);
  void RemoveCommandListener(CWindow* pWindow);
  // Shows what has been printed so far.
  void Drain();
  void FocusInput();
  // The command whose name stands in the input while that has the focus; NUM_ACTIONS if there is none.
  U32 CommandInInput() const;

public Q_SLOTS:
  void OnCommandEntered();
  void OnContextMenuRequested(const QPoint& ScreenPos) override;

Q_SIGNALS:
  // One message has been put on the screen; batch sessions print it.
  void MessageShown(const QString& sText);

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  void CreatePanes();
  void ShowMessage(const CONSOLE_MSG& Msg);
  void ApplyFonts();
  void SetTimeStamp(U64 TimeStamp, bool bFirst, int NumLines);
  void UpdateScrollBars();
  void ResizeSidebarToOptWidth();
  bool OnInputKey(const QKeyEvent* pEvent);
  void ShowMenu(const QPoint& ScreenPos, bool bSidebar);

  QTextEdit* m_pEditor = nullptr;
  QTextEdit* m_pSidebar = nullptr;
  QScrollBar* m_pHorizontalBar = nullptr;
  QLineEdit* m_pInput = nullptr;
  QAction* m_pActionTimestamps = nullptr;
  QAction* m_pActionHelp = nullptr;
  QList<CWindow*> m_Listeners;
  CCommandHistory m_History;
  QTimer m_UpdateTimer;
  int m_LineHeight = 0;  // pixels, of every line of both panes
  bool m_bHasText = false;
};
