#pragma once
// Edits of a saved project file that leave alone what the user has written: the text is searched, never parsed.

#include <QStringList>

// Puts commands, each in the form "Name (...);", behind the mark of the dialog's settings at the start of
// OnProjectLoad, in place of the lines that have the same commands. False, with a console line, when the file can't be
// read or written or has no such function.
bool AddProjectCommands(const QString& sPath, const QStringList& Commands);
