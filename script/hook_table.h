#pragma once
// The functions that a project may define and that the session calls at its moments.

#include <QString>

#include "base/types.h"

enum HOOK_ID : int {
  HOOK_NONE = -1,
  HOOK_ON_PROJECT_LOAD = 1,
  HOOK_TARGET_RESET = 2,
  HOOK_BEFORE_TARGET_RESET = 3,
  HOOK_AFTER_TARGET_RESET = 4,
  HOOK_DEBUG_START = 5,
  HOOK_TARGET_CONNECT = 6,
  HOOK_BEFORE_TARGET_CONNECT = 7,
  HOOK_AFTER_TARGET_CONNECT = 8,
  HOOK_TARGET_DOWNLOAD = 9,
  HOOK_BEFORE_TARGET_DOWNLOAD = 10,
  HOOK_AFTER_TARGET_DOWNLOAD = 11,
  HOOK_BEFORE_TARGET_DISCONNECT = 12,
  HOOK_AFTER_TARGET_DISCONNECT = 13,
  HOOK_AFTER_TARGET_HALT = 14,
  HOOK_BEFORE_TARGET_RESUME = 15,
  NUM_HOOKS = 15,
};

struct HOOK_INFO {
  int FuncID;              // HOOK_ID
  const char* sPrototype;  // declaration
  const char* sComment;    // what a new project file says over it
  const char* sNotes;      // further lines of that comment, or null
  const char* sBody;       // statements in a new project file, or null for an empty function
};

// The row, null for an unknown identifier.
const HOOK_INFO* GetHookInfo(int FuncID);
// The name inside the prototype; empty for an unknown identifier.
QString GetHookName(int FuncID);

// A command as a statement of a script: in texts a script takes a backslash for the start of an escape.
QString StatementText(const QString& sCommand);

// The text of a new project file: every hook with its comment, all but OnProjectLoad commented out. Commands become the
// statements of OnProjectLoad; the one that opens the program goes last.
QString MakeProjectText(const QStringList& Commands);
