#pragma once
// From the main window to the user file of a project, and back.

#include <QList>

#include "project/user_file.h"

class CWindow;
class QMainWindow;
class QToolBar;

// The docks and tool bars of Main as they stand, hidden ones left out, and what its windows add.
USER_FILE MeasureLayout(const QMainWindow& Main, const QList<CWindow*>& Windows, const QList<QToolBar*>& ToolBars);

// Puts docks and tool bars where the file says. A kind of which it names none stays as it is; what floats comes to a
// screen that exists. Called when a project has been opened.
void ApplyLayout(const USER_FILE& File, QMainWindow& Main, const QList<CWindow*>& Windows,
                 const QList<QToolBar*>& ToolBars);
