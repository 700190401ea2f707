#pragma once
// What a user does with the breakpoint at a place, from a key, a menu or a click: each performs a command, so that the
// console shows it. Nothing happens where it makes no sense.

#include "device/breakpoints/breakpoint_location.h"

// The place as an argument of a command.
QString LocationArg(const BREAKPOINT_LOCATION& Location);

// Performs the command for a line or the one for an address; nothing for a place that is none.
void PerformBreakpoint(const BREAKPOINT_LOCATION& Location, U32 OnSrcID, U32 AtAddrID);
// Sets a breakpoint, or clears the one that is there; a derived one is disabled or enabled instead.
void ToggleBreakpoint(BREAKPOINT_LOCATION Location);
// Disables the breakpoint, or enables it.
void ToggleBreakpointState(BREAKPOINT_LOCATION Location);
// Runs the dialog for the properties of the breakpoint.
void EditBreakpoint(BREAKPOINT_LOCATION Location);
// Asks for a place and sets or clears the breakpoint there.
void AskForBreakpoint();
