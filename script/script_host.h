#pragma once

#include <QString>

// Turns the event loop without user input, as the shell has set it up (VSCRIPT_HOST).
void ProcessHostEvents();
// Probe register number of a register by name or number, -1 if there is none.
int FindHostRegister(const QString& sName);
