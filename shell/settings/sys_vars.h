#pragma once
// The table of the 58 variables: 22 system variables, which belong to the session and the project, and 36 user
// preferences, which are stored. GetVarValue may be called on any thread, everything else on the main thread only.

#include <functional>

#include <QList>
#include <QString>
#include <QStringList>

#include "base/types.h"
#include "shell/settings/var_ids.h"

enum VAR_TYPE : U8 { VAR_TYPE_SELECTION, VAR_TYPE_UNSIGNED, VAR_TYPE_SIGNED, VAR_TYPE_FREQUENCY, VAR_TYPE_STRING };

inline constexpr int VAR_MAX_TEXT = 100;  // characters of a string variable

// One row of the table; the row number is the identifier.
struct SYS_VAR {
  const char* sName;         // identifier, script constant and settings key
  const char* sDisplayName;  // text of editors and lists
  const char* sLabel;        // caption of a check box, or a short name
  VAR_TYPE Type;
  const char* sValues;  // "name=value,...", or "SysVarMin=m,SysVarMax=n"
  I64 Default;
  const char* sDefault;  // default of a string variable, otherwise null
};

inline constexpr U32 VAR_NONE = 0xFFFFFFFFu;  // stands for "use the live value" in GetVarText

// The row, null for an identifier above 57.
const SYS_VAR* GetVarInfo(U32 ID);
// A number 0 to 57 gives that row, otherwise the identifier in any case; null if there is none.
const SYS_VAR* FindVar(const QString& sText);
QString GetVarName(U32 ID);
// Identifier of a row, VAR_NONE for null.
U32 GetVarIndex(const SYS_VAR* pVar);
// "string selection", "unsigned int", "signed int" or "string".
QString GetVarTypeName(const SYS_VAR* pVar);
// A selection of exactly two boolean words, shown as a check box.
bool IsBoolVar(const SYS_VAR* pVar);

// The live value, signed rows as two's complement; 0 for unknown identifiers and string rows. Any thread.
U32 GetVarValue(U32 ID);
// The live text of a string row.
QString GetVarString(U32 ID);
// Value that a new session starts with, and the value that goes to the store.
U32 GetVarDefault(U32 ID);
U32 GetVarSavedValue(U32 ID);

// Writes the live value, with Flags other than 0 the saved value too, and remembers the row as set. Nothing is checked
// and nobody is told. Returns 0, or -1 for string rows and null.
int SetVarValue(const SYS_VAR* pVar, U32 Value, U32 Flags);
// The same from a text in the form of the row's type, quotes removed. Returns 0; -1 for an unreadable or unknown value,
// a value out of range or a text that is too long; -2 for a negative value of an unsigned row. Failures change nothing.
int SetVarFromText(const SYS_VAR* pVar, const QString& sText, U32 Flags);
// True when the row was set since the last ResetVars.
bool IsVarSet(const SYS_VAR* pVar);

// Text of the live value, or of OptionalValue when that isn't VAR_NONE. A value out of range gives
// "Value %u is out of range (Min: %u, Max: %u)".
QString GetVarText(const SYS_VAR* pVar, U32 OptionalValue = VAR_NONE);
// Names and numbers of a selection; empty for the other types.
QStringList GetVarValueNames(const SYS_VAR* pVar);
QList<I64> GetVarValues(const SYS_VAR* pVar);
// Lowest and highest value, joined by " - ".
QString GetVarRangeText(const SYS_VAR* pVar);
// Range check; a selection has to hold the value.
bool IsVarValueAllowed(const SYS_VAR* pVar, I64 Value);

// A text as a value of the row: an entry's name, a named constant, a number, a boolean word, and for selections as the
// last resort the index of an entry. *pOk is false when it is none of these or out of range.
U32 ParseVarValue(const SYS_VAR* pVar, const QString& sText, bool* pOk);

// All variables to their defaults, the record of set rows cleared. Values that live elsewhere are left alone.
void ResetVars();

// Access to a value that lives elsewhere, such as the device's configuration. Both must be callable on any thread.
struct VAR_ACCESSOR {
  std::function<U32()> Get;
  std::function<void(U32 Value)> Set;
};
// From here on the row's live value is the accessor's. To be called before other threads read variables.
void RegisterVarAccessor(U32 ID, const VAR_ACCESSOR& Accessor);

// The preferences, rows 22 to 57, from and into the settings cache.
void LoadPreferences();
void SavePreferences();
