#include "ui/status_bar.h"

namespace {

constexpr int REFRESH_INTERVAL_MS = 200;
constexpr int PROGRESS_LINGER_MS = 250;
constexpr int PROGRESS_WIDTH = 180;  // pixels

QLabel* MakeField(QStatusBar* pBar, const char* sName) {
  auto* const pLabel = new QLabel(pBar);
  pLabel->setObjectName(QLatin1String(sName));
  pLabel->setContentsMargins(6, 0, 6, 0);
  return pLabel;
}

}  // namespace

CStatusBar* CStatusBar::_GetSingleton() {
  static CStatusBar* const pInstance = new CStatusBar;
  return pInstance;
}

CStatusBar::CStatusBar()
    : m_sStatus(QStringLiteral("Ready")),
      m_sConnection(QStringLiteral("Disconnected")),
      m_sWindow(QStringLiteral("Ln 0  Ch 0")),
      m_pMessage(MakeField(this, "StatusMessage")),
      m_pProgress(new QProgressBar(this)),
      m_pCancel(new QPushButton(QStringLiteral("Cancel"), this)),
      m_pConnection(MakeField(this, "ConnectionInfo")),
      m_pWindow(MakeField(this, "WindowStatus")) {
  setSizeGripEnabled(false);
  m_pProgress->setFixedWidth(PROGRESS_WIDTH);
  m_pProgress->setTextVisible(false);
  m_pProgress->hide();
  m_pCancel->setObjectName(QStringLiteral("CancelProgress"));
  m_pCancel->setFocusPolicy(Qt::NoFocus);
  m_pCancel->setCursor(Qt::ArrowCursor);
  m_pCancel->hide();
  connect(m_pCancel, &QPushButton::clicked, this, [this] { m_bCanceled = true; });
  addWidget(m_pMessage, 1);
  addPermanentWidget(m_pProgress);
  addPermanentWidget(m_pCancel);
  addPermanentWidget(m_pWindow);
  addPermanentWidget(m_pConnection);
  m_Timer.setSingleShot(true);
  m_Timer.setInterval(REFRESH_INTERVAL_MS);
  connect(&m_Timer, &QTimer::timeout, this, &CStatusBar::Refresh);
  Refresh();
}

void CStatusBar::MarkDirty() {
  if (!m_Timer.isActive()) m_Timer.start();
}

void CStatusBar::SetStatusMessage(const QString& sText) {
  m_sStatus = sText;
  MarkDirty();
}

void CStatusBar::SetProgressMessage(const QString& sText) {
  m_sProgress = sText;
  MarkDirty();
}

void CStatusBar::SetConnectionInfo(const QString& sText) {
  m_sConnection = sText;
  MarkDirty();
}

void CStatusBar::SetActiveWindowStatus(const QString& sText) {
  m_sWindow = sText;
  MarkDirty();
}

void CStatusBar::OnTempStatusMsgChanged(const QString& sText) {
  m_sTemp = sText;
  MarkDirty();
}

void CStatusBar::StartProgress(int Minimum, int Maximum, bool bCancelable) {
  m_Minimum = Minimum;
  m_Maximum = Maximum;
  m_Value = Minimum;
  m_bProgressRunning = true;
  m_bEndPending = false;
  m_bCancelable = bCancelable;
  m_bCanceled = false;
  MarkDirty();
}

void CStatusBar::SetProgressValue(int Value) {
  m_Value = Value;
  MarkDirty();
}

void CStatusBar::EndProgress() {
  if (!m_bProgressRunning) return;
  m_bEndPending = true;
  m_bCancelable = false;
  m_EndTime.start();
  MarkDirty();
}

void CStatusBar::SetFont(const QFont& Font) {
  for (QLabel* const pLabel : {m_pMessage, m_pConnection, m_pWindow}) pLabel->setFont(Font);
}

void CStatusBar::Refresh() {
  if (m_bEndPending && m_EndTime.elapsed() > PROGRESS_LINGER_MS) {
    m_bProgressRunning = m_bEndPending = false;
    m_sProgress.clear();
  }
  QString sText = m_sStatus;
  if (!m_sTemp.isEmpty()) sText = m_sTemp;
  if (m_bProgressRunning && !m_sProgress.isEmpty()) sText = m_sProgress;
  m_pMessage->setText(sText);
  m_pConnection->setText(m_sConnection);
  m_pWindow->setText(m_sWindow);
  m_pProgress->setRange(m_Minimum, m_Maximum);
  m_pProgress->setValue(m_Value);
  m_pProgress->setVisible(m_bProgressRunning);
  m_pCancel->setVisible(m_bCancelable);
  if (m_bEndPending) MarkDirty();
}
