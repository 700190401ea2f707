#pragma once

class CMainWindow;
class CProgramLoader;

// Connects the breakpoints with the programs that are opened, with the console and message boxes for what they have to
// say, and with the keys of the source viewer. Called once, when the windows exist.
void BindBreakpoints(CMainWindow& Window, CProgramLoader& Loader);
