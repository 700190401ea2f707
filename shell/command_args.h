#pragma once
// Arguments of a command as its handler wants them; each reports the error itself.

#include <QString>

#include "base/types.h"

QString QuotedArg(const QString& sText);
// Reports an error about a file. The path stands in the text itself, for a detail is not shown where it is the only
// argument.
void SetPathError(U32 ActionID, const char* sError, const QString& sPath);
// A number or named constant; false, with the error "invalid parameter", when the argument is neither.
bool GetNumberArg(U32 ActionID, int Index, U32* pValue);
// An address as a number, a symbol or "file:line"; false, with the error "invalid parameter".
bool GetAddressArg(U32 ActionID, int Index, U32* pAddr);
// False, with the error "not connected".
bool CheckConnected(U32 ActionID);
// The same, and "program is running" while it does.
bool CheckHalted(U32 ActionID);
// The path of a file that need not exist yet, macros replaced: a relative one starts where the project lies.
QString OutputPath(const QString& sPath);
// Whether a file can be written there; leaves nothing behind.
bool CanWriteFile(const QString& sPath);
