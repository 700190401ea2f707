#pragma once
// The logging core: one entry point that routes a text by MSG_INFO_FLAGS (base/msg_flags.h) to the console window, the
// debug console and the application log file. Any thread may log.

#include <QString>
#include <QtGlobal>

#include "base/msg_flags.h"
#include "base/types.h"

// Indices of the two log files.
inline constexpr int LOG_FILE_APPLICATION = 0;
inline constexpr int LOG_FILE_CONSOLE = 1;

// Routes one message: the source prefix of Flags goes in front, trailing line ends and blanks are dropped, the level
// prefix is added for standard output and the file. Texts are cut at 2047 bytes. Returns 0, or -1 for a null or empty
// text; at once when none of the sinks that Flags names is active. Thread-safe.
int LogMsg(const char* sText, U32 Flags);
int LogMsg(const QString& sText, U32 Flags);

// True when at least one sink that Flags names would accept a message now. Cheap; for callers that log very often.
bool IsLogSinkActive(U32 Flags);

// Qt message handler, for qInstallMessageHandler: debug and information texts go to standard output and file,
// critical and fatal ones to the console window too. Returns at once when no sink is active.
void HandleQtMessage(QtMsgType Type, const QMessageLogContext& Context, const QString& sText);

// Opens a log file (LOG_FILE_...) and empties it; what was open under that index is written out and closed first. A
// null or empty path only closes. A file that can't be opened leaves the sink inactive. Returns 0 or -1.
int OpenLogFile(int Index, const char* sPath);

// Writes what is buffered for both files and closes them. Called at the end of the run.
void CloseLogFiles();

// UTF-8 path of the application log, at most 511 bytes, or null when none was set. The pointer stays valid until the
// next OpenLogFile.
const char* GetLogFilePath();

// Number of bytes that are collected before the application log is written, as decimal text; unreadable texts and
// values below 1 give 512.
void SetLogInterval(const QString& sLogInterval);

// Standard output sink, on with the command line option -debug.
void SetDebugMode(bool On);
bool IsDebugMode();

// Told by the console window once it exists; messages before that skip the console sink.
void SetConsoleExists(bool Exists);
bool IsConsoleExisting();

// Appends a text to the console log file when one is open. Main thread; called by DrainConsole.
void WriteConsoleLogFile(const char* sText, U32 NumBytes);
