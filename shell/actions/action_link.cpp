#include "shell/actions/action_link.h"

#include <QKeySequence>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_table.h"
#include "shell/actions/command_console.h"
#include "shell/log/log.h"

namespace {

void DecorateAction(QAction* pAction, const ACTION_INFO& Info) {
  pAction->setShortcut(QKeySequence(Info.sHotkey));
  pAction->setStatusTip(Info.sDescription.isEmpty() ? Info.sDisplayText : Info.sDescription);
  pAction->setToolTip(Info.sDisplayText);
}

void LinkToEntry(QAction* pAction, ACTION_ENTRY* pEntry);

// The row of an action that was unlinked or destroyed goes back to its registered handler, if there is one.
void ReleaseRow(const QAction* pAction) {
  ACTION_ENTRY* pEntry = CActionTable::Instance().Find(static_cast<U32>(FindActionID(pAction)));
  CActionTable::Instance().ActionIDs.remove(pAction);
  if (!pEntry || (pEntry->Info.pAction && pEntry->Info.pAction != pAction)) return;
  pEntry->Info.pAction = nullptr;
  pEntry->Info.IsAccepted = false;
  if (pEntry->pHandler) LinkToEntry(pEntry->pHandler.get(), pEntry);
}

void WatchAction(QAction* pAction) {
  CActionTable& Table = CActionTable::Instance();
  if (Table.WatchedActions.contains(pAction)) return;
  Table.WatchedActions.insert(pAction);
  QObject::connect(pAction, &QObject::destroyed, [pAction] {
    CActionTable::Instance().WatchedActions.remove(pAction);
    ReleaseRow(pAction);
  });
}

void LinkToEntry(QAction* pAction, ACTION_ENTRY* pEntry) {
  ACTION_INFO& Info = pEntry->Info;
  DecorateAction(pAction, Info);
  if (Info.pAction) SetActionEnabled(Info.ActionID, pAction->isEnabled());
  const QString sShortcut = pAction->shortcut().toString();
  if (!sShortcut.isEmpty()) pAction->setToolTip(pAction->toolTip() + QLatin1String(" (") + sShortcut + u')');
  Info.pAction = pAction;
  WatchAction(pAction);
  CActionTable::Instance().ActionIDs.insert(pAction, static_cast<int>(Info.ActionID));
  SetActionEnabled(Info.ActionID, pAction->isEnabled());
}

}  // namespace

bool LinkAction(QAction* pAction) {
  CActionTable& Table = CActionTable::Instance();
  ACTION_ENTRY* pEntry = Table.FindByObjectName(pAction->objectName());
  if (pEntry) {
    LinkToEntry(pAction, pEntry);
    return true;
  }
  const QString sName = pAction->objectName();
  if (!sName.isEmpty() && !Table.UnlinkedActions.contains(sName)) Table.UnlinkedActions.append(sName);
  return false;
}

void LinkActions(QObject* pOwner) {
  const QList<QAction*> Actions = pOwner->findChildren<QAction*>();
  for (QAction* pAction : Actions) LinkAction(pAction);
}

void UnlinkActions(QObject* pOwner) {
  const QList<QAction*> Actions = pOwner->findChildren<QAction*>();
  for (QAction* pAction : Actions) ReleaseRow(pAction);
}

QStringList GetUnlinkedActions() {
  QStringList Names = CActionTable::Instance().UnlinkedActions;
  Names.sort();
  return Names;
}

void ReportUnlinkedActions() {
  for (const QString& sName : GetUnlinkedActions()) {
    LogMsg(QLatin1String("Unknown GUI action could not be linked: ") + sName,
           MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
  }
}

void RegisterActionHandler(U32 ID, const std::function<void()>& Handler) {
  ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  if (!pEntry) return;
  pEntry->Handler = Handler;
  if (!pEntry->pHandler) {
    pEntry->pHandler = std::make_unique<QAction>();
    pEntry->pHandler->setObjectName(pEntry->Info.sObjectName);
    ConnectAction(pEntry->pHandler.get(), pEntry->pHandler.get(), [pEntry] {
      const std::function<void()> Running = pEntry->Handler;
      if (Running) Running();
    });
  }
  if (!pEntry->Info.pAction) LinkToEntry(pEntry->pHandler.get(), pEntry);
}

void UnregisterActionHandler(U32 ID) {
  ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  if (!pEntry || !pEntry->pHandler) return;
  pEntry->Handler = nullptr;
  QAction* pAction = pEntry->pHandler.release();
  ReleaseRow(pAction);
  // the handler itself may be what runs now
  pAction->deleteLater();
}

bool IsServedByHandler(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry && pEntry->pHandler && pEntry->Info.pAction == pEntry->pHandler.get();
}
