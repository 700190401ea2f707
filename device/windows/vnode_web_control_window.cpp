#include "device/windows/vnode_web_control_window.h"

#include <QDesktopServices>

#include "device/device.h"
#include "device/device_context.h"
#include "device/windows/web_view_process.h"

namespace {

const QUrl NO_PAGE(QStringLiteral("about:blank"));

// Empty without a connection, or when the probe has no page.
QUrl PageAddress() {
  if (!CDevice::Exists() || !CDevice::Get().IsConnected()) return {};
  QUrl URL(CDevice::Get().Context().Facts.Get().sWebURL);
  if (!URL.isEmpty() && URL.path().isEmpty()) URL.setPath(QStringLiteral("/"));
  return URL;
}

}  // namespace

CVNodeWebControlWindow::CVNodeWebControlWindow(QWidget* pParent)
    : CWindow(pParent, QStringLiteral("VNodeWebControlWindow")), m_pView(new CWebViewProcess(this)) {
  SetFlag(WF_CLEAR_ON_DISCONNECT, true);
  SetFlag(WF_CLEAR_WHEN_HIDDEN | WF_MODIFIABLE, false);
  connect(m_pView, &CWebViewProcess::Loaded, this, &CVNodeWebControlWindow::OnLoaded);
  connect(m_pView, &CWebViewProcess::Ended, this, &CVNodeWebControlWindow::OnViewEnded);
}

CVNodeWebControlWindow::~CVNodeWebControlWindow() {
  // Before its window loses the one that holds it.
  delete m_pView;
}

void CVNodeWebControlWindow::Clear() {
  m_URL.clear();
  m_bLoaded = m_bGivenUp = false;
  m_pView->Load(NO_PAGE);
  ShowPage();
  CWindow::Clear();
}

void CVNodeWebControlWindow::Update(U32) {
  const QUrl URL = PageAddress();
  if (!IsVisible() || !IsEnabled() || URL.isEmpty() || URL == m_URL || m_bGivenUp) return;
  m_URL = URL;
  m_bLoaded = false;
  if (!CWebViewProcess::IsInstalled()) return GiveUp();
  if (!m_pView->IsRunning()) StartView();
  m_pView->Load(m_URL);
  ShowPage();
  TellContent();
}

void CVNodeWebControlWindow::StartView() {
  m_pView->Start();
  if (!CWebViewProcess::CanEmbed()) return;
  if (m_pPage == nullptr) {
    m_pPage = new QWidget(this);
    m_pPage->setAttribute(Qt::WA_NativeWindow);
    m_pPage->setAttribute(Qt::WA_DontCreateNativeAncestors);
    m_pPage->installEventFilter(this);
    setCentralWidget(m_pPage);
  }
  m_pView->Resize(m_pPage->size());
  m_pView->Embed(m_pPage->winId());
}

bool CVNodeWebControlWindow::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pWatched == m_pPage && pEvent->type() == QEvent::Resize) m_pView->Resize(m_pPage->size());
  if (pWatched == m_pPage && pEvent->type() == QEvent::WinIdChange) m_pView->Embed(m_pPage->internalWinId());
  return CWindow::eventFilter(pWatched, pEvent);
}

// Where links of the page lead is no matter.
void CVNodeWebControlWindow::OnLoaded(const QUrl& URL, bool bOk) {
  if (URL != m_URL || m_bLoaded) return;
  m_bLoaded = bOk;
  if (!bOk) GiveUp();
  TellContent();
}

void CVNodeWebControlWindow::OnViewEnded() {
  GiveUp();
}

void CVNodeWebControlWindow::GiveUp() {
  m_bGivenUp = !m_URL.isEmpty();
  m_bLoaded = false;
  m_URL.clear();
  ShowPage();
  TellContent();
}

void CVNodeWebControlWindow::ShowPage() {
  m_pView->SetShown(IsVisible() && !m_URL.isEmpty());
}

void CVNodeWebControlWindow::TellContent() {
  Q_EMIT ContentChanged();
  Repaint();
}

QString CVNodeWebControlWindow::GetEmptyWindowText(DEBUG_STATES State) const {
  if (State == DEBUG_STATE_NO_CONNECTION) return CWindow::GetEmptyWindowText(State);
  if (PageAddress().isEmpty()) return QStringLiteral("The V-Node has no web page");
  if (m_bGivenUp) return QStringLiteral("The page can't be shown here");
  return m_bLoaded ? QStringLiteral("The page is shown in a window of its own") : QStringLiteral("Loading...");
}

QString CVNodeWebControlWindow::GetEmptyWindowButtonText(DEBUG_STATES) const {
  return m_bGivenUp && !PageAddress().isEmpty() ? QStringLiteral("Open in Browser") : QString();
}

void CVNodeWebControlWindow::OnEmptyWindowButtonClicked() {
  QDesktopServices::openUrl(PageAddress());
}

// A target that runs reports no halt.
void CVNodeWebControlWindow::OnDeviceConnectDone(CONNECT_MODES Mode) {
  Update(0);
  CWindow::OnDeviceConnectDone(Mode);
}

void CVNodeWebControlWindow::OnVisibilityChanged(bool bVisible) {
  ShowPage();
  CWindow::OnVisibilityChanged(bVisible);
}
