#include "shell/actions/action_dispatch.h"

#include <QActionGroup>

#include "shell/actions/action_errors.h"
#include "shell/actions/action_table.h"
#include "shell/actions/command_console.h"
#include "shell/settings/named_constants.h"

namespace {

QStringList TextsOf(std::initializer_list<const QVariant*> Values) {
  QStringList Texts;
  for (const QVariant* pValue : Values) {
    if (pValue->isValid()) Texts.append(pValue->toString());
  }
  return Texts;
}

// Toggles a checkable action as a click would; the checked action of an exclusive group stays checked.
void ToggleChecked(QAction* pAction) {
  if (!pAction->isCheckable()) return;
  const QActionGroup* pGroup = pAction->actionGroup();
  const bool bKeep = pAction->isChecked() && pGroup &&
                     pGroup->exclusionPolicy() == QActionGroup::ExclusionPolicy::Exclusive &&
                     pGroup->checkedAction() == pAction;
  if (!bKeep) pAction->setChecked(!pAction->isChecked());
}

}  // namespace

I64 PerformAction(U32 ID, const QVariant& v1, const QVariant& v2, const QVariant& v3, const QVariant& v4,
                  const QVariant& v5, const QVariant& v6, const QVariant& v7) {
  if (ID >= NUM_ACTIONS) return -1;
  const QStringList Args = TextsOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7});
  if (!Args.isEmpty()) SetActionArgs(ID, Args);
  return TriggerAction(ID) == -1 ? -1 : static_cast<I64>(GetActionResult(ID));
}

int TriggerAction(U32 ID) {
  if (ID >= NUM_ACTIONS) return -1;
  if (!IsActionEnabled(ID, false)) {
    PrintCommandDisabled(GetCommandName(ID));
    return -1;
  }
  QAction* pAction = GetAction(ID);
  if (!pAction) return -1;
  pAction->setWhatsThis(QString());
  const QPointer<QAction> pGuard = pAction;
  ToggleChecked(pAction);
  if (pGuard) Q_EMIT pAction->triggered(pAction->isChecked());
  return 0;
}

void SetActionArgs(U32 ID, const QStringList& Args) {
  if (QAction* pAction = GetAction(ID)) pAction->setData(Args.isEmpty() ? QVariant() : QVariant(Args));
}

void SetActionArgs(U32 ID, const QVariant& v1, const QVariant& v2, const QVariant& v3, const QVariant& v4,
                   const QVariant& v5, const QVariant& v6, const QVariant& v7) {
  SetActionArgs(ID, TextsOf({&v1, &v2, &v3, &v4, &v5, &v6, &v7}));
}

void ClearActionArgs(U32 ID) {
  QAction* pAction = GetAction(ID);
  if (!pAction) return;
  pAction->setData(QVariant());
  pAction->setWhatsThis(QString());
}

QStringList GetActionArgs(U32 ID) {
  const QAction* pAction = GetAction(ID);
  if (!pAction || pAction->data().typeId() != QMetaType::QStringList) return {};
  QStringList Args = pAction->data().toStringList();
  return Args.replaceInStrings(QStringLiteral("\""), QString());
}

bool HasActionArgs(U32 ID) {
  return !GetActionArgs(ID).isEmpty();
}

QString GetFirstActionArg(U32 ID) {
  const QStringList Args = GetActionArgs(ID);
  if (Args.size() == 1) return Args.constFirst();
  SetActionError(ID, QLatin1String(ActionError::WRONG_PARAMETER_COUNT));
  return {};
}

bool CheckActionArgs(U32 ID, int MinArgs) {
  const int MaxArgs = GetParamCount(ID);
  const qsizetype NumArgs = GetActionArgs(ID).size();
  if (NumArgs >= (MinArgs < 0 ? MaxArgs : MinArgs) && NumArgs <= MaxArgs) return true;
  SetActionError(ID, QLatin1String(ActionError::WRONG_PARAMETER_COUNT));
  return false;
}

I64 GetActionArgNumber(U32 ID, int Index, bool* pOk) {
  *pOk = false;
  const QStringList Args = GetActionArgs(ID);
  return Index >= 0 && Index < Args.size() ? ParseConstOrNumber(Args.at(Index), pOk) : 0;
}

void SetActionError(U32 ID, const QString& sText, const QString& sDetail) {
  QAction* pAction = GetAction(ID);
  if (!pAction) return;
  const bool bDetail = !sDetail.isEmpty() && GetActionArgs(ID).size() > 1;
  pAction->setWhatsThis(bDetail ? sText + QLatin1String(": ") + sDetail : sText);
}

QString GetActionError(U32 ID) {
  const QAction* pAction = GetAction(ID);
  return pAction ? pAction->whatsThis() : QString();
}

void SetActionResult(U32 ID, U64 Value) {
  ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  if (!pEntry) return;
  pEntry->Result = Value;
  pEntry->HasResult = true;
}

U64 GetActionResult(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? pEntry->Result : 0;
}

void SetActionEnabled(U32 ID, bool On) {
  SetActionAccepted(ID, On);
  if (QAction* pAction = GetAction(ID)) pAction->setEnabled(On);
}

void SetActionAccepted(U32 ID, bool On) {
  if (ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID)) pEntry->Info.IsAccepted = On;
}

bool IsActionEnabled(U32 ID, bool GuiState) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  if (!pEntry || !pEntry->Info.pAction) return false;
  return GuiState ? pEntry->Info.pAction->isEnabled() : pEntry->Info.IsAccepted;
}

void SuppressEcho(U32 ID) {
  if (QAction* pAction = GetAction(ID)) pAction->setData(0);
}

bool IsEchoSuppressed(U32 ID) {
  const QAction* pAction = GetAction(ID);
  return pAction && pAction->data().typeId() == QMetaType::Int && pAction->data().toInt() == 0;
}
