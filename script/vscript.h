#pragma once
// The host of the one script of a session, the project file. Main thread.

#include <functional>

#include <QString>
#include <QStringList>

#include "base/types.h"
#include "script/hook_table.h"

// What the host needs from the layers above it. The shell sets it once, before the first script is loaded.
struct VSCRIPT_HOST {
  // Probe register number of a register by name or number, -1 if there is none.
  std::function<int(const QString& sName)> FindRegister;
  // Turns the event loop without user input; called by waits and by running scripts. Default: QCoreApplication's.
  std::function<void()> ProcessEvents;
  // The first hook begins to run (true), the last one has ended (false). For what the user may do meanwhile.
  std::function<void(bool bRunning)> OnRunning;
};

namespace VScript {

void SetHost(VSCRIPT_HOST Host);

// Loads a project file and remembers its path. 0; -1 when it could not be read, holds no OnProjectLoad, or the engine
// could not be made. A syntax error in a function head gives 0 with HasError() set.
int Load(const QString& sPath);
// The same from a text, keeping the path and without the test for OnProjectLoad. Waits, turning the event loop, until
// no function of the old script runs, 100 s at most.
int LoadText(const QString& sText);
// Loads the file again when its text on disk has changed: 1 when it did.
int Reload();
// Whether the file exists and its text differs from the loaded one.
bool IsFileChanged();
// Writes the loaded text and remembers the path. False when the file could not be written.
bool SaveText(const QString& sPath);
// Drops the script: none, no error. Does not wait.
void Close();
// Lets running functions end at their next statement, and refuses new ones until the next load.
void RequestClose();

// Ends running hooks at once with an error that tells where they were. Nothing when none runs.
void Stop();
// Whether a wait of a running hook should end early: its script is closing or was stopped.
bool IsStopping();

// True if the script is usable, not closing, and defines the hook.
bool HasFunction(int FuncID);
// Runs a hook. 0 when it ran or the script is closing; negative for a failure.
int ExecFunction(int FuncID);

// A script is loaded, possibly with errors.
bool IsLoaded();
bool HasError();
// Hook that is being run, HOOK_NONE otherwise, and the depth of running hooks.
int CurrentFuncID();
int CallLevel();
// Text and place of the first error, as the console shows it.
QString GetErrorText();
// Line of the first error, -1 for none; the failing statement.
int GetErrorLine();
QString GetErrorStatement();
// File, line and column of the first error, the source and a caret under it, each a line of the console in a
// fixed-pitch font. Empty when the error has no place.
QStringList GetErrorExcerpt();

QString GetFilePath();
void SetFilePath(const QString& sPath);
QString GetText();

}  // namespace VScript
