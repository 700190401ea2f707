#pragma once
// Commands as script functions.

#include "base/types.h"

class CTrans;

// Declares every command, by its name and its alias, as a native function of the engine.
void RegisterApiFunctions(CTrans& Engine);
// Declares the named constants, and the identifiers of variables, colours and fonts.
void RegisterConstants(CTrans& Engine);

// Waits for the jobs of a type, then delivers what the device has to say.
void WaitForJobDone(U32 JobType, bool bProcessEvents);
// What Debug.Start waits for: no unfinished control job, and nothing heard that could lead to one. False after 120 s.
bool WaitForControlJobs();

// Target.Read* and Target.GetReg without the action table; the handlers of those commands call them too.
// Value of NumBytes (1, 2, 4) at an address, 0 when it can't be read; *pOk tells.
U32 ReadTargetInt(U32 Addr, U32 NumBytes, bool* pOk);
// Value of a register by name or number, -1 (64 bits) when the device thread does not run or the name is unknown.
U64 ReadTargetReg(const QString& sName);
