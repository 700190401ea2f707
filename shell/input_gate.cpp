#include "shell/input_gate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolButton>

#include <memory>

#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/input_events.h"

namespace {

std::unique_ptr<CInputGate>& Gate() {
  static std::unique_ptr<CInputGate> pInstance;
  return pInstance;
}

bool IsKeyOf(const QKeyEvent& Event, U32 ActionID) {
  return QKeySequence(Event.keyCombination()).toString() == GetHotkey(ActionID);
}

bool IsButtonOf(const QMouseEvent& Event, U32 ActionID) {
  const auto* const pButton = qobject_cast<QToolButton*>(QApplication::widgetAt(Event.globalPosition().toPoint()));
  return Event.button() == Qt::LeftButton && pButton && pButton->defaultAction() &&
         pButton->defaultAction() == GetAction(ActionID);
}

bool IsRequest(const QEvent& Event, U32 ActionID) {
  switch (Event.type()) {
    case QEvent::KeyPress:
      return IsKeyOf(static_cast<const QKeyEvent&>(Event), ActionID);
    case QEvent::MouseButtonPress:
      return IsButtonOf(static_cast<const QMouseEvent&>(Event), ActionID);
    default:
      return false;
  }
}

void Perform(U32 ActionID) {
  if (GetAction(ActionID) == nullptr || !GetAction(ActionID)->isEnabled()) return;
  ClearActionArgs(ActionID);
  TriggerAction(ActionID);
}

}  // namespace

CInputGate::CInputGate() : m_pModalBefore(QApplication::activeModalWidget()) {
  qApp->installEventFilter(this);
}

void CInputGate::SetScriptRunning(bool bRunning) {
  Gate().reset(bRunning ? new CInputGate : nullptr);
}

bool CInputGate::IsScriptRunning() {
  return Gate() != nullptr;
}

void CInputGate::ProcessEvents() {
  const std::unique_ptr<CInputGate> pTurn(Gate() ? nullptr : new CInputGate);
  QCoreApplication::processEvents();
}

bool CInputGate::eventFilter(QObject*, QEvent* pEvent) {
  if (!IsUserInput(pEvent->type())) return false;
  const QWidget* const pModal = QApplication::activeModalWidget();
  if (pModal && pModal != m_pModalBefore) return false;
  if (IsRequest(*pEvent, ACTION_DEBUG_STOP)) {
    VScript::Stop();
    Perform(ACTION_DEBUG_STOP);
  } else if (IsRequest(*pEvent, ACTION_FILE_EXIT)) {
    Perform(ACTION_FILE_EXIT);
  }
  return true;
}
