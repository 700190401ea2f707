#pragma once
// What the commands Edit.SysVar and Edit.Preference do with their arguments, and who hears of it.

#include <functional>

#include <QString>

#include "base/types.h"

// Outcome of an edit. On success sError is empty, and sName and sText are the canonical arguments for the echo.
struct VAR_EDIT {
  QString sError;   // error word, such as "invalid parameter"
  QString sDetail;  // the offending argument in quotes
  QString sName;    // identifier
  QString sText;    // value; in double quotes for Edit.SysVar if it is a selection's or a string's text, for
                    // Edit.Preference if it is the name of a selection's entry
  U32 ID = 0;
  U32 Value = 0;  // 0 for a string variable
};

// Sets a system variable (any of the 58 rows) from texts: number or identifier, and value. Trace port delays are
// rounded down to a multiple of 50 ps. Listeners are told for rows 0 to 19.
VAR_EDIT EditSysVar(const QString& sVarID, const QString& sValue);

// Sets a preference (or system variable) from texts. bSave: store as the saved value too. Every listener is told.
VAR_EDIT EditPreference(const QString& sPrefID, const QString& sValue, bool bSave);

// Direct access with checks, for windows: value of a row by identifier or number; *pOk false for an unknown one.
U32 GetSysVar(const QString& sVarID, bool* pOk = nullptr);

// Called after a variable was changed by the two functions above; main thread, in the order of registration. The
// number returned takes the listener out again.
using VarListener = std::function<void(U32 ID, U32 Value)>;
int AddSysVarListener(const VarListener& Listener);
int AddPreferenceListener(const VarListener& Listener);
void RemoveVarListener(int Handle);
