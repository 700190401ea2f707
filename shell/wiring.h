#pragma once

class CProgramLoader;
class CSessionController;
class CWindow;

// Plugs the layers together: message sinks, what the script, the project and the core model ask of their surroundings,
// and the settings that the device reads. Called once, before the first project.
void PlugLayersTogether(CSessionController& Session, CProgramLoader& Loader);
// Gives a window all its fonts and preferences.
void ApplyFontsTo(CWindow& Window);
// Gives a new window all preferences as they are.
void ApplyPreferencesTo(CWindow& Window);
