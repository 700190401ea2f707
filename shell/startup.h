#pragma once

class CMainWindow;
class CProjectController;

// Settings, variables, preferences, colours and fonts into their tables; before the first window is made.
void LoadApplicationSettings();
// Where the probe library is, to the console.
void ReportProbeLibrary();
// Decides what the user sees first: the project on the command line, one made from options, or the latest one.
void OpenWhatComesFirst(CMainWindow& Window, CProjectController& Projects);
