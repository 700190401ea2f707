#include "shell/cancel_gate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include "shell/input_events.h"
#include "shell/input_gate.h"
#include "ui/status_bar.h"

namespace {

bool IsOnCancelButton(const QMouseEvent& Event) {
  const QWidget* const pButton = CStatusBar::_GetSingleton()->CancelButton();
  return pButton->isVisible() && QApplication::widgetAt(Event.globalPosition().toPoint()) == pButton;
}

}  // namespace

CCancelGate::CCancelGate(QWidget* pMainWindow)
    : m_pMainWindow(pMainWindow), m_pModalBefore(QApplication::activeModalWidget()) {
  qApp->installEventFilter(this);
}

CCancelGate::~CCancelGate() {
  if (m_bCloseWanted && m_pMainWindow) {
    QMetaObject::invokeMethod(m_pMainWindow, &QWidget::close, Qt::QueuedConnection);
  }
}

bool CCancelGate::IsCancelled() const {
  return m_bEscape || m_bCloseWanted || CStatusBar::_GetSingleton()->WasCanceled();
}

bool CCancelGate::IsMainWindow(const QObject* pObject) const {
  return m_pMainWindow && (pObject == m_pMainWindow || pObject == m_pMainWindow->windowHandle());
}

bool CCancelGate::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pEvent->type() == QEvent::Close && IsMainWindow(pWatched)) {
    m_bCloseWanted = true;
    pEvent->ignore();
    return true;
  }
  if (!IsUserInput(pEvent->type())) return false;
  const QWidget* const pModal = QApplication::activeModalWidget();
  if (pModal && pModal != m_pModalBefore) return false;
  if (const auto* const pMouse = dynamic_cast<const QMouseEvent*>(pEvent)) {
    if (IsOnCancelButton(*pMouse)) return false;
  } else if (pEvent->type() == QEvent::KeyPress && static_cast<const QKeyEvent*>(pEvent)->key() == Qt::Key_Escape) {
    m_bEscape = true;
    return true;
  }
  // A running script can be stopped still.
  return !CInputGate::IsScriptRunning();
}
