// Keys that reach rows without a shortcut of the toolkit, and what else the application's events are watched for.

#include <QKeyEvent>
#include <QLineEdit>
#include <QTabBar>

#include <chrono>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/log/log.h"
#include "shell/main_window.h"
#include "ui/dock_window.h"
#include "ui/windows/source_window.h"

namespace {

constexpr int UNLIMITED_INPUT = 32767;  // characters, the toolkit's own limit

// Taken before main, when the libraries have been loaded.
const std::chrono::steady_clock::time_point ProcessStart = std::chrono::steady_clock::now();

void LogFirstPaint() {
  const auto Elapsed = std::chrono::steady_clock::now() - ProcessStart;
  LogMsg(QStringLiteral("First paint after %1 ms")
             .arg(std::chrono::duration_cast<std::chrono::milliseconds>(Elapsed).count()),
         MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

// The window that an action belongs to; null for those of the whole program.
CWindow* OwnerOf(const QAction& Action) {
  for (QObject* const pObject : Action.associatedObjects()) {
    auto* const pWindow = qobject_cast<CWindow*>(pObject);
    if (pWindow && pWindow != CMainWindow::Get()) return pWindow;
  }
  return nullptr;
}

bool IsUsable(const QAction* pAction) {
  return pAction && pAction->isEnabled() && pAction->isVisible();
}

bool IsLimitedInput(const QWidget* pWidget) {
  const auto* const pInput = qobject_cast<const QLineEdit*>(pWidget);
  return pInput && pInput->maxLength() < UNLIMITED_INPUT;
}

}  // namespace

// Dialogs and other top-level windows keep their keys; a floating dock belongs to the main window.
bool CMainWindow::IsOwnInput(QWidget* pWidget) const {
  return pWidget->window() == this || qobject_cast<CDockWindow*>(pWidget->window());
}

bool CMainWindow::OnKeyPress(QWidget* pWidget, QKeyEvent* pEvent) {
  if (!IsOwnInput(pWidget) || QApplication::activePopupWidget() || QApplication::activeModalWidget()) return false;
  if (pEvent->key() == Qt::Key_S && pEvent->modifiers() == (Qt::ShiftModifier | Qt::AltModifier)) {
    m_pSource->setFocus();
    m_pSource->SetActive(true);
    return true;
  }
  if (pEvent->key() == Qt::Key_Escape && !IsLimitedInput(QApplication::focusWidget())) {
    m_pSource->setFocus();
    return false;
  }
  return PerformAlternateKey(QKeySequence(pEvent->keyCombination()).toString());
}

// Many windows have an action of a row; the focused one's comes first, then the source's and those of the whole
// program.
bool CMainWindow::PerformAlternateKey(const QString& sKey) {
  const QList<U32> Rows = FindActionsByHotkey(sKey);
  const CWindow* const pFocused = GetWindow(QApplication::focusWidget());
  if (pFocused && pFocused != this && pFocused != m_pSource) {
    for (const U32 ID : Rows) {
      auto* const pOwn = pFocused->findChild<QAction*>(GetActionInfo(ID).sObjectName, Qt::FindDirectChildrenOnly);
      if (!IsUsable(pOwn)) continue;
      pOwn->setData(QVariant());
      pOwn->trigger();
      return true;
    }
  }
  for (const U32 ID : Rows) {
    const QAction* const pAction = GetAction(ID);
    const CWindow* const pOwner = IsUsable(pAction) ? OwnerOf(*pAction) : nullptr;
    if (!IsUsable(pAction) || (pOwner && pOwner != m_pSource)) continue;
    ClearActionArgs(ID);
    TriggerAction(ID);
    return true;
  }
  return false;
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
