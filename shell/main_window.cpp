#include "shell/main_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLocale>
#include <QScreen>
#include <QUrl>

#include "core/vcore.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_event_worker.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_enable.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/action_link.h"
#include "shell/breakpoint_binding.h"
#include "shell/commands.h"
#include "shell/directories.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/menus.h"
#include "shell/program_loader.h"
#include "shell/session_trace.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/source_binding.h"
#include "shell/startup.h"
#include "shell/table_windows.h"
#include "shell/window_table.h"
#include "shell/windows/console_window.h"
#include "shell/wiring.h"
#include "ui/dock_window.h"
#include "ui/generic_memory_dialog.h"
#include "ui/status_bar.h"
#include "ui/table/model_view_window.h"
#include "ui/warnings_dialog.h"
#include "ui/windows/source_window.h"

namespace {

constexpr int WINDOW_SHOWN_DELAY_MS = 10;
constexpr int TOOLBAR_INTERVAL_MS = 200;
constexpr int SEPARATOR_LIGHTNESS = 115;  // percent of the button colour
constexpr double FIRST_SIZE = 0.8;        // of the screen
constexpr double CONSOLE_SHARE = 0.3;     // of the window's height

CMainWindow* pMainWindow = nullptr;

}  // namespace

CMainWindow* CMainWindow::Get() {
  return pMainWindow;
}
bool CMainWindow::IsShuttingDown() {
  return pMainWindow && pMainWindow->m_bClosing;
}

CMainWindow::CMainWindow() : CWindow(nullptr, QStringLiteral("MainWindow")) {
  pMainWindow = this;
  setFocusPolicy(Qt::TabFocus);
  QLocale::setDefault(QLocale::English);
  setLocale(QLocale::English);
  setWindowIcon(GetIcon(QStringLiteral("magnifier-32.png")));
  resize(screen()->availableSize() * FIRST_SIZE);
  setDockNestingEnabled(true);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  setStatusBar(CStatusBar::_GetSingleton());

  LoadApplicationSettings();
  CreateControllers();
  CreateWindows();
  CreateMenus();
  ConnectWindows();
  m_WindowShownTimer.setSingleShot(true);
  m_WindowShownTimer.setInterval(WINDOW_SHOWN_DELAY_MS);
  connect(&m_WindowShownTimer, &QTimer::timeout, this, &CMainWindow::OnWindowShown);
  m_ToolbarUpdateTimer.setInterval(TOOLBAR_INTERVAL_MS);
  connect(&m_ToolbarUpdateTimer, &QTimer::timeout, this, &CMainWindow::UpdateHaltResumeButtons);
  qApp->installEventFilter(this);
  connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState State) {
    if (State == Qt::ApplicationActive) OnApplicationActivated();
  });
  SetVarValue(GetVarInfo(VAR_CONNECT_MODE), CM_DOWNLOAD_RESET, 0);
  SetVarValue(GetVarInfo(VAR_RESET_MODE), RM_BREAK_AT_SYMBOL, 0);
  resizeDocks({m_pConsole->GetDock()}, {static_cast<int>(height() * CONSOLE_SHARE)}, Qt::Vertical);
  LoadMainWindowState();
  const QPointer<QWidget> pFocus = QApplication::focusWidget();
  ApplyDefaultLayout();
  RestorePerspective();
  if (pFocus && pFocus->isVisible()) pFocus->setFocus();
  UpdateModeButtons();
  UpdateActions();
}

CMainWindow::~CMainWindow() {
  pMainWindow = nullptr;
  // The status bar outlives the window: it is reached from everywhere.
  CStatusBar::_GetSingleton()->setParent(nullptr);
}

void CMainWindow::CreateControllers() {
  m_pEventWorker = std::make_unique<CDeviceEventWorker>(CDevice::Get());
  m_pSession = std::make_unique<CSessionController>(*this);
  m_pLoader = std::make_unique<CProgramLoader>(*m_pSession, this);
  m_pProjects = std::make_unique<CProjectController>(*this, *m_pSession, *m_pLoader);
  m_pCommands = std::make_unique<COMMAND_CONTEXT>(COMMAND_CONTEXT{*this, *m_pSession, *m_pProjects, *m_pLoader});
  PlugLayersTogether(*m_pSession, *m_pLoader);
  m_pLoader->SetAddressQuestion([this](const QString& sPath, U32* pAddr) {
    CGenericMemoryDialog Dialog(this, MEMORY_DIALOG_LOAD);
    Dialog.SetFile(sPath, true);
    if (Dialog.exec() != QDialog::Accepted) return false;
    *pAddr = Dialog.Addr();
    return true;
  });
}

// Each on the dock that is made for it; the source viewer takes the middle.
void CMainWindow::CreateWindows() {
  for (const WINDOW_ROW& Row : GetWindowTable()) {
    if (Row.Create == nullptr) continue;
    CDockWindow* pDock = nullptr;
    if (Row.Area != Qt::NoDockWidgetArea) {
      pDock = new CDockWindow(QLatin1String(Row.sName), QLatin1String(Row.sTitle), this);
      addDockWidget(Row.Area, pDock);
    }
    m_Registry.Add(Row.Create(pDock ? static_cast<QWidget*>(pDock) : this));
  }
  m_pSource = findChild<CSourceWindow*>();
  setCentralWidget(m_pSource);
  m_pSource->SetActive(true);
  m_pConsole = CConsoleWindow::Get();
  for (CWindow* const pWindow : GetWindowList()) {
    LinkWindow(pWindow);
    ApplyPreferencesTo(*pWindow);
    m_pConsole->AddCommandListener(pWindow);
  }
  m_pConsole->AddCommandListener(this);
  ApplyFonts();
}

// The keys of a window's own actions act while the focus is in it.
void CMainWindow::LinkWindow(CWindow* pWindow) {
  LinkActions(pWindow);
  for (QAction* const pAction : pWindow->findChildren<QAction*>()) {
    if (FindActionID(pAction) < 0) continue;
    pAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    pWindow->addAction(pAction);
  }
}

void CMainWindow::ApplyFonts() {
  for (CWindow* const pWindow : GetWindowList()) {
    ApplyFontsTo(*pWindow);
    pWindow->Repaint();
  }
  for (CDockWindow* const pDock : m_Registry.Docks()) pDock->ApplyFont();
  CStatusBar::_GetSingleton()->SetFont(::GetFont(FONT_APP));
}

void CMainWindow::TellColor(U32 ID) {
  for (CWindow* const pWindow : GetWindowList()) pWindow->SetColor(static_cast<int>(ID), GetColor(ID));
}

void CMainWindow::ShowColors() {
  for (CWindow* const pWindow : GetWindowList()) pWindow->Repaint();
  for (CDockWindow* const pDock : m_Registry.Docks()) pDock->UpdateStyle();
}

void CMainWindow::ApplyColor(U32 ID) {
  TellColor(ID);
  ShowColors();
}

void CMainWindow::ConnectWindows() {
  for (CWindow* const pWindow : GetWindowList()) {
    connect(pWindow, &CWindow::StatusTextChanged, this, [this, pWindow] { ShowStatusOf(*pWindow); });
    if (CDockWindow* const pDock = pWindow->GetDock()) {
      connect(pDock, &QDockWidget::visibilityChanged, pWindow, &CWindow::VisibilityChanged);
      connect(pDock, &QDockWidget::topLevelChanged, pWindow, &CWindow::FloatingStateChanged);
    }
    for (CWindow* const pOther : GetWindowList()) {
      connect(pWindow, &CWindow::InstrSelected, pOther, &CWindow::OnInstrSelected);
      connect(pWindow, &CWindow::SrcLocSelected, pOther, &CWindow::OnSrcLocSelected);
      connect(pWindow, &CWindow::FuncSelected, pOther, &CWindow::OnFuncSelected);
      connect(pWindow, &CWindow::SymbolSelected, pOther, &CWindow::OnSymbolSelected);
    }
  }
  // Queued: a window may be in the middle of the change.
  connect(m_pSource, &CWindow::ContentChanged, this, &CMainWindow::UpdateActions, Qt::QueuedConnection);
  connect(m_pLoader.get(), &CProgramLoader::AboutToChange, this, [this] { m_pSource->ClearPC(); });
  connect(m_pLoader.get(), &CProgramLoader::DataFileOpened, this, &CMainWindow::OnDataFileOpened);
  BindSource(*this);
  BindTableWindows(*this, *m_pLoader);
  BindBreakpoints(*this, *m_pLoader);
}

// Of the window with the focus; while none has it, of whichever has something new.
void CMainWindow::ShowStatusOf(const CWindow& Window) {
  const QList<CWindow*>& All = GetWindowList();
  const bool bOther = std::any_of(All.begin(), All.end(), [](const CWindow* pWindow) { return pWindow->HasFocus(); });
  if (Window.HasFocus() || !bOther) CStatusBar::_GetSingleton()->SetActiveWindowStatus(Window.GetStatusText());
}

void CMainWindow::OnWindowShown() {
  setStyleSheet(styleSheet() +
                QStringLiteral("QMainWindow::separator:vertical {background: %1; width: 1px; height: 1px;}")
                    .arg(palette().color(QPalette::Button).lighter(SEPARATOR_LIGHTNESS).name()));
  ReportProbeLibrary();
  OpenWhatComesFirst(*this, *m_pProjects);
  ReportUnlinkedActions();
  Q_EMIT Started();
}

bool CMainWindow::IsIdle() const {
  return !CProject::Get().IsOpening() && !m_pLoader->IsReading() && VScript::CallLevel() == 0 && !m_pSession->IsBusy();
}

void CMainWindow::UpdateActions() {
  // The base class asks while it is being made.
  if (m_bClosing || m_pSource == nullptr) return;
  const CDevice& Device = CDevice::Get();
  ACTION_STATE State;
  State.Connected = Device.IsConnected();
  State.Halted = Device.IsHalted();
  State.ProjectOpen = CProject::Get().IsOpen();
  State.ProjectModified = CProject::Get().IsModified();
  State.DocumentOpen = !m_pSource->IsEmpty();
  State.ActiveDocumentModified = m_pSource->IsActiveDocumentChanged();
  State.AnyDocumentModified = m_pSource->HasDocumentWithUnsavedChanges();
  State.sActiveDocument = QFileInfo(m_pSource->ActiveFile()).fileName();
  State.HasBreakpoint = !CBreakpointManager::Get().IsEmpty();
  State.PCHasSource = State.Connected && ELFAPI_HasSrcLoc(static_cast<U32>(Device.GetPC()));
  ::UpdateActions(State);
  SetWindowTitle(m_pProjects->MakeTitle());
}

void CMainWindow::WatchTarget(bool bOn) {
  if (bOn) {
    m_ToolbarUpdateTimer.start();
  } else {
    m_ToolbarUpdateTimer.stop();
  }
}

void CMainWindow::UpdateHaltResumeButtons() {
  const CDevice& Device = CDevice::Get();
  const QAction* const pHalt = GetAction(ACTION_DEBUG_HALT);
  if (pHalt && pHalt->isVisible() == Device.IsHalted()) UpdateActions();
  if (Device.isRunning() && !Device.IsHalted()) SetActionAccepted(ACTION_DEBUG_CONTINUE, false);
}

void CMainWindow::UpdateModeButtons() {
  ::UpdateModeButtons();
}

void CMainWindow::ShowWindow(CWindow* pWindow) {
  if (pWindow->GetDock()) {
    pWindow->GetDock()->show();
    pWindow->GetDock()->raise();
  }
  // A floating dock may have the keyboard.
  pWindow->activateWindow();
  pWindow->setFocus();
  UpdateTrace(NeedsTrace());
}

void CMainWindow::ShowPC(U32 PC) {
  m_pSource->ShowPC(PC);
  if (!m_pConsole->HasFocus() && ELFAPI_HasSrcLoc(PC)) {
    m_pSource->setFocus();
    m_pSource->SetActive(true);
  }
}

void CMainWindow::RefreshWindows() {
  for (CWindow* const pWindow : GetWindowList()) {
    auto* const pTable = qobject_cast<CModelViewWindow*>(pWindow);
    pTable ? pTable->Invalidate() : pWindow->Repaint();
  }
}

void CMainWindow::FocusSourceWindow() {
  m_pSource->setFocus();
}

void CMainWindow::RaiseConsole() {
  m_pConsole->GetDock()->show();
  m_pConsole->GetDock()->raise();
  // The error that is shown next must not be lost behind the many lines of a loop.
  m_pConsole->DrainAll();
}

void CMainWindow::FocusConsole() {
  RaiseConsole();
  m_pConsole->setFocus();
}

bool CMainWindow::NeedsTrace() const {
  for (const char* sName : {"Code Profile", "Instruction Trace", "Timeline"}) {
    if (FindWindow(QLatin1String(sName), true)) return true;
  }
  return GetVarValue(PREF_SHOW_SRC_CODE_PROFILE) != 0 ||
         (GetVarValue(PREF_SHOW_ASM_CODE_PROFILE) != 0 && FindWindow(QStringLiteral("Disassembly"), true));
}

bool CMainWindow::ConfirmProjectErrors(const QStringList& Errors) {
  return CWarningsDialog::ShowList(
      QStringLiteral("Project File Errors"), QStringLiteral("The project file contains errors:"), Errors,
      QStringLiteral("Some debugging features might be disabled."),
      [] { QDesktopServices::openUrl(QUrl::fromLocalFile(CProject::Get().GetFileName())); });
}

// The tips of menu entries and buttons take their turn among the status bar's texts.
bool CMainWindow::event(QEvent* pEvent) {
  if (pEvent->type() != QEvent::StatusTip) return CWindow::event(pEvent);
  CStatusBar::_GetSingleton()->OnTempStatusMsgChanged(static_cast<QStatusTipEvent*>(pEvent)->tip());
  return true;
}

void CMainWindow::changeEvent(QEvent* pEvent) {
  CWindow::changeEvent(pEvent);
  if (pEvent->type() != QEvent::PaletteChange) return;
  UpdatePaletteColors();
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) TellColor(ID);
  ShowColors();
}
