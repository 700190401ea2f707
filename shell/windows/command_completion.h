#pragma once
// Completion of a command line while it is typed, without widgets. Main thread.

#include <functional>

#include <QList>
#include <QString>
#include <QStringList>

#include "base/types.h"

// What only the program as a whole knows. An empty function gives nothing.
struct COMPLETION_SOURCES {
  std::function<QStringList()> WindowNames;
  std::function<QStringList()> ToolBarNames;
  // The directory that relative paths start from, and a path with its macros replaced.
  std::function<QString()> BaseDir;
  std::function<QString(const QString&)> ExpandMacros;
};

// The part of a line in front of the cursor that is being typed.
struct COMMAND_PART {
  int Start = 0;             // position in the line, an opening quote included
  QString sTyped;            // without the quote
  U32 ActionID;              // row of the command, NUM_ACTIONS while its name is typed or when it is unknown
  int Argument = -1;         // counted from 0, -1 for the name
  bool bQuoted = false;      // has an opening quote
  bool bFinished = false;    // has a closing quote
  bool bScriptForm = false;  // arguments in parentheses
  QStringList Arguments;     // those in front of it
};
COMMAND_PART FindCommandPart(const QString& sLine, int Cursor);

struct COMPLETION_ITEM {
  QString sText;            // as the user reads it
  QString sNote;            // what it is
  QString sInsert;          // what replaces the part, from COMMAND_PART::Start to the cursor
  bool bContinues = false;  // more of the same part is to follow, as behind a directory
};
// What can stand in place of a part, in any case: what begins with it, and if there is none what contains it. No more
// than MAX_COMPLETIONS.
inline constexpr int MAX_COMPLETIONS = 1000;
QList<COMPLETION_ITEM> FindCompletions(const COMMAND_PART& Part, const COMPLETION_SOURCES& Sources);

// The longest text with which all the items begin, in any case, as the first spells it.
QString CommonPrefix(const QList<COMPLETION_ITEM>& Items);

// "File.Load (const char* sFileName, <unsigned int Addr>): Downloads a file to MCU memory", the parameter of the part
// in angle brackets. Empty while no known command is followed by its arguments.
QString CommandSynopsis(const COMMAND_PART& Part);
