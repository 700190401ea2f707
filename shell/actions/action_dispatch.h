#pragma once
// One call of an action: its arguments, error text and result travel with the row's QAction. Main thread.

#include <QStringList>
#include <QVariant>

#include "base/types.h"
#include "shell/actions/action_info.h"

inline constexpr int MAX_ACTION_ARGS = 7;

// Performs an action with arguments (valid ones among v1 to v7; none leaves the stored ones alone) and returns the
// handler's result, or -1 when it could not run. The handler has finished when this returns.
I64 PerformAction(U32 ID, const QVariant& v1 = {}, const QVariant& v2 = {}, const QVariant& v3 = {},
                  const QVariant& v4 = {}, const QVariant& v5 = {}, const QVariant& v6 = {}, const QVariant& v7 = {});
// Runs an action with the arguments already stored. Returns 0, or -1: unknown, not linked, or not accepted (the console
// then says "Command disabled").
int TriggerAction(U32 ID);

// Stores arguments without running anything. They are kept as texts.
void SetActionArgs(U32 ID, const QStringList& Args);
void SetActionArgs(U32 ID, const QVariant& v1 = {}, const QVariant& v2 = {}, const QVariant& v3 = {},
                   const QVariant& v4 = {}, const QVariant& v5 = {}, const QVariant& v6 = {}, const QVariant& v7 = {});
// No arguments and no error.
void ClearActionArgs(U32 ID);
// The arguments, all double quotes removed.
QStringList GetActionArgs(U32 ID);
bool HasActionArgs(U32 ID);
// The only argument; without exactly one sets the error "wrong parameter count" and returns an empty text.
QString GetFirstActionArg(U32 ID);
// True if the number of arguments lies between MinArgs and the prototype's parameter count (-1: equals it); otherwise
// sets the error "wrong parameter count".
bool CheckActionArgs(U32 ID, int MinArgs = -1);
// Argument Index as a named constant or a number of any base; *pOk is false when it is missing or neither.
I64 GetActionArgNumber(U32 ID, int Index, bool* pOk);

// Error of this run. The detail is added, behind ": ", only when the action has more than one argument.
void SetActionError(U32 ID, const QString& sText, const QString& sDetail = QString());
QString GetActionError(U32 ID);
// Last result stored for a row, 0 if none was.
void SetActionResult(U32 ID, U64 Value);
U64 GetActionResult(U32 ID);

// Accepted from console and scripts, and enabled in menus, together.
void SetActionEnabled(U32 ID, bool On);
void SetActionAccepted(U32 ID, bool On);
// GuiState true: in menus; false: from console and scripts. False for rows without an action.
bool IsActionEnabled(U32 ID, bool GuiState);

// No echo of this run.
void SuppressEcho(U32 ID);
bool IsEchoSuppressed(U32 ID);
