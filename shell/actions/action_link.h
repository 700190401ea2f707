#pragma once
// Linking of actions and of handlers to the rows of the table. Main thread.

#include <functional>

#include <QObject>
#include <QStringList>

#include "shell/actions/action_info.h"

// Every QAction below pOwner whose object name is in the table becomes that row's action; the last one linked owns the
// row. Called by the constructors of windows, and when the active memory window changes.
void LinkActions(QObject* pOwner);
// The same for one action; false if no row has its object name.
bool LinkAction(QAction* pAction);
// Rows of those actions lose them. A handler registered with RegisterActionHandler takes such a row back.
void UnlinkActions(QObject* pOwner);
// Object names of actions that found no row, sorted; and a warning for each.
QStringList GetUnlinkedActions();
void ReportUnlinkedActions();

// Gives a command that no window has an action for a handler of its own: the dispatcher makes and links the action,
// with the echo attached. The handler reads its arguments with GetActionArgs(ID) and reports with SetActionError.
// Replaces an earlier handler of the row. A window that links an action of that name later takes the row over.
void RegisterActionHandler(U32 ID, const std::function<void()>& Handler);
void UnregisterActionHandler(U32 ID);
// True while the row is served by a registered handler rather than by a window's action.
bool IsServedByHandler(U32 ID);
