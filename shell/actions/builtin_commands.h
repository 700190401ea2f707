#pragma once

#include <functional>

// Registers the handlers of the commands that need nothing but this layer: Edit.SysVar, Edit.Preference, Edit.Color,
// Help.Commands, Util.Log and Util.Sleep. Called once the application object exists; windows may take the rows over.
// IsClosing ends a Util.Sleep early: the program is on its way out. Main thread.
void RegisterBuiltinCommands(const std::function<bool()>& IsClosing = {});
