#pragma once
// Printing to the console window from any thread, and taking the printed messages out again on the main thread.

#include <functional>

#include <QStringList>

#include "shell/log/console_ring.h"

// Colour of a text: the palette's text colour.
inline constexpr U32 CONSOLE_RGBA_DEFAULT = 0;
// Rows of the colour table that the console uses itself.
inline constexpr I32 CONSOLE_COLOR_SCRIPT = 25;
inline constexpr I32 CONSOLE_COLOR_USER = 26;
inline constexpr I32 CONSOLE_COLOR_ERROR = 27;

// Queues one message as a new line, cut at 1000 bytes; an empty text does nothing, a full ring drops it. Rgba as in
// QColor::rgba(), CONSOLE_RGBA_DEFAULT for the default colour. Any thread.
void PrintConsole(const QString& sText, U32 Rgba = CONSOLE_RGBA_DEFAULT, bool UseMono = false);
void PrintConsole(const char* sText, U32 Rgba);
// The same in a colour of the colour table, resolved when the message is shown.
void PrintConsoleColor(const QString& sText, I32 ColorID, bool UseMono = false);
// Each line as a message of its own in the fixed-pitch font.
void PrintConsoleLines(const QStringList& Lines, I32 ColorID);
// In the error colour.
void PrintConsoleError(const QString& sText);

// Called once, on the calling thread, ahead of the next message that this thread queues: what belongs in front of it is
// printed there. Null: nothing. Main thread.
void SetBeforePrint(void (*Print)());

inline constexpr U32 CONSOLE_DRAIN_MAX = 100;  // messages per call

// Hands at most CONSOLE_DRAIN_MAX waiting messages to Show, oldest first, and appends each to the console log file.
// Returns the number of messages. Main thread; called by the console's timer and by batch sessions.
U32 DrainConsole(const std::function<void(const CONSOLE_MSG&)>& Show);

// Drops everything that waits.
void ClearConsoleRing();

// A time stamp in microseconds as "h:mm:ss.mmm uuu", without leading parts that are 0.
QString TimeStampText(U64 TimeStamp);
