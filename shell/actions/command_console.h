#pragma once
// The console's part in commands, without its window: running typed lines, the echo of actions, the lines that it
// prints about them. Main thread. Texts go to the console through shell/log/console_print.h.

#include <functional>

#include <QAction>
#include <QString>
#include <QStringList>

#include "base/types.h"

enum COMMAND_RESULT : int { COMMAND_FAILED = 0, COMMAND_RAN = 1, COMMAND_DISABLED = 2 };

// Runs a typed command. COMMAND_RAN tells that its handler ran, not that it succeeded; see GetLastCommand().
COMMAND_RESULT ExecuteCommand(const QString& sCommand);

// What the last command with a name did, for batch sessions and scripts: kept after the action's own state is cleared.
struct COMMAND_REPORT {
  U32 ActionID = 0xFFFFFFFFu;
  QString sText;           // as echoed
  QString sError;          // empty for success
  bool HasResult = false;  // the handler stored a result
  U64 Result = 0;
};
const COMMAND_REPORT& GetLastCommand();

// Before and after a handler: connected to the two signals of every window, and attached by RegisterActionHandler.
void OnActionTriggered(QAction* pAction);
void OnActionPerformed(QAction* pAction);

// Connects an action so that the echo before, the handler, and the echo after run in this order. pContext ends the
// connection when it goes.
void ConnectAction(QAction* pAction, QObject* pContext, const std::function<void()>& Handler);

// "File.Open ("x.elf"): file not found", or the hint at the command list for an empty error.
QString CommandErrorLine(const QString& sCommandText, const QString& sError);
// Nothing for rows without a command name.
void PrintCommandDisabled(const QString& sName);
// The list of commands, header and rows, and its print.
QStringList CommandHelpLines();
void PrintCommandHelp();
