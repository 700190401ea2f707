#include "shell/input_gate.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"

namespace {

bool IsInput(QEvent::Type Type) {
  switch (Type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::TouchBegin:
      return true;
    default:
      return false;
  }
}

}  // namespace

void CInputGate::ProcessEvents() {
  CInputGate Gate;
  qApp->installEventFilter(&Gate);
  QCoreApplication::processEvents();
}

bool CInputGate::eventFilter(QObject*, QEvent* pEvent) {
  if (!IsInput(pEvent->type())) return false;
  if (pEvent->type() == QEvent::KeyPress) {
    const QString sKey = QKeySequence(static_cast<QKeyEvent*>(pEvent)->keyCombination()).toString();
    for (const U32 ID : {ACTION_DEBUG_STOP, ACTION_FILE_EXIT}) {
      if (sKey == GetHotkey(ID) && GetAction(ID)->isEnabled()) {
        ClearActionArgs(ID);
        TriggerAction(ID);
      }
    }
  }
  return true;
}
