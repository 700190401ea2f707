#include "shell/actions/command_console.h"

#include <utility>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_table.h"
#include "shell/actions/command_text.h"
#include "shell/log/console_print.h"

namespace {

constexpr QLatin1String UNKNOWN_COMMAND("unknown command. Type ? or help for a list of available commands.");
constexpr QLatin1String DISABLED_COMMAND("Command disabled");

// Columns of the command list, in characters.
constexpr int HELP_COLUMN_ARGUMENTS = 29;
constexpr int HELP_COLUMN_HOTKEY = 52;
constexpr int HELP_COLUMN_DESCRIPTION = 68;
constexpr int HELP_WIDTH = 150;

COMMAND_REPORT LastCommand;

// A command that misses its arguments may get them from a dialog, or be called off, while its handler runs, a refused
// step is not echoed, and an edit is echoed with the names of what it changed: their echo waits for the first message
// of the handler or for the handler's end.
U32 WaitingEcho = NUM_ACTIONS;

bool IsEchoHeldBack(U32 ID) {
  switch (ID) {
    case ACTION_DEBUG_STEP_INTO:
    case ACTION_DEBUG_STEP_OVER:
    case ACTION_EDIT_SYS_VAR:
    case ACTION_EDIT_COLOR:
    case ACTION_EDIT_FONT:
      return true;
    default:
      return GetParamCount(ID) > 0 && !HasActionArgs(ID);
  }
}

void PrintEcho(U32 ID) {
  const QString sText = GetCommandText(ID);
  if (!sText.isEmpty() && !IsEchoSuppressed(ID)) PrintConsoleColor(sText, CONSOLE_COLOR_USER);
}

void FlushEcho() {
  const U32 ID = std::exchange(WaitingEcho, NUM_ACTIONS);
  SetBeforePrint(nullptr);
  if (ID != NUM_ACTIONS) PrintEcho(ID);
}

void EchoBefore(U32 ID) {
  FlushEcho();
  if (!IsEchoHeldBack(ID)) return PrintEcho(ID);
  WaitingEcho = ID;
  SetBeforePrint(FlushEcho);
}

void ReportLast(U32 ID, const QString& sText, const QString& sError) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(ID);
  LastCommand = {ID, sText, sError, pEntry && pEntry->HasResult, pEntry ? pEntry->Result : 0};
}

COMMAND_RESULT RunCommand(U32 ID) {
  if (!IsActionEnabled(ID, false)) {
    PrintCommandDisabled(GetCommandName(ID));
    ReportLast(ID, GetCommandText(ID), DISABLED_COMMAND);
    ClearActionArgs(ID);
    return COMMAND_DISABLED;
  }
  LastCommand = {ID, GetCommandText(ID), QString(), false, 0};
  TriggerAction(ID);
  return COMMAND_RAN;
}

bool IsHelpWord(const QString& sCommand) {
  const QString sWord = sCommand.trimmed();
  return sWord == u"?" || sWord.compare(u"help", Qt::CaseInsensitive) == 0;
}

QString HelpLine(const QString& sName, const QString& sArgs, const QString& sHotkey, const QString& sDescription) {
  const QString sLine = sName.leftJustified(HELP_COLUMN_ARGUMENTS) +
                        sArgs.leftJustified(HELP_COLUMN_HOTKEY - HELP_COLUMN_ARGUMENTS) +
                        sHotkey.leftJustified(HELP_COLUMN_DESCRIPTION - HELP_COLUMN_HOTKEY);
  return sLine + sDescription;
}

}  // namespace

COMMAND_RESULT ExecuteCommand(const QString& sCommand) {
  if (IsHelpWord(sCommand)) {
    RunCommand(ACTION_HELP_COMMANDS);
    return COMMAND_RAN;
  }
  bool bFound = false;
  const ACTION_INFO Info = ParseCommand(sCommand, &bFound);
  if (bFound) return RunCommand(Info.ActionID);
  PrintConsoleError(CommandErrorLine(sCommand, QString()));
  LastCommand = {NUM_ACTIONS, sCommand, UNKNOWN_COMMAND, false, 0};
  return COMMAND_FAILED;
}

const COMMAND_REPORT& GetLastCommand() {
  return LastCommand;
}

void OnActionTriggered(QAction* pAction) {
  const int ID = FindActionID(pAction);
  ACTION_ENTRY* pEntry = CActionTable::Instance().Find(static_cast<U32>(ID));
  if (!pEntry) return;
  pEntry->HasResult = false;
  pAction->setWhatsThis(QString());
  if (pEntry->Info.EchoAfterPerform) return;
  const QString sText = GetCommandText(pEntry->Info.ActionID);
  if (sText.isEmpty()) {
    ClearActionArgs(pEntry->Info.ActionID);
  } else if (pEntry->Info.EchoCommand && !IsEchoSuppressed(pEntry->Info.ActionID)) {
    EchoBefore(pEntry->Info.ActionID);
  }
}

void OnActionPerformed(QAction* pAction) {
  const ACTION_ENTRY* pEntry = CActionTable::Instance().Find(static_cast<U32>(FindActionID(pAction)));
  if (!pEntry) return;
  const U32 ID = pEntry->Info.ActionID;
  const QString sText = GetCommandText(ID);
  const QString sError = GetActionError(ID);
  if (!sText.isEmpty()) ReportLast(ID, sText, sError);
  if (WaitingEcho == ID) FlushEcho();
  if (pEntry->Info.EchoAfterPerform && pEntry->Info.EchoCommand) PrintEcho(ID);
  // A refusal without echo still has to be told.
  if (!sError.isEmpty()) PrintConsoleError(CommandErrorLine(sText, sError));
  ClearActionArgs(ID);
}

void ConnectAction(QAction* pAction, QObject* pContext, const std::function<void()>& Handler) {
  QObject::connect(pAction, &QAction::triggered, pContext, [pAction] { OnActionTriggered(pAction); });
  QObject::connect(pAction, &QAction::triggered, pContext, Handler);
  QObject::connect(pAction, &QAction::triggered, pContext, [pAction] { OnActionPerformed(pAction); });
}

QString CommandErrorLine(const QString& sCommandText, const QString& sError) {
  QString sCommand = sCommandText;
  sCommand.remove(u';');
  return sCommand + QLatin1String(": ") + (sError.isEmpty() ? QString(UNKNOWN_COMMAND) : sError);
}

void PrintCommandDisabled(const QString& sName) {
  if (sName.isEmpty()) return;
  PrintConsoleColor(sName + QLatin1String(": ") + DISABLED_COMMAND, CONSOLE_COLOR_USER);
}

QStringList CommandHelpLines() {
  QStringList Rows;
  for (const ACTION_ENTRY& Entry : CActionTable::Instance().Rows()) {
    const ACTION_INFO& Info = Entry.Info;
    if (!Info.pAction || !Info.EchoCommand || Entry.sName.isEmpty()) continue;
    Rows.append(HelpLine(Entry.sName, Info.sArgText, Info.sHotkey.trimmed(), Info.sDescription.trimmed()));
  }
  Rows.sort();
  const QString sRule(HELP_WIDTH, u'-');
  const QString sHeader = HelpLine(QStringLiteral("Command"), QStringLiteral("Arguments"), QStringLiteral("Hotkey"),
                                   QStringLiteral("Description"));
  return QStringList{sRule, QStringLiteral(" "), sHeader, sRule} + Rows;
}

void PrintCommandHelp() {
  PrintConsoleLines(CommandHelpLines(), CONSOLE_COLOR_USER);
}
