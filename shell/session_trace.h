#pragma once
// The probe's instruction trace, as far as the steps of a session drive it. Main thread.

#include "base/types.h"

// Switches the trace on or off: on where the trace source gives instructions and something shows them.
void UpdateTrace(bool bNeedsTrace);
// A trace that is switched on begins; before the program of a session runs, and when an attach is done.
void StartTrace();
// The probe reads the program's code, which the target held before the session, if the settings ask for it.
void InitTraceCache();
// Has the probe read a range of the target's memory for the trace.
void ReadIntoTraceCache(U32 Addr, U32 NumBytes);
