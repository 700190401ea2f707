#pragma once

#include <QAction>
#include <QScrollBar>
#include <QTimer>

#include "shell/actions/command_console.h"
#include "ui/window.h"

class CCommandInput;
class CConsoleView;
class CTimeStampBar;

// The command line and journal: shows every message, echoes what the user does as commands, takes typed commands. One
// instance, main thread; other threads print through shell/log/console_print.h.
class CConsoleWindow : public CWindow {
  Q_OBJECT

public:
  explicit CConsoleWindow(QWidget* pParent);
  // Writes what still waits to the console log file.
  ~CConsoleWindow() override;
  // The one console, null before the main window has made it.
  static CConsoleWindow* Get();

  void Clear() override;
  void SetFont(int FontID, const QFont& Font) override;
  void SetColor(int ColorID, const QColor& Color) override;
  void SetPreference(int VarID, int Value) override;
  bool IsEmpty() const override { return false; }
  QString DumpText() const override;

  void SetSidebarVisible(bool bVisible);
  // Echoes the actions of a window from now on; a window is in the list once.
  void AddCommandListener(CWindow* pWindow);
  void RemoveCommandListener(CWindow* pWindow);
  // Shows what has been printed so far.
  void Drain();
  // Shows all that waits, so that what is printed next cannot be dropped.
  void DrainAll();
  void FocusInput();
  // The command whose name stands in the input while that has the focus; NUM_ACTIONS if there is none.
  U32 CommandInInput() const;

public Q_SLOTS:
  // Runs a command of the input, and shows what it prints at once.
  void OnCommandEntered(const QString& sCommand);
  void OnContextMenuRequested(const QPoint& ScreenPos) override;
  void OnEditorContextMenuRequested(const QPoint& Pos);
  void OnSidebarContextMenuRequested(const QPoint& Pos);
  void OnActionHelpTriggered();
  void OnActionShowSidebarTriggered();

Q_SIGNALS:
  // One message has been put on the screen; batch sessions print it.
  void MessageShown(const QString& sText);

private:
  void CreatePanes();
  void CreateActions();
  void LayOutPanes(QWidget* pCentral);
  void ApplyFonts();
  void UpdateScrollBars();
  void ShowEditorMenu(const QPoint& ScreenPos);

  CConsoleView* m_pView = nullptr;
  CTimeStampBar* m_pSidebar = nullptr;
  QScrollBar* m_pHorizontalBar = nullptr;
  QWidget* m_pCorner = nullptr;  // below the vertical scroll bar
  CCommandInput* m_pInput = nullptr;
  QAction* actionConsoleHelp = nullptr;
  QAction* actionConsoleShowSidebar = nullptr;
  QList<CWindow*> m_Listeners;
  QTimer m_UpdateTimer;
};
