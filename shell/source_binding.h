#pragma once

class CMainWindow;

// Connects the source viewer with what it shows and changes elsewhere: breakpoints, tool tips, the state of the
// commands. Called once, when the windows exist.
void BindSource(CMainWindow& Window);
