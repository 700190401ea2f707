#pragma once
// Edits of a project file's text: single commands of OnProjectLoad come and go, everything else stays as the user wrote
// it. Functions without state; texts have "\n" line ends (WithUnixLineEnds of base). Names and braces inside comments
// and string literals do not count, so a command that is commented out is neither found nor removed.

#include <QString>
#include <QStringList>

// Outcome of an edit. sError is empty when it was made; otherwise sText is the text as it came.
struct TEXT_EDIT {
  QString sText;
  QString sError;
};

// A piece of text: index of the first character, and of the one behind the last.
struct TEXT_RANGE {
  qsizetype Begin = -1;
  qsizetype End = -1;
  bool IsNone() const { return Begin < 0; }
  bool operator==(const TEXT_RANGE&) const = default;
};

// The text with the contents of comments, strings and character literals blanked; same length, same line ends.
QString BlankedScript(const QString& sText);

// Position behind the "{" of OnProjectLoad's definition, -1 if there is none.
qsizetype FindBodyStart(const QString& sText);
// Position of the "}" that ends the body beginning there, -1 if there is none.
qsizetype FindBodyEnd(const QString& sText, qsizetype BodyStart);
// First call of that command in OnProjectLoad, from its name up to and with its ";".
TEXT_RANGE FindCommand(const QString& sText, const QString& sName);
bool HasCommand(const QString& sText, const QString& sName);
// The word in front of "(": "Project.SetDevice" of `Project.SetDevice ("X");`.
QString NameOfCommand(const QString& sCommand);

// Removes every call of the command. A call that has its lines to itself goes with them and their comment; of a line
// with other code only the call is cut out.
TEXT_EDIT RemoveCommand(const QString& sText, const QString& sName);
// Inserts commands, one a line, behind a piece of text, or behind the line it ends on, in OnProjectLoad; at the body's
// start where the marker is missing.
TEXT_EDIT InsertBehindMarker(const QString& sText, const QString& sMarker, const QStringList& Commands);
// The same behind the first call of a command.
TEXT_EDIT InsertBehindCommand(const QString& sText, const QString& sName, const QStringList& Commands);

// Puts commands among the dialog-generated settings, in place of all calls of the same commands.
TEXT_EDIT ReplaceCommands(const QString& sText, const QStringList& Commands);
// Puts commands there in addition to what there is.
TEXT_EDIT AppendCommands(const QString& sText, const QStringList& Commands);
// Replaces the connection settings (device, interfaces, speed, scan chain, byte order) by the given commands.
TEXT_EDIT ReplaceVNodeCommands(const QString& sText, const QStringList& Commands);
// Replaces the trace settings by the given commands, behind the speed of the target interface.
TEXT_EDIT ReplaceTraceCommands(const QString& sText, const QStringList& Commands);
