#pragma once
// Texts of users that say where a breakpoint is, and texts of places.

#include "base/src_loc.h"
#include "base/types.h"

// A source line, or an address.
struct BREAKPOINT_LOCATION {
  CSrcLoc Loc;  // all-zero for an address
  U32 Addr = INVALID_ADDR;
  bool IsValid() const { return Loc.IsValid() || Addr != INVALID_ADDR; }
  bool IsSource() const { return Loc.IsValid(); }
};

// The line that a text names: "file:line", a function, or an address in hexadecimal digits. A function's is where its
// code begins. All-zero when the text means nothing.
CSrcLoc ParseBreakpointLine(const QString& sText);
// The same, but hexadecimal digits name the address itself.
BREAKPOINT_LOCATION ParseBreakpointLocation(const QString& sText);

// The text has the form "file:line", so that it is neither an address nor a name.
bool IsLineText(const QString& sText);

// The line itself when it has code, otherwise the next one in the file that has, otherwise the line itself.
CSrcLoc LineWithCode(const CSrcLoc& Loc);

// What the console says when a breakpoint goes to another line than the one asked for.
QString MovedBreakpointText(const QString& sWanted, const QString& sInstead);

// "main.c:12" of the path of a source file.
QString LineText(const QString& sPath, U32 Line);
// A text that names this line and no other: with the whole path where the bare name won't do. The path is the one that
// the program has, where none is given.
QString UniqueLineText(const CSrcLoc& Loc, QString sPath = QString());
// What a line of a source file reads, trimmed; empty when the file can't be read.
QString SourceLineText(const QString& sPath, U32 Line);
