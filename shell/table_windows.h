#pragma once
// What the main window does with table windows: their rows over a change of the program, and their headers in the
// settings.

#include <QList>

class CMainWindow;
class CProgramLoader;
class CWindow;

// Lets the windows of the program's contents follow it. Called once all windows exist.
void BindTableWindows(CMainWindow& Window, CProgramLoader& Loader);

// Headers of table windows from the settings and to them.
void LoadTableHeaders(const QList<CWindow*>& Windows);
void StoreTableHeaders(const QList<CWindow*>& Windows);
