#include "ui/tool_tip.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QScreen>
#include <QToolTip>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int SHOW_DELAY_MS = 30;
constexpr int HIDE_DELAY_MS = 60;
constexpr int WATCHDOG_INTERVAL_MS = 500;
constexpr int SMALL_DISTANCE = 3;              // pixels
constexpr QPoint POINTER_OFFSET(13, 16);       // pixels, clear of the arrow
constexpr QPoint OTHER_SIDE_DISTANCE(25, 18);  // pixels
constexpr int MARGIN = 5;                      // pixels
constexpr int COLUMN_SPACING = 12;             // pixels
constexpr double MAX_SHARE_OF_SCREEN = 0.5;    // of its width
constexpr int NAME_COLUMN = 0;
constexpr int VALUE_COLUMN = 1;

QScreen* ScreenAt(const QPoint& Pos) {
  QScreen* const pScreen = QGuiApplication::screenAt(Pos);
  return pScreen ? pScreen : QGuiApplication::primaryScreen();
}

bool IsUserBusy(QEvent::Type Type) {
  switch (Type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::Wheel:
    case QEvent::ApplicationDeactivate:
      return true;
    default:
      return false;
  }
}

}  // namespace

CToolTip* CToolTip::_GetSingleton() {
  // Goes with the application, which has to be there when a widget is deleted.
  static QPointer<CToolTip> pInstance;
  if (!pInstance) {
    pInstance = new CToolTip;
    connect(qApp, &QCoreApplication::aboutToQuit, pInstance, [] { delete pInstance; });
  }
  return pInstance;
}

CToolTip::CToolTip() : QFrame(nullptr, Qt::ToolTip), m_pLayout(new QGridLayout(this)) {
  setObjectName(QStringLiteral("ToolTip"));
  setFrameStyle(QFrame::Box | QFrame::Plain);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  m_pLayout->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
  m_pLayout->setHorizontalSpacing(COLUMN_SPACING);
  m_pLayout->setVerticalSpacing(1);
  m_ShowTimer.setSingleShot(true);
  m_WatchdogTimer.setInterval(WATCHDOG_INTERVAL_MS);
  connect(&m_ShowTimer, &QTimer::timeout, this, &CToolTip::OnShowTimerTimeout);
  connect(&m_WatchdogTimer, &QTimer::timeout, this, &CToolTip::OnWatchdogTimerTimeout);
}

void CToolTip::ShowText(QWidget* pOwner, const QPoint& GlobalPos, const QString& sText) {
  Request(pOwner, GlobalPos, {sText, {}});
}

void CToolTip::ShowPairs(QWidget* pOwner, const QPoint& GlobalPos, const QString& sTitle, const PAIRS& Pairs) {
  Request(pOwner, GlobalPos, {sTitle, Pairs});
}

void CToolTip::Request(QWidget* pOwner, const QPoint& GlobalPos, const CONTENTS& Contents) {
  if (Contents.IsEmpty() || pOwner == nullptr || GetVarValue(PREF_SHOW_TOOLTIPS) == 0) return Hide();
  const bool bBusy = isVisible() || m_ShowTimer.isActive();
  const bool bNear = (GlobalPos - m_Pointer).manhattanLength() < SMALL_DISTANCE;
  if (bBusy && !m_bHiding && bNear && pOwner == m_pOwner && Contents == m_Contents) return;
  const bool bWasHiding = m_bHiding && isVisible();
  m_pOwner = pOwner;
  m_Contents = Contents;
  m_Pointer = GlobalPos;
  Start(false, bWasHiding ? HIDE_DELAY_MS : SHOW_DELAY_MS);
}

void CToolTip::Hide() {
  if (isVisible()) {
    if (!m_bHiding) Start(true, HIDE_DELAY_MS);
  } else {
    m_ShowTimer.stop();
  }
}

void CToolTip::HideNow() {
  m_ShowTimer.stop();
  m_WatchdogTimer.stop();
  m_bHiding = false;
  qApp->removeEventFilter(this);
  hide();
}

void CToolTip::Start(bool bHide, int DelayMS) {
  m_bHiding = bHide;
  m_ShowTimer.start(DelayMS);
}

void CToolTip::OnShowTimerTimeout() {
  // The user may have turned tips off, and the owner may be gone, since this one was asked for.
  if (m_bHiding || m_pOwner.isNull() || !m_pOwner->isVisible() || GetVarValue(PREF_SHOW_TOOLTIPS) == 0) {
    return HideNow();
  }
  const QRect Screen = ScreenAt(m_Pointer)->availableGeometry();
  LayOut(static_cast<int>(Screen.width() * MAX_SHARE_OF_SCREEN));
  move(PlaceFor(m_Pointer, size(), Screen));
  if (!isVisible()) qApp->installEventFilter(this);
  show();
  m_WatchdogTimer.start();
}

void CToolTip::OnWatchdogTimerTimeout() {
  if (m_pOwner.isNull() || !m_pOwner->isVisible() || m_pOwner->window()->isMinimized()) HideNow();
}

bool CToolTip::eventFilter(QObject* pWatched, QEvent* pEvent) {
  const bool bLeft = pWatched == m_pOwner && pEvent->type() == QEvent::Leave;
  if (isVisible() && (bLeft || IsUserBusy(pEvent->type()))) HideNow();
  return QFrame::eventFilter(pWatched, pEvent);
}

void CToolTip::LayOut(int MaxWidth) {
  while (QLayoutItem* const pItem = m_pLayout->takeAt(0)) {
    delete pItem->widget();
    delete pItem;
  }
  setPalette(QToolTip::palette());
  const auto Add = [&](const QString& sText, const QFont& Font, int Row, int Column, int Columns) {
    auto* const pLabel = new QLabel(sText, this);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setFont(Font);
    pLabel->setForegroundRole(QPalette::ToolTipText);
    pLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    if (pLabel->sizeHint().width() > MaxWidth * Columns / 2) {
      pLabel->setWordWrap(true);
      pLabel->setFixedWidth(MaxWidth * Columns / 2);
    }
    m_pLayout->addWidget(pLabel, Row, Column, 1, Columns);
  };
  QFont TitleFont = GetFont(FONT_APP);
  TitleFont.setBold(!m_Contents.Pairs.isEmpty());
  int Row = 0;
  if (!m_Contents.sTitle.isEmpty()) Add(m_Contents.sTitle, TitleFont, Row++, NAME_COLUMN, 2);
  for (const auto& [sName, sValue] : m_Contents.Pairs) {
    Add(sName, GetFont(FONT_APP), Row, NAME_COLUMN, 1);
    Add(sValue, GetFont(FONT_APP_MONO), Row++, VALUE_COLUMN, 1);
  }
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  setAutoFillBackground(true);
  m_pLayout->activate();
  adjustSize();
}

QPoint CToolTip::PlaceFor(const QPoint& Pointer, const QSize& Size, const QRect& Screen) {
  QPoint Pos = Pointer + POINTER_OFFSET;
  if (Pos.x() + Size.width() > Screen.right() + 1) Pos.rx() -= Size.width() + OTHER_SIDE_DISTANCE.x();
  if (Pos.y() + Size.height() > Screen.bottom() + 1) Pos.ry() -= Size.height() + OTHER_SIDE_DISTANCE.y();
  Pos.setX(std::max(Pos.x(), Screen.left()));
  Pos.setY(std::max(Pos.y(), Screen.top()));
  return Pos;
}
