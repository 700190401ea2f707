#include "shell/windows/console_window.h"

#include <QGridLayout>
#include <QToolBar>

#include "base/text.h"
#include "program/database/file_finder.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/windows/command_input.h"
#include "shell/windows/console_view.h"
#include "shell/windows/time_stamp_bar.h"
#include "ui/dock_window.h"
#include "ui/popup_menu.h"

namespace {

constexpr int DRAIN_INTERVAL_MS = 100;

CConsoleWindow*& Instance() {
  static CConsoleWindow* pInstance = nullptr;
  return pInstance;
}

// Of the windows whose commands are echoed, which are those that commands reach.
QStringList WindowNames(const QList<CWindow*>& Windows) {
  QStringList Names;
  for (const CWindow* const pWindow : Windows) {
    if (pWindow->GetDock()) Names << pWindow->GetName();
  }
  Names.sort(Qt::CaseInsensitive);
  return Names;
}

QStringList ToolBarNames(const QList<CWindow*>& Windows) {
  QStringList Names;
  for (const CWindow* const pWindow : Windows) {
    for (const QToolBar* const pBar : pWindow->findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly)) {
      Names << pBar->objectName();
    }
  }
  Names.sort(Qt::CaseInsensitive);
  return Names;
}

QString ExpandMacros(const QString& sPath) {
  return CFileFinder::Get()->ExpandMacros(sPath);
}

// The project's directory, the program's own directory without a project.
QString BaseDir() {
  const QString sMacro = QStringLiteral("$(ProjectDir)");
  const QString sDir = ExpandMacros(sMacro);
  return sDir == sMacro ? QString() : sDir;
}

}  // namespace

CConsoleWindow* CConsoleWindow::Get() {
  return Instance();
}

CConsoleWindow::CConsoleWindow(QWidget* pParent) : CWindow(pParent, QStringLiteral("ConsoleWindow")) {
  Flags = (Flags | WF_MODIFIABLE) & ~(WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT);
  Instance() = this;
  CreatePanes();
  CreateActions();
  SetSidebarVisible(GetVarValue(PREF_SHOW_TIMESTAMPS_CONSOLE) != 0);
  ApplyFonts();
  SetConsoleExists(true);
  m_UpdateTimer.setInterval(DRAIN_INTERVAL_MS);
  connect(&m_UpdateTimer, &QTimer::timeout, this, &CConsoleWindow::Drain);
  m_UpdateTimer.start();
}

CConsoleWindow::~CConsoleWindow() {
  while (DrainConsole(nullptr) > 0) {
  }
  if (Instance() != this) return;
  SetConsoleExists(false);
  Instance() = nullptr;
}

void CConsoleWindow::CreatePanes() {
  auto* const pCentral = new QWidget(this);
  m_pView = new CConsoleView(pCentral);
  m_pSidebar = new CTimeStampBar(pCentral, m_pView);
  m_pHorizontalBar = new QScrollBar(Qt::Horizontal, pCentral);
  m_pCorner = new QWidget(pCentral);
  m_pInput = new CCommandInput(pCentral);
  m_pInput->setObjectName(QStringLiteral("ConsoleInput"));
  m_pInput->setPlaceholderText(QStringLiteral("Enter a command, or ? for help"));
  m_pInput->SetSources({[this] { return WindowNames(m_Listeners); }, [this] { return ToolBarNames(m_Listeners); },
                        BaseDir, ExpandMacros});
  LayOutPanes(pCentral);
  setCentralWidget(pCentral);
  setFocusProxy(m_pInput);

  QScrollBar* const pHidden = m_pView->horizontalScrollBar();
  connect(pHidden, &QScrollBar::rangeChanged, this, &CConsoleWindow::UpdateScrollBars);
  connect(pHidden, &QScrollBar::valueChanged, m_pHorizontalBar, &QScrollBar::setValue);
  connect(m_pHorizontalBar, &QScrollBar::valueChanged, pHidden, &QScrollBar::setValue);
  connect(m_pView->verticalScrollBar(), &QScrollBar::rangeChanged, this, &CConsoleWindow::UpdateScrollBars);
  connect(m_pView, &QWidget::customContextMenuRequested, this, &CConsoleWindow::OnEditorContextMenuRequested);
  connect(m_pSidebar, &QWidget::customContextMenuRequested, this, &CConsoleWindow::OnSidebarContextMenuRequested);
  connect(m_pInput, &CCommandInput::CommandEntered, this, &CConsoleWindow::OnCommandEntered);
  UpdateScrollBars();
}

void CConsoleWindow::LayOutPanes(QWidget* pCentral) {
  auto* const pLine = new QFrame(pCentral);
  pLine->setFrameShape(QFrame::HLine);
  pLine->setForegroundRole(QPalette::Mid);
  auto* const pBars = new QHBoxLayout;
  pBars->addWidget(m_pHorizontalBar);
  pBars->addWidget(m_pCorner);
  auto* const pLayout = new QGridLayout(pCentral);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(m_pSidebar, 0, 0);
  pLayout->addWidget(m_pView, 0, 1);
  pLayout->addLayout(pBars, 1, 0, 1, 2);
  pLayout->addWidget(pLine, 2, 0, 1, 2);
  pLayout->addWidget(m_pInput, 3, 0, 1, 2);
}

void CConsoleWindow::CreateActions() {
  actionConsoleHelp = new QAction(QStringLiteral("List Co&mmands"), this);
  actionConsoleHelp->setObjectName(QStringLiteral("actionConsoleHelp"));
  connect(actionConsoleHelp, &QAction::triggered, this, &CConsoleWindow::OnActionHelpTriggered);
  actionConsoleShowSidebar = new QAction(QStringLiteral("&Timestamps"), this);
  actionConsoleShowSidebar->setObjectName(QStringLiteral("actionConsoleShowSidebar"));
  actionConsoleShowSidebar->setCheckable(true);
  connect(actionConsoleShowSidebar, &QAction::triggered, this, &CConsoleWindow::OnActionShowSidebarTriggered);
  LinkAction(actionConsoleHelp);
  LinkAction(actionConsoleShowSidebar);
}

void CConsoleWindow::Clear() {
  m_pInput->clear();
  m_pView->Clear();
  ClearConsoleRing();
  m_pSidebar->ResizeToOptWidth();
  CWindow::Clear();
}

void CConsoleWindow::SetFont(int FontID, const QFont& /*Font*/) {
  if (FontID == FONT_APP || FontID == FONT_CONSOLE) ApplyFonts();
}

void CConsoleWindow::ApplyFonts() {
  m_pView->ApplyFont();
  m_pInput->ApplyFont(MonospacedForm(::GetFont(FONT_CONSOLE)));
  m_pSidebar->ResizeToOptWidth();
}

void CConsoleWindow::SetColor(int /*ColorID*/, const QColor& /*Color*/) {
  m_pView->ScheduleRecolor();
  m_pSidebar->update();
}

void CConsoleWindow::SetPreference(int VarID, int Value) {
  if (VarID == PREF_SHOW_TIMESTAMPS_CONSOLE) SetSidebarVisible(Value != 0);
}

void CConsoleWindow::SetSidebarVisible(bool bVisible) {
  m_pSidebar->setVisible(bVisible);
  actionConsoleShowSidebar->setChecked(bVisible);
  m_pSidebar->ResizeToOptWidth();
}

QString CConsoleWindow::DumpText() const {
  return m_pView->toPlainText();
}

void CConsoleWindow::AddCommandListener(CWindow* pWindow) {
  if (m_Listeners.contains(pWindow)) return;
  m_Listeners << pWindow;
  connect(pWindow, &CWindow::ActionTriggered, this, [](QAction* pAction) { ::OnActionTriggered(pAction); });
  // The console outlives its own list by the end of its destructor.
  if (pWindow != this) connect(pWindow, &QObject::destroyed, this, [this, pWindow] { m_Listeners.removeAll(pWindow); });
  connect(pWindow, &CWindow::ActionPerformed, this, [](QAction* pAction) { ::OnActionPerformed(pAction); });
}

void CConsoleWindow::RemoveCommandListener(CWindow* pWindow) {
  if (m_Listeners.removeAll(pWindow) > 0) disconnect(pWindow, nullptr, this, nullptr);
}

void CConsoleWindow::Drain() {
  std::vector<CONSOLE_MSG> Messages;
  if (DrainConsole([&](const CONSOLE_MSG& Msg) { Messages.push_back(Msg); }) == 0) return;
  m_pView->Append(Messages);
  m_pView->verticalScrollBar()->setValue(m_pView->verticalScrollBar()->maximum());
  m_pHorizontalBar->setValue(0);
  m_pSidebar->ResizeToOptWidth();
  for (const CONSOLE_MSG& Msg : Messages) Q_EMIT MessageShown(QString::fromUtf8(Msg.Text));
}

void CConsoleWindow::DrainAll() {
  for (U32 i = 0; i < CONSOLE_RING_SLOTS; i += CONSOLE_DRAIN_MAX) Drain();
}

void CConsoleWindow::UpdateScrollBars() {
  const QScrollBar* const pHidden = m_pView->horizontalScrollBar();
  const QScrollBar* const pVertical = m_pView->verticalScrollBar();
  const bool bHorizontal = pHidden->maximum() > pHidden->minimum();
  m_pHorizontalBar->setRange(pHidden->minimum(), pHidden->maximum());
  m_pHorizontalBar->setPageStep(pHidden->pageStep());
  m_pHorizontalBar->setSingleStep(pHidden->singleStep());
  m_pHorizontalBar->setVisible(bHorizontal);
  m_pCorner->setFixedSize(pVertical->sizeHint().width(), m_pHorizontalBar->sizeHint().height());
  m_pCorner->setVisible(bHorizontal && pVertical->maximum() > pVertical->minimum());
}

U32 CConsoleWindow::CommandInInput() const {
  return m_pInput->hasFocus() ? m_pInput->Command() : NUM_ACTIONS;
}

void CConsoleWindow::FocusInput() {
  m_pInput->setFocus();
}

void CConsoleWindow::OnCommandEntered(const QString& sCommand) {
  if (sCommand.isEmpty()) {
    PrintConsole(QStringLiteral(" "));
  } else {
    const COMMAND_RESULT Outcome = ExecuteCommand(sCommand);
    const COMMAND_REPORT& Report = GetLastCommand();
    if (Outcome == COMMAND_RAN && Report.HasResult && Report.sError.isEmpty()) {
      PrintConsole(QStringLiteral("=> ") + HexText(static_cast<U32>(Report.Result)));
    }
  }
  Drain();
}

void CConsoleWindow::OnActionHelpTriggered() {
  PerformAction(ACTION_HELP_COMMANDS);
}

void CConsoleWindow::OnActionShowSidebarTriggered() {
  PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_SHOW_TIMESTAMPS_CONSOLE"),
                actionConsoleShowSidebar->isChecked() ? 1 : 0, 1);
}

void CConsoleWindow::OnContextMenuRequested(const QPoint& ScreenPos) {
  ShowEditorMenu(ScreenPos);
}

void CConsoleWindow::OnEditorContextMenuRequested(const QPoint& Pos) {
  ShowEditorMenu(m_pView->mapToGlobal(Pos));
}

void CConsoleWindow::OnSidebarContextMenuRequested(const QPoint& Pos) {
  CPopupMenu Menu(this);
  Menu.AddAction(actionConsoleShowSidebar);
  Menu.Run(m_pSidebar->mapToGlobal(Pos));
}

void CConsoleWindow::ShowEditorMenu(const QPoint& ScreenPos) {
  const std::unique_ptr<QMenu> pStandard(m_pView->createStandardContextMenu());
  CPopupMenu Menu(this);
  for (QAction* const pAction : pStandard->actions()) Menu.AddAction(pAction);
  Menu.AddAction(actionWinClear);
  Menu.AddSeparator();
  Menu.AddAction(actionConsoleHelp);
  Menu.AddSeparator();
  Menu.AddAction(actionConsoleShowSidebar);
  Menu.Run(ScreenPos);
}
