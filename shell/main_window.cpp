#include "shell/main_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QInputDialog>
#include <QLocale>
#include <QScreen>
#include <QTabBar>
#include <QUrl>

#include <chrono>

#include "core/vcore.h"
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
#include "shell/actions/builtin_commands.h"
#include "shell/batch_session.h"
#include "shell/commands.h"
#include "shell/directories.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/menus.h"
#include "shell/program_loader.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/startup.h"
#include "shell/windows/console_window.h"
#include "shell/wiring.h"
#include "ui/dock_window.h"
#include "ui/status_bar.h"
#include "ui/warnings_dialog.h"
#include "ui/windows/source_window.h"

namespace {

constexpr int WINDOW_SHOWN_DELAY_MS = 10;
constexpr int TOOLBAR_INTERVAL_MS = 200;
constexpr int UNLIMITED_INPUT = 32767;    // characters, the toolkit's own limit
constexpr int SEPARATOR_LIGHTNESS = 115;  // percent of the button colour
constexpr double FIRST_SIZE = 0.8;        // of the screen
constexpr double CONSOLE_SHARE = 0.3;     // of the window's height

// Taken before main, when the libraries have been loaded.
const std::chrono::steady_clock::time_point ProcessStart = std::chrono::steady_clock::now();

CMainWindow* pMainWindow = nullptr;

void LogFirstPaint() {
  const auto Elapsed = std::chrono::steady_clock::now() - ProcessStart;
  LogMsg(QStringLiteral("First paint after %1 ms")
             .arg(std::chrono::duration_cast<std::chrono::milliseconds>(Elapsed).count()),
         MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

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
  connect(&m_ToolbarUpdateTimer, &QTimer::timeout, this, &CMainWindow::OnToolbarUpdateTimerTimeout);
  qApp->installEventFilter(this);
  connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState State) {
    if (State == Qt::ApplicationActive) OnApplicationActivated();
  });
  SetVarValue(GetVarInfo(VAR_CONNECT_MODE), CM_DOWNLOAD_RESET, 0);
  SetVarValue(GetVarInfo(VAR_RESET_MODE), RM_BREAK_AT_SYMBOL, 0);
  resizeDocks({m_pConsole->GetDock()}, {static_cast<int>(height() * CONSOLE_SHARE)}, Qt::Vertical);
  RestoreState();
  UpdateModeButtons();
  UpdateAll();
}

CMainWindow::~CMainWindow() {
  pMainWindow = nullptr;
  // The status bar outlives the window: it is reached from everywhere.
  CStatusBar::_GetSingleton()->setParent(nullptr);
}

void CMainWindow::CreateControllers() {
  m_pEventWorker = std::make_unique<CDeviceEventWorker>(CDevice::Get());
  m_pSession = std::make_unique<CSessionController>(*this);
  m_pLoader = std::make_unique<CProgramLoader>(*m_pSession);
  m_pProjects = std::make_unique<CProjectController>(*this, *m_pSession, *m_pLoader);
  m_pCommands = std::make_unique<COMMAND_CONTEXT>(COMMAND_CONTEXT{*this, *m_pSession, *m_pProjects, *m_pLoader});
  PlugLayersTogether(*m_pSession);
  m_pLoader->SetAddressQuestion([this](const QString& sPath, U32* pAddr) {
    if (CBatchSession::IsActive()) return false;
    bool bOk = false;
    QString sText = QInputDialog::getText(this, QStringLiteral("Open Binary File"),
                                          QStringLiteral("Base address of %1:").arg(QFileInfo(sPath).fileName()),
                                          QLineEdit::Normal, QStringLiteral("0x00000000"), &bOk);
    if (bOk) *pAddr = sText.remove(QStringLiteral("0x"), Qt::CaseInsensitive).toUInt(&bOk, 16);
    return bOk;
  });
}

CDockWindow* CMainWindow::AddDock(const QString& sName, const QString& sTitle, Qt::DockWidgetArea Area) {
  auto* const pDock = new CDockWindow(sName, sTitle, this);
  addDockWidget(Area, pDock);
  m_Docks << pDock;
  return pDock;
}

void CMainWindow::CreateWindows() {
  m_pSource = new CSourceWindow(this);
  setCentralWidget(m_pSource);
  m_pSource->SetActive(true);
  m_Windows << m_pSource;
  m_pConsole =
      new CConsoleWindow(AddDock(QStringLiteral("Console"), QStringLiteral("Console"), Qt::BottomDockWidgetArea));
  m_Windows << m_pConsole;
  for (CWindow* const pWindow : m_Windows) m_pConsole->AddCommandListener(pWindow);
  m_pConsole->AddCommandListener(this);
  ApplyFonts();
}

void CMainWindow::ApplyFonts() {
  for (CWindow* const pWindow : m_Windows) {
    ApplyFontsTo(*pWindow);
    pWindow->Repaint();
  }
  for (CDockWindow* const pDock : m_Docks) pDock->ApplyFont();
  CStatusBar::_GetSingleton()->SetFont(::GetFont(FONT_APP));
}

void CMainWindow::ApplyColor(U32 ID, const QColor& Color) {
  for (CWindow* const pWindow : m_Windows) {
    pWindow->SetColor(static_cast<int>(ID), Color);
    pWindow->Repaint();
  }
  for (CDockWindow* const pDock : m_Docks) pDock->UpdateStyle();
}

void CMainWindow::CreateMenus() {
  RegisterBuiltinCommands([] { return IsShuttingDown(); });
  RegisterFileCommands(*m_pCommands);
  RegisterHelpCommands(*m_pCommands);
  RegisterDebugCommands(*m_pCommands);
  RegisterBreakCommands(*m_pCommands);
  RegisterTargetCommands(*m_pCommands);
  RegisterProjectCommands(*m_pCommands);
  RegisterWindowCommands(*m_pCommands);
  RegisterEditCommands(*m_pCommands);
  RegisterViewCommands(*m_pCommands);
  const DYNAMIC_MENUS Menus = CreateMenuBar(this);
  m_pRecentProjectsMenu = Menus.pRecentProjects;
  m_pRecentProgramsMenu = Menus.pRecentPrograms;
  m_ToolBars = CreateToolBars(this);
  for (const U32 ID : GetCommandIDs()) {
    if (QAction* const pAction = GetAction(ID)) addAction(pAction);
  }
  m_pProjects->RecentProjects().SetListener([this] { UpdateRecentMenus(); });
  m_pProjects->RecentPrograms().SetListener([this] { UpdateRecentMenus(); });
}

void CMainWindow::UpdateRecentMenus() {
  const auto Fill = [this](QMenu* pMenu, const QStringList& Paths, bool bProgram) {
    if (pMenu == nullptr) return;
    pMenu->clear();
    for (const QString& sPath : Paths) {
      connect(pMenu->addAction(sPath), &QAction::triggered, this, [this, sPath, bProgram] {
        m_pLoader->SetUserChosen(bProgram);
        PerformAction(ACTION_FILE_OPEN, sPath);
      });
    }
    pMenu->setEnabled(!Paths.isEmpty());
  };
  Fill(m_pRecentProjectsMenu, m_pProjects->RecentProjects().Paths(), false);
  Fill(m_pRecentProgramsMenu, m_pProjects->RecentPrograms().Paths(), true);
}

void CMainWindow::ConnectWindows() {
  for (CWindow* const pWindow : m_Windows) {
    connect(pWindow, &CWindow::StatusTextChanged, this,
            [pWindow] { CStatusBar::_GetSingleton()->SetActiveWindowStatus(pWindow->GetStatusText()); });
    if (CDockWindow* const pDock = pWindow->GetDock()) {
      connect(pDock, &QDockWidget::visibilityChanged, pWindow, &CWindow::VisibilityChanged);
      connect(pDock, &QDockWidget::topLevelChanged, pWindow, &CWindow::FloatingStateChanged);
    }
    for (CWindow* const pOther : m_Windows) {
      connect(pWindow, &CWindow::InstrSelected, pOther, &CWindow::OnInstrSelected);
      connect(pWindow, &CWindow::SrcLocSelected, pOther, &CWindow::OnSrcLocSelected);
      connect(pWindow, &CWindow::FuncSelected, pOther, &CWindow::OnFuncSelected);
      connect(pWindow, &CWindow::SymbolSelected, pOther, &CWindow::OnSymbolSelected);
    }
  }
  connect(m_pLoader.get(), &CProgramLoader::AboutToChange, this, [this] { m_pSource->ClearPC(); });
  connect(m_pLoader.get(), &CProgramLoader::DataFileOpened, this, &CMainWindow::OnDataFileOpened);
}

void CMainWindow::OnDataFileOpened(const QString& sPath, bool bSame) {
  for (CWindow* const pWindow : m_Windows) {
    pWindow->SetSrcLanguage(ELFAPI_GetSrcLang());
    pWindow->OnDataFileOpened(sPath);
  }
  if (bSame) {
    m_pSource->ReloadDocuments();
  } else {
    m_pSource->CloseAll();
    const ELF_SYM_HANDLE Main = ELFAPI_GetEntryFunc();
    const CSrcLoc Loc = Main ? ELFAPI_GetFirstSrcLoc(ELFAPI_GetAddr(Main)) : CSrcLoc();
    if (Loc.IsValid()) m_pSource->ShowLocation(Loc);
  }
}

void CMainWindow::OnWindowShown() {
  setStyleSheet(styleSheet() +
                QStringLiteral("QMainWindow::separator:vertical {background: %1; width: 1px; height: 1px;}")
                    .arg(palette().color(QPalette::Button).lighter(SEPARATOR_LIGHTNESS).name()));
  LogStartupFacts();
  OpenWhatComesFirst(*this, *m_pProjects);
  Q_EMIT Started();
}

bool CMainWindow::IsIdle() const {
  return !CProject::Get().IsOpening() && VScript::CallLevel() == 0;
}

void CMainWindow::UpdateAll() {
  if (m_bClosing) return;
  const CDevice& Device = CDevice::Get();
  ACTION_STATE State;
  State.Connected = Device.IsConnected();
  State.Halted = Device.IsHalted();
  State.ProjectOpen = CProject::Get().IsOpen();
  State.ProjectModified = CProject::Get().IsModified();
  State.DocumentOpen = !m_pSource->IsEmpty();
  State.HasBreakpoint = CDevice::Get().Context().Breakpoints.Count() > 0;
  State.PCHasSource = State.Connected && ELFAPI_HasSrcLoc(static_cast<U32>(Device.GetPC()));
  ::UpdateActions(State);
  SetWindowTitle(m_pProjects->MakeTitle());
  if (State.Connected && !m_ToolbarUpdateTimer.isActive()) m_ToolbarUpdateTimer.start();
}

void CMainWindow::OnToolbarUpdateTimerTimeout() {
  if (!CDevice::Get().IsConnected()) m_ToolbarUpdateTimer.stop();
  const bool bHalted = CDevice::Get().IsHalted();
  QAction* const pHalt = GetAction(ACTION_DEBUG_HALT);
  if (pHalt && pHalt->isVisible() == bHalted) UpdateAll();
}

void CMainWindow::UpdateModeButtons() {
  ::UpdateModeButtons();
}

CWindow* CMainWindow::FindWindow(QString sName, bool bVisibleOnly) const {
  sName.remove(QLatin1Char('"'));
  for (CWindow* const pWindow : m_Windows) {
    if (bVisibleOnly && !pWindow->IsVisible()) continue;
    if (pWindow->GetName().compare(sName, Qt::CaseInsensitive) == 0) return pWindow;
    if (pWindow->GetDisplayName().compare(sName, Qt::CaseInsensitive) == 0) return pWindow;
  }
  return nullptr;
}

QToolBar* CMainWindow::FindToolBar(const QString& sName) const {
  for (QToolBar* const pBar : m_ToolBars) {
    if (pBar->objectName().compare(sName, Qt::CaseInsensitive) == 0) return pBar;
    if (pBar->windowTitle().compare(sName, Qt::CaseInsensitive) == 0) return pBar;
  }
  return nullptr;
}

void CMainWindow::ShowWindow(CWindow* pWindow) {
  if (pWindow->GetDock()) {
    pWindow->GetDock()->show();
    pWindow->GetDock()->raise();
  }
  pWindow->setFocus();
}

void CMainWindow::ShowPC(U32 PC) {
  m_pSource->ShowPC(PC);
  if (!m_pConsole->HasFocus() && ELFAPI_HasSrcLoc(PC)) {
    m_pSource->setFocus();
    m_pSource->SetActive(true);
  }
}

void CMainWindow::RefreshWindows() {
  for (CWindow* const pWindow : m_Windows) pWindow->Repaint();
}

void CMainWindow::FocusSourceWindow() {
  m_pSource->setFocus();
}

void CMainWindow::RaiseConsole() {
  m_pConsole->GetDock()->show();
  m_pConsole->GetDock()->raise();
}

// The viewer does not edit yet, so that no source can differ.
bool CMainWindow::ConfirmModifiedSources() {
  return true;
}

bool CMainWindow::ConfirmProjectErrors(const QStringList& Errors) {
  return CWarningsDialog::ShowList(
      QStringLiteral("Project File Errors"), QStringLiteral("The project file contains errors:"), Errors,
      QStringLiteral("Some debugging features might be disabled."),
      [] { QDesktopServices::openUrl(QUrl::fromLocalFile(CProject::Get().GetFileName())); });
}

void CMainWindow::OpenSourceFile(const QString& sPath) {
  m_pSource->Open(sPath);
}

bool CMainWindow::CloseDocuments() {
  m_pSource->CloseAll();
  return true;
}

bool CMainWindow::SaveDocuments() {
  return true;
}
void CMainWindow::LoadUserFile(const QString&) {}
void CMainWindow::SaveUserFile(const QString&) {}

bool CMainWindow::OnKeyPress(QWidget* pWidget, QKeyEvent* pEvent) {
  if (pEvent->key() == Qt::Key_S && pEvent->modifiers() == (Qt::ShiftModifier | Qt::AltModifier)) {
    m_pSource->setFocus();
    m_pSource->SetActive(true);
    return true;
  }
  if (QApplication::activePopupWidget() || QApplication::activeModalWidget()) return false;
  const auto* const pInput = qobject_cast<const QLineEdit*>(pWidget);
  const bool bLimited = pInput && pInput->maxLength() < UNLIMITED_INPUT;
  if (pEvent->key() == Qt::Key_Escape && !bLimited) {
    m_pSource->setFocus();
    return false;
  }
  for (const U32 ID : FindActionsByHotkey(QKeySequence(pEvent->keyCombination()).toString())) {
    const QAction* const pAction = GetAction(ID);
    if (pAction && pAction->isEnabled() && pAction->isVisible()) {
      ClearActionArgs(ID);
      TriggerAction(ID);
      return true;
    }
  }
  return false;
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
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) ApplyColor(ID, GetColor(ID));
}

bool CMainWindow::eventFilter(QObject* pWatched, QEvent* pEvent) {
  switch (pEvent->type()) {
    case QEvent::Paint:
      if (pWatched == this && !m_bPainted) {
        m_bPainted = true;
        m_WindowShownTimer.start();
        LogFirstPaint();
        Q_EMIT FirstPaint();
      }
      break;
    case QEvent::ChildPolished:
      if (auto* const pBar = qobject_cast<QTabBar*>(static_cast<QChildEvent*>(pEvent)->child());
          pBar && pWatched == this) {
        pBar->setMovable(true);
        pBar->setElideMode(Qt::ElideRight);
      }
      break;
    case QEvent::KeyPress: {
      auto* const pWidget = qobject_cast<QWidget*>(pWatched);
      if (pWidget && OnKeyPress(pWidget, static_cast<QKeyEvent*>(pEvent))) return true;
      break;
    }
    default:
      break;
  }
  return QMainWindow::eventFilter(pWatched, pEvent);
}
