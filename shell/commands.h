#pragma once
// The handlers of the commands, by group. Each is registered with the action table; called once, by the main window.

#include <functional>
#include <span>

#include "base/types.h"

class CMainWindow;
class CProgramLoader;
class CProjectController;
class CSessionController;

// What the handlers work on. All outlive the registration.
struct COMMAND_CONTEXT {
  CMainWindow& Window;
  CSessionController& Session;
  CProjectController& Projects;
  CProgramLoader& Loader;
};

// A command of the table and what it does; the context outlives the program's windows.
struct COMMAND_HANDLER {
  U32 ActionID;
  void (*Handle)(COMMAND_CONTEXT& Context);
};

void RegisterCommands(COMMAND_CONTEXT& Context, std::span<const COMMAND_HANDLER> Handlers);

void RegisterFileCommands(COMMAND_CONTEXT& Context);
void RegisterDebugCommands(COMMAND_CONTEXT& Context);
void RegisterBreakCommands(COMMAND_CONTEXT& Context);
void RegisterTargetCommands(COMMAND_CONTEXT& Context);
void RegisterMemoryCommands(COMMAND_CONTEXT& Context);
void RegisterProjectCommands(COMMAND_CONTEXT& Context);
void RegisterTerminalCommands(COMMAND_CONTEXT& Context);
void RegisterPluginCommands(COMMAND_CONTEXT& Context);
void RegisterWindowCommands(COMMAND_CONTEXT& Context);
void RegisterEditCommands(COMMAND_CONTEXT& Context);
void RegisterSettingsCommands(COMMAND_CONTEXT& Context);
void RegisterViewCommands(COMMAND_CONTEXT& Context);
void RegisterSourceCommands(COMMAND_CONTEXT& Context);
void RegisterHelpCommands(COMMAND_CONTEXT& Context);
