#include "shell/actions/action_info.h"

#include "shell/actions/action_table.h"

namespace {

struct ALTERNATE_HOTKEY {
  const char* sHotkey;
  const char* sAlternate;
};
constexpr ALTERNATE_HOTKEY AlternateHotkeys[] = {
    {"Ctrl++", "Ctrl+="}, {"Alt++", "Alt+="}, {"+", "="}, {"Ctrl+F5", "F6"}};

bool EqualsName(const QString& sA, const QString& sB) {
  return sA.compare(sB, Qt::CaseInsensitive) == 0;
}

}  // namespace

ACTION_INFO GetActionInfo(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? pEntry->Info : ACTION_INFO();
}

QAction* GetAction(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? pEntry->Info.pAction.data() : nullptr;
}

int FindActionID(const QAction* pAction) {
  return CActionTable::Instance().ActionIDs.value(pAction, -1);
}

QString GetPrototype(U32 ID) {
  return GetActionInfo(ID).sPrototype;
}

QString GetCommandName(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? pEntry->sName : QString();
}

QString GetCommandAlias(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? pEntry->sAlias : QString();
}

QString GetAliasPrototype(U32 ID) {
  const QString sAlias = GetCommandAlias(ID);
  if (sAlias.isEmpty()) return {};
  QString sPrototype = GetPrototype(ID);
  const QString sName = GetCommandName(ID);
  return sPrototype.replace(sPrototype.indexOf(sName), sName.size(), sAlias);
}

int GetParamCount(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? static_cast<int>(pEntry->Params.size()) : 0;
}

QString GetParamText(U32 ID, int Index) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry ? pEntry->Params.value(Index) : QString();
}

bool IsStringParam(U32 ID, int Index) {
  const QString sParam = GetParamText(ID, Index);
  return sParam.contains(u"char") && sParam.contains(u'*');
}

QString GetHotkey(U32 ID) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  return pEntry && pEntry->Info.pAction ? pEntry->Info.sHotkey : QString();
}

QList<U32> FindActionsByHotkey(const QString& sKey) {
  QList<U32> IDs;
  for (const ALTERNATE_HOTKEY& Hotkey : AlternateHotkeys) {
    if (sKey != QLatin1String(Hotkey.sAlternate)) continue;
    for (const ACTION_ENTRY& Entry : CActionTable::Instance().Rows()) {
      if (Entry.Info.sHotkey == QLatin1String(Hotkey.sHotkey)) IDs.append(Entry.Info.ActionID);
    }
  }
  return IDs;
}

U32 FindCommand(const QString& sName, int NumArgs) {
  if (sName.isEmpty()) return NUM_ACTIONS;
  QMap<int, U32> Matches;
  for (const ACTION_ENTRY& Entry : CActionTable::Instance().Rows()) {
    if (Entry.sName.isEmpty()) continue;
    if (!EqualsName(Entry.sName, sName) && !EqualsName(Entry.sAlias, sName)) continue;
    Matches.insert(static_cast<int>(Entry.Params.size()), Entry.Info.ActionID);
  }
  if (Matches.isEmpty()) return NUM_ACTIONS;
  return Matches.value(NumArgs, Matches.last());
}

QString CommandNameOf(const QString& sPrototype) {
  const qsizetype Open = sPrototype.indexOf(u'(');
  if (Open < 0) return {};
  const QString sHead = sPrototype.left(Open).trimmed();
  return sHead.mid(sHead.lastIndexOf(u' ') + 1);
}

QList<U32> GetCommandIDs() {
  QList<U32> IDs;
  for (const ACTION_ENTRY& Entry : CActionTable::Instance().Rows()) {
    if (!Entry.sName.isEmpty()) IDs.append(Entry.Info.ActionID);
  }
  return IDs;
}
