#include "shell/actions/action_table.h"

#include "shell/actions/action_rows.h"

namespace {

struct COMMAND_ALIAS {
  const char* sName;
  const char* sAlias;
};

// Old spellings that project files may still hold. Both columns are accepted.
constexpr COMMAND_ALIAS Aliases[] = {
    {"Trace", "Trace.Add"},
    {"Watch", "Watch.Add"},
    {"Window.SetNumberBase", "Window.SetDisplayFormat"},
    {"Break.Edit", "Edit.Break"},
    {"Project.SetPeripheralFile", "Project.AddSvdFile"},
    {"Project.SetRootPath", "Project.AddRootPath"},
    {"Debug.SetNextStmnt", "Debug.SetNextStatement"},
    {"Project.SetTIFScanChain", "Project.SetJTAGConfig"},
};

QString AliasOf(const QString& sName) {
  for (const COMMAND_ALIAS& Alias : Aliases) {
    if (sName == QLatin1String(Alias.sName)) return QString::fromLatin1(Alias.sAlias);
    if (sName == QLatin1String(Alias.sAlias)) return QString::fromLatin1(Alias.sName);
  }
  return {};
}

QStringList ParamsOf(const QString& sPrototype) {
  const qsizetype Open = sPrototype.indexOf(u'(');
  const qsizetype Close = sPrototype.lastIndexOf(u')');
  if (Open < 0 || Close <= Open) return {};
  const QString sParams = sPrototype.mid(Open + 1, Close - Open - 1).trimmed();
  if (sParams.isEmpty() || sParams == u"void") return {};
  QStringList Params = sParams.split(u',');
  for (QString& sParam : Params) sParam = sParam.trimmed();
  return Params;
}

ACTION_ENTRY EntryOf(const ACTION_ROW& Row) {
  ACTION_ENTRY Entry;
  ACTION_INFO& Info = Entry.Info;
  Info.ActionID = Row.ID;
  Info.EchoCommand = Row.Echo != ECHO_NONE;
  Info.EchoAfterPerform = Row.Echo == ECHO_AFTER;
  Info.sHotkey = QString::fromLatin1(Row.sHotkey);
  Info.sPrototype = QString::fromLatin1(Row.sPrototype);
  Info.sArgText = QString::fromLatin1(Row.sArgText);
  Info.sDescription = QString::fromLatin1(Row.sDescription);
  Info.sDisplayText = *Row.sDisplayText ? QString::fromLatin1(Row.sDisplayText) : Info.sDescription;
  Info.sObjectName = QString::fromLatin1(Row.sObjectName);
  Entry.sName = CommandNameOf(Info.sPrototype);
  Entry.sAlias = AliasOf(Entry.sName);
  Entry.Params = ParamsOf(Info.sPrototype);
  return Entry;
}

}  // namespace

CActionTable& CActionTable::Instance() {
  // Never destroyed: windows unlink their actions as late as during the exit of the process.
  static CActionTable* const pTable = new CActionTable;
  return *pTable;
}

CActionTable::CActionTable() : m_Rows(NUM_ACTIONS) {
  for (const ACTION_ROW& Row : CommandRows) m_Rows[Row.ID] = EntryOf(Row);
  for (const ACTION_ROW& Row : LocalRows) m_Rows[Row.ID] = EntryOf(Row);
  for (const ACTION_ENTRY& Entry : m_Rows) m_ByObjectName.insert(Entry.Info.sObjectName, Entry.Info.ActionID);
}

ACTION_ENTRY* CActionTable::Find(U32 ID) {
  return ID < m_Rows.size() ? &m_Rows[ID] : nullptr;
}

ACTION_ENTRY* CActionTable::FindByObjectName(const QString& sObjectName) {
  const auto it = m_ByObjectName.constFind(sObjectName);
  return it == m_ByObjectName.constEnd() ? nullptr : &m_Rows[*it];
}
