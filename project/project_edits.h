#pragma once
// Edits of saved project files; the edits themselves are in project_text.h.

#include <functional>

#include "project/project_text.h"

using PROJECT_EDIT = std::function<TEXT_EDIT(const QString& sText)>;

// Reads a project file, edits its text and writes it with CR+LF line ends. False, with a console line, when the file
// can't be read or written, is empty, or the edit was not made; the file stays as it was then.
bool EditProjectFile(const QString& sPath, const PROJECT_EDIT& Edit);
// Whether the saved file's OnProjectLoad calls the command. False for a file that can't be read.
bool HasProjectCommand(const QString& sPath, const QString& sName);
