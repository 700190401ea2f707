#include "ui/window.h"

#include <QActionGroup>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QScrollBar>

#include <utility>

#include "device/device.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/settings/named_constants.h"
#include "ui/dock_window.h"
#include "ui/message_box.h"

namespace {

// Key and tip come from the action table.
struct FORMAT_ACTION {
  const char* sObjectName;
  const char* sText;
  const char* sConst;
  int Format;
};
constexpr FORMAT_ACTION FORMATS[] = {
    {"actionWinSetDisplayFormatAuto", "&Auto", "DISPLAY_FORMAT_AUTO", DISPLAY_FORMAT_AUTO},
    {"actionWinSetDisplayFormatBinary", "&Binary", "DISPLAY_FORMAT_BINARY", DISPLAY_FORMAT_BINARY},
    {"actionWinSetDisplayFormatDec", "&Decimal", "DISPLAY_FORMAT_DEC", DISPLAY_FORMAT_DEC},
    {"actionWinSetDisplayFormatHex", "&Hexadecimal", "DISPLAY_FORMAT_HEX", DISPLAY_FORMAT_HEX},
    {"actionWinSetDisplayFormatChar", "&Character", "DISPLAY_FORMAT_CHAR", DISPLAY_FORMAT_CHAR},
};

constexpr QSize DEFAULT_SIZE(300, 300);

}  // namespace

CWindow::CWindow(QWidget* pParent, const QString& sName)
    : QMainWindow(pParent), pDock(qobject_cast<CDockWindow*>(pParent)) {
  setObjectName(sName);
  setWindowFlags(pParent ? Qt::Widget : Qt::Window);
  setFocusPolicy(Qt::StrongFocus);
  CreateActions();
  CreateOverlay();
  CWindow::Init();
  CWindow::UpdateActions();
  if (pDock) {
    pDock->setWidget(this);
    addAction(actionWinClear);
  }
}

// A window that has the focus gives it up while its widget is destroyed, when no slot of it may run any more.
CWindow::~CWindow() {
  disconnect(qApp, nullptr, this, nullptr);
}

void CWindow::CreateActions() {
  pFormatGroup = new QActionGroup(this);
  for (const FORMAT_ACTION& Format : FORMATS) {
    QAction* const pAction = pFormatGroup->addAction(QLatin1String(Format.sText));
    pAction->setObjectName(QLatin1String(Format.sObjectName));
    pAction->setCheckable(true);
  }
  actionWinClear = new QAction(QStringLiteral("&Clear"), this);
  actionWinClear->setObjectName(QStringLiteral("actionWinClear"));
  actionWinClear->setShortcut(Qt::Key_Delete);
  actionWinClear->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  actionWinAdd = new QAction(QStringLiteral("&Add..."), this);
  actionWinAdd->setObjectName(QStringLiteral("actionWinAdd"));
}

void CWindow::CreateOverlay() {
  buttonFrame = new QFrame(this);
  buttonFrame->setObjectName(QStringLiteral("buttonFrame"));
  auto* const pLayout = new QVBoxLayout(buttonFrame);
  labelEmptyWindow = new QLabel(buttonFrame);
  labelEmptyWindow->setAlignment(Qt::AlignCenter);
  labelEmptyWindow->setForegroundRole(QPalette::PlaceholderText);
  buttonEmptyWindow = new QPushButton(buttonFrame);
  pLayout->addStretch();
  pLayout->addWidget(labelEmptyWindow, 0, Qt::AlignCenter);
  pLayout->addWidget(buttonEmptyWindow, 0, Qt::AlignCenter);
  pLayout->addStretch();
  buttonFrame->hide();
}

void CWindow::Init() {
  CWindow::Connect(actionWinAdd, SIGNAL(triggered()), this, SLOT(OnActionAddTriggered()));
  CWindow::Connect(actionWinClear, SIGNAL(triggered()), this, SLOT(OnActionClearTriggered()));
  for (QAction* const pAction : pFormatGroup->actions()) {
    CWindow::Connect(pAction, SIGNAL(triggered()), this, SLOT(OnActionSetDispFormTriggered()));
  }
  connect(buttonEmptyWindow, &QPushButton::clicked, this, &CWindow::OnEmptyWindowButtonClicked);
  connect(this, &CWindow::ContentChanged, this, &CWindow::OnContentChanged);
  connect(this, &CWindow::DisplayFormatChanged, this, &CWindow::OnDisplayFormatChanged);
  connect(this, &CWindow::SizeChanged, this, &CWindow::OnSizeChanged);
  connect(this, &CWindow::StateChanged, this, &CWindow::OnStateChanged);
  connect(this, &CWindow::ActivationChanged, this, &CWindow::OnActivationChanged);
  connect(this, &CWindow::FocusChanged, this, qOverload<bool>(&CWindow::OnFocusChanged));
  connect(this, &CWindow::VisibilityChanged, this, &CWindow::OnVisibilityChanged);
  connect(this, &CWindow::FloatingStateChanged, this, &CWindow::OnFloatingStateChanged);
  connect(this, &CWindow::FlagChanged, this, &CWindow::OnFlagChanged);
  connect(qApp, &QApplication::focusChanged, this, qOverload<QWidget*, QWidget*>(&CWindow::OnFocusChanged));
}

void CWindow::Clear() {
  Q_EMIT ContentChanged();
}

void CWindow::Repaint() {
  update();
}

QString CWindow::GetEmptyWindowText(DEBUG_STATES State) const {
  switch (State) {
    case DEBUG_STATE_RUNNING:
      return QStringLiteral("Program running");
    case DEBUG_STATE_NO_CONNECTION:
      return QStringLiteral("No target connection");
    default:
      return QStringLiteral("No data");
  }
}

void CWindow::SetWindowTitle(const QString& sTitle) {
  if (sTitle == windowTitle()) return;
  setWindowTitle(sTitle);
  if (pDock) pDock->setWindowTitle(sTitle);
}

void CWindow::SetFlag(U32 Flag, bool bOn) {
  Flags = bOn ? Flags | Flag : Flags & ~Flag;
  Q_EMIT FlagChanged(Flag, bOn);
}

void CWindow::SetEnabled(bool bOn) {
  if (bOn == bEnabled) return;
  bEnabled = bOn;
  Q_EMIT StateChanged(bOn);
}

void CWindow::SetActive(bool bOn) {
  if (bOn == bActive) return;
  bActive = bOn;
  Q_EMIT ActivationChanged(bOn);
}

void CWindow::SetDisplayFormat(int Format) {
  Q_EMIT DisplayFormatChanged(Format);
}

void CWindow::ScrollBy(int dx, int dy) {
  const QList<QScrollBar*> Bars = findChildren<QScrollBar*>();
  if (Bars.isEmpty() || Bars.size() > 2) return;
  for (QScrollBar* const pBar : Bars) pBar->setValue(pBar->value() + (pBar->orientation() == Qt::Horizontal ? dx : dy));
}

QString CWindow::GetName() const {
  return pDock ? pDock->objectName() : objectName();
}

bool CWindow::IsOpen() const {
  return IsVisible() ||
         (pDock ? !pDock->isHidden() && pDock->parentWidget() && pDock->parentWidget()->isVisible() : isVisible());
}

bool CWindow::IsVisible() const {
  const QWidget* const pWidget = IsFloating() ? static_cast<const QWidget*>(pDock) : this;
  return pWidget->isVisible() && !pWidget->visibleRegion().isEmpty();
}

bool CWindow::IsObscured() const {
  return parentWidget() && !parentWidget()->isHidden() && !IsVisible();
}

bool CWindow::IsFloating() const {
  return pDock && pDock->isFloating();
}

void CWindow::Connect(QObject* pSender, const char* sSignal, QObject* pReceiver, const char* sSlot) {
  const bool bAction = qobject_cast<QAction*>(pSender) && qstrcmp(sSignal, SIGNAL(triggered())) == 0;
  if (bAction) connect(pSender, sSignal, this, SLOT(OnActionTriggered()));
  connect(pSender, sSignal, pReceiver, sSlot);
  if (bAction) connect(pSender, sSignal, this, SLOT(OnActionPerformed()));
}

void CWindow::Disconnect(QObject* pSender, const char* sSignal, QObject* pReceiver, const char* sSlot) {
  const bool bAction = qobject_cast<QAction*>(pSender) && qstrcmp(sSignal, SIGNAL(triggered())) == 0;
  if (bAction) disconnect(pSender, sSignal, this, SLOT(OnActionTriggered()));
  disconnect(pSender, sSignal, pReceiver, sSlot);
  if (bAction) disconnect(pSender, sSignal, this, SLOT(OnActionPerformed()));
}

void CWindow::OnActionTriggered() {
  if (auto* const pAction = qobject_cast<QAction*>(sender())) Q_EMIT ActionTriggered(pAction);
}

void CWindow::OnActionPerformed() {
  if (auto* const pAction = qobject_cast<QAction*>(sender())) Q_EMIT ActionPerformed(pAction);
}

void CWindow::OnDisplayFormatChanged(int Format) {
  DisplayFormat = Format;
  UpdateActions();
}

void CWindow::OnFlagChanged(U32 Flag, bool bValue) {
  if (Flag == WF_ACCEPT_DROPS) setAcceptDrops(bValue);
}

void CWindow::OnFocusChanged(bool bFocus) {
  if (pDock) pDock->SetHighlighted(bFocus);
}

void CWindow::OnFocusChanged(QWidget* pOld, QWidget* pNew) {
  const CWindow* const pOldWindow = GetWindow(pOld);
  const CWindow* const pNewWindow = GetWindow(pNew);
  if (pOldWindow == pNewWindow) return;
  if (pNewWindow == this) {
    bHasFocus = true;
    Q_EMIT FocusChanged(true);
    Q_EMIT StatusTextChanged();
  } else if (pOldWindow == this || bHasFocus) {
    bHasFocus = false;
    Q_EMIT FocusChanged(false);
  }
}

void CWindow::OnVisibilityChanged(bool bVisible) {
  if (bVisible) {
    Update(static_cast<U32>(CDevice::Get().GetPC()));
  } else if (TestFlag(WF_CLEAR_WHEN_HIDDEN)) {
    Clear();
  }
}

void CWindow::ReleaseFixedSize() {
  setMinimumSize(0, 0);
  setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

void CWindow::OnContentChanged() {
  ReleaseFixedSize();
  QWidget* const pCentral = centralWidget();
  if (pCentral && !IsEmpty()) {
    ShowCentralWidget(true);
    const bool bFocus = hasFocus();
    if (pFocusProxy) setFocusProxy(std::exchange(pFocusProxy, nullptr));
    if (bFocus && focusProxy()) focusProxy()->setFocus();
  } else if (pCentral) {
    const bool bFocus = bHasFocus;
    // A hidden proxy would leave the window without the keyboard.
    if (focusProxy()) pFocusProxy = focusProxy();
    setFocusProxy(nullptr);
    ShowCentralWidget(false);
    if (bFocus) setFocus();
  }
  UpdateActions();
}

void CWindow::OnActionClearTriggered() {
  if (TestFlag(WF_CONFIRM_CLEAR)) {
    const int Result = CMessageBox::Show(QStringLiteral("Clear ") + GetClearAllPostfix() + QLatin1Char('?'),
                                         QStringLiteral("Clear ") + GetClearAllPostfix() + QLatin1Char('?'), -1,
                                         QStringLiteral("broom.png"), QDialogButtonBox::Yes | QDialogButtonBox::No);
    if (Result != CMessageBox::ACCEPTED) return;
  }
  PerformAction(ACTION_WINDOW_CLEAR, GetName());
}

void CWindow::OnActionSetDispFormTriggered() {
  const qsizetype Index = pFormatGroup->actions().indexOf(qobject_cast<QAction*>(sender()));
  if (Index < 0) return;
  PerformAction(ACTION_WIN_SET_DISPLAY_FORMAT, GetName(), QLatin1String(FORMATS[Index].sConst));
  // Of a window that shows another format, or refuses this one, the click has moved the mark.
  UpdateActions();
}

void CWindow::UpdateActions() {
  const bool bClear = !IsEmpty();
  actionWinClear->setVisible(bClear);
  actionWinClear->setEnabled(bClear);
  for (qsizetype i = 0; i < pFormatGroup->actions().size(); ++i) {
    pFormatGroup->actions()[i]->setChecked(FORMATS[i].Format == DisplayFormat);
  }
}

void CWindow::OnDragEnter(QDragEnterEvent* pEvent) {
  if (acceptDrops() && pEvent->mimeData()->hasFormat(QStringLiteral("text/plain"))) pEvent->acceptProposedAction();
}

void CWindow::AddDisplayFormatMenu(QMenu* pMenu) {
  QMenu* const pSub = pMenu->addMenu(QStringLiteral("Display &All As"));
  pSub->addActions(pFormatGroup->actions());
}

void CWindow::ShowCentralWidget(bool bShow) {
  if (centralWidget()) centralWidget()->setVisible(bShow);
}

void CWindow::UpdateEmptyWindow() {
  const DEBUG_STATES State = GetDebugState();
  const QString sText = GetEmptyWindowText(State);
  const QString sButton = GetEmptyWindowButtonText(State);
  buttonFrame->setGeometry(rect());
  labelEmptyWindow->setText(sText);
  labelEmptyWindow->setVisible(!sText.isEmpty());
  buttonEmptyWindow->setText(QLatin1Char(' ') + sButton + QLatin1Char(' '));
  buttonEmptyWindow->setVisible(!sButton.isEmpty());
  buttonFrame->setVisible(!sText.isEmpty() || !sButton.isEmpty());
}

bool CWindow::eventFilter(QObject* pWatched, QEvent* pEvent) {
  auto* const pWidget = qobject_cast<QWidget*>(pWatched);
  if (pWidget && pEvent->type() == QEvent::Paint) return OnPaint(pWidget);
  if (pWidget && pEvent->type() == QEvent::ToolTip) OnTooltipRequested(static_cast<QHelpEvent*>(pEvent)->globalPos());
  return QMainWindow::eventFilter(pWatched, pEvent);
}

void CWindow::paintEvent(QPaintEvent* pEvent) {
  QMainWindow::paintEvent(pEvent);
  if (parentWidget() && IsEmpty()) {
    UpdateEmptyWindow();
  } else if (buttonFrame->isVisible()) {
    buttonFrame->hide();
  }
}

void CWindow::resizeEvent(QResizeEvent* pEvent) {
  QMainWindow::resizeEvent(pEvent);
  buttonFrame->setGeometry(rect());
  Q_EMIT SizeChanged(width(), height());
}

void CWindow::showEvent(QShowEvent* pEvent) {
  QMainWindow::showEvent(pEvent);
  if (isWindow()) return;
  ReleaseFixedSize();
  SetActionStyle(ACTION_WIN_ADD, actionWinAdd);
  SetActionStyle(ACTION_WIN_CLEAR, actionWinClear);
}

QSize CWindow::sizeHint() const {
  return pDock ? DEFAULT_SIZE : QMainWindow::sizeHint();
}

CWindow* GetWindow(QWidget* pWidget) {
  for (; pWidget; pWidget = pWidget->parentWidget()) {
    if (auto* const pDock = qobject_cast<QDockWidget*>(pWidget)) return GetWindowOfDock(pDock);
    if (auto* const pWindow = qobject_cast<CWindow*>(pWidget)) return pWindow;
  }
  return nullptr;
}

CDockWindow* GetDock(QWidget* pWidget) {
  while (pWidget && !qobject_cast<CDockWindow*>(pWidget)) pWidget = pWidget->parentWidget();
  return static_cast<CDockWindow*>(pWidget);
}

CWindow* GetWindowOfDock(QDockWidget* pDock) {
  return qobject_cast<CWindow*>(pDock->widget());
}
