#include "device/web_view/page_view.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QTimer>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWindow>

#include <cstdio>
#include <utility>

namespace {

constexpr QSize FIRST_SIZE(640, 720);  // of a window of its own
constexpr int MAX_WAIT_MS = 2000;      // for the end of a page that nobody wants any more
constexpr double PAGE_ZOOM = 0.85;     // makes the texts as large as those of the windows around

// Shows what this host serves, and nothing that a page there might lead to.
class CLocalPage : public QWebEnginePage {
public:
  using QWebEnginePage::QWebEnginePage;

protected:
  bool acceptNavigationRequest(const QUrl& Url, NavigationType, bool) override {
    return Url.scheme() == QLatin1String("about") ||
           (Url.scheme() == QLatin1String("http") && Url.host() == QLatin1String("127.0.0.1"));
  }
  QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
};

void Tell(const QByteArray& sLine) {
  std::puts(sLine.constData());
  std::fflush(stdout);
}

}  // namespace

CPageView::CPageView() : m_Input(STDIN_FILENO, QSocketNotifier::Read) {
  setWindowTitle(QStringLiteral("V-Node Web Control"));
  resize(FIRST_SIZE);
  // A profile without a name keeps nothing on the disk.
  auto* const pPage = new CLocalPage(new QWebEngineProfile(this), this);
  pPage->setBackgroundColor(palette().color(QPalette::Window));
  setPage(pPage);
  setZoomFactor(PAGE_ZOOM);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  addActions({pageAction(QWebEnginePage::Back), pageAction(QWebEnginePage::Forward), pageAction(QWebEnginePage::Reload),
              pageAction(QWebEnginePage::Copy)});
  settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
  connect(pPage, &QWebEnginePage::loadingChanged, this, &CPageView::OnLoading);
  connect(&m_Input, &QSocketNotifier::activated, this, &CPageView::OnInput);
}

void CPageView::OnLoading(const QWebEngineLoadingInfo& Info) {
  const QByteArray sURL = Info.url().toEncoded();
  m_bLoading = Info.status() == QWebEngineLoadingInfo::LoadStartedStatus;
  if (Info.status() == QWebEngineLoadingInfo::LoadSucceededStatus) Tell("loaded " + sURL);
  if (Info.status() == QWebEngineLoadingInfo::LoadFailedStatus) Tell("failed " + sURL);
  if (!m_bLoading) QMetaObject::invokeMethod(this, &CPageView::LoadNext, Qt::QueuedConnection);
}

// The engine drops a page that is asked for while it begins with another.
void CPageView::LoadNext() {
  if (m_bLoading || m_Next.isEmpty()) return;
  m_bLoading = true;
  load(std::exchange(m_Next, QUrl()));
}

void CPageView::OnWaitedLong() {
  if (m_Next.isEmpty()) return;
  m_bLoading = false;
  LoadNext();
}

void CPageView::OnInput() {
  char acPart[4096];
  const ssize_t Num = read(STDIN_FILENO, acPart, sizeof(acPart));
  if (Num <= 0) {
    m_Input.setEnabled(false);
    // Quitting would ask windows whether they may be closed, one of which is gone with the program around it.
    return QCoreApplication::exit();
  }
  m_sPending.append(acPart, Num);
  for (qsizetype End; (End = m_sPending.indexOf('\n')) >= 0; m_sPending.remove(0, End + 1)) {
    Obey(m_sPending.first(End).split(' '));
  }
}

void CPageView::Obey(const QList<QByteArray>& Words) {
  const QByteArray& sWord = Words.constFirst();
  if (sWord == "show" || sWord == "hide") {
    setVisible(sWord == "show");
  } else if (sWord == "load" && Words.size() == 2) {
    m_Next = QUrl::fromEncoded(Words[1]);
    if (m_bLoading) QTimer::singleShot(MAX_WAIT_MS, this, &CPageView::OnWaitedLong);
    LoadNext();
  } else if (sWord == "parent" && Words.size() == 2) {
    Embed(static_cast<WId>(Words[1].toULongLong()));
  } else if (sWord == "size" && Words.size() == 3) {
    resize(Words[1].toInt(), Words[2].toInt());
  }
}

void CPageView::Embed(WId Parent) {
  m_pParent.reset(QWindow::fromWinId(Parent));
  setWindowFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
  create();
  TakePlace();
}

void CPageView::TakePlace() {
  if (m_pParent == nullptr || windowHandle() == nullptr) return;
  windowHandle()->setParent(m_pParent.get());
  windowHandle()->setPosition(0, 0);
}

// The native window is another one once the engine draws into it.
bool CPageView::event(QEvent* pEvent) {
  const bool bDone = QWebEngineView::event(pEvent);
  if (pEvent->type() == QEvent::WinIdChange) TakePlace();
  return bDone;
}
