#pragma once
// The table of all actions: one row for every operation that a user, the console or a script can ask for. Main thread.

#include <QAction>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "base/types.h"
#include "shell/actions/action_ids.h"

// One row. The constant part comes from the data tables; pAction and IsAccepted change at run time.
struct ACTION_INFO {
  U32 ActionID = NUM_ACTIONS;     // row number
  bool EchoCommand = false;       // the console prints the command text of this action
  bool EchoAfterPerform = false;  // it does so after the handler has run, not before
  QString sHotkey;
  QString sPrototype;         // script declaration; empty for rows that are no commands
  QString sArgText;           // argument column of the command help
  QString sDescription;       // status tip, description column of the command help
  QString sDisplayText;       // tool tip
  QString sObjectName;        // object name of the action that this row serves
  QPointer<QAction> pAction;  // null while nothing is linked
  bool IsAccepted = false;    // console and scripts may run it; apart from QAction::isEnabled()
};

// A copy of the row; for an unknown identifier a row with ActionID NUM_ACTIONS and everything else empty.
ACTION_INFO GetActionInfo(U32 ID);
// The linked action, or null.
QAction* GetAction(U32 ID);
// Identifier of a linked action, -1 if it is not linked.
int FindActionID(const QAction* pAction);
QString GetPrototype(U32 ID);
// The name inside the prototype, such as "File.Open"; empty for rows that are no commands.
QString GetCommandName(U32 ID);
// The other spelling of the name, if there is one.
QString GetCommandAlias(U32 ID);
// The prototype with the name replaced by its alias, empty if there is none.
QString GetAliasPrototype(U32 ID);
// Number of parameters of the prototype.
int GetParamCount(U32 ID);
// Text of a parameter, such as "const char* sFileName".
QString GetParamText(U32 ID, int Index);
// True if the parameter is a text.
bool IsStringParam(U32 ID, int Index);
// The hot key, only while an action is linked.
QString GetHotkey(U32 ID);
// Rows whose alternate hot key equals sKey, such as "F6".
QList<U32> FindActionsByHotkey(const QString& sKey);
// Row whose command name or alias equals sName in any case; NUM_ACTIONS if there is none. NumArgs decides among
// several.
U32 FindCommand(const QString& sName, int NumArgs = 0);

// The name in front of "(" in a prototype or command line; empty if there is none.
QString CommandNameOf(const QString& sPrototype);

// Rows that have a prototype, in order of their identifiers.
QList<U32> GetCommandIDs();
