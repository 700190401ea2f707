#pragma once

#include <QString>

class QWidget;

// Asks the user where a missing source file lies, and takes the answer. Called from the menu of a document that was not
// found.
void LocateFile(QWidget* pParent, const QString& sMissing);

// Takes a file as the missing one, and what lies beside it as the rest of its tree: by commands, which the console
// shows so that they can go into the project. False, with a console line, when the names of the two differ or the file
// is not there.
bool TakeLocatedFile(const QString& sMissing, const QString& sChosen);
