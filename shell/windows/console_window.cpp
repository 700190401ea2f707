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

// Both panes give every line the same height, whatever its font, so that a time stamp stays beside its message.
QTextBlockFormat LineFormat(int LineHeight) {
  QTextBlockFormat Format;
  Format.setLineHeight(LineHeight, QTextBlockFormat::FixedHeight);
  return Format;
}

void SetLineHeight(QTextDocument& Document, int LineHeight) {
  QTextCursor Cursor(&Document);
  Cursor.select(QTextCursor::Document);
  Cursor.mergeBlockFormat(LineFormat(LineHeight));
}

// Only text in the fixed-pitch font has a font of its own.
void SetFixedPitchFont(QTextDocument& Document, const QFont& Font) {
  QTextCharFormat Format;
  Format.setFont(Font);
  for (QTextBlock Block = Document.begin(); Block.isValid(); Block = Block.next()) {
    if (Block.begin() == Block.end() || !Block.begin().fragment().charFormat().hasProperty(QTextFormat::FontFamilies))
      continue;
    QTextCursor Cursor(Block);
    Cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    Cursor.mergeCharFormat(Format);
  }
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
  m_pActionTimestamps->setObjectName(QStringLiteral("actionConsoleShowSidebar"));
  m_pActionTimestamps->setCheckable(true);
  connect(m_pActionTimestamps, &QAction::triggered, this, [](bool bOn) {
    PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_SHOW_TIMESTAMPS_CONSOLE"), bOn ? 1 : 0, 1);
  });
  m_pActionHelp = new QAction(QStringLiteral("List Co&mmands"), this);
  m_pActionHelp->setObjectName(QStringLiteral("actionConsoleHelp"));
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
  m_bHasText = false;
  ClearConsoleRing();
  ResizeSidebarToOptWidth();
  CWindow::Clear();
}

void CConsoleWindow::SetFont(int FontID, const QFont& /*Font*/) {
  if (FontID == FONT_APP || FontID == FONT_CONSOLE) ApplyFonts();
}

void CConsoleWindow::ApplyFonts() {
  const QFont Mono = MonospacedForm(::GetFont(FONT_CONSOLE));
  m_LineHeight = std::max(GetFontHeight(FONT_CONSOLE), QFontMetrics(Mono).height());
  for (QTextEdit* const pPane : {m_pEditor, m_pSidebar}) {
    pPane->setFont(::GetFont(FONT_CONSOLE));
    SetLineHeight(*pPane->document(), m_LineHeight);
  }
  SetFixedPitchFont(*m_pEditor->document(), Mono);
  m_pInput->setFont(Mono);
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
  ResizeSidebarToOptWidth();
  m_pEditor->verticalScrollBar()->setValue(m_pEditor->verticalScrollBar()->maximum());
  m_pHorizontalBar->setValue(0);
}

void CConsoleWindow::ShowMessage(const CONSOLE_MSG& Msg) {
  QTextCharFormat Format;
  if (Msg.UseMonoFont) Format.setFont(MonospacedForm(::GetFont(FONT_CONSOLE)));
  if (Msg.ColorID >= 0) {
    const bool bKnown = Msg.ColorID < static_cast<I32>(NUM_COLORS);
    Format.setForeground(bKnown ? GetTextColor(static_cast<U32>(Msg.ColorID)) : ReadableColor(Qt::black));
  } else if (Msg.Rgba != CONSOLE_RGBA_DEFAULT) {
    Format.setForeground(ReadableColor(QColor::fromRgba(Msg.Rgba)));
  }
  QTextCursor Cursor(m_pEditor->document());
  Cursor.movePosition(QTextCursor::End);
  const bool bFirst = !m_bHasText;
  const int NumBefore = bFirst ? 0 : m_pEditor->document()->blockCount();
  if (bFirst) {
    Cursor.setBlockFormat(LineFormat(m_LineHeight));
  } else if (Msg.StartNewLine) {
    Cursor.insertBlock();
  }
  const QString sText = QString::fromUtf8(Msg.Text);
  Cursor.insertText(sText, Format);
  m_bHasText = true;
  SetTimeStamp(Msg.TimeStamp, bFirst, m_pEditor->document()->blockCount() - NumBefore);
  Q_EMIT MessageShown(sText);
}

void CConsoleWindow::SetTimeStamp(U64 TimeStamp, bool bFirst, int NumLines) {
  QTextCursor Cursor(m_pSidebar->document());
  Cursor.movePosition(QTextCursor::End);
  QTextBlockFormat Right = LineFormat(m_LineHeight);
  Right.setAlignment(Qt::AlignRight);
  QTextCharFormat Format;
  Format.setForeground(GetTextColor(COLOR_LINE_NUMBERS));
  for (int i = 0; i < NumLines; ++i) {
    if (bFirst && i == 0) {
      Cursor.setBlockFormat(Right);
    } else {
      Cursor.insertBlock(Right);
    }
    if (i == 0) Cursor.insertText(TimeStampText(TimeStamp), Format);
  }
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
  if (m_bHasText) {
    const int First = m_pEditor->verticalScrollBar()->value() / m_LineHeight;
    const int NumLines = m_pEditor->viewport()->height() / m_LineHeight;
    for (const int Line : {First, First + NumLines - 1, First + NumLines - 2}) {
      Width = std::max(Width, GetTextWidth(FONT_CONSOLE, m_pSidebar->document()->findBlockByNumber(Line).text()));
    }
    Width = std::max(Width, GetTextWidth(FONT_CONSOLE, m_pSidebar->document()->lastBlock().text())) + SIDEBAR_MARGIN;
  }
  m_pSidebar->setFixedWidth(Width);
}

U32 CConsoleWindow::CommandInInput() const {
  if (!m_pInput->hasFocus()) return NUM_ACTIONS;
  const QString sLine = m_pInput->text().trimmed();
  return FindCommand(sLine.left(sLine.indexOf(QRegularExpression(QStringLiteral("[ (;]")))));
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
