#pragma once

#include <memory>

#include <QMenu>
#include <QTimer>
#include <QToolBar>

#include "shell/menus.h"
#include "shell/project_controller.h"
#include "shell/session_controller.h"
#include "shell/window_registry.h"
#include "ui/window.h"

class CConsoleWindow;
class CDeviceEventWorker;
class CProgramLoader;
class CSourceWindow;
struct COMMAND_CONTEXT;

// The application's window: makes everything, plugs it together, and holds the list of windows. What it does for a
// session or a project stands in the controllers that it owns.
class CMainWindow : public CWindow, public ISessionView, public IProjectView {
  Q_OBJECT

public:
  CMainWindow();
  ~CMainWindow() override;
  static CMainWindow* Get();
  // The close handling has begun.
  static bool IsShuttingDown();

  // --- Windows
  // By name or display name in any case, quotes removed; null if there is none.
  CWindow* FindWindow(const QString& sName, bool bVisibleOnly) const { return m_Registry.Find(sName, bVisibleOnly); }
  const QList<CWindow*>& GetWindowList() const { return m_Registry.Windows(); }
  const CWindowRegistry& Registry() const { return m_Registry; }
  // By object name or title in any case; null if there is none.
  QToolBar* FindToolBar(const QString& sName) const;
  const QList<QToolBar*>& ToolBars() const { return m_ToolBars; }
  // Shows a window's dock, raises it and gives it the focus.
  void ShowWindow(CWindow* pWindow);
  // Gives every window its fonts anew.
  void ApplyFonts();
  // Tells every window of a colour that has changed.
  void ApplyColor(U32 ID);
  // Icons and tips of the start and reset buttons by the present modes.
  void UpdateModeButtons();
  CSourceWindow& Source() { return *m_pSource; }
  CConsoleWindow& Console() { return *m_pConsole; }
  CSessionController& Session() { return *m_pSession; }
  CProjectController& Projects() { return *m_pProjects; }
  // Nothing is being opened and no script runs.
  bool IsIdle() const;

  // --- ISessionView
  void OnSessionStateChanged() override { UpdateActions(); }
  void WatchTarget(bool bOn) override;
  void ShowPC(U32 PC) override;
  void RefreshWindows() override;
  void FocusSourceWindow() override;
  bool NeedsTrace() const override;
  bool ConfirmModifiedSources() override;
  bool ConfirmProjectErrors(const QStringList& Errors) override;
  bool IsClosing() const override { return m_bClosing; }
  void RaiseConsole() override;
  void FocusConsole() override;

  // --- IProjectView
  void OnProjectStateChanged() override { UpdateActions(); }
  void OpenSourceFile(const QString& sPath) override;
  bool CloseDocuments() override;
  bool SaveDocuments() override;
  void LoadUserFile(const QString& sPath) override;
  void KeepUserFile(const QString& sPath) override;
  void SaveUserFile(const QString& sPath) override;

  // --- Device events
  void OnDeviceBPStateChanged() override { UpdateActions(); }
  void OnDeviceWPStateChanged() override { UpdateActions(); }

  // The windows and tool bars, as the View and Window menus have them.
  QMenu* createPopupMenu() override;

Q_SIGNALS:
  // The first window is on the screen and what opens first has been decided.
  void Started();
  void FirstPaint();

protected:
  // The enable rules and the title, after each change of state.
  void UpdateActions() override;
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
  void closeEvent(QCloseEvent* pEvent) override;
  bool event(QEvent* pEvent) override;
  void changeEvent(QEvent* pEvent) override;

private:
  void CreateControllers();
  void CreateWindows();
  void LinkWindow(CWindow* pWindow);
  void CreateMenus();
  void ConnectWindows();
  void LoadMainWindowState();
  void SaveMainWindowState();
  void ApplyDefaultLayout();
  void RestorePerspective();
  void SavePerspective();
  void UpdateToolBarChecks();
  void UpdateRecentMenus();
  void UpdateWindowList();
  void AddWindowEntries(QMenu* pMenu);
  void TellColor(U32 ID);
  void ShowColors();
  void ShowStatusOf(const CWindow& Window);
  void OnWindowShown();
  // A target that runs can't be resumed, and its halt may not have been reported yet.
  void UpdateHaltResumeButtons();
  void OnApplicationActivated();
  void OnDataFileOpened(const QString& sPath, bool bSame);
  void ShowDocumentsOf(const QString& sProgram);
  bool OnKeyPress(QWidget* pWidget, QKeyEvent* pEvent);
  bool IsOwnInput(QWidget* pWidget) const;
  bool PerformAlternateKey(const QString& sKey);
  void StopTimers();

  std::unique_ptr<CDeviceEventWorker> m_pEventWorker;
  std::unique_ptr<CSessionController> m_pSession;
  std::unique_ptr<CProgramLoader> m_pLoader;
  std::unique_ptr<CProjectController> m_pProjects;
  std::unique_ptr<COMMAND_CONTEXT> m_pCommands;
  CSourceWindow* m_pSource = nullptr;
  CConsoleWindow* m_pConsole = nullptr;
  CWindowRegistry m_Registry;
  QList<QToolBar*> m_ToolBars;
  DYNAMIC_MENUS m_Menus;
  QList<QAction*> m_WindowEntries;
  QTimer m_WindowShownTimer;
  QTimer m_ToolbarUpdateTimer;
  QString m_sUnreadUserFile;  // a layout that must not be written over
  bool m_bClosing = false;
  bool m_bPainted = false;
};
