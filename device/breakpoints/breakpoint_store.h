#pragma once
// Breakpoints as lines of the user file: "Breakpoint=" or, for an address, "AddressBreakpoint=", followed by their
// keys; "DerivedBreakpoint=" continues a source breakpoint whose addresses differ.

#include "device/breakpoints/breakpoint_rec.h"

// One line each, with "\n" behind it.
QString MakeBreakpointText(const QList<STORED_BREAKPOINT>& Breakpoints);
// The breakpoints among the lines of a text; lines of other kinds, and values that can't be, are passed over.
QList<STORED_BREAKPOINT> ParseBreakpointText(const QString& sText);
