#pragma once
// The plug-in of the target's real-time operating system, which Project.SetOSPlugin loads.

// With the project that had named it; no-op without one.
void UnloadPlugin();
// Tells on the console of an operating system in the program that a plug-in would know, while none is loaded.
void HintAtPlugins();
