#include "shell/windows/console_window.h"

#include <QGridLayout>
#include <QTextBlock>

#include "base/text.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/log/console_print.h"
#include "shell/log/console_ring.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int DRAIN_INTERVAL_MS = 100;
constexpr int SIDEBAR_MARGIN = 10;  // pixels

CConsoleWindow*& Instance() {
  static CConsoleWindow* pInstance = nullptr;
  return pInstance;
}

QTextEdit* MakePane(QWidget* pParent) {
  auto* const pPane = new QTextEdit(pParent);
  pPane->setReadOnly(true);
  pPane->setUndoRedoEnabled(false);
  pPane->setLineWrapMode(QTextEdit::NoWrap);
  pPane->setFrameShape(QFrame::NoFrame);
  pPane->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  pPane->setContextMenuPolicy(Qt::CustomContextMenu);
  return pPane;
}

}  // namespace

CConsoleWindow* CConsoleWindow::Get() {
  return Instance();
}

CConsoleWindow::CConsoleWindow(QWidget* pParent) : CWindow(pParent, QStringLiteral("ConsoleWindow")) {
  Flags = (Flags | WF_MODIFIABLE) & ~(WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT);
  Instance() = this;
  CreatePanes();
  m_pActionTimestamps = new QAction(QStringLiteral("&Timestamps"), this);
  m_pActionTimestamps->setCheckable(true);
  connect(m_pActionTimestamps, &QAction::triggered, this, [](bool bOn) {
    PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_SHOW_TIMESTAMPS_CONSOLE"), bOn ? 1 : 0, 1);
  });
  m_pActionHelp = new QAction(QStringLiteral("List Co&mmands"), this);
  connect(m_pActionHelp, &QAction::triggered, this, [] { PerformAction(ACTION_HELP_COMMANDS); });
  SetSidebarVisible(GetVarValue(PREF_SHOW_TIMESTAMPS_CONSOLE) != 0);
  ApplyFonts();
  SetConsoleExists(true);
  m_UpdateTimer.setInterval(DRAIN_INTERVAL_MS);
  connect(&m_UpdateTimer, &QTimer::timeout, this, &CConsoleWindow::Drain);
  m_UpdateTimer.start();
}

void CConsoleWindow::CreatePanes() {
  auto* const pCentral = new QWidget(this);
  m_pEditor = MakePane(pCentral);
  m_pSidebar = MakePane(pCentral);
  m_pSidebar->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_pSidebar->setFocusPolicy(Qt::NoFocus);
  m_pHorizontalBar = new QScrollBar(Qt::Horizontal, pCentral);
  m_pInput = new QLineEdit(pCentral);
  m_pInput->setObjectName(QStringLiteral("ConsoleInput"));
  m_pInput->setFrame(false);
  m_pInput->setPlaceholderText(QStringLiteral("Enter a command, or ? for help"));
  m_pInput->installEventFilter(this);

  auto* const pLine = new QFrame(pCentral);
  pLine->setFrameShape(QFrame::HLine);
  pLine->setForegroundRole(QPalette::Mid);

  auto* const pLayout = new QGridLayout(pCentral);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(m_pSidebar, 0, 0);
  pLayout->addWidget(m_pEditor, 0, 1);
  pLayout->addWidget(m_pHorizontalBar, 1, 0, 1, 2);
  pLayout->addWidget(pLine, 2, 0, 1, 2);
  pLayout->addWidget(m_pInput, 3, 0, 1, 2);
  setCentralWidget(pCentral);
  setFocusProxy(m_pInput);

  QScrollBar* const pEditorBar = m_pEditor->verticalScrollBar();
  QScrollBar* const pSidebarBar = m_pSidebar->verticalScrollBar();
  connect(pEditorBar, &QScrollBar::valueChanged, pSidebarBar, &QScrollBar::setValue);
  connect(pSidebarBar, &QScrollBar::valueChanged, pEditorBar, &QScrollBar::setValue);
  QScrollBar* const pHidden = m_pEditor->horizontalScrollBar();
  connect(pHidden, &QScrollBar::rangeChanged, this, &CConsoleWindow::UpdateScrollBars);
  connect(pHidden, &QScrollBar::valueChanged, m_pHorizontalBar, &QScrollBar::setValue);
  connect(m_pHorizontalBar, &QScrollBar::valueChanged, pHidden, &QScrollBar::setValue);
  connect(m_pEditor, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& Pos) { ShowMenu(m_pEditor->mapToGlobal(Pos), false); });
  connect(m_pSidebar, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& Pos) { ShowMenu(m_pSidebar->mapToGlobal(Pos), true); });
  UpdateScrollBars();
}

void CConsoleWindow::Clear() {
  m_pInput->clear();
  m_pEditor->clear();
  m_pSidebar->clear();
  m_bSidebarHasText = false;
  ClearConsoleRing();
  ResizeSidebarToOptWidth();
  CWindow::Clear();
}

void CConsoleWindow::SetFont(int FontID, const QFont& /*Font*/) {
  if (FontID == FONT_APP || FontID == FONT_CONSOLE) ApplyFonts();
}

void CConsoleWindow::ApplyFonts() {
  for (QWidget* const pWidget : {static_cast<QWidget*>(m_pEditor), static_cast<QWidget*>(m_pSidebar)}) {
    pWidget->setFont(::GetFont(FONT_CONSOLE));
  }
  m_pInput->setFont(MonospacedForm(::GetFont(FONT_CONSOLE)));
  ResizeSidebarToOptWidth();
}

void CConsoleWindow::SetPreference(int VarID, int Value) {
  if (VarID == PREF_SHOW_TIMESTAMPS_CONSOLE) SetSidebarVisible(Value != 0);
}

void CConsoleWindow::SetSidebarVisible(bool bVisible) {
  m_pSidebar->setVisible(bVisible);
  m_pActionTimestamps->setChecked(bVisible);
  ResizeSidebarToOptWidth();
}

QString CConsoleWindow::DumpText() const {
  return m_pEditor->toPlainText();
}

void CConsoleWindow::AddCommandListener(CWindow* pWindow) {
  if (m_Listeners.contains(pWindow)) return;
  m_Listeners << pWindow;
  connect(pWindow, &CWindow::ActionTriggered, this, [](QAction* pAction) { ::OnActionTriggered(pAction); });
  connect(pWindow, &CWindow::ActionPerformed, this, [](QAction* pAction) { ::OnActionPerformed(pAction); });
}

void CConsoleWindow::RemoveCommandListener(CWindow* pWindow) {
  if (m_Listeners.removeAll(pWindow) > 0) disconnect(pWindow, nullptr, this, nullptr);
}

void CConsoleWindow::Drain() {
  if (DrainConsole([this](const CONSOLE_MSG& Msg) { ShowMessage(Msg); }) == 0) return;
  m_pEditor->verticalScrollBar()->setValue(m_pEditor->verticalScrollBar()->maximum());
  m_pHorizontalBar->setValue(0);
  ResizeSidebarToOptWidth();
}

void CConsoleWindow::ShowMessage(const CONSOLE_MSG& Msg) {
  QTextCharFormat Format;
  Format.setFont(Msg.UseMonoFont ? MonospacedForm(::GetFont(FONT_CONSOLE)) : ::GetFont(FONT_CONSOLE));
  if (Msg.ColorID >= 0) {
    Format.setForeground(Msg.ColorID < static_cast<I32>(NUM_COLORS) ? GetColor(static_cast<U32>(Msg.ColorID))
                                                                    : QColor(Qt::black));
  } else if (Msg.Rgba != CONSOLE_RGBA_DEFAULT) {
    Format.setForeground(QColor::fromRgba(Msg.Rgba));
  }
  QTextCursor Cursor(m_pEditor->document());
  Cursor.movePosition(QTextCursor::End);
  const bool bFirst = m_pEditor->document()->isEmpty();
  if (Msg.StartNewLine && !bFirst) Cursor.insertBlock();
  const QString sText = QString::fromUtf8(Msg.Text);
  Cursor.insertText(sText, Format);
  Q_EMIT MessageShown(sText);

  QTextCursor Stamp(m_pSidebar->document());
  Stamp.movePosition(QTextCursor::End);
  QTextBlockFormat Right;
  Right.setAlignment(Qt::AlignRight);
  if (m_bSidebarHasText) Stamp.insertBlock();
  m_bSidebarHasText = true;
  Stamp.setBlockFormat(Right);
  QTextCharFormat StampFormat;
  StampFormat.setForeground(GetColor(COLOR_LINE_NUMBERS));
  Stamp.insertText(TimeStampText(Msg.TimeStamp), StampFormat);
  for (U32 i = 1; i < Msg.NumLines; ++i) Stamp.insertBlock();
}

void CConsoleWindow::UpdateScrollBars() {
  const QScrollBar* const pHidden = m_pEditor->horizontalScrollBar();
  m_pHorizontalBar->setRange(pHidden->minimum(), pHidden->maximum());
  m_pHorizontalBar->setPageStep(pHidden->pageStep());
  m_pHorizontalBar->setVisible(pHidden->maximum() > pHidden->minimum());
}

void CConsoleWindow::ResizeSidebarToOptWidth() {
  if (m_pSidebar->isHidden()) return;
  int Width = 0;
  if (m_bSidebarHasText) {
    const int LineHeight = std::max(1, GetFontHeight(FONT_CONSOLE));
    const int First = m_pEditor->verticalScrollBar()->value() / LineHeight;
    const int NumLines = m_pEditor->viewport()->height() / LineHeight;
    for (const int Line : {First, First + NumLines - 1, First + NumLines - 2}) {
      Width = std::max(Width, GetTextWidth(FONT_CONSOLE, m_pSidebar->document()->findBlockByNumber(Line).text()));
    }
    Width = std::max(Width, GetTextWidth(FONT_CONSOLE, m_pSidebar->document()->lastBlock().text())) + SIDEBAR_MARGIN;
  }
  m_pSidebar->setFixedWidth(Width);
}

void CConsoleWindow::FocusInput() {
  m_pInput->setFocus();
}

void CConsoleWindow::OnCommandEntered() {
  const QString sCommand = m_pInput->text();
  m_History.Add(sCommand);
  m_pInput->clear();
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

bool CConsoleWindow::OnInputKey(const QKeyEvent* pEvent) {
  switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      OnCommandEntered();
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down: {
      const QString sEntry = pEvent->key() == Qt::Key_Up ? m_History.Up() : m_History.Down();
      if (!sEntry.isNull()) m_pInput->setText(sEntry);
      return true;
    }
    default:
      return false;
  }
}

bool CConsoleWindow::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pWatched == m_pInput && pEvent->type() == QEvent::KeyPress && OnInputKey(static_cast<QKeyEvent*>(pEvent)))
    return true;
  return CWindow::eventFilter(pWatched, pEvent);
}

void CConsoleWindow::OnContextMenuRequested(const QPoint& ScreenPos) {
  ShowMenu(ScreenPos, false);
}

void CConsoleWindow::ShowMenu(const QPoint& ScreenPos, bool bSidebar) {
  std::unique_ptr<QMenu> pMenu(bSidebar ? new QMenu(this) : m_pEditor->createStandardContextMenu());
  if (!bSidebar) {
    pMenu->addAction(actionWinClear);
    pMenu->addSeparator();
    pMenu->addAction(m_pActionHelp);
    pMenu->addSeparator();
  }
  pMenu->addAction(m_pActionTimestamps);
  pMenu->exec(ScreenPos);
}
