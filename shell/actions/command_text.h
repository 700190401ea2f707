#pragma once
// Commands as text: what a user types or a script calls, and what the console echoes and projects store. Main thread.

#include <QString>
#include <QStringList>

#include "shell/actions/action_info.h"

// A command line taken apart; sName is empty for a line without a usable name.
struct COMMAND_LINE {
  QString sName;
  QStringList Args;  // trimmed, each without its enclosing quotes
};
// Console form ("Name a b") and script form ("Name (a, b);"). Separators inside double quotes belong to the argument.
COMMAND_LINE SplitCommandLine(const QString& sLine);

// The row that a command line asks for, its arguments stored on the row's action (none clears them). *pOk is false and
// the sentinel row returned when no command has that name.
ACTION_INFO ParseCommand(const QString& sLine, bool* pOk);

// A call as text, such as `File.Open ("C:/a.elf");`; with the arguments stored on the row's action, or with given ones.
// Empty for rows that are no commands.
QString GetCommandText(U32 ID);
QString MakeCommandText(U32 ID, const QStringList& Args);
